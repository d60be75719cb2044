#include "support/settings.h"

#include <gtest/gtest.h>

#include "fake_settings_store.h"

namespace orvc {
namespace {

TEST(SettingsTable, AbsentValuesAndThoseOfAnotherTypeTakeTheirDefaults) {
    FakeSettingsStore empty, mistyped;
    mistyped.values = {{"settings/IPPort", "4711"}, {"settings/IPAddress", "#5"}, {"options/threadPriority", "high"},
                       {"settings/UserName", "#1"}, {"other/IPPort", "#99"},      {"settings/recordEvents", "-1"}};
    for (const FakeSettingsStore* store : {&empty, &mistyped}) {
        const Settings settings = loadSettings(*store, StartMode::kConsole);
        EXPECT_EQ(settings.ipAddress + settings.userName, "0.0.0.0");
        EXPECT_EQ(settings.ipPort, 3010);
        EXPECT_EQ(settings.threadPriority, 2);
        EXPECT_EQ(settings.recordEvents, 0);
        EXPECT_EQ(settings.onlineWebMenu, "Kestrel Sonics Web Site");
    }
}

TEST(SettingsTable, WhatTheConsoleMayChangeIsWrittenInOrderAfterItWasRead) {
    for (const auto& [mode, path] :
         {std::pair{StartMode::kConsole, "pathConsoleInstall"}, {StartMode::kStandalone, "pathStandaloneInstall"}}) {
        FakeSettingsStore store;
        store.values = {{"settings/startWidth", "#1"},    {"settings/startHeight", "#2"},
                        {"settings/hideMinimized", "#3"}, {"settings/pathConsoleInstall", "pathConsoleInstall"},
                        {"settings/IPAddress", "a"},      {"settings/pathStandaloneInstall", "pathStandaloneInstall"},
                        {"settings/IPPort", "#4"},        {"settings/recordEvents", "#4294967294"},
                        {"settings/UserName", "u"},       {"settings/UserPassword", "p"},
                        {"settings/AdapterName", "n"},    {"settings/startTop", "#4294967291"},
                        {"options/threadPriority", "#7"}, {"program/onlineDocsURL", "docs"},
                        {"settings/installPath", "i"}};
        Settings settings = loadSettings(store, mode);
        EXPECT_EQ(settings.startTop, -5);
        EXPECT_EQ(settings.threadPriority, 7);
        EXPECT_EQ(settings.onlineDocsUrl + settings.sharedFilesPath, "docsi");
        EXPECT_EQ(settings.recordEvents, -2);
        store.unwritable = "IPPort";
        EXPECT_FALSE(saveSettings(store, settings, mode));
        const std::string written = store.written.take();
        EXPECT_EQ(written,
                  std::string("settings/startWidth=#1; settings/startHeight=#2; settings/hideMinimized=#3; settings/")
                      .append(path)
                      .append("=")
                      .append(path)
                      .append("; settings/IPAddress=a; settings/IPPort=#4; settings/recordEvents=#4294967294; "
                              "settings/UserName=u; settings/UserPassword=p; settings/AdapterName=n"));
        store.unwritable.clear();
        EXPECT_TRUE(saveSettings(store, settings, mode));
    }
}

}  // namespace
}  // namespace orvc
