// GUIDs of payload files, Events and Schedules, and their text form.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "link/ks_types.h"

namespace orvc::demo {

// Orders GUIDs for a map; the order itself means nothing.
struct GuidLess {
    bool operator()(const KSGuid& left, const KSGuid& right) const;
};

// The registry form: braces, upper-case digits, 8-4-4-4-12, 38 characters.
std::string guidText(const KSGuid& guid);

// Reads exactly the registry form, in either case; nothing for any other text.
std::optional<KSGuid> parseGuid(std::string_view text);

// A fresh random GUID (version 4). Any thread.
KSGuid randomGuid();

// The GUID number `index` of a family: always the same one, spread over the whole range. Generated installations name
// their records with it.
KSGuid numberedGuid(std::uint32_t family, std::uint32_t index);

}  // namespace orvc::demo
