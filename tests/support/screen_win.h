// What a user sees of the program: pixels of the screen, labels that are lit, dialogs that are up.
#pragma once
#include "core/platform.h"
#include "tests/support/driver_win.h"

inline COLORREF ScreenPixel(int x, int y) {
    const HDC screen = GetDC(nullptr);
    const COLORREF color = GetPixel(screen, x, y);
    ReleaseDC(nullptr, screen);
    return color;
}

// Of a window's client area.
inline COLORREF ScreenPixelOf(HWND window, int x, int y) {
    POINT point = {x, y};
    ClientToScreen(window, &point);
    return ScreenPixel(point.x, point.y);
}

// A lit label is blue by default, an unlit one black on grey: rows through the middle say which.
inline bool IsLit(HWND button) {
    const RECT place = PlaceOf(button);
    int blue = 0;
    for (int y = (place.top + place.bottom) / 2 - 2; y < (place.top + place.bottom) / 2 + 2; ++y)
        for (int x = place.left + 3; x < place.right - 3; ++x) {
            const COLORREF color = ScreenPixel(x, y);
            blue += GetBValue(color) > GetRValue(color) + 40;
        }
    return blue > 3;
}

// A dialog that has come up in full; null when it does not.
inline HWND WaitForDialog(const char* caption) {
    HWND found = nullptr;
    const auto shows = [&] { return IsWindowVisible(found = FindWindowA("#32770", caption)) != 0; };
    return WaitUntil(shows) ? found : nullptr;
}
