// The tour: shows a newcomer the real console at work, without a display to look at.
//
// Drives ORVSConfig.exe (beside this program) through its windows, prints each step, and saves a picture of each window
// in the folder that --shots names. It works in whatever language the console speaks: what it chooses and expects are
// the console's own texts. What it enters is compared with the demo server's installation file, which
// --installation names. Ends with 0 when every step happened, else with 1 and the step that did not.
#include <windows.h>

#include <cstdio>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "model/event_record.h"
#include "resources/resource.h"
#include "support/text.h"
#include "tour/console_driver.h"
#include "tour/console_texts.h"
#include "tour/event_entry.h"
#include "tour/holdings.h"
#include "tour/list_step.h"
#include "tour/mail_step.h"
#include "tour/schedule_step.h"
#include "tour/steps.h"
#include "tour/stored_installation.h"

namespace orvc::driver {
namespace {

constexpr std::size_t kEvents = 20;  // of the demo server's building

class Tour {
  public:
    // `pictures`: the folder for them. `installation`: the file in which the demo server keeps its installation.
    Tour(std::string pictures, std::string installation)
        : pictures_(std::move(pictures)), installation_(std::move(installation)) {}

    void run(const std::string& program) {
        step(consoleLanguage() != 0 ? formatText("Start the console, in language 0x%04x", consoleLanguage())
                                    : std::string("Start the console"));
        require(console_.start(program), "the program could not be started");
        require(console_.logonDialog() != nullptr, "no logon dialog appeared");
        logOnWithoutRights();
        logOn();
        takePicture(console_.mainWindow(), "main-window");
        printEvents();
        awaitReload();
        showAbout();
        askToClearFile();
        findByTyping(console_, narrator_);
        sortByColumn(console_, narrator_);
        changeSeveral(console_, narrator_);
        duplicateOne(console_, narrator_);
        mendProblem(console_, narrator_, kMendedSource);
        showSchedules(console_, narrator_);
        createSchedule(console_, narrator_, kSchedule);
        createEvents();
        modifyEvent();
        tryEmail(console_, installation_, narrator_);
        deleteEvent("Barrier lifts");
        logOff();
        logOn();
        require(console_.rowOf("Barrier lifts") == -1, "the deleted Event is back");
        checkStored();
        showHoldings();
        step("Exit");
        console_.choose(IDM_EXIT);
        require(console_.waitForEnd(), "the console did not end");
        require(console_.exitCode() == 0, "the console ended with an error");
    }

  private:
    void step(const std::string& text) {
        std::printf("%2d. %s\n", ++step_, text.c_str());
        std::fflush(stdout);
    }

    void takePicture(HWND window, const std::string& name) {
        // Let what was just opened finish painting.
        Sleep(kPaintPause);
        require(ConsoleDriver::saveScreenshot(window, pictures_ + "\\" + name + ".bmp"),
                "picture " + name + " could not be saved");
    }

    void logOn() {
        step("Log on to the demo server as admin");
        const HWND dialog = console_.logonDialog();
        require(dialog != nullptr, "no logon dialog appeared");
        ConsoleDriver::click(dialog, IDC_LOGON_OPTIONS);
        require(ConsoleDriver::waitUntil([&] { return IsWindowVisible(GetDlgItem(dialog, IDC_LOGON_ADDRESS)) != 0; }),
                "the logon options did not open");
        ConsoleDriver::type(dialog, IDC_LOGON_ID, "admin");
        ConsoleDriver::type(dialog, IDC_LOGON_PASSWORD, "admin");
        ConsoleDriver::type(dialog, IDC_LOGON_ADDRESS, "127.0.0.1");
        takePicture(dialog, "logon");
        ConsoleDriver::click(dialog, IDOK);
        require(console_.waitUntilGone(dialog), "the logon dialog did not close");
        require(ConsoleDriver::waitUntil([this] { return console_.eventCount() == expectedEvents_; }),
                "the Events did not arrive");
        require(ConsoleDriver::textOf(console_.mainWindow()) == fillIn(consoleText(IDS_TITLE_LOGGED_ON), {"admin"}),
                "the title does not name the logon ID");
    }

