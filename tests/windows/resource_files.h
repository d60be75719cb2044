// The resources of the program and of its language libraries, for tests that compare and measure them.
#pragma once

#include <windows.h>

#include <string>
#include <vector>

namespace orvc::test {

// Files beside the tests: the program, which speaks English, and every language library.
inline constexpr const char* kResourceFiles[] = {"ORVSConfig.exe", "ORVSConfig0007.dll", "ORVSConfig000c.dll"};

// One of these files, opened as resources only. `isOpen()` is false when it cannot be.
class ResourceFile {
  public:
    explicit ResourceFile(const std::string& name);
    ~ResourceFile();
    ResourceFile(const ResourceFile&) = delete;
    ResourceFile& operator=(const ResourceFile&) = delete;

    bool isOpen() const { return module_ != nullptr; }
    HMODULE module() const { return module_; }
    // The text of an id; empty when there is none.
    std::wstring text(unsigned id) const;
    std::vector<unsigned> dialogs() const;
    // Opens a dialog that does nothing and is not shown; null when there is none of that id. The caller destroys it.
    HWND openDialog(unsigned id) const;

  private:
    HMODULE module_;
};

// A dialog's controls in the order of its template.
std::vector<HWND> controlsOf(HWND dialog);
std::wstring windowText(HWND window);
// "Button", "Edit" and the like.
std::string classOf(HWND window);

}  // namespace orvc::test
