// variables_bench: storing an installation's variables and routing them to the Events' records, against one pass that
// copies the same names and values into a std::unordered_map.
#include <malloc.h>

#include <array>
#include <cstdlib>
#include <string>
#include <unordered_map>

#include "bench.h"
#include "event_mirror.h"
#include "sample_events.h"

namespace orvc::bench {
namespace {

struct CopiedValue {
    std::uint32_t type;
    std::uint32_t number;
    std::string text;
};

// What one measurement freed is tidied up by the C library in the midst of the next: done before, outside the measured
// time.
void tidyUpHeap() {
    malloc_trim(0);
}

double storeAndRoute(const std::vector<SampleVariable>& variables) {
    tidyUpHeap();
    EventMirror mirror;
    const double seconds = measureProcessor([&] {
        for (const SampleVariable& v : variables) {
            const auto text = v.text ? std::optional<std::string_view>(*v.text) : std::nullopt;
            mirror.store.doSystemVariableUpdate({v.name, v.type, text, v.number});
        }
        keep(mirror.table.model().at(0));  // ordered by then
    });
    if (mirror.table.size() * 19 != variables.size()) std::abort();
    return seconds;
}

double copyOnly(const std::vector<SampleVariable>& variables) {
    tidyUpHeap();
    std::unordered_map<std::string, CopiedValue> copies;
    const double seconds = measureProcessor([&] {
        for (const SampleVariable& v : variables)
            copies.insert_or_assign(v.name, CopiedValue{v.type, v.number, v.text.value_or(std::string())});
    });
    if (copies.size() != variables.size()) std::abort();
    return seconds;
}

void run(std::uint32_t events, const char* name) {
    std::vector<SampleVariable> variables;
    variables.reserve(events * 19);
    for (std::uint32_t i = 0; i < events; ++i)
        makeSampleEvent(i, [&](const SampleVariable& variable) { variables.push_back(variable); });
    // As many variables are handled at each size, so that small ones are not measured in a single blink.
    const int repeats = static_cast<int>(std::max(1u, 5'000 / events));
    double ours = 0;
    double reference = 0;
    for (int i = 0; i < repeats; ++i) {
        reference += copyOnly(variables);
        ours += storeAndRoute(variables);
    }
    const double count = static_cast<double>(variables.size()) * repeats;
    report((std::string("variables.store.") + name).c_str(), ours / count);
    report((std::string("variables.copy.") + name).c_str(), reference / count);
}

}  // namespace
}  // namespace orvc::bench

int main() {
    orvc::bench::run(1'000, "19k");
    orvc::bench::run(10'000, "190k");
    orvc::bench::run(100'000, "1900k");
}
