#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <tuple>
#include <utility>

#include "tour/event_entry.h"
#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;
using driver::EventEntry;
using Calls = std::vector<std::string>;

constexpr char kLiftAlarm[] = "{095EB381-7DF2-4C54-A0B7-1D20C8D4E117}";

// Each call ends so: a text's or file's size, or the flag of a key that is created.
const std::regex kLastNumber(R"( \d+$)");
const std::regex kField(R"(^KSSysVarSetValue \\ORVS\\Events\\\{.*\}\\(\w+) 0xC000000[14] (.*))");

// What the calls wrote, in order: an Event's fields as "name value", texts in quotes; what they created as "{new}", and
// the times of what has fired as "*".
std::string written(const Calls& calls) {
    std::string text;
    for (const std::string& call : calls)
        text.append(text.empty() ? "" : "; ")
            .append(std::regex_replace(std::regex_replace(call, kLastNumber, ""), kField, "$1 $2"));
    text = std::regex_replace(text, std::regex(R"((last\w+) [1-9]\d*)"), "$1 *");
    for (const char* creation : {"KSFileCreate ", "KSSysVarCreateKey \\ORVS\\Events\\"}) {
        const std::size_t at = text.find(creation);
        if (at == std::string::npos) continue;
        const std::string guid = text.substr(text.find('{', at), 38);
        if (guid == kLiftAlarm) continue;
        for (std::size_t place; (place = text.find(guid)) != std::string::npos;)
            text.replace(place, guid.size(), "{new}");
    }
    return text;
}

EventEntry relayEntry() {
    EventEntry entry;
    entry.name = "New relay";
    entry.trigger = "Sensor Activation";
    entry.source = "device: Lobby (100002)";
    entry.timeout = "Trigger after";
    entry.timeoutValue = "2";
    entry.timeoutUnit = "Minute(s)";
    entry.schedule = "Nights";
    entry.response = "Activate Relay";
    entry.destination = "group: Nurses";
    return entry;
}
constexpr char kRelayWritten[] =
    R"(KSSysVarCreateKey \ORVS\Events\{new} 0x80000000; EventName "New relay"; EventTriggerType 3; )"
    R"(TriggerDeviceMAC "02:4b:53:10:00:02"; TriggerGroupKey ""; TriggerTimeoutType 1; )"
    R"(TriggerTimeoutSeconds 120; TriggerTimeOfDay 0; ScheduleKey "{81D3F2C7-0A9E-47B2-8F35-6E9A41C5B702}"; )"
    R"(EventResponseType 1; MessageKey ""; FileGUID ""; TtsFilename ""; )"
    R"(ResponseDeviceMAC "00:00:00:00:00:00"; ResponseGroupKey "Nurses"; )"
    R"(lastTriggered 0; lastChecked 0; Disabled 0; completeBits 1)";

class EventEditorTest : public ConsoleTest {
  protected:
    void logOn(const std::string& options = {}) {
        startConsole(options);
        ASSERT_TRUE(console_.logOn(kBuildingEvents));
        // The Schedules come last.
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] {
            openEditor(IDM_CREATE_EVENT);
            const bool complete = SendDlgItemMessageA(editor_, IDC_EVENT_SCHEDULE, CB_GETCOUNT, 0, 0) == 7;
            closeEditor(IDCANCEL);
            return complete;
        }));
        seen_ = 0;
        takeCalls();
    }
    void openEditor(unsigned command) {
        editor_ = console_.open(command, IDC_EVENT_TRIGGER);
        ASSERT_NE(editor_, nullptr);
    }
    void waitForEditor() {
        editor_ = console_.waitForWindowWith(IDC_EVENT_TRIGGER);
        ASSERT_NE(editor_, nullptr);
    }
    void closeEditor(unsigned button) {
        ConsoleDriver::click(editor_, button);
        ASSERT_TRUE(console_.waitUntilGone(editor_));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowEnabled(console_.mainWindow()) != 0; }));
        // What the editor was closed with has been done when the main window answers.
        SendMessageA(console_.mainWindow(), WM_NULL, 0, 0);
    }
    void modify(const std::string& name) {
        console_.selectRow(console_.rowOf(name));
        openEditor(IDM_MODIFY_EVENT);
    }
    HWND openSubEditor(unsigned controlId) {
        ConsoleDriver::click(editor_, IDC_EVENT_SELECT);
        return console_.waitForWindowWith(controlId);
    }
    void closeSubEditor(HWND dialog, unsigned button) {
        ConsoleDriver::click(dialog, button);
        ASSERT_TRUE(console_.waitUntilGone(dialog));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowEnabled(editor_) != 0; }));
        SendMessageA(editor_, WM_NULL, 0, 0);
    }

    std::string line() { return ConsoleDriver::textOf(editor_, IDC_EVENT_RESPONSE_LINE); }
    bool waitForLine(const std::string& text) {
        return ConsoleDriver::waitUntil([&] { return line() == text; });
    }
    bool canSave() { return ConsoleDriver::isEnabled(editor_, IDOK); }
    // The name and what the lists show, from top to bottom.
    std::string shown() {
        std::string texts = ConsoleDriver::textOf(editor_, IDC_EVENT_NAME);
        for (const unsigned id :
             {IDC_EVENT_TRIGGER, IDC_EVENT_SOURCE, IDC_EVENT_TIMEOUT, IDC_EVENT_TIMEOUT_VALUE, IDC_EVENT_TIMEOUT_UNIT,
              IDC_EVENT_SCHEDULE, IDC_EVENT_RESPONSE, IDC_EVENT_DESTINATION})
            texts.append("|").append(ConsoleDriver::selectedEntry(editor_, id));
        return texts;
    }
    // Calls about files and variables since the last call of this.
    Calls takeCalls() {
        Calls calls = tracedCalls();
        std::erase_if(calls,
                      [](const auto& call) { return !call.starts_with("KSFile") && !call.starts_with("KSSysVar"); });
        calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(std::exchange(seen_, calls.size())));
        return calls;
    }

    HWND editor_ = nullptr;
    std::size_t seen_ = 0;
};

