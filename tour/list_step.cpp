#include "tour/list_step.h"

#include <algorithm>
#include <cstdio>
#include <set>
#include <vector>

#include "resources/resource.h"
#include "support/text.h"
#include "tour/console_texts.h"
#include "tour/event_entry.h"

namespace orvc::driver {
namespace {

constexpr std::size_t kStatus = 1;  // columns
constexpr std::size_t kResponse = 3;

std::vector<std::string> cells(ConsoleDriver& console, std::size_t column) {
    std::vector<std::string> texts;
    for (const EventRow& row : console.readEvents())
        texts.push_back(row[column]);
    return texts;
}

void waitForNames(ConsoleDriver& console, const std::vector<std::string>& names, const std::string& otherwise) {
    require(ConsoleDriver::waitUntil([&] { return cells(console, 0) == names; }), otherwise);
}

std::string statusOf(ConsoleDriver& console, const std::string& name) {
    const int row = console.rowOf(name);
    return row >= 0 ? console.readEvents()[static_cast<std::size_t>(row)][kStatus] : std::string();
}

std::string detail(ConsoleDriver& console) {
    return ConsoleDriver::textOf(console.mainWindow(), IDC_DETAIL);
}

// Of the status bar: what was done last.
void waitForOutcome(ConsoleDriver& console, const std::string& text) {
    require(ConsoleDriver::waitUntil([&] { return console.statusTexts().back() == text; }),
            "the status bar does not say \"" + toUtf8(text) + "\"");
    std::printf("    %s\n", toUtf8(text).c_str());
    std::fflush(stdout);
}

void printDetail(ConsoleDriver& console) {
    std::string text = toUtf8(detail(console));
    for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos; at += 5)
        text.replace(at, 2, "\n    ");
    std::printf("    %s\n", text.c_str());
    std::fflush(stdout);
}

}  // namespace

void findByTyping(ConsoleDriver& console, const Narrator& narrator) {
    narrator.step("Find Events by typing \"door front\"");
    const std::size_t all = console.eventCount();
    ConsoleDriver::type(console.mainWindow(), IDC_FILTER, "door front");
    waitForNames(console, {"Front door", "Front door closes"}, "the Events with both words are not shown alone");
    narrator.takePicture(console.mainWindow(), "find");
    console.choose(IDCANCEL);
    require(ConsoleDriver::waitUntil([&] { return console.eventCount() == all; }), "Esc does not show all Events");
}

void sortByColumn(ConsoleDriver& console, const Narrator& narrator) {
    narrator.step("Sort by the response, then by name again");
    const auto names = cells(console, 0);
    console.choose(IDM_SORT_BY + kResponse);
    require(ConsoleDriver::waitUntil([&] { return cells(console, 0) != names; }), "the list is not sorted");
    auto responses = cells(console, kResponse);
    const std::set<std::string> different(responses.begin(), responses.end());
    // Equal ones stand together.
    responses.erase(std::ranges::unique(responses).begin(), responses.end());
    require(responses.size() == different.size(), "the list is sorted by something else");
    narrator.takePicture(console.mainWindow(), "sorted");
    console.choose(IDM_SORT_BY);
    waitForNames(console, names, "the list is not in its order again");
}

void changeSeveral(ConsoleDriver& console, const Narrator& narrator) {
    const std::vector<std::string> names{"Delivery gate", "Front door", "Staff entrance locks"};
    const std::string count = fillIn(consoleText(IDS_COUNT_EVENTS), {"3"});
    const auto change = [&](unsigned command, unsigned done, unsigned status) {
        console.choose(command);
        waitForOutcome(console, fillIn(consoleText(done), {count}));
        for (const std::string& name : names)
            require(statusOf(console, name) == consoleText(status), name + " is not as the status bar says");
    };
    narrator.step("Select three Events and disable them");
    for (const std::string& name : names) {
        const int row = console.rowOf(name);
        require(row >= 0, name + " is not there");
        if (name == names.front())
            console.selectRow(row);
        else
            console.selectAlso(row);
    }
    change(IDM_DISABLE_EVENTS, IDS_DONE_DISABLED, IDS_STATUS_DISABLED);
    printDetail(console);
    narrator.takePicture(console.mainWindow(), "several-disabled");
    narrator.step("Enable them again");
    change(IDM_ENABLE_EVENTS, IDS_DONE_ENABLED, IDS_STATUS_AVAILABLE);
}

void duplicateOne(ConsoleDriver& console, const Narrator& narrator) {
    const std::string original = "Pharmacy after hours";  // an e-mail, which is copied too
    const std::string copy = fillIn(consoleText(IDS_COPY_NAME), {original});
    narrator.step("Duplicate \"" + original + "\", and delete the copy");
    const std::size_t all = console.eventCount();
    console.selectRow(console.rowOf(original));
    console.choose(IDM_DUPLICATE_EVENT);
    waitForOutcome(console, fillIn(consoleText(IDS_DONE_DUPLICATED), {copy}));
    require(console.selectedRow() == console.rowOf(copy), "the copy is not selected");
    require(statusOf(console, copy) == consoleText(IDS_STATUS_DISABLED), "the copy is not disabled");
    narrator.takePicture(console.mainWindow(), "duplicated");
    console.choose(IDM_DELETE_EVENT);
    answerMessage(console, narrator, consoleText(IDS_DELETE_EVENT), IDYES, "delete-copy");
    require(ConsoleDriver::waitUntil([&] { return console.eventCount() == all; }), "the copy is still there");
    require(console.rowOf(copy) == -1, "another Event is gone");
}

void mendProblem(ConsoleDriver& console, const Narrator& narrator, const std::string& source) {
    const std::string name = "Annex door";
    const std::string problem = fillIn(consoleText(IDS_PROBLEM_SOURCE_GROUP), {"Annex"});
    narrator.step("Show Events with problems, go to the first, and read what is wrong");
    const std::size_t all = console.eventCount();
    console.choose(IDM_SHOW_PROBLEMS);
    require(ConsoleDriver::waitUntil([&] { return console.eventCount() < all; }), "all Events have problems");
    console.choose(IDM_NEXT_PROBLEM);
    require(ConsoleDriver::waitUntil([&] { return detail(console).ends_with(problem); }),
            "the problem of \"" + name + "\" is not told");
    require(console.selectedRow() == console.rowOf(name), "another Event is selected");
    printDetail(console);
    narrator.takePicture(console.mainWindow(), "problem");
    console.choose(IDM_SHOW_ALL);
    require(ConsoleDriver::waitUntil([&] { return console.eventCount() == all; }), "not all Events are shown again");

    narrator.step("Mend it: choose another source");
    console.choose(IDM_MODIFY_EVENT);
    answerMessage(console, narrator, consoleText(IDS_NO_SOURCE), IDOK, "no-source");
    const HWND editor = console.waitForWindowWith(IDC_EVENT_TRIGGER);
    require(editor != nullptr, "no Event editor appeared");
    const std::string entry = fillIn(consoleText(IDS_PLACE_GROUP), {source});
    require(ConsoleDriver::waitUntil([&] { return ConsoleDriver::chooseEntry(editor, IDC_EVENT_SOURCE, entry); }),
            "the source could not be chosen");
    saveEvent(console, editor);
    require(ConsoleDriver::waitUntil([&] { return statusOf(console, name) == consoleText(IDS_STATUS_AVAILABLE); }),
            "the Event is not available");
    require(ConsoleDriver::waitUntil([&] { return detail(console).find(problem) == std::string::npos; }),
            "the problem is still told");
    printDetail(console);
}

}  // namespace orvc::driver
