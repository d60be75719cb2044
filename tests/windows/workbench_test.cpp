// Around the Event list: finding, sorting, many at once, and what the window says.
#include <windows.h>

#include <commctrl.h>

#include <algorithm>
#include <regex>

#include "windows/console_fixture.h"
#include "windows/menu_state.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;
using Names = std::vector<std::string>;

class WorkbenchTest : public ConsoleTest {
  protected:
    void logOn(const std::string& options = {}, std::size_t events = kBuildingEvents) {
        startConsole(options);
        ASSERT_TRUE(console_.logOn(events));
        ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return (menuState(console_, IDM_CREATE_EVENT) & MF_GRAYED) == 0; }));
    }
    HWND control(unsigned id) { return GetDlgItem(console_.mainWindow(), static_cast<int>(id)); }
    void filter(const std::string& text) { ConsoleDriver::type(console_.mainWindow(), IDC_FILTER, text); }
    Names names() {
        Names all;
        for (const auto& row : console_.readEvents())
            all.push_back(row[0]);
        return all;
    }
    std::string selectedNames() {
        std::string text;
        for (const std::string& name : names())
            if (isSelected(name)) text += name + ";";
        return text;
    }
    bool isSelected(const std::string& name) {
        return (SendMessageA(control(IDC_EVENT_LIST), LVM_GETITEMSTATE, static_cast<WPARAM>(console_.rowOf(name)),
                             LVIS_SELECTED) &
                LVIS_SELECTED) != 0;
    }
    void choose(unsigned command) { SendMessageA(console_.mainWindow(), WM_COMMAND, command, 0); }
    // The whole status bar, its parts between bars.
    std::string status() {
        std::string all;
        for (const std::string& text : console_.statusTexts())
            all.append(all.empty() ? "" : "|").append(text);
        return all;
    }
    // Waits until the status bar ends so.
    void expectStatus(const std::string& end) {
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return status().ends_with(end); }, 8000)) << status();
    }
    void expectNames(const Names& expected) {
        EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return names() == expected; }, 3000))
            << testing::PrintToString(names());
    }
    void selectAll(const std::string& words) {
        filter(words);
        choose(IDM_SELECT_ALL);
    }
    std::string textOf(unsigned id) { return ConsoleDriver::textOf(control(id)); }
    std::vector<std::string> writtenFrom(const std::string& first) {
        std::vector<std::string> calls = tracedCallsFrom(first);
        for (std::string& call : calls)
            call = std::regex_replace(call, std::regex(R"(\{[0-9A-F-]{36}\})"), "{}");
        return calls;
    }
};

TEST_F(WorkbenchTest, WordsFindEventsInEveryColumnAndAnEmptyListSaysWhy) {
    logOn();
    const Names all = names();
    filter("DOOR front");
    expectNames({"Front door", "Front door closes"});
    expectStatus("|20 Events, 2 shown|1 disabled, 3 with problems|");
    filter("destination:doors");  // a column that is not shown
    expectNames({"Doors unlock"});
    filter("\"no such Event");
    EXPECT_EQ(textOf(IDC_EMPTY_LIST), "No Event matches '\"no such Event'. Esc shows all 20.");
    EXPECT_TRUE(IsWindowVisible(control(IDC_EMPTY_LIST)));
    filter(std::string(10'000, 'x') + "\xff\x01");
    expectNames({});
    choose(IDCANCEL);
    expectNames(all);
    EXPECT_EQ(textOf(IDC_FILTER), "");
    EXPECT_FALSE(IsWindowVisible(control(IDC_EMPTY_LIST)));
    choose(IDM_SHOW_PROBLEMS);
    expectNames({"Annex door", "Doors unlock", "Visiting hours end"});
    choose(IDM_SHOW_DISABLED);
    expectNames({"Fire drill"});
    EXPECT_NE(menuState(console_, IDM_SHOW_DISABLED) & MF_CHECKED, 0u);
    // What the filter hides is no longer selected.
    selectAll("");
    filter("gate");
    choose(IDM_SHOW_ALL);
    expectNames(all);
    EXPECT_EQ(selectedNames(), "");
}

TEST_F(WorkbenchTest, SortAndSelectionStayThroughChangesAndTheNextStart) {
    logOn("fire=150");
    const auto statusColumn = static_cast<unsigned>(IDM_SORT_BY + 1);
    choose(statusColumn);
    choose(statusColumn);                      // descending
    EXPECT_EQ(names().front(), "Annex door");  // "Error - Fix Event"
    EXPECT_EQ(names()[1], "Fire drill");
    choose(IDM_COLUMN + 10);
    console_.selectRow(1);
    // Events fire meanwhile: no row moves.
    const auto before = console_.readEvents();
    const Names order = names();
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.readEvents() != before; }));
    EXPECT_EQ(names(), order);
    EXPECT_EQ(selectedNames(), "Fire drill;");
    choose(IDM_SORT_BY);
    EXPECT_EQ(selectedNames(), "Fire drill;");
    EXPECT_TRUE(std::ranges::is_sorted(names(), [](const std::string& a, const std::string& b) {
        return CompareStringA(LOCALE_USER_DEFAULT, NORM_IGNORECASE, a.c_str(), -1, b.c_str(), -1) == CSTR_LESS_THAN;
    }));
    choose(statusColumn);
    exitConsole();
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    EXPECT_EQ(names().back(), "Annex door");
    EXPECT_NE(menuState(console_, IDM_COLUMN + 10) & MF_CHECKED, 0u);
    exitConsole();
    // Settings that make no sense count as not chosen.
    setText("ListColumns", "name:-5,bogus,status:99999999,,:;name");
    setText("ListSort", "nonsense");
    startConsole();
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    EXPECT_EQ(console_.columnTitles(), (driver::EventRow{"Event Name", "Status", "Last Event", "Resp"}));
    EXPECT_EQ(names().front(), "Annex door");
}

