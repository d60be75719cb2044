// What the environment variable ORVC_DEMO asks of the demo server.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvc::demo {

// Milliseconds; points in time are counted from any moment that never runs backwards.
using Millis = std::uint64_t;

// The size of an installation that is generated instead of read from a file.
struct GeneratedSize {
    std::uint32_t events = 0;
    std::uint32_t devices = 0;
    std::uint32_t groups = 0;
};

struct Options {
    std::optional<GeneratedSize> generated;    // events=N, devices=N, groups=N
    std::string file;                          // file=PATH, UTF-8; empty: the user's own
    Millis fireInterval = 20'000;              // fire=MS; 0: Events never fire by themselves
    std::vector<std::int32_t> refusals;        // refuse=-5,-30: the answers to the first logons
    bool admin = true;                         // admin=0: nobody has admin rights
    std::optional<Millis> stopAfter;           // stop-after=SECONDS, after each logon
    std::optional<Millis> stopOnce;            // stop-once=SECONDS, after the first logon only
    Millis lateStop = 0;                       // late-stop=MS
    std::optional<std::uint32_t> faultSeed;    // faults=SEED: each logon draws its own faults
    Millis slow = 0;                           // slow=MS before each notification of a subscription
    std::optional<std::uint32_t> shuffleSeed;  // shuffle=SEED
    bool muteFiles = false;                    // mute-files=1: a read is never answered
    bool standalone = false;                   // standalone=1: there is no logon
    bool noHandle = false;                     // no-handle=1: opening the link gives none
    std::optional<Millis> reloadAfter;         // reload-after=SECONDS, after each logon
    bool resendValues = false;                 // resend=values
    bool incomplete = false;                   // incomplete=1: no \ORVS\completeBits in a subscription
    Millis lateMembers = 0;                    // late-members=MS
    std::string trace;                         // trace=PATH, UTF-8
    std::vector<std::string> complaints;       // items that were not understood, in words
};

// Items are separated by semicolons; blanks around an item are dropped. What cannot be understood is ignored and
// complained about.
Options parseOptions(std::string_view text);

}  // namespace orvc::demo
