// The entries of the editor's source and destination lists: devices and groups, as the operator picks them.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "link/ks_types.h"
#include "model/directory.h"
#include "support/string_table.h"

namespace orvc {

// What an entry stands for.
enum class PlaceKind { kNone, kDevice, kGroup };

// One entry: a copy, so that it stays valid whatever becomes of the directory.
struct Place {
    PlaceKind kind = PlaceKind::kNone;
    KSMac device{};     // of a device
    std::string group;  // of a group: its name
    std::string text;   // as the list shows it
};

// A placeholder first, then every device and group in ascending byte order of the texts; of equal texts the one that
// the directory lists later comes first.
std::vector<Place> listPlaces(const Directory& directory, const StringTable& strings, unsigned placeholderId);

// The entry of a device, or of a group when the device is none; empty when there is none or neither is named.
std::optional<std::size_t> findPlace(const std::vector<Place>& places, const KSMac& device, const std::string& group);

}  // namespace orvc
