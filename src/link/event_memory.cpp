#include "link/event_memory.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <new>
#include <thread>
#include <utility>

#if __has_include(<sanitizer/asan_interface.h>)
#include <sanitizer/asan_interface.h>
#else
#define ASAN_POISON_MEMORY_REGION(address, size) (static_cast<void>(address), static_cast<void>(size))
#define ASAN_UNPOISON_MEMORY_REGION(address, size) (static_cast<void>(address), static_cast<void>(size))
#endif

namespace orvc::event_memory {
namespace {

constexpr std::size_t kAlignment = 8;
// So large that the heaps of Windows take it from the system by itself and give it back at once.
constexpr std::size_t kPieceSize = 512 * 1024;
// While a piece is filled, the thread that fills it keeps its count to itself, and this stands for it.
constexpr std::uint32_t kBeingFilled = 1u << 31;

struct alignas(kAlignment) Piece {
    std::size_t size;
    std::atomic<std::uint32_t> living;  // events in use, and kBeingFilled
};

// Lies before each event.
struct alignas(kAlignment) Header {
    Piece* piece;
    std::size_t size;
};

constexpr std::size_t roundUp(std::size_t size) {
    return (size + kAlignment - 1) & ~(kAlignment - 1);
}

// An empty piece that waits to be filled again: while the window keeps up, its memory stays in the processor's caches.
std::atomic<Piece*> spare{nullptr};

void giveBack(Piece* piece) noexcept {
    if (piece == nullptr) return;
    ASAN_UNPOISON_MEMORY_REGION(piece, piece->size);
    ::operator delete(piece);
}

void drop(Piece* piece, std::uint32_t count) noexcept {
    if (piece->living.fetch_sub(count, std::memory_order_acq_rel) != count) return;
    giveBack(piece->size == kPieceSize ? spare.exchange(piece) : piece);
}

// A spin lock, since two threads rarely allocate at once, and the event queue has a mutex already.
class FillingLock {
  public:
    FillingLock() {
        while (busy_.test_and_set(std::memory_order_acquire))
            std::this_thread::yield();
    }
    ~FillingLock() { busy_.clear(std::memory_order_release); }
    FillingLock(const FillingLock&) = delete;
    FillingLock& operator=(const FillingLock&) = delete;

  private:
    static inline std::atomic_flag busy_;
};

// The piece that the next events go into. Releasing a event needs none of this.
struct Filling {
    Piece* piece = nullptr;
    std::size_t used = 0;
    std::uint32_t count = 0;

    Header* take(std::size_t size) {
        if (piece == nullptr || piece->size - used < size) startPiece(size);
        auto* const header = reinterpret_cast<Header*>(reinterpret_cast<char*>(piece) + used);
        ASAN_UNPOISON_MEMORY_REGION(header, size);
        used += size;
        ++count;
        return new (header) Header{piece, size};
    }

    void finish() noexcept {
        if (piece != nullptr) drop(std::exchange(piece, nullptr), kBeingFilled - count);
    }

    void startPiece(std::size_t size) {
        const std::size_t pieceSize = std::max(kPieceSize, sizeof(Piece) + size);
        void* memory = pieceSize == kPieceSize ? spare.exchange(nullptr) : nullptr;
        if (memory == nullptr) memory = ::operator new(pieceSize);
        finish();
        piece = new (memory) Piece{pieceSize, kBeingFilled};
        used = sizeof(Piece);
        count = 0;
        ASAN_POISON_MEMORY_REGION(piece + 1, pieceSize - sizeof(Piece));
    }
};
constinit Filling filling;

}  // namespace

void* allocate(std::size_t size) {
    const FillingLock lock;
    return filling.take(sizeof(Header) + roundUp(size)) + 1;
}

void finishPiece() noexcept {
    const FillingLock lock;
    filling.finish();
    giveBack(spare.exchange(nullptr));
}

void release(void* memory) noexcept {
    Header* const header = static_cast<Header*>(memory) - 1;
    Piece* const piece = header->piece;
    ASAN_POISON_MEMORY_REGION(header, header->size);
    drop(piece, 1);
}

}  // namespace orvc::event_memory