TEST_F(WorkbenchTest, ManyAreDisabledAndEnabledWithTheirOwnValueAlone) {
    logOn();
    selectAll("door");
    tracedCalls();
    choose(IDM_DISABLE_EVENTS);
    expectStatus("4 Events disabled.");
    std::vector<std::string> calls = writtenFrom("KSSysVarSetValue");
    ASSERT_EQ(calls.size(), 8u);
    for (std::size_t i = 0; i < calls.size(); i += 2) {
        EXPECT_EQ(calls[i], "KSSysVarSetValue \\ORVS\\Events\\{}\\Disabled 0xC0000004 1 4");
        EXPECT_EQ(calls[i + 1], "KSSysVarSetValue \\ORVS\\Events\\{}\\completeBits 0xC0000004 1 4");
    }
    EXPECT_TRUE(textOf(IDC_DETAIL).starts_with("4 Events selected: 4 disabled")) << textOf(IDC_DETAIL);
    choose(IDM_DISABLE_EVENTS);
    expectStatus("Nothing to change.");
    choose(IDM_ENABLE_EVENTS);
    expectStatus("4 Events enabled.");
    // A Schedule for all of them.
    PostMessageA(console_.mainWindow(), WM_COMMAND, IDM_ASSIGN_SCHEDULE, 0);
    const HWND dialog = console_.waitForWindowWith(IDC_ASSIGN_SCHEDULE);
    ASSERT_NE(dialog, nullptr);
    EXPECT_FALSE(ConsoleDriver::isEnabled(dialog, IDOK));
    ASSERT_TRUE(ConsoleDriver::chooseEntry(dialog, IDC_ASSIGN_SCHEDULE, "Nights"));
    ConsoleDriver::click(dialog, IDOK);
    expectStatus("Events given another Schedule.");
    filter("schedule:nights door");
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.eventCount() == 4; }));
}

