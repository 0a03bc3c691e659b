// Popup menus. See menu_win.h.
#include "ui/menu_win.h"

#include "core/strings_win.h"

#include <algorithm>

constexpr int kRowAir = 3; // pixels by which a row may be higher than a menu bar

void AppendMenuText(HMENU menu, UINT id, const char* text, int checked) {
    AppendMenuA(menu, MF_STRING | (checked ? MF_CHECKED : 0), id, text);
}

void AppendMenuEntry(HMENU menu, UINT id, UINT textId, int checked) {
    char text[kStringMax];
    if (LoadText(textId, text)) AppendMenuText(menu, id, text, checked);
}

void AppendMenuSeparator(HMENU menu) {
    if (GetMenuItemCount(menu) > 0) AppendMenuA(menu, MF_SEPARATOR, 0, nullptr);
}

static void BreakBefore(HMENU menu, int place) {
    MENUITEMINFOA item = {};
    item.cbSize = sizeof item;
    item.fMask = MIIM_FTYPE;
    if (place < 1 || !GetMenuItemInfoA(menu, static_cast<UINT>(place), TRUE, &item)) return;
    item.fType |= MFT_MENUBREAK;
    SetMenuItemInfoA(menu, static_cast<UINT>(place), TRUE, &item);
}

void BeginMenuColumn(HMENU menu) {
    BreakBefore(menu, GetMenuItemCount(menu) - 1);
}

void FoldMenu(HMENU menu) {
    const int row = GetSystemMetrics(SM_CYMENU) + kRowAir;
    const int fit = std::max(GetSystemMetrics(SM_CYSCREEN) / row - 1, 1);
    const int count = GetMenuItemCount(menu), columns = std::max((count + fit - 1) / fit, 1);
    const int height = (count + columns - 1) / columns;
    for (int place = height; place < count; place += height)
        BreakBefore(menu, place);
}

void AppendSubmenu(HMENU menu, HMENU submenu, UINT textId) {
    char text[kStringMax];
    LoadText(textId, text);
    AppendMenuA(menu, MF_POPUP, reinterpret_cast<UINT_PTR>(submenu), text);
}

POINT ContextMenuPlace(HWND window, LPARAM lParam) {
    RECT r = {};
    if (static_cast<DWORD>(lParam) != MAXDWORD) // negative on screens left of the first
        return {static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam))};
    GetWindowRect(window, &r);
    return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
}

void ShowMenu(HMENU menu, HWND window, POINT at, UINT alignment) {
    if (!menu) return;
    // Without the first and the last of these a click beside the menu would not close it.
    SetForegroundWindow(window);
    TrackPopupMenu(menu, TPM_RIGHTBUTTON | alignment, at.x, at.y, 0, window, nullptr);
    PostMessageA(window, WM_NULL, 0, 0);
    DestroyMenu(menu);
}

void ShowMenuAtCursor(HMENU menu, HWND window) {
    POINT cursor = {};
    GetCursorPos(&cursor);
    ShowMenu(menu, window, cursor);
}
