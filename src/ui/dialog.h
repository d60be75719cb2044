// The base of every dialog and of the main window.
#pragma once

#include <windows.h>

#include <exception>
#include <functional>
#include <optional>
#include <string>

#include "ui/resources.h"

namespace orvc::ui {

// Purpose: keeps the object with its window and turns messages into calls of named handlers.
// Thread: user-interface thread. Lifetime: the object lives on its caller's stack (or in its owner) longer than its
// window; the destructor destroys a window that is still there.
// Guarantees: no exception leaves the window procedure; one that a handler throws is logged, and the operator is told
// when it was a command that failed. A dialog whose onInit() throws does not come up.
class Dialog {
  public:
    virtual ~Dialog();
    Dialog(const Dialog&) = delete;
    Dialog& operator=(const Dialog&) = delete;

    // Shows the dialog, disables `owner` and handles messages until endDialog(). Returns its result. An owner that was
    // disabled before stays so. Throws std::bad_alloc when the window cannot be made.
    int runModal(HWND owner);
    // Makes and shows the window and returns; false when it could not be made.
    bool createModeless(HWND owner);
    void destroy();

    HWND window() const { return window_; }

    // The window of the dialog whose runModal() started last; null when none runs.
    static HWND topmostModal();
    // The message box or other dialog of Windows' own above it, else topmostModal(). Windows that may go at any time,
    // such as one that says "Please Wait", are passed over: what they own would go with them.
    static HWND topmostWaiting();
    // A dialog of runModal() is open that holds what the operator entered.
    static bool holdsEntriesAnywhere();
    // Closes a menu or a dropped-down list that is open, so that it does not stay in front of a dialog. True for a
    // menu: it goes when its message loop has returned, so the dialog must come a moment later.
    static bool closeMenuAndDropDown();

  protected:
    // `resources` outlives the dialog.
    Dialog(const Resources& resources, unsigned templateId) : resources_(resources), templateId_(templateId) {}

    // Every control is there. Returns true to let Windows focus the first one.
    virtual bool onInit() { return true; }
    // A menu item, an accelerator or a control's notification. Returns true when handled.
    virtual bool onCommand(unsigned id, unsigned notification);
    // A common control's notification; the value is its result.
    virtual std::optional<LRESULT> onNotify(NMHDR& header);
    virtual bool onTimer(std::uintptr_t timer);
    // The title bar's close box or Alt+F4.
    virtual void onClose();
    // Everything else, and what the others did not handle.
    virtual std::optional<LRESULT> onMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // What F1 asks about while this dialog has the keyboard.
    virtual unsigned helpTopic() const { return templateId_; }
    // Closing it loses what the operator entered.
    virtual bool holdsEntries() const { return false; }
    // The window is going.
    virtual void onDestroy() {}
    // Sees a message of this dialog's loop before the dialog keys do.
    virtual bool onPreview(MSG&) { return false; }

    // The modal run is about to end.
    bool isEnding() const { return result_.has_value(); }
    // Ends the modal run with this result, and those of the dialogs and message boxes above it as cancelled.
    void endDialog(int result);

    const Resources& resources() const { return resources_; }
    HWND control(unsigned id) const { return GetDlgItem(window_, static_cast<int>(id)); }
    std::string readText(unsigned id) const;
    void showText(unsigned id, const std::string& text);
    // A control that has the keyboard gives it to the next one before it is disabled or hidden.
    void enable(unsigned id, bool enabled);
    void show(unsigned id, bool shown);
    void centerOn(HWND owner);

    // Dots per inch of the display that the window is on, and a length at 96 DPI in that display's pixels.
    int dpi() const;
    int scale(int pixels) const { return MulDiv(pixels, dpi(), USER_DEFAULT_SCREEN_DPI); }

  private:
    bool create(HWND owner);
    void moveFocusFrom(HWND target);
    void cancelDialogsAbove();
    void askForHelp() const;
    unsigned topicOfActiveWindow() const;
    INT_PTR handle(UINT message, WPARAM wParam, LPARAM lParam);
    static BOOL CALLBACK findForeignDialog(HWND window, LPARAM found);
    static BOOL CALLBACK cancelForeignDialog(HWND window, LPARAM dialogWindow);
    static bool isForeignDialogAbove(HWND window, HWND dialogWindow);
    static INT_PTR CALLBACK dialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    const Resources& resources_;
    unsigned templateId_;
    HWND window_ = nullptr;
    bool initFailed_ = false;
    std::optional<int> result_;
};

// Opens help on a topic: what Dialog::helpTopic() said where F1 was pressed, kMessageBoxTopic in a box of showMessage()
// or askYesNo(). Called from the message loop, never while a menu is open.
using HelpHandler = std::function<void(unsigned topic)>;
inline constexpr unsigned kMessageBoxTopic = 0;
void setHelpHandler(HelpHandler handler);

// Logs the text of an exception that reached a window procedure or the message loop. Any failure goes to the debugger
// too.
using FailureHandler = std::function<void(const char* what)>;
void setFailureHandler(FailureHandler handler);
void reportFailure(const char* what);

// A modal box with an OK button.
void showMessage(HWND owner, const std::string& text, const std::string& caption);
// A modal box that says, in Windows' own words, that memory has run out, or for another exception that something
// unexpected went wrong. Needs no memory itself.
void tellFailure(HWND owner, const std::exception& error);
// A modal Yes/No box, No by default; true for Yes.
bool askYesNo(HWND owner, const std::string& text, const std::string& caption);

}  // namespace orvc::ui
