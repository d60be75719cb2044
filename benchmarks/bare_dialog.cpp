// bare_dialog: a dialog with a list, and nothing else: what the start of the console is compared with. First it loads
// the libraries that the environment names in BENCH_LIBRARIES, to show what those of the console cost.
#include <cstdlib>
#include <sstream>
#include <string>

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

int main() {
    const char* const named = std::getenv("BENCH_LIBRARIES");
    std::istringstream libraries(named != nullptr ? named : "");
    for (std::string library; libraries >> library;)
        LoadLibraryA(library.c_str());
    INITCOMMONCONTROLSEX classes{sizeof classes, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    struct {
        DLGTEMPLATE dialog{WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 0, 0, 400, 250};
        WORD menuClassAndTitle[3]{};
    } dialog;
    DialogBoxIndirectParamA(GetModuleHandleA(nullptr), &dialog.dialog, nullptr, dialogProcedure, 0);
}
