#include "editors/event/place_choices.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "model/mac.h"
#include "resources/resource.h"
#include "support/text.h"

namespace orvc {
namespace {

Place makeDevice(const Device& device, const std::string& format, const std::string& blankFormat) {
    const KSMac& mac = device.mac();
    const std::string_view name = device.name();
    Place place{PlaceKind::kDevice, mac, {}, {}};
    if (name.empty())
        place.text = fillIn(blankFormat, {long{mac[3]}, long{mac[4]}, long{mac[5]}});
    else
        place.text = fillIn(format, {name, long{mac[3]}, long{mac[4]}, long{mac[5]}});
    return place;
}

}  // namespace

std::vector<Place> listPlaces(const Directory& directory, const StringTable& strings, unsigned placeholderId) {
    const std::string deviceFormat = strings.text(IDS_PLACE_DEVICE);
    const std::string blankFormat = strings.text(IDS_PLACE_BLANK_DEVICE);
    const std::string groupFormat = strings.text(IDS_PLACE_GROUP);
    std::vector<Place> places;
    places.reserve(directory.devices().size() + directory.groups().size());
    for (const Device& device : directory.devices())
        places.push_back(makeDevice(device, deviceFormat, blankFormat));
    for (const Group& group : directory.groups()) {
        const std::string key(group.key());
        places.push_back({PlaceKind::kGroup, {}, key, fillIn(groupFormat, {key})});
    }
    // Of equal texts the later comes first. Sort pointers: moving a place is expensive.
    std::vector<Place*> order;
    order.reserve(places.size());
    for (auto place = places.rbegin(); place != places.rend(); ++place)
        order.push_back(&*place);
    std::ranges::stable_sort(order, {}, &Place::text);
    std::vector<Place> ordered;
    ordered.reserve(1 + places.size());
    ordered.push_back({PlaceKind::kNone, {}, {}, strings.text(placeholderId)});
    for (Place* const place : order)
        ordered.push_back(std::move(*place));
    return ordered;
}

std::optional<std::size_t> findPlace(const std::vector<Place>& places, const KSMac& device, const std::string& group) {
    const auto matches = [&](const Place& place) {
        if (!isNoDevice(device)) return place.kind == PlaceKind::kDevice && place.device == device;
        return !group.empty() && place.kind == PlaceKind::kGroup && place.group == group;
    };
    const auto found = std::ranges::find_if(places, matches);
    if (found == places.end()) return std::nullopt;
    return static_cast<std::size_t>(found - places.begin());
}

}  // namespace orvc
