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
    const std::vector<std::string> lines = logLines();
    std::vector<std::string> told;
    for (const std::string& line : lines)
        if (!line.starts_with("Received subscription")) told.push_back(line);
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
    EXPECT_TRUE(logHas("Received subscription variable information for \\ORVS\\ (key 0x80000000)"));
    EXPECT_TRUE(
        logHas("Received subscription variable information for \\ORVS\\password (string variable '***' 0xc0000001)"));
}

TEST_F(StartUpTest, OpensWithoutALinkWhenTheLibraryIsMissing) {
    startConsole({}, makeFolderWithConsole());
    expectNoLogonDialog();
    EXPECT_TRUE(logHas("Failed to open KSPassThru.dll"));
    EXPECT_EQ(ConsoleDriver::textOf(console_.mainWindow()), "Orvane VANTE Event Configuration Console");
    exitConsole();
}

TEST_F(StartUpTest, TakesNoLibraryFromTheCurrentFolderOrThePath) {
    const std::string folder = makeFolderWithConsole();
    workingFolder_ = binFolder();
    environment_ = {{"PATH", "c:\\windows\\system32;" + binFolder()}};
    startConsole({}, folder);
    expectNoLogonDialog();
    EXPECT_TRUE(logHas("Failed to open KSPassThru.dll"));
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
    exitConsole();
    EXPECT_TRUE(text("pathStandaloneInstall").has_value());
    EXPECT_FALSE(text("pathConsoleInstall").has_value());
}

TEST_F(StartUpTest, ValuesOfTheWrongTypeCountAsAbsent) {
    setText("IPPort", "text");
    setText("recordEvents", "text");
    setInteger("IPAddress", 7);
    setInteger("UserName", 7);
    startConsole();
    const HWND dialog = console_.logonDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(ConsoleDriver::textOf(dialog, IDC_LOGON_ADDRESS), "0.0.0.0");
    EXPECT_EQ(ConsoleDriver::textOf(dialog, IDC_LOGON_PORT), "3010");
    EXPECT_EQ(ConsoleDriver::textOf(dialog, IDC_LOGON_ID), "");
}

TEST_F(StartUpTest, TellsOnceWhenThereCanBeNoScratchFolder) {
    environment_ = {{"temp", "c:\\no\\such\\folder"}};
    startConsole();
    const HWND box = console_.waitForMessageBox();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(ConsoleDriver::messageText(box), "Unable to write to temporary directory");
    EXPECT_EQ(ConsoleDriver::textOf(box), "Call Queue Error");
    ConsoleDriver::click(box, IDOK);
    ASSERT_NE(console_.logonDialog(), nullptr);
    EXPECT_EQ(console_.findMessageBox(), nullptr);
}

}  // namespace
}  // namespace orvc::test