TEST_F(EventEditorTest, WhatIsCreatedIsWrittenExactlyAndItsRowSelected) {
    logOn();
    driver::createEvent(console_, relayEntry());
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.selectedRow() == console_.rowOf("New relay"); }));
    EXPECT_EQ(written(takeCalls()), kRelayWritten);
    // Two minutes are stored as a unit that its list does not have.
    modify("New relay");
    EXPECT_EQ(
        shown(),
        "New relay|Sensor Activation|device: Lobby (100002)|Trigger after|2||Nights|Activate Relay|group: Nurses");
    SendMessageA(GetDlgItem(editor_, IDC_EVENT_DISABLED), BM_CLICK, 0, 0);
    closeEditor(IDOK);
    EXPECT_NE(written(takeCalls()).find("TriggerTimeoutSeconds 120; "), std::string::npos);
    const std::vector<driver::EventRow> rows = console_.readEvents();
    EXPECT_EQ(rows[static_cast<std::size_t>(console_.rowOf("New relay"))][1], "Disabled");
    exitConsole();
}

TEST_F(EventEditorTest, AModifiedEventMovesAndItsPayloadGetsANewFile) {
    logOn();
    console_.doubleClickRow(console_.mainWindow(), IDC_EVENT_LIST, console_.rowOf("lift alarm"));
    waitForEditor();
    EXPECT_EQ(ConsoleDriver::textOf(editor_), "Modify Event");
    EXPECT_TRUE(waitForLine("Play TTS 'Alarm in a lift....'")) << line();
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.findWindowWith(IDC_WAIT_TEXT) == nullptr; }));
    EXPECT_EQ(shown(),
              "lift alarm|PTT (Call Button) Activation|group: Lifts|Trigger after|3|Second(s)|Around the clock|"
              "Send TTS Message|group: Security");
    ConsoleDriver::type(editor_, IDC_EVENT_NAME, "zz last");
    driver::saveEvent(console_, editor_);
    ASSERT_TRUE(
        ConsoleDriver::waitUntil([&] { return console_.selectedRow() == static_cast<int>(kBuildingEvents) - 1; }));
    EXPECT_EQ(console_.rowOf("zz last"), static_cast<int>(kBuildingEvents) - 1);
    EXPECT_EQ(console_.rowOf("lift alarm"), -1);
    const std::string calls = written(takeCalls());
    EXPECT_EQ(
        calls.substr(0, calls.find("; KSSysVarCreateKey")),
        R"(KSFileRead {C163EFA9-80B5-4E72-926C-A5FB390E8106}; KSFileDelete {C163EFA9-80B5-4E72-926C-A5FB390E8106}; )"
        R"(KSFileCreate {new}; KSFileWrite {new} "<?xml version=%221.0%22 encoding=%22utf-8%22 ?>%0D%0A)"
        R"(<ORVSEventFile>%0D%0A%09<TTS voice=%22default%22 encoded=%22yes%22>Alarm in a lift.%250d%250a)"
        R"(Answer the call &amp; send somebody.</TTS>%0D%0A</ORVSEventFile>%0D%0A")");
    EXPECT_NE(calls.find(kLiftAlarm + std::string(R"( 0x80000000; EventName "zz last"; )")), std::string::npos);
    EXPECT_NE(calls.find(R"(; FileGUID "{new}"; )"), std::string::npos);
    exitConsole();
}

