#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <sstream>

#include "tour/event_entry.h"
#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;
using driver::EventEntry;
using driver::EventRow;
using Calls = std::vector<std::string>;
using Fields = std::map<std::string, std::string>;

constexpr char kAlways[] = "{E09C5A63-18B4-4D7F-92CA-7B36F1E08D05}";
constexpr char kLobby[] = "02:4b:53:10:00:02";

// An Event's values as they are written, with those that most have; numbers begin with "#".
constexpr char kWritten[] =
    "EventName= #EventTriggerType=0 TriggerDeviceMAC=00:00:00:00:00:00 TriggerGroupKey= #TriggerTimeoutType=0 "
    "#TriggerTimeoutSeconds=0 #TriggerTimeOfDay=0 ScheduleKey={81D3F2C7-0A9E-47B2-8F35-6E9A41C5B702} "
    "#EventResponseType=0 MessageKey= FileGUID= TtsFilename= ResponseDeviceMAC=00:00:00:00:00:00 ResponseGroupKey= "
    "#lastTriggered=0 #lastChecked=0 #Disabled=0 #completeBits=1";

// The calls that write an Event; the value "*" stands for any.
Calls writesOf(const std::string& key, Fields values) {
    const std::string path = "\\ORVS\\Events\\" + key;
    Calls calls{"KSSysVarCreateKey " + path + " 0x80000000 1"};
    std::istringstream fields(kWritten);
    for (std::string field; fields >> field;) {
        const bool isText = field[0] != '#';
        if (!isText) field.erase(0, 1);
        const std::size_t equals = field.find('=');
        const auto given = values.extract(field.substr(0, equals));
        const std::string value = given.empty() ? field.substr(equals + 1) : given.mapped();
        std::string call = "KSSysVarSetValue " + path + "\\" + field.substr(0, equals);
        if (value == "*")
            call += " *";
        else if (isText)
            call.append(" 0xC0000001 \"").append(value).append("\" ").append(std::to_string(value.size()));
        else
            call.append(" 0xC0000004 ").append(value).append(" 4");
        calls.push_back(call);
    }
    EXPECT_TRUE(values.empty()) << values.begin()->first;
    return calls;
}

void expectCalls(Calls actual, const Calls& expected) {
    for (std::size_t i = 0; i < std::min(actual.size(), expected.size()); ++i) {
        const std::string& wanted = expected[i];
        if (wanted.ends_with('*') && actual[i].starts_with(wanted.substr(0, wanted.size() - 1))) actual[i] = wanted;
    }
    EXPECT_EQ(actual, expected);
}

// The trace of a file's write; `element` as the trace escapes it.
std::string writtenFile(const std::string& guid, const std::string& element) {
    const std::string file = "<?xml version=%221.0%22 encoding=%22utf-8%22 ?>%0D%0A<ORVSEventFile>%0D%0A%09" + element +
                             "%0D%0A</ORVSEventFile>%0D%0A";
    const auto escapes = static_cast<std::size_t>(std::ranges::count(file, '%'));
    return "KSFileWrite " + guid + " \"" + file + "\" " + std::to_string(file.size() - 2 * escapes);
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
const Fields kRelayFields{{"EventName", "New relay"},    {"EventTriggerType", "3"},        {"TriggerDeviceMAC", kLobby},
                          {"TriggerTimeoutType", "1"},   {"TriggerTimeoutSeconds", "120"}, {"EventResponseType", "1"},
                          {"ResponseGroupKey", "Nurses"}};

class EventEditorTest : public ConsoleTest {
  protected:
    void logOn(const std::string& options = {}) {
        startConsole(options);
        ASSERT_TRUE(console_.logOn(kBuildingEvents));
        // The Schedules come last.
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] {
            openEditor(IDM_CREATE_EVENT);
            const bool complete = entries(IDC_EVENT_SCHEDULE) == 7;
            closeEditor(IDCANCEL);
            return complete;
        }));
        seen_ = serverCalls(0).size();
    }
    void openEditor(unsigned command) {
        console_.choose(command);
        waitForEditor();
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

    LRESULT entries(unsigned list) {
        return SendMessageA(GetDlgItem(editor_, static_cast<int>(list)), CB_GETCOUNT, 0, 0);
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
    bool waitForCall(const std::string& start) {
        return ConsoleDriver::waitUntil([&] { return !tracedCallsFrom(start).empty(); });
    }

    // Calls about files and variables, the first few left out.
    Calls serverCalls(std::size_t from) const {
        Calls calls = tracedCalls();
        std::erase_if(calls,
                      [](const auto& call) { return !call.starts_with("KSFile") && !call.starts_with("KSSysVar"); });
        calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(std::min(from, calls.size())));
        return calls;
    }
    // Those since the last call of this.
    Calls takeCalls() {
        const Calls calls = serverCalls(seen_);
        seen_ += calls.size();
        return calls;
    }
    // The last GUID of a call.
    static std::string guidIn(const std::string& call) {
        const std::size_t at = call.rfind('{');
        return at != std::string::npos ? call.substr(at, 38) : "(none)";
    }
    // Of the record that was created first among the calls.
    static std::string keyIn(const Calls& calls) {
        const auto made =
            std::ranges::find_if(calls, [](const auto& call) { return call.starts_with("KSSysVarCreateKey"); });
        return made != calls.end() ? guidIn(*made) : "(none)";
    }

    HWND editor_ = nullptr;
    std::size_t seen_ = 0;
};

