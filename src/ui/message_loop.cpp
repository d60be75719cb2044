#include "ui/message_loop.h"

#include <exception>
#include <utility>

#include "ui/dialog.h"

namespace orvc::ui {
namespace {

IdleWork& idleWork() {
    static IdleWork work;
    return work;
}

// If this fails, a timer continues the work.
bool doIdleWork() {
    try {
        return idleWork() && idleWork()();
    } catch (const std::exception& error) {
        reportFailure(error.what());
        return false;
    }
}

void dispatch(MSG& message) {
    TranslateMessage(&message);
    DispatchMessageA(&message);
}

}  // namespace

void setIdleWork(IdleWork work) {
    idleWork() = std::move(work);
}

void runMessageLoop(const std::function<bool()>& isDone, const MessageFilter& filter) {
    while (!isDone()) {
        MSG message;
        if (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) {
                PostQuitMessage(static_cast<int>(message.wParam));
                return;
            }
            if (!filter(message)) dispatch(message);
        } else if (!doIdleWork()) {
            WaitMessage();
        }
    }
}

void handleWaitingMessages() {
    MSG message;
    while (PeekMessageA(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        const HWND root = message.hwnd != nullptr ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
        if (root == nullptr || !IsDialogMessageA(root, &message)) dispatch(message);
    }
}

}  // namespace orvc::ui
