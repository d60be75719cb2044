// What the main window says around its list: status bar, banner, what stands in an empty list's place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "link/server_link.h"
#include "session/change.h"
#include "support/clock.h"
#include "support/string_table.h"

namespace orvc {

enum class LinkStage { kNotConnected, kReceiving, kConnected };

// The link as the operator sees it.
struct LinkStatus {
    LinkStage stage = LinkStage::kNotConnected;
    bool isStandalone = false;  // there is no server to name
    bool wasConnected = false;  // since the start or the last logoff: the link was lost, not left
    std::string address;        // of the server
    std::int32_t port = 0;
    std::string logonId;
    LocalTime lostAt;         // while `wasConnected`
    std::string reason = {};  // why the last logon failed, as reasonText() says it; empty when none did
};

// What is in the list.
struct ListCounts {
    std::size_t total = 0;
    std::size_t shown = 0;
    std::size_t selected = 0;
    std::size_t disabled = 0;      // of all
    std::size_t withProblems = 0;  // of all

    friend bool operator==(const ListCounts&, const ListCounts&) = default;
};

// What the list is narrowed to.
struct FilterShown {
    std::string words;  // as typed
    bool byState = false;
    bool byProblems = false;
};

// "3,120", grouped as the language does.
std::string numberText(const StringTable& strings, std::size_t number);
// "1 Event", "20 Events".
std::string eventCountText(const StringTable& strings, std::size_t count);

// ---- The parts of the status bar

// "Not connected. The server did not answer."
std::string linkText(const StringTable& strings, const LinkStatus& link);
// "20 Events, 3 shown, 2 selected"; what is the same as the total, or none, is left out.
std::string countText(const StringTable& strings, const ListCounts& counts);
// "1 disabled, 1 with problems"; empty when there are neither.
std::string stateText(const StringTable& strings, const ListCounts& counts);

// "30 selected: 28 available, 2 disabled"; `counts` are those of the selected Events alone.
std::string selectionText(const StringTable& strings, const ListCounts& counts);

// ---- Around the list

// Why a logon failed, in a few words without a full stop.
std::string reasonText(const StringTable& strings, const StartResult& failure);
// Empty while the link is there, or was left by a logoff.
std::string bannerText(const StringTable& strings, const LinkStatus& link);
// What stands in the list's place; empty when there are rows.
std::string emptyListText(const StringTable& strings, const LinkStatus& link, const ListCounts& counts,
                          const FilterShown& filter);

// ---- After changes of many

// "Delete 12 Events?" with the first five names and how many more.
std::string deletionQuestion(const StringTable& strings, const std::vector<std::string>& names);

// What became of a job: the text `done` with the number of Events that were stored, and how many were not. With 0 for
// `done` nothing is said of those that were.
std::string outcomeText(const StringTable& strings, unsigned done, const std::vector<ChangeResult>& results);

}  // namespace orvc
