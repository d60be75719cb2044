#include "tour/schedule_step.h"

#include <algorithm>
#include <cstdio>

#include "resources/resource.h"
#include "tour/console_texts.h"

namespace orvc::driver {
namespace {

HWND openSchedules(ConsoleDriver& console) {
    const HWND list = console.open(IDM_SCHEDULES, IDC_SCHEDULE_LIST);
    require(list != nullptr, "no list of Schedules appeared");
    require(ConsoleDriver::waitUntil([&] { return !console.readRows(list, IDC_SCHEDULE_LIST, 1).empty(); }),
            "the list of Schedules is empty");
    return list;
}

void close(ConsoleDriver& console, HWND window, unsigned button) {
    ConsoleDriver::click(window, button);
    require(console.waitUntilGone(window), "a window of the Schedules did not close");
}

HWND waitForEditor(ConsoleDriver& console) {
    const HWND editor = console.waitForWindowWith(IDC_SCHEDULE_DAY_TABS);
    require(editor != nullptr, "no schedule editor appeared");
    return editor;
}

// The names below the list are as many as its row says.
void printUsers(HWND list, const std::string& count) {
    const auto users = [&] { return ConsoleDriver::textOf(list, IDC_SCHEDULE_USERS); };
    require(ConsoleDriver::waitUntil([&] { return !users().empty(); }), "no Event uses the Schedule");
    std::string names = toUtf8(users());
    const auto lines = std::ranges::count(names, '\n') + 1;
    require(std::to_string(lines) == count, "the list says " + count + " Events, the names are " + names);
    for (std::size_t at = 0; (at = names.find("\r\n", at)) != std::string::npos;)
        names.replace(at, 2, ", ");
    std::printf("    %s: %s\n", count.c_str(), names.c_str());
    std::fflush(stdout);
}

}  // namespace

void showSchedules(ConsoleDriver& console, const Narrator& narrator) {
    constexpr int kUsers = 3;  // the column
    constexpr int kRow = 3;
    narrator.step("Look at the Schedules, at the Events that use one, and at its hours");
    const HWND list = openSchedules(console);
    const auto rows = console.readRows(list, IDC_SCHEDULE_LIST, kUsers + 1);
    for (const auto& row : rows)
        std::printf("    %-26s %-18s %-18s %s\n", toUtf8(row[0]).c_str(), toUtf8(row[1]).c_str(),
                    toUtf8(row[2]).c_str(), row[kUsers].c_str());
    console.clickRow(list, IDC_SCHEDULE_LIST, kRow);
    require(ConsoleDriver::waitUntil([&] { return ConsoleDriver::isEnabled(list, IDC_SCHEDULE_MODIFY); }),
            "no Schedule could be selected");
    printUsers(list, rows[kRow][kUsers]);
    narrator.takePicture(list, "schedules");
    ConsoleDriver::click(list, IDC_SCHEDULE_MODIFY);
    const HWND editor = waitForEditor(console);
    console.clickTab(editor, IDC_SCHEDULE_DAY_TABS, 1);
    require(ConsoleDriver::waitUntil(
                [&] { return ConsoleDriver::selectedEntry(editor, IDC_SCHEDULE_TIME) != consoleText(IDS_HOUR_NONE); }),
            "Monday has no hours");
    narrator.takePicture(editor, "edit-schedule");
    close(console, editor, IDCANCEL);
    close(console, list, IDOK);
}

void createSchedule(ConsoleDriver& console, const Narrator& narrator, const std::string& name) {
    narrator.step("Create a Schedule: \"" + name + "\", Mondays from 9:30 PM to midnight");
    const HWND list = openSchedules(console);
    ConsoleDriver::click(list, IDC_SCHEDULE_NEW);
    const HWND editor = waitForEditor(console);
    ConsoleDriver::type(editor, IDC_SCHEDULE_NAME, name);
    console.clickTab(editor, IDC_SCHEDULE_DAY_TABS, 1);
    const std::string entries[] = {"09", "30", consoleText(IDS_PM), "12", "00", consoleText(IDS_AM)};
    for (unsigned i = 0; i < 6; ++i) {
        // A day whose end is missing cannot be left.
        if (i == 3) {
            console.clickTab(editor, IDC_SCHEDULE_DAY_TABS, 2);
            answerMessage(console, narrator, consoleText(IDS_PERIOD_NO_END), IDOK, "schedule-error");
        }
        require(ConsoleDriver::waitUntil(
                    [&] { return ConsoleDriver::chooseEntry(editor, IDC_SCHEDULE_TIME + i, entries[i]); }, 2000),
                "a time could not be chosen");
    }
    narrator.takePicture(editor, "new-schedule");
    close(console, editor, IDOK);
    close(console, list, IDOK);
}

}  // namespace orvc::driver
