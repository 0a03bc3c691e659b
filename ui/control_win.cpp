// See control_win.h.
#include "ui/control_win.h"

#include <algorithm>
#include <cstring>

void RegisterControlClass(HINSTANCE instance, const char* name, WNDPROC procedure,
                          HBRUSH background) {
    WNDCLASSA windowClass = {};
    windowClass.style = kControlClassStyle;
    windowClass.lpfnWndProc = procedure;
    windowClass.cbWndExtra = sizeof(void*);
    windowClass.hInstance = instance;
    windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    windowClass.hbrBackground = background;
    windowClass.lpszClassName = name;
    RegisterClassA(&windowClass);
}

HWND CreateControl(const char* className, const char* text, DWORD style, int x, int y, int width,
                   int height, HWND parent, UINT id, HINSTANCE instance) {
    return CreateWindowExA(0, className, text, style | WS_CHILD | WS_CLIPSIBLINGS, x, y, width,
                           height, parent, reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)),
                           instance, nullptr);
}

int IsOfClass(HWND window, const char* className) {
    char name[64];
    return window && GetClassNameA(window, name, sizeof name) && !strcmp(name, className);
}

int SameWindowText(HWND window, LPARAM text, int length) {
    char current[256];
    const int compared = std::min<int>(length, sizeof current - 1);
    GetWindowTextA(window, current, compared + 1);
    const auto* wanted = reinterpret_cast<const char*>(text);
    return !strncmp(current, wanted ? wanted : "", static_cast<size_t>(compared));
}
