// What the control classes share: registration and the data block in the window's extra bytes.
// Included by the controls' own files only.
#pragma once
#include "core/component_win.h"

#include <new>

constexpr UINT kControlClassStyle = CS_HREDRAW | CS_VREDRAW;

// Registers on every call; a repeated registration simply fails.
void RegisterControlClass(HINSTANCE instance, const char* name, WNDPROC procedure,
                          HBRUSH background);
HWND CreateControl(const char* className, const char* text, DWORD style, int x, int y, int width,
                   int height, HWND parent, UINT id, HINSTANCE instance);
int IsOfClass(HWND window, const char* className);

// The data block, null before WM_CREATE and after WM_DESTROY.
template <class Data> Data* ControlData(HWND window) {
    return reinterpret_cast<Data*>(GetWindowLongPtrA(window, 0));
}
// The block of a window of that class; null for any other.
template <class Data> Data* ControlDataOf(HWND window, const char* className) {
    return IsOfClass(window, className) ? ControlData<Data>(window) : nullptr;
}
// A zeroed block for WM_CREATE; null when memory is out.
template <class Data> Data* CreateControlData(HWND window) {
    Data* data = new (std::nothrow) Data{};
    SetWindowLongPtrA(window, 0, reinterpret_cast<LONG_PTR>(data));
    return data;
}
template <class Data> void FreeControlData(HWND window) {
    Data* data = ControlData<Data>(window);
    SetWindowLongPtrA(window, 0, 0);
    delete data;
}

// 1 when the text of a WM_SETTEXT equals the window's, compared over `length` characters at most
// (255). A text that a timer sets again and again then causes no repaint.
int SameWindowText(HWND window, LPARAM text, int length);