TEST_F(EventEditorTest, APayloadThatNeverComesIsGivenUpAndCanBeEnteredAgain) {
    logOn("mute-files=1");
    modify("Help call, ward 1");
    HWND wait = console_.waitForWindowWith(IDC_WAIT_TEXT);
    ASSERT_NE(wait, nullptr);
    const DWORD start = GetTickCount();
    EXPECT_TRUE(waitForLine("Error retrieving TTS file contents")) << line();
    EXPECT_GE(GetTickCount() - start, 4500u);
    EXPECT_TRUE(console_.waitUntilGone(wait));
    EXPECT_FALSE(canSave());
    EXPECT_TRUE(ConsoleDriver::isEnabled(editor_, IDC_EVENT_SELECT));
    closeEditor(IDCANCEL);
    EXPECT_EQ(takeCalls().size(), 1u) << "only the file was asked for";
    // What the operator enters while the file is awaited stands.
    EventEntry text, email;
    text.payload = "Meanwhile";
    email.from = email.to = email.subject = email.message = "Meanwhile";
    for (const auto& [event, meanwhile, shownLine] :
         {std::tuple("Help call, ward 1", text, "Play TTS 'Meanwhile'"),
          {"Pharmacy after hours", email, "Email To: 'Meanwhile', Subject: 'Meanwhile'"}}) {
        modify(event);
        ASSERT_NE(wait = console_.waitForWindowWith(IDC_WAIT_TEXT), nullptr);
        driver::enterEvent(console_, editor_, meanwhile);
        EXPECT_TRUE(waitForLine(shownLine)) << line();
        EXPECT_TRUE(console_.waitUntilGone(wait, 1000));
        EXPECT_FALSE(ConsoleDriver::waitUntil([&] { return line() != shownLine; }, 6500)) << line();
        EXPECT_TRUE(canSave());
        closeEditor(IDCANCEL);
    }
    exitConsole();
}

TEST_F(EventEditorTest, WhatWasEnteredOutlivesAServerStopAndAReload) {
    for (const std::string options : {"stop-once=5", "reload-after=3", "reload-after=3;resend=values"}) {
        logOn(options);
        openEditor(IDM_CREATE_EVENT);
        driver::enterEvent(console_, editor_, relayEntry());
        const std::string before = shown();
        if (options.starts_with("stop")) {
            ASSERT_NE(console_.logonDialog(), nullptr);
            EXPECT_FALSE(IsWindowEnabled(editor_));
            ASSERT_TRUE(console_.logOn(kBuildingEvents));
        } else {
            ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return !tracedCallsFrom("KSResendSettings").empty(); }));
        }
        ASSERT_TRUE(ConsoleDriver::waitUntil(
            [&] { return IsWindowEnabled(editor_) && console_.findWindowWith(IDC_WAIT_TEXT) == nullptr; }));
        EXPECT_FALSE(IsWindowEnabled(console_.mainWindow()));
        EXPECT_EQ(shown(), before);
        EXPECT_EQ(line(), "Relay Activation for Destination");
        takeCalls();
        driver::saveEvent(console_, editor_);
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.rowOf("New relay") >= 0; }));
        EXPECT_EQ(written(takeCalls()), kRelayWritten);
        exitConsole();
        SetUp();
    }
}

TEST_F(EventEditorTest, ACancelledLogonEndsTheConsoleUnderEditorAndSubEditor) {
    logOn("stop-once=4");
    modify("lift alarm");
    ASSERT_TRUE(waitForLine("Play TTS 'Alarm in a lift....'"));
    const HWND subEditor = openSubEditor(IDC_TTS_TEXT);
    const HWND logon = console_.logonDialog();
    ASSERT_NE(logon, nullptr);
    EXPECT_EQ(GetWindow(logon, GW_OWNER), subEditor);
    for (const int answer : {IDNO, IDYES}) {
        ConsoleDriver::click(logon, IDCANCEL);
        const HWND question = console_.waitForMessageBox();
        ASSERT_NE(question, nullptr);
        EXPECT_EQ(ConsoleDriver::messageText(question), "Close the console and lose what you entered?");
        EXPECT_TRUE(IsWindow(editor_) && IsWindow(subEditor));
        ConsoleDriver::click(question, static_cast<unsigned>(answer));
        ASSERT_TRUE(console_.waitUntilGone(question));
    }
    ASSERT_TRUE(console_.waitForEnd());
    EXPECT_EQ(console_.exitCode(), 0u);
    EXPECT_TRUE(std::ranges::none_of(takeCalls(), [](const auto& call) { return call.starts_with("KSSysVarSet"); }));
}