TEST_F(EventEditorTest, WhatIsCreatedIsWrittenExactlyAndItsRowSelected) {
    logOn();
    driver::createEvent(console_, relayEntry());
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.selectedRow() == console_.rowOf("New relay"); }));
    Calls calls = takeCalls();
    expectCalls(calls, writesOf(keyIn(calls), kRelayFields));

    EventEntry mail;
    mail.name = "New mail";
    mail.trigger = "Server Connection Status Change";
    mail.schedule = "Nights";
    mail.response = "Send Email";
    mail.from = "a@x";
    mail.to = "b@x; c@x";
    mail.subject = "S & <s> 5%";
    mail.message = "1\r\n<2> & 100%";
    driver::createEvent(console_, mail);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.selectedRow() == console_.rowOf("New mail"); }));
    calls = takeCalls();
    ASSERT_GE(calls.size(), 2u);
    const std::string guid = guidIn(calls[0]);
    Calls expected{"KSFileCreate " + guid,
                   writtenFile(guid,
                               "<Email from=%22a@x%22 to=%22b@x; c@x%22 cc=%22%22 bc=%22%22 subject=%22S & <s> 5%25%22 "
                               "encoded=%22yes%22>1%250d%250a&lt;2&gt; &amp; 100%25%25</Email>")};
    std::ranges::copy(
        writesOf(
            keyIn(calls),
            {{"EventName", "New mail"}, {"EventTriggerType", "8"}, {"EventResponseType", "4"}, {"FileGUID", guid}}),
        std::back_inserter(expected));
    expectCalls(calls, expected);
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
    const std::string old = "{C163EFA9-80B5-4E72-926C-A5FB390E8106}";
    const Calls calls = takeCalls();
    ASSERT_GE(calls.size(), 4u);
    const std::string guid = guidIn(calls[2]);
    EXPECT_NE(guid, old);
    Calls expected{"KSFileRead " + old, "KSFileDelete " + old, "KSFileCreate " + guid,
                   writtenFile(guid,
                               "<TTS voice=%22default%22 encoded=%22yes%22>Alarm in a lift.%250d%250aAnswer the call "
                               "&amp; send somebody.</TTS>")};
    std::ranges::copy(writesOf("{095EB381-7DF2-4C54-A0B7-1D20C8D4E117}", {{"EventName", "zz last"},
                                                                          {"EventTriggerType", "1"},
                                                                          {"TriggerGroupKey", "Lifts"},
                                                                          {"TriggerTimeoutType", "1"},
                                                                          {"TriggerTimeoutSeconds", "3"},
                                                                          {"ScheduleKey", kAlways},
                                                                          {"EventResponseType", "6"},
                                                                          {"FileGUID", guid},
                                                                          {"ResponseGroupKey", "Security"},
                                                                          {"lastTriggered", "*"},
                                                                          {"lastChecked", "*"}}),
                      std::back_inserter(expected));
    expectCalls(calls, expected);
    exitConsole();
}

