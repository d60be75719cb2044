// What the tests that drive the real console share: a clean start, the demo server's options, files and the registry.
#pragma once

#include <gtest/gtest.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "resources/resource.h"
#include "tour/console_driver.h"

namespace orvc::test {

inline constexpr std::size_t kBuildingEvents = 20;  // Events of the demo server's own building

// Starts each test without settings, tracking file or installation of an earlier one. Tests of this kind share the
// user's registry and folders: they never run at the same time.
class ConsoleTest : public testing::Test {
  public:
    // Where the tests lie, and the console beside them.
    static std::string binFolder();

  protected:
    void SetUp() override;
    void TearDown() override;

    // Starts the console of a folder, that of this test unless told otherwise, against the demo server with these
    // options ("name=value;…"); firing is off and the installation is the test's own.
    void startConsole(const std::string& options = {}, const std::string& folder = binFolder());
    void exitConsole();

    // A window becomes active before one of its controls gets the focus; a key that comes between is lost.
    static bool hasKeyboard(HWND window);
    // Presses a key when this window of the console has the keyboard, with others held down.
    static void press(HWND window, BYTE key, std::initializer_list<BYTE> held = {});
    // Presses it now, whoever gets it.
    static void pressNow(BYTE key, std::initializer_list<BYTE> held = {});

    // Waits for a message box with exactly this text and caption, and closes it with OK.
    void expectMessage(const std::string& text, const std::string& caption = "Error");

    // Lines of the tracking file, times and counters taken off.
    std::vector<std::string> logLines() const;
    bool logHas(const std::string& line) const;
    // The calls that the console made into the library, as the demo server traced them.
    std::vector<std::string> tracedCalls() const;
    std::string traceFile() const { return workFolder_ + "\\trace.txt"; }
    std::vector<std::string> tracedCallsFrom(const std::string& first) const;

    static void setInteger(const char* name, unsigned value);
    static void setText(const char* name, const std::string& value);
    static std::optional<unsigned> integer(const char* name);
    static std::optional<std::string> text(const char* name);

    static std::string supportFolder();
    static std::string trackingFile() { return supportFolder() + "\\ORVCTracking.txt"; }
    // A folder of this test's own, made anew, with a copy of the console in it.
    std::string makeFolderWithConsole() const;

    driver::ConsoleDriver console_;
    driver::Environment environment_;  // what the console has beside the variables of this process
    std::string workingFolder_;        // where the console is started; its own folder when empty

  private:
    std::string workFolder_;
};

// The lines of a text file; none when it cannot be read.
std::vector<std::string> readLines(const std::string& path);

}  // namespace orvc::test
