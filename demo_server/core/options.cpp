#include "demo_server/core/options.h"

#include <algorithm>

#include "demo_server/core/text_codec.h"

namespace orvc::demo {
namespace {

constexpr std::uint32_t kMostEvents = 1'000'000;
constexpr std::uint32_t kMostDevicesOrGroups = 60'000;
constexpr std::uint32_t kMostMillis = 86'400'000;
constexpr std::uint32_t kMostSeconds = kMostMillis / 1000;

// What the items on the generated installation say, before they are put together.
struct Sizes {
    std::optional<std::uint32_t> events;
    std::optional<std::uint32_t> devices;
    std::optional<std::uint32_t> groups;
};

struct Parsing {
    Options options;
    Sizes sizes;
};

std::optional<std::uint32_t> parseUpTo(std::string_view text, std::uint32_t most) {
    const auto number = parseNumber<std::uint32_t>(text);
    return number && *number <= most ? number : std::nullopt;
}

// Stores into `target` when there is something to store.
template <typename Target, typename Value>
bool store(Target& target, const std::optional<Value>& value) {
    if (value) target = *value;
    return value.has_value();
}

bool storeFlag(bool& target, std::string_view text) {
    if (text != "0" && text != "1") return false;
    target = text == "1";
    return true;
}

bool storeText(std::string& target, std::string_view text) {
    target = text;
    return !text.empty();
}

// Seconds, with up to three decimals.
std::optional<Millis> parseSeconds(std::string_view text) {
    const std::size_t point = text.find('.');
    const auto whole = parseUpTo(text.substr(0, point), kMostSeconds);
    if (!whole) return std::nullopt;
    Millis millis = Millis{*whole} * 1000;
    if (point == std::string_view::npos) return millis;
    std::string decimals(text.substr(point + 1));
    if (decimals.empty() || decimals.size() > 3) return std::nullopt;
    decimals.resize(3, '0');
    const auto fraction = parseNumber<std::uint32_t>(decimals);
    if (!fraction) return std::nullopt;
    return millis + *fraction;
}

bool storeRefusals(std::vector<std::int32_t>& target, std::string_view text) {
    std::vector<std::int32_t> refusals;
    for (bool more = true; more;) {
        const std::size_t comma = text.find(',');
        const auto result = parseNumber<std::int32_t>(text.substr(0, comma));
        if (!result || *result == 0) return false;
        refusals.push_back(*result);
        more = comma != std::string_view::npos;
        if (more) text.remove_prefix(comma + 1);
    }
    target = std::move(refusals);
    return true;
}

struct Item {
    std::string_view name;
    bool (*read)(Parsing&, std::string_view value);
};

constexpr Item kItems[] = {
    {"events", [](Parsing& p, std::string_view v) { return store(p.sizes.events, parseUpTo(v, kMostEvents)); }},
    {"devices",
     [](Parsing& p, std::string_view v) { return store(p.sizes.devices, parseUpTo(v, kMostDevicesOrGroups)); }},
    {"groups",
     [](Parsing& p, std::string_view v) { return store(p.sizes.groups, parseUpTo(v, kMostDevicesOrGroups)); }},
    {"file", [](Parsing& p, std::string_view v) { return storeText(p.options.file, v); }},
    {"fire", [](Parsing& p, std::string_view v) { return store(p.options.fireInterval, parseUpTo(v, kMostMillis)); }},
    {"refuse", [](Parsing& p, std::string_view v) { return storeRefusals(p.options.refusals, v); }},
    {"admin", [](Parsing& p, std::string_view v) { return storeFlag(p.options.admin, v); }},
    {"stop-after", [](Parsing& p, std::string_view v) { return store(p.options.stopAfter, parseSeconds(v)); }},
    {"stop-once", [](Parsing& p, std::string_view v) { return store(p.options.stopOnce, parseSeconds(v)); }},
    {"late-stop", [](Parsing& p, std::string_view v) { return store(p.options.lateStop, parseUpTo(v, kMostMillis)); }},
    {"faults",
     [](Parsing& p, std::string_view v) { return store(p.options.faultSeed, parseNumber<std::uint32_t>(v)); }},
    {"slow", [](Parsing& p, std::string_view v) { return store(p.options.slow, parseUpTo(v, kMostMillis)); }},
    {"shuffle",
     [](Parsing& p, std::string_view v) { return store(p.options.shuffleSeed, parseNumber<std::uint32_t>(v)); }},
    {"mute-files", [](Parsing& p, std::string_view v) { return storeFlag(p.options.muteFiles, v); }},
    {"standalone", [](Parsing& p, std::string_view v) { return storeFlag(p.options.standalone, v); }},
    {"no-handle", [](Parsing& p, std::string_view v) { return storeFlag(p.options.noHandle, v); }},
    {"reload-after", [](Parsing& p, std::string_view v) { return store(p.options.reloadAfter, parseSeconds(v)); }},
    {"resend", [](Parsing& p, std::string_view v) { return p.options.resendValues = v == "values"; }},
    {"incomplete", [](Parsing& p, std::string_view v) { return storeFlag(p.options.incomplete, v); }},
    {"late-members",
     [](Parsing& p, std::string_view v) { return store(p.options.lateMembers, parseUpTo(v, kMostMillis)); }},
    {"trace", [](Parsing& p, std::string_view v) { return storeText(p.options.trace, v); }},
};

std::string_view trim(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

void readItem(Parsing& parsing, std::string_view item) {
    const std::size_t equals = item.find('=');
    const std::string_view name = trim(item.substr(0, equals));
    const auto known =
        std::find_if(std::begin(kItems), std::end(kItems), [&](const Item& i) { return i.name == name; });
    if (known == std::end(kItems)) {
        parsing.options.complaints.push_back("Demo server: unknown option '" + std::string(item) + "' is ignored");
    } else if (equals == std::string_view::npos || !known->read(parsing, trim(item.substr(equals + 1)))) {
        parsing.options.complaints.push_back("Demo server: option '" + std::string(item) +
                                             "' is malformed and ignored");
    }
}

// A building has about a tenth as many stations as Events, and a group for every hundred Events.
void settleSizes(Parsing& parsing) {
    const Sizes& sizes = parsing.sizes;
    if (sizes.events) {
        parsing.options.generated = GeneratedSize{
            *sizes.events, sizes.devices.value_or(std::clamp<std::uint32_t>(*sizes.events / 10, 10, 5000)),
            sizes.groups.value_or(std::clamp<std::uint32_t>(*sizes.events / 100, 6, 500))};
    } else if (sizes.devices || sizes.groups) {
        parsing.options.complaints.push_back("Demo server: options 'devices' and 'groups' need 'events'");
    }
}

}  // namespace

Options parseOptions(std::string_view text) {
    Parsing parsing;
    while (!text.empty()) {
        const std::size_t end = text.find(';');
        const std::string_view item = trim(text.substr(0, end));
        text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
        if (!item.empty()) readItem(parsing, item);
    }
    settleSizes(parsing);
    return std::move(parsing.options);
}

}  // namespace orvc::demo
