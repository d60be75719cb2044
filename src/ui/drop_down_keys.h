// What keys do in a drop-down list, beyond what Windows does.
#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <optional>

namespace orvc::ui {

// Purpose: Esc in an open list chooses again what was chosen when it opened; typed letters choose what a search finds.
// Either tells the dialog, as Windows does of a choice. Thread: user-interface thread. Lifetime: longer than the
// drop-down list's window.
class DropDownKeys {
  public:
    // The entry to choose for a typed character. Nothing found = the choice stays.
    struct Search {
        std::function<std::optional<std::size_t>(char c, int current)> find;
        // A blank belongs to what is being typed. Otherwise Windows handles it.
        std::function<bool()> isTyping;
    };

    DropDownKeys() = default;
    DropDownKeys(const DropDownKeys&) = delete;
    DropDownKeys& operator=(const DropDownKeys&) = delete;

    // Without a search, typed letters are Windows' own.
    void attach(HWND dropDown, Search search = {});

  private:
    static LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                      DWORD_PTR keys);
    bool takesCharacter(WPARAM character) const;
    void choose(int entry) const;

    HWND dropDown_ = nullptr;
    Search search_;
    int chosenBefore_ = -1;  // when the list opened
};

}  // namespace orvc::ui