TEST_F(WorkbenchTest, ACopyHasItsOwnFileAndManyAreDeletedOnYesOnly) {
    logOn();
    console_.selectRow(console_.rowOf("Pharmacy after hours"));  // an e-mail
    tracedCalls();
    choose(IDM_DUPLICATE_EVENT);
    expectStatus("'Copy of Pharmacy after hours' was created, disabled.");
    EXPECT_EQ(selectedNames(), "Copy of Pharmacy after hours;");
    std::vector<std::string> calls = writtenFrom("KSFileRead");
    ASSERT_GT(calls.size(), 4u);
    EXPECT_EQ(calls[1], "KSFileCreate {}");
    EXPECT_TRUE(calls[2].starts_with("KSFileWrite {}")) << calls[2];
    choose(IDM_DUPLICATE_EVENT);
    expectStatus("'Copy of Copy of Pharmacy after hours' was created, disabled.");
    selectAll("copy");
    PostMessageA(console_.mainWindow(), WM_COMMAND, IDM_DELETE_EVENT, 0);
    HWND box = console_.waitForMessageBox();
    EXPECT_EQ(ConsoleDriver::messageText(box),
              "Delete 2 Events?\n\nCopy of Copy of Pharmacy after hours\nCopy of Pharmacy after hours");
    ConsoleDriver::click(box, IDNO);
    ASSERT_TRUE(console_.waitUntilGone(box));
    EXPECT_EQ(console_.eventCount(), 2u);
    PostMessageA(console_.mainWindow(), WM_COMMAND, IDM_DELETE_EVENT, 0);
    box = console_.waitForMessageBox();
    ConsoleDriver::click(box, IDYES);
    expectStatus("2 Events deleted.");
    EXPECT_EQ(console_.eventCount(), 0u);
}

TEST_F(WorkbenchTest, TheDetailTellsTheEventAndItsProblemAndTheCauseGone) {
    logOn();
    choose(IDM_NEXT_PROBLEM);
    EXPECT_EQ(selectedNames(), "Annex door;");
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] {
        return textOf(IDC_DETAIL).find("\r\nThe source group") != std::string::npos;
    })) << textOf(IDC_DETAIL);
    EXPECT_TRUE(textOf(IDC_DETAIL).starts_with("When ")) << textOf(IDC_DETAIL);
    const HWND editor = console_.open(IDM_MODIFY_EVENT, IDC_EVENT_TRIGGER);
    const HWND told = console_.findMessageBox();
    if (told != nullptr) ConsoleDriver::click(told, IDOK);
    const HWND form = editor != nullptr && editor != told ? editor : console_.waitForWindowWith(IDC_EVENT_TRIGGER);
    ASSERT_NE(form, nullptr);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowEnabled(form) != 0; }));
    ASSERT_TRUE(ConsoleDriver::chooseEntry(form, IDC_EVENT_SOURCE, "group: Nurses"));
    ConsoleDriver::click(form, IDOK);
    ASSERT_TRUE(console_.waitUntilGone(form));
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return status().find("2 with problems") != std::string::npos; }))
        << status();
    EXPECT_EQ(textOf(IDC_DETAIL).find("\r\n"), std::string::npos) << textOf(IDC_DETAIL);
}

TEST_F(WorkbenchTest, ALostLinkIsToldWithoutTakingTheFilterAway) {
    for (const char* name : {"UserName", "UserPassword"})
        setText(name, "admin");
    setText("IPAddress", "127.0.0.1");
    startConsole("stop-once=3");
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.eventCount() == kBuildingEvents; }));
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] {
        return status().starts_with("Connected to 127.0.0.1:3010 as admin|20 Events");
    })) << status();
    setText("UserName", "");
    filter("gate");
    EXPECT_FALSE(IsWindowVisible(control(IDC_LINK_BANNER)));
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(control(IDC_LINK_BANNER)) != 0; }));
    EXPECT_TRUE(
        std::regex_match(textOf(IDC_LINK_BANNER),
                         std::regex("Not connected to 127\\.0\\.0\\.1:3010 since \\d\\d:\\d\\d\\. Nothing that you "
                                    "change now reaches the server\\.")))
        << textOf(IDC_LINK_BANNER);
    EXPECT_EQ(textOf(IDC_FILTER), "gate");
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return names() == Names{"Delivery gate"}; })) << "after the next logon";
    EXPECT_FALSE(IsWindowVisible(control(IDC_LINK_BANNER)));
}

TEST_F(WorkbenchTest, ThousandsAreChangedInSlicesAndCancelledBetweenTwo) {
    logOn("events=5000", 5000);
    selectAll("");
    PostMessageA(console_.mainWindow(), WM_COMMAND, IDM_DISABLE_EVENTS, 0);
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return IsWindowVisible(control(IDC_CANCEL_CHANGES)) != 0; }));
    ConsoleDriver::click(console_.mainWindow(), IDC_CANCEL_CHANGES);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return status().find("Cancelled. Not begun: ") != std::string::npos; }))
        << status();
    EXPECT_FALSE(IsWindowVisible(control(IDC_CANCEL_CHANGES)));
}

}  // namespace
}  // namespace orvc::test
