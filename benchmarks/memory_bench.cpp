// memory_bench: what the console keeps in memory for each Event, store, records, rows and the texts in which the list
// is searched together, against the bytes of the names and values that the server sent. For 32-bit Windows, as the
// console is.
#include <windows.h>

#include <psapi.h>

#include "bench.h"
#include "event_mirror.h"
#include "sample_events.h"

namespace orvc::bench {
namespace {

double residentBytes() {
    PROCESS_MEMORY_COUNTERS counters{};
    counters.cb = sizeof counters;
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.WorkingSetSize);
}

void run() {
    constexpr std::uint32_t kEvents = 50'000;
    EventMirror mirror;
    double sent = 0;
    const double before = residentBytes();
    for (std::uint32_t i = 0; i < kEvents; ++i)
        makeSampleEvent(i, [&](const SampleVariable& v) {
            sent += static_cast<double>(v.name.size() + (v.text ? v.text->size() : sizeof v.number));
            const auto text = v.text ? std::optional<std::string_view>(*v.text) : std::nullopt;
            mirror.store.doSystemVariableUpdate({v.name, v.type, text, v.number});
        });
    mirror.table.prepareTexts(kEvents);
    report("memory.kept", (residentBytes() - before) / kEvents);
    report("memory.sent", sent / kEvents);
}

}  // namespace
}  // namespace orvc::bench

int main() {
    orvc::bench::run();
}
