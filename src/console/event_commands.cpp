#include "console/event_commands.h"

#include <algorithm>
#include <utility>

#include "dialogs/assign_schedule_dialog.h"
#include "dialogs/setup_event_dialog.h"
#include "model/guid.h"
#include "resources/resource.h"
#include "support/text.h"
#include "ui/clipboard.h"
#include "ui/dialog.h"
#include "view/window_texts.h"
#include "win32/collation.h"
#include "win32/folding.h"
#include "win32/new_guid.h"

namespace orvc {

EventCommands::EventCommands(const ConsoleParts& parts, Session& session, EventTable& table, EventListView& list,
                             std::function<void(const std::string&)> tell)
    : parts_(parts),
      session_(session),
      table_(table),
      list_(list),
      tell_(std::move(tell)),
      copier_(parts.link, session.fileReader(), parts.log, parts.clock) {}

unsigned EventCommands::whyNotEditable() const {
    if (!session_.isConnected()) return IDS_WHY_NOT_CONNECTED;
    if (!session_.isEditable()) return IDS_WHY_RECEIVING;
    return copier_.isBusy() ? IDS_WHY_COPYING : 0;
}

unsigned EventCommands::whyNotSelected() {
    if (const unsigned reason = whyNotEditable(); reason != 0) return reason;
    return list_.hasSelection() ? 0 : IDS_WHY_NO_SELECTION;
}

// ---------------------------------------------------------------------------------------------------------------------
// One Event

void EventCommands::modify() {
    if (const EventRecord* const event = list_.focusedRecord()) runEditor(event);
}

// `event` is copied by the editor: what becomes of it while the editor is open is found by key afterwards.
void EventCommands::runEditor(const EventRecord* event) {
    CSetupEventDlg editor(
        {parts_.resources, parts_.link, session_.directory(), session_.schedules(), session_.fileReader(), parts_.log,
         parts_.clock, win32::makeSortKey, win32::makeTextFolder(), [this] { return session_.isConnected(); },
         [this](Change change) { store(std::move(change)); }, scheduleCommands(), linkNote_},
        event);
    if (editor.run(window_)) select(editor.key());
}

void EventCommands::store(Change change) {
    session_.apply({std::move(change)}, [this](const std::vector<ChangeResult>& results) {
        const std::string text = outcomeText(parts_.resources, 0, results);
        if (!text.empty()) tell_(text);
    });
}

void EventCommands::select(const std::string& key) {
    if (const EventRecord* const record = session_.events().find(key)) list_.select(table_.model().rowOf(*record));
}

void EventCommands::duplicate() {
    const EventRecord* const event = list_.focusedRecord();
    if (event == nullptr) return;
    const std::string name = nameOfCopy(parts_.resources, event->name.value_or(""),
                                        [this](const std::string& wanted) { return isNameTaken(wanted); });
    copier_.start(*event, newGuidText(win32::newGuid), name);
    SetTimer(window_, timer::kEventCopy, timer::kEventCopyPeriod, nullptr);
    onTimer();
}

bool EventCommands::isNameTaken(const std::string& name) const {
    return std::ranges::any_of(session_.events().records(),
                               [&](const EventRecord& record) { return record.name == name; });
}

void EventCommands::onTimer() {
    if (!session_.isConnected()) copier_.cancel();
    std::optional<EventCopier::Copy> copy = copier_.poll();
    if (copier_.isBusy()) return;
    KillTimer(window_, timer::kEventCopy);
    if (!copy) return;
    if (!copy->change) return tell_(fillIn(parts_.resources.text(IDS_DONE_NO_COPY), {copy->originalName}));
    const std::string key = copy->change->after->key;
    const std::string name = copy->change->after->name.value_or("");
    store(std::move(*copy->change));
    select(key);
    tell_(fillIn(parts_.resources.text(IDS_DONE_DUPLICATED), {name}));
}

// ---------------------------------------------------------------------------------------------------------------------
// Many

void EventCommands::applyToMany(std::vector<Change> changes, unsigned done) {
    if (changes.empty()) return tell_(parts_.resources.text(IDS_DONE_NOTHING));
    ticket_ = session_.apply(std::move(changes), [this, done](const std::vector<ChangeResult>& results) {
        tell_(outcomeText(parts_.resources, done, results));
    });
}

void EventCommands::setDisabled(bool disabled) {
    applyToMany(changesToDisable(list_.selectedRecords(), disabled), disabled ? IDS_DONE_DISABLED : IDS_DONE_ENABLED);
}

void EventCommands::assignSchedule() {
    const std::vector<std::string> keys = list_.selectedKeys();
    AssignScheduleDialog dialog(parts_.resources, session_.schedules());
    if (!dialog.run(window_) || !session_.isConnected()) return;
    applyToMany(changesToAssignSchedule(findAgain(keys), dialog.key()), IDS_DONE_ASSIGNED);
}

std::optional<ui::StatusBar::Progress> EventCommands::progress() const {
    const auto progress = ticket_ ? session_.gate().progress(*ticket_) : std::nullopt;
    if (!progress || progress->written == progress->all) return std::nullopt;
    return ui::StatusBar::Progress{progress->written, progress->all};
}

void EventCommands::cancel() {
    if (ticket_) session_.gate().cancel(*ticket_);
}

// Those that are still there after a question, or after anything else that ran the message loop.
EventRecords EventCommands::findAgain(const std::vector<std::string>& keys) {
    EventRecords records;
    for (const std::string& key : keys)
        if (const EventRecord* const record = session_.events().findAny(key)) records.push_back(record);
    return records;
}

// ---------------------------------------------------------------------------------------------------------------------
// Schedules

void EventCommands::editSchedules() {
    CConfigureSchedulesDlg(parts_.resources, session_.schedules(), win32::makeSortKey, scheduleCommands())
        .runModal(window_);
}

ScheduleCommands EventCommands::scheduleCommands() {
    const EventIndex& index = session_.checker().index();
    return {[this](Change change) { store(std::move(change)); },
            [&index](const std::string& key) {
                std::vector<std::string> names;
                for (const EventRecord* const record : index.usersOfSchedule(key))
                    names.push_back(record->name.value_or(""));
                std::ranges::sort(names, {}, [](const std::string& name) { return win32::makeSortKey(name); });
                return names;
            },
            [&index](const std::string& key) { return index.countUsersOfSchedule(key); },
            [this](const ScheduleRecord& record, const std::string& otherKey) { deleteSchedule(record, otherKey); },
            linkNote_};
}

void EventCommands::deleteSchedule(const ScheduleRecord& record, const std::string& otherKey) {
    if (!session_.isConnected()) return tell_(parts_.resources.text(IDS_WHY_NOT_CONNECTED));
    std::vector<Change> assign =
        changesToAssignSchedule(session_.checker().index().usersOfSchedule(record.key.value_or("")), otherKey);
    if (assign.empty()) return store(ScheduleChange{record, std::nullopt});
    ticket_ = session_.apply(std::move(assign), [this, record](const std::vector<ChangeResult>& results) {
        tell_(outcomeText(parts_.resources, IDS_DONE_ASSIGNED, results));
        const bool allHaveIt = std::ranges::all_of(
            results, [](Outcome outcome) { return outcome == Outcome::kStored; }, &ChangeResult::outcome);
        if (allHaveIt) store(ScheduleChange{record, std::nullopt});
    });
}

// ---------------------------------------------------------------------------------------------------------------------
// Deletion

void EventCommands::erase() {
    const EventRecords events = list_.selectedRecords();
    if (events.size() == 1) return eraseOne(*events.front());
    if (!events.empty()) eraseMany(events);
}

void EventCommands::eraseOne(const EventRecord& event) {
    const std::string key = event.key;
    const ui::Resources& texts = parts_.resources;
    if (!ui::askYesNo(window_, texts.text(IDS_DELETE_EVENT), texts.text(IDS_DELETE_EVENT_CAPTION))) return;
    // While the question was open the Event may have moved or gone, or the logon have ended. What was asked before a
    // reload may be answered in it.
    const EventRecord* const record = session_.events().findAny(key);
    if (record == nullptr || !session_.isConnected()) return;
    const auto row = table_.model().rowOf(*record);
    store(std::move(changesToDelete({record}).front()));
    list_.selectNear(row);
}

void EventCommands::eraseMany(const EventRecords& events) {
    std::vector<std::string> names;
    for (const EventRecord* const event : events)
        names.push_back(event->name.value_or(""));
    const std::vector<std::string> keys = list_.selectedKeys();
    const ui::Resources& texts = parts_.resources;
    if (!ui::askYesNo(window_, deletionQuestion(texts, names), texts.text(IDS_DELETE_EVENT_CAPTION))) return;
    const EventRecords left = findAgain(keys);
    if (left.empty() || !session_.isConnected()) return;
    const auto row = table_.model().rowOf(*left.front());
    applyToMany(changesToDelete(left), IDS_DONE_DELETED);
    list_.selectNear(row);
}

// ---------------------------------------------------------------------------------------------------------------------

void EventCommands::copy() {
    std::string text;
    for (const EventRecord* const record : list_.selectedRecords()) {
        const auto row = table_.model().rowOf(*record);
        if (!row) continue;
        std::string line;
        for (const std::size_t column : list_.shownColumns())
            line.append(line.empty() ? "" : "\t").append(table_.cell(*row, column));
        text.append(line).append("\r\n");
    }
    ui::copyToClipboard(window_, text);
}

}  // namespace orvc
