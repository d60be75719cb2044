// lists_bench: the Event list without its window, with 50,000 Events of 5,000 devices, for 32-bit Windows as the
// console is.
//
// A filter is compared with one bare pass over the same texts, folded as it searches them: strstr for each Event. An
// order is compared with std::sort of the numbers of the Events by keys that are ready, made by the same sort-key
// function of the same texts.
#include <cstring>
#include <deque>
#include <numeric>
#include <string>

#include "bench.h"
#include "event_mirror.h"
#include "support/text.h"
#include "win32/collation.h"
#include "win32/folding.h"

namespace orvc::bench {
namespace {

constexpr std::uint32_t kEvents = 50'000;
constexpr std::uint32_t kDevices = 5'000;
constexpr std::uint32_t kSchedules = 40;
constexpr std::size_t kWhole = 1'000'000;

// A permutation of all 32-bit numbers: nothing stands in the order in which it comes.
std::uint32_t scatter(std::uint32_t index) {
    return index * 2654435761u;
}

KSMac macOf(std::uint32_t device) {
    return {2, 0x4B, 0x53, 0, static_cast<std::uint8_t>(device >> 8), static_cast<std::uint8_t>(device)};
}

// Only a few of the texts are more than their number.
class Words final : public StringTable {
  public:
    std::string text(unsigned id) const override { return formatText("Text number %u", id); }
};

struct Installation {
    Installation() {
        log.endStartUp();
        for (std::uint32_t i = 0; i < kDevices; ++i) {
            KSConnectionInfo info{};
            setFieldText(info.deviceName, formatText("Station %u, floor %u", scatter(i) % 100'000, i % 30));
            info.mac = macOf(i);
            directory.updateDevice(info, std::nullopt, 0);
        }
        for (std::uint32_t i = 0; i < kSchedules; ++i) {
            const std::string path = formatText("\\ORVS\\Schedules\\{%u}\\Name", i);
            schedules.updateVariable({path, variable_type::kString, formatText("Shift %u", i), 0});
        }
        table.judgeBy(directory, [] { return true; });
        table.nameSchedulesBy(schedules);
        for (std::uint32_t i = 0; i < kEvents; ++i)
            table.eventChanged(events.emplace_back(makeEvent(i)), true);
    }

    static EventRecord makeEvent(std::uint32_t index) {
        const std::uint32_t scattered = scatter(index);
        EventRecord record;
        record.key = formatText("{%u}", scattered);
        record.name = formatText("Door %u of the east wing", scattered % 1'000'000);
        record.triggerType = 1 + scattered % 7;
        record.triggerDevice = macOf(scattered % kDevices);
        record.timeoutType = scattered % 2;
        record.timeoutSeconds = scattered % 59 * 10;
        record.scheduleKey = formatText("{%u}", scattered % kSchedules);
        record.responseType = 1 + scattered % 2;
        record.responseDevice = macOf(scattered / 7 % kDevices);
        record.lastTriggered = 1'795'251'900 - scattered % 30'000'000;
        record.disabled = scattered % 5 == 0 ? 1 : 0;
        return record;
    }

    const SystemClock clock;
    SilentLogSystem logSystem;
    TrackingLog log{logSystem, clock};
    const Words words;
    Directory directory{log};
    ScheduleList schedules{log, clock};
    EventTable table{words, clock, win32::makeSortKey, win32::makeTextFolder()};
    std::deque<EventRecord> events;
};

// All that an Event shows, folded, one text for each.
std::vector<std::string> foldedLines(const Installation& installation) {
    const TextFolder fold = win32::makeTextFolder();
    std::vector<std::string> lines;
    for (std::size_t row = 0; row < installation.table.size(); ++row) {
        std::string& line = lines.emplace_back();
        for (std::size_t column = 0; column < kEventColumnCount; ++column)
            line += fold(installation.table.cell(row, column)) + '\n';
    }
    return lines;
}

// Every key that is typed.
void measureFilter(Installation& installation) {
    const std::vector<std::string> lines = foldedLines(installation);
    double longest = 0;
    for (const std::string text : {"door 77 east", "station 123", "source:\"floor 7\" shift", "zebra"}) {
        for (std::size_t typed = 1; typed <= text.size(); ++typed) {
            const std::string part = text.substr(0, typed);
            const double ours = measure([&] { installation.table.filterBy(part, EventState::kAll); });
            const double bare = measure([&] {
                std::size_t found = 0;
                for (const std::string& line : lines)
                    found += std::strstr(line.c_str(), part.c_str()) != nullptr ? 1 : 0;
                keep(found);
            });
            report("list.key", ours);
            report("list.pass", bare);
            longest = std::max(longest, ours);
        }
    }
    report("list.longest_key", longest);
    installation.table.filterBy("", EventState::kAll);
}

// The keys by which std::sort sorts: the column's, then the name's.
std::vector<std::string> makeKeys(const Installation& installation, EventColumnId column) {
    std::vector<std::string> keys;
    for (std::size_t row = 0; row < installation.table.size(); ++row) {
        const EventRecord& record = installation.table.model().at(row);
        std::string& key = keys.emplace_back();
        if (column == EventColumnId::kLastEvent || column == EventColumnId::kDelay) {
            const std::uint32_t number =
                column == EventColumnId::kDelay ? eventDelay(record) : record.lastTriggered.value_or(0);
            for (int shift = 24; shift >= 0; shift -= 8)
                key += static_cast<char>(number >> shift & 255);
        } else if (column != EventColumnId::kName) {
            key = win32::makeSortKey(installation.table.cell(row, static_cast<std::size_t>(column)));
        }
        key += win32::makeSortKey(*record.name);
    }
    return keys;
}

double sortKeys(const std::vector<std::string>& keys) {
    std::vector<std::uint32_t> order(keys.size());
    std::iota(order.begin(), order.end(), 0);
    return measure([&] {
        std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) { return keys[a] < keys[b]; });
        keep(order);
    });
}

// Each column from the same start, in which no column is in order. An Event comes before each sort, so that nothing is
// known from the one before.
void measureOrder(Installation& installation) {
    EventTable& table = installation.table;
    const auto shuffle = [&] {
        table.sortBy({EventColumnId::kName, false});
        table.sortBy({EventColumnId::kLastEvent, false});
    };
    double worstOurs = 0;
    double worstReference = 1;
    double longest = 0;
    for (std::size_t i = 0; i < kEventColumnCount; ++i) {
        const auto column = static_cast<EventColumnId>(i);
        // The order by time cannot start from itself.
        if (column == EventColumnId::kLastEvent)
            table.sortBy({EventColumnId::kSource, false});
        else
            shuffle();
        table.eventChanged(
            installation.events.emplace_back(Installation::makeEvent(kEvents + static_cast<std::uint32_t>(i))), true);
        const double reference = sortKeys(makeKeys(installation, column));
        const double ours = measure([&] { table.sortBy({column, column == EventColumnId::kName}); });
        if (ours / reference > worstOurs / worstReference) {
            worstOurs = ours;
            worstReference = reference;
        }
        longest = std::max(longest, ours);
    }
    report("list.sort", worstOurs);
    report("list.keys", worstReference);
    report("list.longest_sort", longest);
}

void run() {
    static Installation installation;
    installation.table.prepareTexts(kWhole);
    measureFilter(installation);
    measureOrder(installation);
}

}  // namespace
}  // namespace orvc::bench

int main() {
    orvc::bench::run();
}
