// Everything that the console shows of its records, without its windows.
#pragma once

#include "editors/event/event_form.h"
#include "fake_string_table.h"
#include "fuzz/input.h"
#include "lists/event_table.h"
#include "lists/schedule_table.h"
#include "model/event_list.h"

namespace orvc {

// `record` as the editor leaves it when it is opened and saved.
inline EventRecord editedUnchanged(const EventRecord& record, const Directory& directory,
                                   const ScheduleList& schedules) {
    const FakeStringTable strings;
    EventForm form(strings, directory, schedules);
    form.load(record);
    const bool hasPlaces = form.sourceKind() == SourceKind::kPlaces || form.sourceKind() == SourceKind::kNone;
    require(
        (hasPlaces ? form.sources().size() : form.otherSources().size()) >
                static_cast<std::size_t>(std::max(form.sourceIndex(), 0)) &&
            form.destinations().size() > static_cast<std::size_t>(form.destinationIndex()) &&
            form.schedules().size() > static_cast<std::size_t>(form.scheduleIndex()) &&
            (form.responseIndex() == 0 || form.responseTexts().size() > static_cast<std::size_t>(form.responseIndex())),
        "what is chosen is in its list");
    EventRecord edited = record;
    form.fill(edited);
    return edited;
}

// Fields and their values, as the server has them.
inline bool haveEqualFields(const EventRecord& a, const EventRecord& b) {
    return std::ranges::all_of(eventFields(), [&](const EventField& field) {
        return std::visit([&](auto member) { return a.*member == b.*member; }, field.member);
    });
}

inline void showEverything(const EventTable& events, const ScheduleList& schedules, const Directory& directory) {
    const FakeStringTable strings;
    for (std::size_t row = 0; row < events.size(); ++row) {
        const EventRecord& record = events.model().at(row);
        require(events.model().rowOf(record) == row, "a row is found by its record");
        for (std::size_t column = 0; column < kEventColumnCount; ++column)
            events.cell(row, column);
        const EventRecord once = editedUnchanged(record, directory, schedules);
        require(haveEqualFields(editedUnchanged(once, directory, schedules), once), "saving once more changes nothing");
    }
    ScheduleTable scheduleRows(strings, [](std::string_view name) { return std::string(name); });
    scheduleRows.fill(schedules.records());
}

}  // namespace orvc
