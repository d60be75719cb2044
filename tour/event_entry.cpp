#include "tour/event_entry.h"

#include "resources/resource.h"

namespace orvc::driver {
namespace {

void chooseIfGiven(HWND editor, unsigned listId, const std::string& text) {
    if (text.empty()) return;
    require(ConsoleDriver::chooseEntry(editor, listId, text), "\"" + text + "\" could not be chosen");
}

void saveSubEditor(ConsoleDriver& console, HWND subEditor, const SubEditorSeen& seen) {
    require(ConsoleDriver::waitUntil([&] { return ConsoleDriver::isEnabled(subEditor, IDOK); }),
            "the payload could not be saved");
    if (seen) seen(subEditor);
    ConsoleDriver::click(subEditor, IDOK);
    require(console.waitUntilGone(subEditor), "the payload's dialog did not close");
}

void chooseAudio(ConsoleDriver& console, const std::string& name, const SubEditorSeen& seen) {
    const HWND picker = console.waitForWindowWith(IDC_AUDIO_LIST);
    require(picker != nullptr, "no list of audio files appeared");
    const auto rows = console.readRows(picker, IDC_AUDIO_LIST, 1);
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (rows[row][0] == name) console.clickRow(picker, IDC_AUDIO_LIST, static_cast<int>(row));
    saveSubEditor(console, picker, seen);
}

void enterText(ConsoleDriver& console, unsigned editId, const std::string& text, const SubEditorSeen& seen) {
    const HWND dialog = console.waitForWindowWith(editId);
    require(dialog != nullptr, "no dialog for the text appeared");
    ConsoleDriver::type(dialog, editId, text);
    saveSubEditor(console, dialog, seen);
}

void enterEmail(ConsoleDriver& console, const EventEntry& entry, const SubEditorSeen& seen) {
    const HWND dialog = console.waitForWindowWith(IDC_EMAIL_FROM);
    require(dialog != nullptr, "no e-mail template appeared");
    ConsoleDriver::type(dialog, IDC_EMAIL_FROM, entry.from);
    ConsoleDriver::type(dialog, IDC_EMAIL_TO, entry.to);
    ConsoleDriver::type(dialog, IDC_EMAIL_SUBJECT, entry.subject);
    ConsoleDriver::type(dialog, IDC_EMAIL_MESSAGE, entry.message);
    saveSubEditor(console, dialog, seen);
}

void enterPayload(ConsoleDriver& console, HWND editor, const EventEntry& entry, const SubEditorSeen& seen) {
    if (entry.payload.empty() && entry.from.empty()) return;
    require(ConsoleDriver::isEnabled(editor, IDC_EVENT_SELECT), "the payload cannot be selected");
    ConsoleDriver::click(editor, IDC_EVENT_SELECT);
    // Which dialog opens tells the response, whatever the language.
    const auto opens = [&](unsigned controlId) { return console.findWindowWith(controlId) != nullptr; };
    ConsoleDriver::waitUntil([&] {
        return opens(IDC_AUDIO_LIST) || opens(IDC_TTS_FILENAME) || opens(IDC_TTS_TEXT) || opens(IDC_EMAIL_FROM);
    });
    if (opens(IDC_AUDIO_LIST))
        chooseAudio(console, entry.payload, seen);
    else if (opens(IDC_TTS_FILENAME))
        enterText(console, IDC_TTS_FILENAME, entry.payload, seen);
    else if (opens(IDC_TTS_TEXT))
        enterText(console, IDC_TTS_TEXT, entry.payload, seen);
    else
        enterEmail(console, entry, seen);
}

}  // namespace

void enterEvent(ConsoleDriver& console, HWND editor, const EventEntry& entry, const SubEditorSeen& seen) {
    if (!entry.name.empty()) ConsoleDriver::type(editor, IDC_EVENT_NAME, entry.name);
    chooseIfGiven(editor, IDC_EVENT_TRIGGER, entry.trigger);
    chooseIfGiven(editor, IDC_EVENT_SOURCE, entry.source);
    chooseIfGiven(editor, IDC_EVENT_TIMEOUT, entry.timeout);
    chooseIfGiven(editor, IDC_EVENT_TIMEOUT_VALUE, entry.timeoutValue);
    chooseIfGiven(editor, IDC_EVENT_TIMEOUT_UNIT, entry.timeoutUnit);
    chooseIfGiven(editor, IDC_EVENT_SCHEDULE, entry.schedule);
    chooseIfGiven(editor, IDC_EVENT_RESPONSE, entry.response);
    chooseIfGiven(editor, IDC_EVENT_DESTINATION, entry.destination);
    enterPayload(console, editor, entry, seen);
}

void createEvent(ConsoleDriver& console, const EventEntry& entry) {
    const HWND editor = console.open(IDM_CREATE_EVENT, IDC_EVENT_TRIGGER);
    require(editor != nullptr, "no Event editor appeared");
    enterEvent(console, editor, entry);
    saveEvent(console, editor);
}

void saveEvent(ConsoleDriver& console, HWND editor) {
    require(ConsoleDriver::waitUntil([&] { return ConsoleDriver::isEnabled(editor, IDOK); }, 2000),
            "the Event is not complete: it cannot be saved");
    ConsoleDriver::click(editor, IDOK);
    require(console.waitUntilGone(editor), "the Event editor did not close");
}

}  // namespace orvc::driver