    void logOnWithoutRights() {
        step("Log on as somebody without administrator rights");
        console_.enterLogon("operator", "operator");
        closeMessage(IDS_LOGON_NO_ADMIN, IDOK, "logon-error");
        require(ConsoleDriver::waitUntil([&] { return ConsoleDriver::isEnabled(console_.logonDialog(), IDOK); }),
                "nobody else can log on");
    }

    void closeMessage(unsigned text, unsigned answer, const std::string& picture) {
        answerMessage(console_, narrator_, consoleText(text), answer, picture);
    }

    void askToClearFile() {
        step("Change the mind about clearing the support file");
        console_.choose(IDM_CLEAR_FILE);
        closeMessage(IDS_CLEAR_FILE, IDNO, "clear-file");
    }

    void awaitReload() {
        step("Wait until the server announces new settings");
        const HWND wait = console_.waitForWindowWith(IDC_WAIT_TEXT);
        require(wait != nullptr, "no please-wait window appeared");
        Sleep(kGlimpse);
        require(ConsoleDriver::saveScreenshot(wait, pictures_ + "\\please-wait.bmp"),
                "picture please-wait could not be saved");
        require(console_.waitUntilGone(wait), "the please-wait window stayed");
        require(console_.eventCount() == expectedEvents_, "Events are missing after the reload");
    }

    void printEvents() {
        step("Read the Event list from the window");
        const EventRow titles = console_.columnTitles();
        printRow(titles);
        std::printf("    %s\n", std::string(100, '-').c_str());
        for (const EventRow& row : console_.readEvents())
            printRow(row);
        std::fflush(stdout);
    }

    static void printRow(const EventRow& row) {
        std::printf("    %-26s %-18s %-25s %s\n", toUtf8(row[0]).c_str(), toUtf8(row[1]).c_str(),
                    toUtf8(row[2]).c_str(), toUtf8(row[3]).c_str());
    }

    void showAbout() {
        step("Look at the About box");
        console_.choose(IDM_ABOUT);
        const HWND about = console_.waitForWindowWith(IDC_ABOUT_LIST);
        require(about != nullptr, "no About box appeared");
        takePicture(about, "about");
        ConsoleDriver::click(about, IDOK);
        require(console_.waitUntilGone(about), "the About box did not close");
    }

    static std::string triggerName(Trigger trigger) {
        return consoleText(IDS_TRIGGER_NONE + static_cast<unsigned>(trigger));
    }

    // One for each response, every payload with what its file format has to protect.
    static std::vector<EventEntry> newEvents() {
        EventEntry common;
        common.trigger = triggerName(Trigger::kDeviceConnection);
        common.source = fillIn(consoleText(IDS_PLACE_DEVICE), {"Lobby", 0x10L, 0L, 2L});
        common.schedule = kSchedule;
        common.destination = fillIn(consoleText(IDS_PLACE_GROUP), {"Nurses"});
        const auto with = [&](const char* name, unsigned response, const char* payload) {
            EventEntry entry = common;
            entry.name = name;
            entry.response = consoleText(response);
            entry.payload = payload;
            return entry;
        };
        std::vector<EventEntry> events{
            with("Tour 1, relay on", IDS_RESPONSE_ACTIVATE_RELAY, ""),
            with("Tour 2, relay off", IDS_RESPONSE_DEACTIVATE_RELAY, ""),
            with("Tour 3, audio", IDS_RESPONSE_SERVER_AUDIO, "The door is open"),
            with("Tour 4, e-mail", IDS_RESPONSE_EMAIL, ""),
            with("Tour 5, text file", IDS_RESPONSE_TTS_FILE, "\\\\fileserver\\texts\\lobby.txml"),
            with("Tour 6, spoken", IDS_RESPONSE_TTS_MESSAGE, "Doors <A> & <B>\r\nare 100% open"),
        };
        events[0].trigger = triggerName(Trigger::kSensorActivation);
        events[0].timeout = consoleText(IDS_TRIGGER_AFTER);
        events[0].timeoutValue = "2";
        events[0].timeoutUnit = consoleText(IDS_MINUTES);
        events[1].trigger = consoleText(IDS_TRIGGER_TIME_OF_DAY);
        events[1].source = fillIn(consoleText(IDS_TIME_PM), {12L, 15L});
        events[3].trigger = triggerName(Trigger::kServerConnection);
        events[3].source.clear();
        events[3].destination.clear();
        events[3].from = "console@building.example";
        events[3].to = "porter@building.example; night@building.example";
        events[3].subject = "Server connection";
        events[3].message = "The connection changed.\r\n<Please look>";
        return events;
    }