TEST_F(EventEditorTest, APayloadThatNeverComesIsGivenUpAndCanBeEnteredAgain) {
    logOn("mute-files=1");
    const std::pair<const char*, const char*> cases[] = {{"Help call, ward 1", "Error retrieving TTS file contents"},
                                                         {"Roof access opened", "Error retrieving Email information"}};
    for (const auto& [event, error] : cases) {
        modify(event);
        const HWND wait = console_.waitForWindowWith(IDC_WAIT_TEXT);
        ASSERT_NE(wait, nullptr);
        const DWORD start = GetTickCount();
        EXPECT_TRUE(waitForLine(error)) << line();
        EXPECT_GE(GetTickCount() - start, 4500u);
        EXPECT_TRUE(console_.waitUntilGone(wait));
        EXPECT_FALSE(canSave());
        EXPECT_TRUE(ConsoleDriver::isEnabled(editor_, IDC_EVENT_SELECT));
        closeEditor(IDCANCEL);
    }
    // What the operator enters while the file is awaited stands.
    modify(cases[0].first);
    const HWND wait = console_.waitForWindowWith(IDC_WAIT_TEXT);
    ASSERT_NE(wait, nullptr);
    EventEntry meanwhile;
    meanwhile.payload = "Meanwhile";
    driver::enterEvent(console_, editor_, meanwhile);
    EXPECT_TRUE(waitForLine("Play TTS 'Meanwhile'")) << line();
    EXPECT_TRUE(console_.waitUntilGone(wait, 1000));
    EXPECT_FALSE(ConsoleDriver::waitUntil([&] { return line() != "Play TTS 'Meanwhile'"; }, 7000)) << line();
    EXPECT_TRUE(canSave());
    exitConsole();
}

TEST_F(EventEditorTest, CancelledNothingIsWritten) {
    logOn();
    const auto fillInAndCancel = [&](const std::function<void()>& cancel) {
        driver::enterEvent(console_, editor_, relayEntry());
        EXPECT_TRUE(canSave());
        cancel();
        ASSERT_TRUE(console_.waitUntilGone(editor_));
    };
    openEditor(IDM_CREATE_EVENT);
    EXPECT_EQ(ConsoleDriver::textOf(editor_), "Create Event");
    fillInAndCancel([&] { ConsoleDriver::click(editor_, IDCANCEL); });
    modify("Front door");
    fillInAndCancel([&] { PostMessageA(editor_, WM_CLOSE, 0, 0); });
    SendMessageA(console_.mainWindow(), WM_NULL, 0, 0);
    EXPECT_EQ(takeCalls(), Calls());
    EXPECT_EQ(console_.rowOf("New relay"), -1);
    exitConsole();
}

TEST_F(EventEditorTest, ADoubleClickBelowTheLastRowCreates) {
    startConsole("events=3");
    ASSERT_TRUE(console_.logOn(3));
    const HWND list = GetDlgItem(console_.mainWindow(), IDC_EVENT_LIST);
    RECT client{};
    GetClientRect(list, &client);
    for (const UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        PostMessageA(list, message, 0, MAKELPARAM(20, client.bottom - 10));
    waitForEditor();
    EXPECT_EQ(ConsoleDriver::textOf(editor_), "Create Event");
    EXPECT_EQ(shown().substr(0, 18), "|<Select Trigger>|");
    exitConsole();
}

TEST_F(EventEditorTest, WhatWasEnteredOutlivesAServerStop) {
    logOn("stop-once=5");
    openEditor(IDM_CREATE_EVENT);
    driver::enterEvent(console_, editor_, relayEntry());
    const std::string before = shown();
    const HWND logon = console_.logonDialog();
    ASSERT_NE(logon, nullptr);
    EXPECT_EQ(GetWindow(logon, GW_OWNER), editor_);
    EXPECT_FALSE(IsWindowEnabled(editor_));
    takeCalls();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowEnabled(editor_) != 0; }));
    EXPECT_FALSE(IsWindowEnabled(console_.mainWindow()));
    EXPECT_EQ(shown(), before);
    takeCalls();
    driver::saveEvent(console_, editor_);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.rowOf("New relay") >= 0; }));
    const Calls calls = takeCalls();
    expectCalls(calls, writesOf(keyIn(calls), kRelayFields));
    exitConsole();
}