TEST_F(EventEditorTest, SubEditorsSaveWhatIsCompleteAndCancelKeepsTheOld) {
    logOn();
    openEditor(IDM_CREATE_EVENT);
    EXPECT_EQ(ConsoleDriver::textOf(editor_), "Create Event");
    EventEntry entry = relayEntry();
    const struct {
        const char* response;
        std::vector<unsigned> fields;
        const char* line;
    } cases[] = {{"Send TTS Message", {IDC_TTS_TEXT}, "Play TTS 'one'"},
                 {"Send TTS File from network drive", {IDC_TTS_FILENAME}, "Play TTS File 'one'"},
                 {"Send Email",
                  {IDC_EMAIL_FROM, IDC_EMAIL_TO, IDC_EMAIL_SUBJECT, IDC_EMAIL_MESSAGE},
                  "Email To: 'one', Subject: 'one'"}};
    for (const auto& c : cases) {
        entry.response = c.response;
        if (c.fields.size() > 1) entry.destination.clear();
        driver::enterEvent(console_, editor_, entry);
        for (const auto& [text, button] : {std::pair("one", IDOK), {"two", IDCANCEL}}) {
            const HWND dialog = openSubEditor(c.fields[0]);
            for (const unsigned field : c.fields) {
                EXPECT_EQ(ConsoleDriver::textOf(dialog, field), button == IDOK ? "" : "one");
                ConsoleDriver::type(dialog, field, "");
                EXPECT_FALSE(ConsoleDriver::isEnabled(dialog, IDOK)) << field;
                ConsoleDriver::type(dialog, field, text);
            }
            EXPECT_TRUE(ConsoleDriver::isEnabled(dialog, IDOK)) << c.response;
            closeSubEditor(dialog, static_cast<unsigned>(button));
            EXPECT_EQ(line(), c.line);
            EXPECT_TRUE(canSave()) << c.response;
        }
    }

    entry = relayEntry();
    entry.response = "Send Server Audio Message File";
    driver::enterEvent(console_, editor_, entry);
    std::string chosen;
    for (const auto& [row, button] : {std::pair(2, IDOK), {5, IDCANCEL}}) {
        const HWND picker = openSubEditor(IDC_AUDIO_LIST);
        const auto rows = console_.readRows(picker, IDC_AUDIO_LIST, 1);
        ASSERT_EQ(rows.size(), 8u);
        EXPECT_TRUE(std::ranges::is_sorted(rows));
        EXPECT_EQ(ConsoleDriver::isEnabled(picker, IDOK), button == IDCANCEL) << "the one from before is selected";
        console_.clickRow(picker, IDC_AUDIO_LIST, row);
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return ConsoleDriver::isEnabled(picker, IDOK); }));
        closeSubEditor(picker, static_cast<unsigned>(button));
        if (button == IDOK) chosen = rows[2][0];
        EXPECT_EQ(line(), "Play Server File '" + chosen + "'");
    }
    EXPECT_TRUE(canSave());
    PostMessageA(editor_, WM_CLOSE, 0, 0);
    ASSERT_TRUE(console_.waitUntilGone(editor_));
    exitConsole();
    EXPECT_EQ(takeCalls(), Calls()) << "nothing was saved";
}

