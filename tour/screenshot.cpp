// Pictures of windows.
#include <cstdio>

#include "tour/console_driver.h"

namespace orvc::driver {

bool ConsoleDriver::saveScreenshot(HWND window, const std::string& path) {
    RECT area{};
    if (!GetWindowRect(window, &area)) return false;
    const int width = area.right - area.left;
    const int height = area.bottom - area.top;
    const HDC screen = GetDC(nullptr);
    const HDC copy = CreateCompatibleDC(screen);
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;
    header.biPlanes = 1;
    header.biBitCount = 32;
    void* pixels = nullptr;
    const HBITMAP bitmap =
        CreateDIBSection(screen, reinterpret_cast<const BITMAPINFO*>(&header), DIB_RGB_COLORS, &pixels, nullptr, 0);
    bool saved = false;
    if (bitmap != nullptr) {
        const HGDIOBJ before = SelectObject(copy, bitmap);
        BitBlt(copy, 0, 0, width, height, screen, area.left, area.top, SRCCOPY);
        GdiFlush();
        BITMAPFILEHEADER file{};
        const auto size = static_cast<DWORD>(width * height * 4);
        file.bfType = 0x4D42;  // "BM"
        file.bfOffBits = sizeof file + sizeof header;
        file.bfSize = file.bfOffBits + size;
        if (std::FILE* out = std::fopen(path.c_str(), "wb")) {
            saved = std::fwrite(&file, sizeof file, 1, out) == 1 && std::fwrite(&header, sizeof header, 1, out) == 1 &&
                    std::fwrite(pixels, size, 1, out) == 1;
            saved = std::fclose(out) == 0 && saved;
        }
        SelectObject(copy, before);
        DeleteObject(bitmap);
    }
    DeleteDC(copy);
    ReleaseDC(nullptr, screen);
    return saved;
}

}  // namespace orvc::driver
