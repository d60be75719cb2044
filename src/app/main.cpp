#include <windows.h>

#include "app/application.h"

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    return orvc::runConsole();
}