TEST_F(EventEditorTest, WhatAFileCannotHoldIsToldBeforeItIsSaved) {
    logOn();
    openEditor(IDM_CREATE_EVENT);
    EventEntry entry = relayEntry();
    entry.response = "Send Email";
    entry.destination.clear();
    driver::enterEvent(console_, editor_, entry);
    const HWND email = openSubEditor(IDC_EMAIL_FROM);
    const auto note = [&] { return ConsoleDriver::textOf(email, IDC_EMAIL_NOTE); };
    for (const unsigned field : {IDC_EMAIL_FROM, IDC_EMAIL_TO, IDC_EMAIL_SUBJECT, IDC_EMAIL_MESSAGE})
        ConsoleDriver::type(email, field, "plain");
    EXPECT_EQ(note(), "");
    ConsoleDriver::type(email, IDC_EMAIL_SUBJECT, "a \"quote\"");
    EXPECT_FALSE(ConsoleDriver::isEnabled(email, IDOK));
    EXPECT_EQ(note(), "From, To and Subject cannot hold a double quote (\").");
    ConsoleDriver::type(email, IDC_EMAIL_SUBJECT, "none");
    ConsoleDriver::type(email, IDC_EMAIL_MESSAGE, "gr\xFC\xDF");
    EXPECT_TRUE(ConsoleDriver::isEnabled(email, IDOK));
    const std::string lost = "These characters cannot be kept: \xFC \xDF";
    EXPECT_EQ(note(), lost);
    closeSubEditor(email, IDOK);
    EXPECT_EQ(ConsoleDriver::textOf(editor_, IDC_EVENT_FOOT), lost);
    EXPECT_TRUE(IsWindowVisible(GetDlgItem(editor_, IDC_EVENT_FOOT)));
    EXPECT_TRUE(canSave());

    entry.response = "Send TTS Message";
    entry.destination = "group: Nurses";
    driver::enterEvent(console_, editor_, entry);
    EXPECT_EQ(ConsoleDriver::textOf(editor_, IDC_EVENT_FOOT), "");
    const HWND text = openSubEditor(IDC_TTS_TEXT);
    ConsoleDriver::type(text, IDC_TTS_TEXT, "gr\xFC\xDF");
    EXPECT_EQ(ConsoleDriver::textOf(text, IDC_TTS_NOTE), lost);
    closeSubEditor(text, IDCANCEL);
    closeEditor(IDCANCEL);
    exitConsole();
}

TEST_F(EventEditorTest, AnEventWhoseReferencesAreGoneTellsEachInTurn) {
    char folder[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    const std::string path = std::string(folder) + "orvc_event_editor_installation.txt";
    std::ofstream(path, std::ios::binary) << R"(demo-server-installation 1
user admin = 1 admin
device 02:4b:53:10:00:01 = Door
string \ORVS\Events\{1}\EventName = Orphan
string \ORVS\Events\{1}\MessageKey = none
dword \ORVS\Events\{1}\EventTriggerType = 1
dword \ORVS\Events\{1}\EventResponseType = 3
dword \ORVS\Events\{1}\Disabled = 1
dword \ORVS\Events\{1}\completeBits = 2
end
)";
    startConsole("file=" + path);
    ASSERT_TRUE(console_.logOn(1));
    console_.selectRow(0);
    ASSERT_NE(console_.openMessageBox(IDM_MODIFY_EVENT), nullptr);
    EXPECT_FALSE(IsWindowEnabled(console_.mainWindow())) << "nothing else can be opened meanwhile";
    expectMessage("Could not find event Source\nYour will need to reselect", "Event Source Unassigned");
    expectMessage("Could not find Event Schedule\nYou will need to reselect", "Event Schedule Unassigned");
    expectMessage("Could not find Event Destination\nYou will need to reselect and save",
                  "Event Destination Unassigned");
    waitForEditor();
    EXPECT_EQ(shown(),
              "Orphan|PTT (Call Button) Activation|<Select Source>|Trigger Immediately|0|Second(s)|<Select Schedule>|"
              "Send Server Audio Message File|<Select Destination>");
    EXPECT_EQ(line(), "Server File key 'none' not found");
    EXPECT_EQ(IsDlgButtonChecked(editor_, IDC_EVENT_DISABLED), static_cast<UINT>(BST_CHECKED));
    EXPECT_FALSE(canSave());
    closeEditor(IDCANCEL);

    // A double click below the only row creates.
    const HWND list = GetDlgItem(console_.mainWindow(), IDC_EVENT_LIST);
    RECT client{};
    GetClientRect(list, &client);
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        PostMessageA(list, message, 0, MAKELPARAM(20, client.bottom - 10));
    waitForEditor();
    EXPECT_EQ(shown().substr(0, 18), "|<Select Trigger>|");
    closeEditor(IDCANCEL);

    // The console can end while an editor is still telling them.
    console_.selectRow(0);
    ASSERT_NE(console_.openMessageBox(IDM_MODIFY_EVENT), nullptr);
    exitConsole();
    DeleteFileA(path.c_str());
}

}  // namespace
}  // namespace orvc::test
