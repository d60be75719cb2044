#include "demo_server/core/event_choice.h"

#include "demo_server/core/guid.h"
#include "demo_server/core/records.h"

namespace orvc::demo {
namespace {

constexpr std::string_view kEvents = "\\ORVS\\Events\\";
constexpr int kEventsLookedAt = 100;

bool canHappen(const VariableTree& variables, const VariableTree::Key& event) {
    const auto number = [&](std::string_view field) {
        const VariableTree::Value* value = variables.find(event, field);
        return value && !value->isString ? std::optional(value->number) : std::nullopt;
    };
    const auto trigger = number("EventTriggerType");
    const auto bad = number("badData");
    return number("completeBits").value_or(0) == 1 && number("Disabled") == 0u && (!bad || *bad == 0) && trigger &&
           *trigger >= static_cast<std::uint32_t>(Trigger::kCallButtonOn) &&
           *trigger <= static_cast<std::uint32_t>(Trigger::kDeviceConnection);
}

}  // namespace

std::optional<std::string> chooseEventToFire(const VariableTree& variables, std::mt19937& random) {
    // Event keys are GUIDs: any place among them is as good as any other. From there on, round the end once.
    KSGuid place;
    place.data1 = static_cast<std::uint32_t>(random());
    const auto& keys = variables.keys();
    auto entry = keys.lower_bound(std::string(kEvents) + guidText(place));
    bool wrapped = false;
    for (int looked = 0; looked < kEventsLookedAt; ++looked, ++entry) {
        if (entry == keys.end() || !entry->first.starts_with(kEvents)) {
            if (wrapped) return std::nullopt;
            wrapped = true;
            entry = keys.lower_bound(kEvents);
            if (entry == keys.end() || !entry->first.starts_with(kEvents)) return std::nullopt;
        }
        if (canHappen(variables, entry->second)) return entry->first;
    }
    return std::nullopt;
}

}  // namespace orvc::demo