    void createEvents() {
        int number = 0;
        for (const EventEntry& entry : newEvents()) {
            step("Create the Event \"" + entry.name + "\"");
            std::string picture = "event-";
            picture += std::to_string(++number);
            console_.choose(IDM_CREATE_EVENT);
            const HWND editor = console_.waitForWindowWith(IDC_EVENT_TRIGGER);
            require(editor != nullptr, "no Event editor appeared");
            if (number == 1) takePicture(editor, "event-new");
            enterEvent(console_, editor, entry, [&](HWND subEditor) { takePicture(subEditor, picture + "-payload"); });
            takePicture(editor, picture);
            saveEvent(console_, editor);
            ++expectedEvents_;
            require(ConsoleDriver::waitUntil([&] { return console_.rowOf(entry.name) >= 0; }), "its row is not there");
            require(console_.selectedRow() == console_.rowOf(entry.name), "its row is not selected");
        }
    }

    void modifyEvent() {
        step("Modify \"Tour 6, spoken\": another name, switched off");
        console_.selectRow(console_.rowOf("Tour 6, spoken"));
        console_.choose(IDM_MODIFY_EVENT);
        const HWND editor = console_.waitForWindowWith(IDC_EVENT_TRIGGER);
        require(editor != nullptr, "no Event editor appeared");
        require(ConsoleDriver::textOf(editor) == consoleText(IDS_MODIFY_EVENT),
                "the editor does not say that it modifies");
        require(ConsoleDriver::waitUntil([&] {
                    return ConsoleDriver::textOf(editor, IDC_EVENT_RESPONSE_LINE) ==
                           fillIn(consoleText(IDS_TTS_TEXT_CHOSEN), {"Doors <A> & <B>..."});
                }),
                "the spoken text did not come back from the server");
        require(ConsoleDriver::waitUntil([&] { return console_.findWindowWith(IDC_WAIT_TEXT) == nullptr; }),
                "the please-wait window stayed");
        ConsoleDriver::type(editor, IDC_EVENT_NAME, "Tour 0, spoken");
        ConsoleDriver::click(editor, IDC_EVENT_DISABLED);
        require(ConsoleDriver::waitUntil([&] { return IsDlgButtonChecked(editor, IDC_EVENT_DISABLED) == BST_CHECKED; }),
                "the Event was not switched off");
        takePicture(editor, "modify-event");
        saveEvent(console_, editor);
        require(ConsoleDriver::waitUntil([&] {
                    const int row = console_.rowOf("Tour 0, spoken");
                    return row >= 0 &&
                           console_.readEvents()[static_cast<std::size_t>(row)][1] == consoleText(IDS_STATUS_DISABLED);
                }),
                "the list does not show the change");
    }

