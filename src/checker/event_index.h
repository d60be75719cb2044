// Which Events use a device, a group, a Schedule or an audio message.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "checker/schedule_finder.h"
#include "link/ks_types.h"
#include "model/event_record.h"

namespace orvc {

// What an Event can use, and the text that names it.
enum class UsedKind : std::uint8_t {
    kDevice,      // the six bytes of its address
    kGroup,       // its key
    kSchedule,    // its key or its name, whichever the Event stores
    kMessage,     // its key
    kMailServer,  // no text: used by each Event that sends an e-mail
};

// Purpose: keeps the users of everything that Events use.
// Thread: user-interface thread. Cost: constant per Event that comes, changes or goes; a query costs what it returns.
// Lifetime: entries belong to the caller, who keeps them at their addresses until remove() or clear(); so do the
// records in them. Errors: update() throws std::bad_alloc; clear() is all that may follow then. Nothing else needs
// memory but the lists that queries return.
class EventIndex {
  private:
    struct Thing {
        UsedKind kind;
        std::string text;
    };
    struct ThingView {
        UsedKind kind;
        std::string_view text;
    };
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(const Thing& thing) const { return (*this)(ThingView{thing.kind, thing.text}); }
        std::size_t operator()(const ThingView& thing) const {
            return std::hash<std::string_view>{}(thing.text) + static_cast<std::size_t>(thing.kind);
        }
    };
    struct Equal {
        using is_transparent = void;
        template <typename A, typename B>
        bool operator()(const A& a, const B& b) const {
            return a.kind == b.kind && a.text == b.text;
        }
    };

  public:
    struct Entry;
    using Users = std::vector<Entry*>;

  private:
    using Things = std::unordered_map<Thing, Users, Hash, Equal>;

  public:
    // An Event and its places in the index. An Event that uses a thing twice stands there once.
    struct Entry {
        const EventRecord* record = nullptr;

      private:
        friend class EventIndex;
        struct Place {
            Things::value_type* thing = nullptr;  // null: none
            std::uint32_t position = 0;           // among its users
        };
        static constexpr std::size_t kPlaces = 6;
        std::array<Place, kPlaces> places_;
    };

    explicit EventIndex(const ScheduleFinder& schedules) : schedules_(schedules) {}

    // The entry is new, or its record may use other things than before.
    void update(Entry& entry);
    void remove(Entry& entry);
    // Forgets every entry.
    void clear() { things_.clear(); }

    // The users of what is stored under that text. Valid until the next change.
    std::span<Entry* const> users(UsedKind kind, std::string_view text) const;

    // Where used. Schedules are asked for by their key; Events that name one by its name are among its users. The order
    // is any.
    std::size_t countUsersOfDevice(const KSMac& mac) const { return users(UsedKind::kDevice, bytesOf(mac)).size(); }
    std::size_t countUsersOfGroup(std::string_view key) const { return users(UsedKind::kGroup, key).size(); }
    std::size_t countUsersOfMessage(std::string_view key) const { return users(UsedKind::kMessage, key).size(); }
    std::size_t countUsersOfSchedule(std::string_view key) const;
    std::vector<const EventRecord*> usersOfDevice(const KSMac& mac) const;
    std::vector<const EventRecord*> usersOfGroup(std::string_view key) const;
    std::vector<const EventRecord*> usersOfMessage(std::string_view key) const;
    std::vector<const EventRecord*> usersOfSchedule(std::string_view key) const;

    static std::string_view bytesOf(const KSMac& mac) {
        return {reinterpret_cast<const char*>(mac.data()), mac.size()};
    }

  private:
    using Wanted = std::array<ThingView, Entry::kPlaces>;

    static Wanted thingsOf(const EventRecord& record);
    void leave(Entry::Place& place);
    void join(Entry& entry, Entry::Place& place, const ThingView& wanted);
    // Those that name it by key, and those that name it by name.
    std::array<std::span<Entry* const>, 2> scheduleUsers(std::string_view key) const;

    const ScheduleFinder& schedules_;
    Things things_;
};

}  // namespace orvc
