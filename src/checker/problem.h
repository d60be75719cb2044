// What can be wrong with an Event.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace orvc {

// The hints come last.
enum class ProblemCode : std::uint8_t {
    kSourceDevice,       // the server does not list the source device
    kSourceGroup,        // nor the source group
    kDestinationDevice,  // nor the destination device
    kDestinationGroup,   // nor the destination group
    kEmptyGroup,         // its source or destination group has no members
    kSchedule,           // it names a Schedule that does not exist
    kScheduleNever,      // its Schedule has no active half hour
    kTimeOutside,        // its time of day is one at which its Schedule is never active, or is no time at all
    kMessage,            // it names an audio message that does not exist, or none
    kNoText,             // it speaks a text and has none
    kNoEmail,            // it sends an e-mail and has none
    kNoFile,             // it reads a file and names none
    kNoMailServer,       // it sends an e-mail, and the server has no mail server
    kSameAs,             // it does the same as another enabled Event
    kNotStored,          // the server did not store a value of it
    kBadData,            // the server marked it, for none of the reasons above
    kOffline,            // its source or destination device is not connected now
};

inline constexpr std::size_t kProblemCodeCount = 17;

// The code's name in files and on the command line, and as typed into the filter: "source-device". Never translated.
std::string_view problemName(ProblemCode code);

// Worth knowing, but nothing that anyone has to mend.
constexpr bool isHint(ProblemCode code) {
    return code == ProblemCode::kOffline;
}

// One problem of an Event.
struct Problem {
    ProblemCode code;
    // What it is about: a device's address ("02:4b:53:10:00:09"), a group's key, what the Event stores to name
    // its Schedule, a message's key, another Event's key, or the names of values. Empty where nothing is to
    // name.
    std::string about;

    friend bool operator==(const Problem&, const Problem&) = default;
};

// Some of the codes.
class ProblemSet {
  public:
    constexpr ProblemSet() = default;

    constexpr bool contains(ProblemCode code) const { return (bits_ >> static_cast<unsigned>(code) & 1) != 0; }
    constexpr void set(ProblemCode code, bool isThere = true) {
        const std::uint32_t bit = 1u << static_cast<unsigned>(code);
        bits_ = isThere ? bits_ | bit : bits_ & ~bit;
    }
    constexpr bool isEmpty() const { return bits_ == 0; }
    // There is more than hints.
    constexpr bool hasProblem() const { return bits_ % (1u << static_cast<unsigned>(ProblemCode::kOffline)) != 0; }

    friend constexpr bool operator==(ProblemSet, ProblemSet) = default;

  private:
    std::uint32_t bits_ = 0;
};

}  // namespace orvc
