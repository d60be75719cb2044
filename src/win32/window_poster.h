// The event queue's way to the main window.
#pragma once

#include <windows.h>

#include "link/event_queue.h"

namespace orvc::win32 {

// Used on the library's thread. The window is set before the link opens; null = nothing reaches it.
class MainWindowPoster final : public WindowPoster {
  public:
    // `timer` is what requestTimer() starts.
    explicit MainWindowPoster(UINT_PTR timer, UINT milliseconds) : timer_(timer), milliseconds_(milliseconds) {}
    void setWindow(HWND window) { window_ = window; }

    bool post(std::uint32_t message, std::uintptr_t wParam, std::intptr_t lParam) override {
        return PostMessageA(window_, message, wParam, lParam) != 0;
    }
    bool send(std::uint32_t message, std::uintptr_t wParam, std::intptr_t lParam) override {
        constexpr UINT kPatience = 100;  // milliseconds
        DWORD_PTR result = 0;
        return SendMessageTimeoutA(window_, message, wParam, lParam, SMTO_NORMAL, kPatience, &result) != 0;
    }
    // Should Windows refuse this too, the logon timer finds what is undelivered.
    void requestTimer() override { SetTimer(window_, timer_, milliseconds_, nullptr); }

  private:
    HWND window_ = nullptr;
    UINT_PTR timer_;
    UINT milliseconds_;
};

}  // namespace orvc::win32
