#include <windows.h>

#include "console/application.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    return orvc::runConsole();
}
