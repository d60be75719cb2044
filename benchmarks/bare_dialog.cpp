// bare_dialog [LIBRARY...]: a dialog with a list, and nothing else: what the start of the console is compared with. Loads
// the named libraries first, to show what those of the console cost.
#include "resources/resource.h"
#include "windows_bench.h"

namespace {

INT_PTR CALLBACK dialogProcedure(HWND dialog, UINT message, WPARAM, LPARAM) {
    if (message == WM_INITDIALOG) {
        SetWindowPos(dialog, nullptr, 0, 0, 640, 420, SWP_NOMOVE | SWP_NOZORDER);
        orvc::bench::makeEventList(dialog, IDC_EVENT_LIST);
        return TRUE;
    }
    if (message == WM_CLOSE) EndDialog(dialog, 0);
    return FALSE;
}

}  // namespace

int main(int argc, char** argv) {
    for (int i = 1; i < argc; ++i)
        LoadLibraryA(argv[i]);
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    struct {
        DLGTEMPLATE dialog{WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 0, 0, 400, 250};
        WORD menuClassAndTitle[3]{};
    } dialog;
    DialogBoxIndirectParamA(GetModuleHandleA(nullptr), &dialog.dialog, nullptr, dialogProcedure, 0);
}
