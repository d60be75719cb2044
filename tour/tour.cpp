// The tour: shows a newcomer the real console at work, without a display to look at.
//
// Drives ORVSConfig.exe (beside this program) through its windows, prints each step, and saves a picture of each window
// in the folder that --shots names. Ends with 0 when every step happened, else with 1 and the step that did not.
#include <windows.h>

#include <cstdio>
#include <stdexcept>
#include <string>

#include "resources/resource.h"
#include "tour/console_driver.h"

namespace orvc::driver {
namespace {

constexpr std::size_t kEvents = 20;  // of the demo server's building

class Tour {
  public:
    explicit Tour(std::string pictures) : pictures_(std::move(pictures)) {}

    void run(const std::string& program) {
        step("Start the console");
        require(console_.start(program), "the program could not be started");
        require(console_.logonDialog() != nullptr, "no logon dialog appeared");
        logOn();
        takePicture(console_.mainWindow(), "main-window");
        printEvents();
        awaitReload();
        showAbout();
        showSchedules();
        deleteEvent("Barrier lifts");
        logOff();
        logOn();
        require(console_.rowOf("Barrier lifts") == -1, "the deleted Event is back");
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

    static void require(bool happened, const std::string& otherwise) {
        if (!happened) throw std::runtime_error(otherwise);
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
        require(
            ConsoleDriver::textOf(console_.mainWindow()) == "Orvane VANTE Event Configuration Console - Logon ID admin",
            "the title does not name the logon ID");
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
        std::printf("    %-26s %-18s %-25s %s\n", row[0].c_str(), row[1].c_str(), row[2].c_str(), row[3].c_str());
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

    void showSchedules() {
        step("Look at the Schedules, and at the hours of one");
        console_.choose(IDM_SCHEDULES);
        const HWND list = console_.waitForWindowWith(IDC_SCHEDULE_LIST);
        require(list != nullptr, "no list of Schedules appeared");
        require(ConsoleDriver::waitUntil([&] { return !console_.readRows(list, IDC_SCHEDULE_LIST, 1).empty(); }),
                "the list of Schedules is empty");
        const auto rows = console_.readRows(list, IDC_SCHEDULE_LIST, 3);
        for (const auto& row : rows)
            std::printf("    %-26s %-18s %s\n", row[0].c_str(), row[1].c_str(), row[2].c_str());
        std::fflush(stdout);
        console_.clickRow(list, IDC_SCHEDULE_LIST, 3);
        require(ConsoleDriver::waitUntil([&] { return ConsoleDriver::isEnabled(list, IDC_SCHEDULE_MODIFY); }),
                "no Schedule could be selected");
        takePicture(list, "schedules");
        ConsoleDriver::click(list, IDC_SCHEDULE_MODIFY);
        const HWND editor = console_.waitForWindowWith(IDC_SCHEDULE_DAY_TABS);
        require(editor != nullptr, "no schedule editor appeared");
        console_.clickTab(editor, IDC_SCHEDULE_DAY_TABS, 1);
        require(ConsoleDriver::waitUntil(
                    [&] { return !ConsoleDriver::selectedEntry(editor, IDC_SCHEDULE_TIME).starts_with("None"); }),
                "Monday has no hours");
        takePicture(editor, "edit-schedule");
        ConsoleDriver::click(editor, IDCANCEL);
        require(console_.waitUntilGone(editor), "the schedule editor did not close");
        ConsoleDriver::click(list, IDOK);
        require(console_.waitUntilGone(list), "the list of Schedules did not close");
    }

    void deleteEvent(const std::string& name) {
        step("Delete the Event \"" + name + "\"");
        const int row = console_.rowOf(name);
        require(row >= 0, "there is no such Event");
        console_.selectRow(row);
        console_.choose(IDM_DELETE_EVENT);
        const HWND question = console_.waitForMessageBox();
        require(question != nullptr, "the console did not ask");
        takePicture(question, "delete-event");
        ConsoleDriver::click(question, IDYES);
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

    // Milliseconds: until a new window is painted, and of a window that is there for a short time only.
    static constexpr DWORD kPaintPause = 300;
    static constexpr DWORD kGlimpse = 50;

    ConsoleDriver console_;
    std::string pictures_;
    std::size_t expectedEvents_ = kEvents;
    int step_ = 0;
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
    for (int i = 1; i + 1 < count; ++i)
        if (std::string(arguments[i]) == "--shots") pictures = arguments[i + 1];
    try {
        Tour(pictures).run(besideThisProgram("ORVSConfig.exe"));
    } catch (const std::exception& error) {
        std::printf("The tour stopped: %s.\n", error.what());
        return 1;
    }
    std::printf("The tour is complete.\n");
    return 0;
}