TEST_F(EventEditorTest, ACancelledLogonEndsTheConsoleUnderEditorAndSubEditor) {
    logOn("stop-once=4");
    modify("lift alarm");
    ASSERT_TRUE(waitForLine("Play TTS 'Alarm in a lift....'"));
    const HWND subEditor = openSubEditor(IDC_TTS_TEXT);
    const HWND logon = console_.logonDialog();
    ASSERT_NE(logon, nullptr);
    EXPECT_EQ(GetWindow(logon, GW_OWNER), subEditor);
    ConsoleDriver::click(logon, IDCANCEL);
    ASSERT_TRUE(console_.waitForEnd());
    EXPECT_EQ(console_.exitCode(), 0u);
    EXPECT_TRUE(std::ranges::none_of(takeCalls(), [](const auto& call) { return call.starts_with("KSSysVarSet"); }));
}

TEST_F(EventEditorTest, WhatWasEnteredOutlivesAReload) {
    for (const char* options : {"reload-after=3", "reload-after=3;resend=values"}) {
        logOn(options);
        openEditor(IDM_CREATE_EVENT);
        driver::enterEvent(console_, editor_, relayEntry());
        const std::string before = shown();
        ASSERT_TRUE(waitForCall("KSResendSettings"));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.findWindowWith(IDC_WAIT_TEXT) == nullptr; }));
        EXPECT_EQ(shown(), before);
        EXPECT_EQ(line(), "Relay Activation for Destination");
        takeCalls();
        driver::saveEvent(console_, editor_);
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.rowOf("New relay") >= 0; }));
        const Calls calls = takeCalls();
        expectCalls(calls, writesOf(keyIn(calls), kRelayFields));
        exitConsole();
        SetUp();
    }
}

TEST_F(EventEditorTest, SubEditorsSaveWhatIsCompleteAndCancelKeepsTheOld) {
    logOn();
    openEditor(IDM_CREATE_EVENT);
    EventEntry entry = relayEntry();
    const struct {
        const char *response, *prompt;
        std::vector<unsigned> fields;
        const char* line;
    } cases[] = {{"Send TTS Message", "Select TTS File", {IDC_TTS_TEXT}, "Play TTS 'one'"},
                 {"Send TTS File from network drive", "Select TTS File", {IDC_TTS_FILENAME}, "Play TTS File 'one'"},
                 {"Send Email",
                  "Select Email Template",
                  {IDC_EMAIL_FROM, IDC_EMAIL_TO, IDC_EMAIL_SUBJECT, IDC_EMAIL_MESSAGE},
                  "Email To: 'one', Subject: 'one'"}};
    for (const auto& c : cases) {
        entry.response = c.response;
        if (c.fields.size() > 1) entry.destination.clear();
        driver::enterEvent(console_, editor_, entry);
        EXPECT_EQ(line(), c.prompt);
        HWND dialog = openSubEditor(c.fields[0]);
        for (const unsigned field : c.fields) {
            EXPECT_FALSE(ConsoleDriver::isEnabled(dialog, IDOK)) << field;
            ConsoleDriver::type(dialog, field, "one");
        }
        EXPECT_TRUE(ConsoleDriver::isEnabled(dialog, IDOK)) << c.response;
        closeSubEditor(dialog, IDOK);
        EXPECT_EQ(line(), c.line);
        EXPECT_TRUE(canSave()) << c.response;
        dialog = openSubEditor(c.fields[0]);
        for (const unsigned field : c.fields) {
            EXPECT_EQ(ConsoleDriver::textOf(dialog, field), "one");
            ConsoleDriver::type(dialog, field, "");
            EXPECT_FALSE(ConsoleDriver::isEnabled(dialog, IDOK)) << field;
            ConsoleDriver::type(dialog, field, "two");
        }
        closeSubEditor(dialog, IDCANCEL);
        EXPECT_EQ(line(), c.line);
        EXPECT_TRUE(canSave()) << c.response;
    }

    entry = relayEntry();
    entry.response = "Send Server Audio Message File";
    driver::enterEvent(console_, editor_, entry);
    HWND picker = openSubEditor(IDC_AUDIO_LIST);
    const auto rows = console_.readRows(picker, IDC_AUDIO_LIST, 1);
    EXPECT_EQ(rows.size(), 8u);
    EXPECT_TRUE(std::ranges::is_sorted(rows));
    EXPECT_FALSE(ConsoleDriver::isEnabled(picker, IDOK));
    console_.clickRow(picker, IDC_AUDIO_LIST, 2);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return ConsoleDriver::isEnabled(picker, IDOK); }));
    closeSubEditor(picker, IDOK);
    EXPECT_EQ(line(), "Play Server File '" + rows[2][0] + "'");
    EXPECT_TRUE(canSave());
    picker = openSubEditor(IDC_AUDIO_LIST);
    const HWND list = GetDlgItem(picker, IDC_AUDIO_LIST);
    EXPECT_EQ(SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_SELECTED), 2);
    EXPECT_TRUE(ConsoleDriver::isEnabled(picker, IDOK));
    console_.clickRow(picker, IDC_AUDIO_LIST, 5);
    closeSubEditor(picker, IDCANCEL);
    EXPECT_EQ(line(), "Play Server File '" + rows[2][0] + "'");
    exitConsole();
}

