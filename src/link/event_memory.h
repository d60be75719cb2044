// The memory of the event events: a million of them go from the library's thread to the window's within seconds.
#pragma once

#include <cstddef>

namespace orvc::event_memory {

// Memory for one event, aligned for any record of the library. Events lie one behind the other in large pieces, and a
// piece goes back to the system with the last of its events: two threads that allocate and free each event by itself
// wait for each other in the system's heap. A event that is kept keeps its whole piece, so nothing else belongs here.
// The piece that is being filled stays, and an empty one. Any thread; throws std::bad_alloc.
void* allocate(std::size_t size);

// Begins a new piece with the next event, so that these two can go. Any thread.
void finishPiece() noexcept;

// Takes back what allocate() gave. Any thread.
void release(void* memory) noexcept;

}  // namespace orvc::event_memory
