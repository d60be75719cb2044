#include <algorithm>

#include "tour/event_entry.h"
#include "windows/console_fixture.h"

namespace orvc::test {
namespace {

using driver::ConsoleDriver;

class StartUpTest : public ConsoleTest {
  protected:
    // The console was started without a link: it opens its window and never asks for a logon.
    void expectNoLogonDialog() {
        ASSERT_NE(console_.mainWindow(), nullptr);
        Sleep(800);  // three ticks of the logon timer
        EXPECT_EQ(console_.findWindowWith(IDC_LOGON_ID), nullptr);
    }
};

TEST_F(StartUpTest, RecordsAWholeRunInOrder) {
    setInteger("recordEvents", 1);
    startConsole("events=1;devices=2;groups=1");
    ASSERT_TRUE(console_.logOn(1));
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] {
        return logHas(
            "Received subscription variable information for \\ORVS\\completeBits (dword variable 1 0xc0000004)");
    }));
    exitConsole();
    std::vector<std::string> told = logLines();
    std::erase_if(told, [](const std::string& line) { return line.starts_with("Received subscription"); });
    const std::vector<std::string> start{
        "** Starting write before console logon **",
        "Orvane Events Console Version 1.0.0.0 started",
        "Loaded KSPassThruDll Version 1.0.1",
        "Opened KSPassThruDll with 17 flags",
        "Loaded Help from '" + binFolder() + "\\HelpFile.chm'",
        "** Starting write before console logon **",
        "** Starting write before console logon **",
    };
    EXPECT_TRUE(told.size() > 7 && std::equal(start.begin(), start.end(), told.begin()));
    const auto login = std::find(told.begin(), told.end(), "** Starting write for console user 'admin' **");
    ASSERT_NE(login, told.end());
    EXPECT_EQ(*(login + 1), "*** ORVE Events Configuration Console Login ***");
    const std::vector<std::string> end{"ORVC Version 1.0.0.0 Stopped", "doShutdown: KSStop()", "doShutdown: KSClose()",
                                       "doShutdown: FreeLibrary()", "doShutdown: Done"};
    EXPECT_TRUE(told.size() > 5 && std::equal(end.begin(), end.end(), told.end() - 5));
    // Between them, in whatever order the server's thread and the window meet.
    for (const char* line : {"Console user admin connected", "Console initialization is complete",
                             "doNewGroupMessageInfo: End of messages received", "getListIcoms: Done with group"})
        EXPECT_NE(std::find(told.begin(), told.end(), line), told.end()) << line;
    EXPECT_EQ(tracedCalls(),
              (std::vector<std::string>{
                  "KSDllVersion", "KSOpen 16", "KSSetDebug 1", R"(KSStart 127.0.0.1:3010 0 "admin" "admin")",
                  R"(KSCreateGroup 1 "Zone 1" 0 0 1)", "KSGetGroupMembers 1", "KSDeleteGroup 1", "KSGetMessages",
                  R"(KSSysVarCreateKey \ORVS\ 0x80000000 1)", R"(KSSysVarSubscribe \ORVS\ 0 1)", "KSStop", "KSClose"}));
}

TEST_F(StartUpTest, OpensWithoutALinkWhenTheLibraryIsOnlyInTheCurrentFolderAndThePath) {
    const std::string folder = makeFolderWithConsole();
    workingFolder_ = binFolder();
    environment_ = {{"PATH", "c:\\windows\\system32;" + binFolder()}};
    startConsole({}, folder);
    expectNoLogonDialog();
    const auto namesTheFolders = [](const std::string& line) {
        return line.find("Failed to open KSPassThru.dll (looked in '") != std::string::npos &&
               line.find("\\system32')") != std::string::npos;
    };
    EXPECT_TRUE(std::ranges::any_of(logLines(), namesTheFolders));
    EXPECT_EQ(ConsoleDriver::textOf(console_.mainWindow()), "Orvane VANTE Event Configuration Console");
    exitConsole();
}

TEST_F(StartUpTest, GoesOnWithALibraryThatLacksAName) {
    const std::string folder = makeFolderWithConsole();
    ASSERT_TRUE(CopyFileA((binFolder() + "\\incomplete\\KSPassThru.dll").c_str(), (folder + "\\KSPassThru.dll").c_str(),
                          FALSE));
    startConsole({}, folder);
    ASSERT_TRUE(console_.logOn(kBuildingEvents));
    EXPECT_TRUE(logHas("Could NOT get all proc addresses"));
    EXPECT_TRUE(logHas("Loaded KSPassThruDll Version 1.0.1"));
    exitConsole();
}

TEST_F(StartUpTest, RunsStandAloneWhenTheLibrarySaysSo) {
    setInteger("recordEvents", 1);
    startConsole("standalone=1");
    expectNoLogonDialog();
    EXPECT_EQ(ConsoleDriver::textOf(console_.mainWindow()),
              "Orvane VANTE - Automation - Events Configuration Application");
    EXPECT_TRUE(logHas("*** Orvane Enterprise Events Application Stand-alone Startup ***"));
    ASSERT_TRUE(ConsoleDriver::waitUntil([&] { return console_.eventCount() == kBuildingEvents; }));
    console_.selectRow(console_.rowOf("Front door"));
    const HWND editor = console_.open(IDM_MODIFY_EVENT, IDC_EVENT_NAME);
    ASSERT_NE(editor, nullptr);
    ConsoleDriver::type(editor, IDC_EVENT_NAME, "Main door");
    driver::saveEvent(console_, editor);
    EXPECT_TRUE(ConsoleDriver::waitUntil([&] { return console_.rowOf("Main door") >= 0; }));
    exitConsole();
    EXPECT_TRUE(tracedCallsFrom("KSStart").empty());
    EXPECT_TRUE(std::ranges::any_of(
        tracedCalls(), [](const std::string& call) { return call.ends_with("EventName 0xC0000001 \"Main door\" 9"); }));
    EXPECT_TRUE(text("pathStandaloneInstall").has_value());
    EXPECT_FALSE(text("pathConsoleInstall").has_value());
}

TEST_F(StartUpTest, ALibraryThatGivesNoHandleIsLeftAlone) {
    setInteger("recordEvents", 1);
    startConsole("no-handle=1");
    expectNoLogonDialog();
    exitConsole();
    EXPECT_TRUE(logHas("openLink: The library gave no handle, no logon is attempted"));
    EXPECT_FALSE(logHas("doShutdown: FreeLibrary()"));
    EXPECT_EQ(tracedCalls(), (std::vector<std::string>{"KSDllVersion", "KSOpen 16", "KSSetDebug 1"}));
}

TEST_F(StartUpTest, TellsOnceWhenThereCanBeNoScratchFolder) {
    environment_ = {{"temp", "c:\\no\\such\\folder"}};
    startConsole();
    expectMessage("Unable to write to temporary directory", "Call Queue Error");
    ASSERT_NE(console_.logonDialog(), nullptr);
    EXPECT_EQ(console_.findMessageBox(), nullptr);
}

}  // namespace
}  // namespace orvc::test