TEST_F(EventEditorTest, AnEventWhoseReferencesAreGoneTellsEachInTurn) {
    char folder[MAX_PATH] = "";
    GetTempPathA(sizeof folder, folder);
    const std::string path = std::string(folder) + "orvc_event_editor_installation.txt";
    std::ofstream file(path, std::ios::binary);
    file << "demo-server-installation 1\nuser admin = 1 admin\ndevice 02:4b:53:10:00:01 = Door\n";
    for (const char* value :
         {"string EventName = Orphan", "string TriggerGroupKey = Annex", "string ScheduleKey = {gone}",
          "string FileGUID = ", "string ResponseGroupKey = Annex", "string MessageKey = none",
          "dword EventTriggerType = 1", "dword EventResponseType = 3", "dword lastChecked = 0",
          "dword lastTriggered = 0", "dword Disabled = 1", "dword completeBits = 1", "dword TriggerTimeoutSeconds = 90",
          "dword TriggerTimeoutType = 1"}) {
        const std::string text(value);
        const std::size_t blank = text.find(' ');
        file << text.substr(0, blank) << " \\ORVS\\Events\\{1}\\" << text.substr(blank + 1) << '\n';
    }
    file << "end\n";
    file.close();
    startConsole("file=" + path);
    ASSERT_TRUE(console_.logOn(1));
    console_.selectRow(0);
    console_.choose(IDM_MODIFY_EVENT);
    expectMessage("Could not find event Source\nYour will need to reselect", "Event Source Unassigned");
    expectMessage("Could not find Event Schedule\nYou will need to reselect", "Event Schedule Unassigned");
    expectMessage("Could not find Event Destination\nYou will need to reselect and save",
                  "Event Destination Unassigned");
    waitForEditor();
    EXPECT_EQ(shown(),
              "Orphan|PTT (Call Button) Activation|<Select Source>|Trigger after|1|Minute(s)|<Select Schedule>|"
              "Send Server Audio Message File|<Select Destination>");
    EXPECT_EQ(line(), "Server File key 'none' not found");
    EXPECT_EQ(IsDlgButtonChecked(editor_, IDC_EVENT_DISABLED), static_cast<UINT>(BST_CHECKED));
    EXPECT_FALSE(canSave());
    exitConsole();
    DeleteFileA(path.c_str());
}

}  // namespace
}  // namespace orvc::test