    void checkStored() {
        step("Compare with what the server stored");
        const StoredInstallation stored(installation_);
        const std::string schedule = stored.findKey("Schedules", "Name", kSchedule);
        require(!schedule.empty(), "the Schedule is not stored");
        require(stored.value("Schedules", schedule, "Hours") == std::string(22, '0') + "f8" + std::string(60, '0'),
                "the Schedule's hours are wrong");
        const auto expect = [&](const std::string& name, const std::string& field, const std::string& value) {
            const std::string found = stored.value("Events", stored.findKey("Events", "EventName", name), field);
            require(found == value, name + ": " + field + " is \"" + found + "\" and not \"" + value + "\"");
        };
        for (const char* name : {"Tour 1, relay on", "Tour 2, relay off", "Tour 3, audio", "Tour 4, e-mail",
                                 "Tour 5, text file", "Tour 0, spoken"}) {
            expect(name, "ScheduleKey", schedule);
            expect(name, "completeBits", "1");
        }
        expect("Tour 1, relay on", "EventTriggerType", "3");
        expect("Tour 1, relay on", "TriggerTimeoutType", "1");
        expect("Tour 1, relay on", "TriggerTimeoutSeconds", "120");
        expect("Tour 1, relay on", "TriggerDeviceMAC", "02:4b:53:10:00:02");
        expect("Tour 1, relay on", "ResponseGroupKey", "Nurses");
        expect("Tour 2, relay off", "TriggerTimeOfDay", "49");
        expect("Tour 3, audio", "EventResponseType", "3");
        expect("Tour 5, text file", "TtsFilename", "\\\\fileserver\\texts\\lobby.txml");
        expect("Tour 0, spoken", "Disabled", "1");
        // What was changed and changed back, and what was mended.
        expect("Front door", "Disabled", "0");
        require(
            stored.findKey("Events", "EventName", fillIn(consoleText(IDS_COPY_NAME), {"Pharmacy after hours"})).empty(),
            "the copy is still stored");
        expect("Annex door", "TriggerGroupKey", kMendedSource);
        expect("Annex door", "badData", "0");
        const auto expectFile = [&](const std::string& name, const std::string& part) {
            const std::string guid = stored.value("Events", stored.findKey("Events", "EventName", name), "FileGUID");
            require(stored.file(guid).find(part) != std::string::npos, name + ": its payload file lacks " + part);
        };
        expectFile("Tour 0, spoken", "encoded=\"yes\">Doors &lt;A&gt; &amp; &lt;B&gt;%0d%0aare 100%% open</TTS>");
        expectFile("Tour 4, e-mail", "to=\"porter@building.example; night@building.example\"");
        expectFile("Tour 4, e-mail", "The connection changed.%0d%0a&lt;Please look&gt;</Email>");
    }

    void showHoldings() {
        step("See what the console holds of the system");
        const HWND window = console_.mainWindow();
        const Holdings held = measure(console_.process(), GetWindowThreadProcessId(window, nullptr));
        std::ostringstream text;
        text << held;
        std::printf("    %s\n", text.str().c_str());
    }

    void deleteEvent(const std::string& name) {
        step("Delete the Event \"" + name + "\"");
        const int row = console_.rowOf(name);
        require(row >= 0, "there is no such Event");
        console_.selectRow(row);
        console_.choose(IDM_DELETE_EVENT);
        closeMessage(IDS_DELETE_EVENT, IDYES, "delete-event");
        --expectedEvents_;
        require(ConsoleDriver::waitUntil([this] { return console_.eventCount() == expectedEvents_; }),
                "its row is still there");
        require(console_.rowOf(name) == -1, "another row is gone");
    }

    void logOff() {
        step("Log off");
        console_.choose(IDM_LOGOFF);
        require(console_.logonDialog() != nullptr, "the logon dialog did not come back");
        require(console_.eventCount() == 0, "the list still shows Events");
    }

    static constexpr const char* kSchedule = "Late shift";
    static constexpr const char* kMendedSource = "Public areas";
    // Milliseconds: until a new window is painted, and of a window that is there for a short time only.
    static constexpr DWORD kPaintPause = 300;
    static constexpr DWORD kGlimpse = 50;

    ConsoleDriver console_;
    std::string pictures_;
    std::string installation_;
    std::size_t expectedEvents_ = kEvents;
    int step_ = 0;
    Narrator narrator_{[this](const std::string& text) { step(text); },
                       [this](HWND window, const std::string& name) { takePicture(window, name); }};
};

std::string besideThisProgram(const std::string& name) {
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    const std::string own(path);
    return own.substr(0, own.rfind('\\') + 1) + name;
}

}  // namespace
}  // namespace orvc::driver

int main(int count, char** arguments) {
    using namespace orvc::driver;
    std::string pictures = ".";
    std::string installation;
    for (int i = 1; i + 1 < count; ++i) {
        if (std::string(arguments[i]) == "--shots") pictures = arguments[i + 1];
        if (std::string(arguments[i]) == "--installation") installation = arguments[i + 1];
    }
    try {
        Tour(pictures, installation).run(besideThisProgram("ORVSConfig.exe"));
    } catch (const std::exception& error) {
        std::printf("The tour stopped: %s.\n", error.what());
        return 1;
    }
    std::printf("The tour is complete.\n");
    return 0;
}
