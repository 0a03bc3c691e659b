// Tooltips. See tooltips_win.h. The structure has the size of version 2, which every version of the
// common controls accepts without a manifest.
#include "ui/tooltips_win.h"

#include "core/strings_win.h"
#include "core/text.h"

#include <cstring>

constexpr LPARAM kDelayMs = 2000; // the other delays follow from it

HWND CreateToolTips(HWND owner) {
    const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(owner, GWLP_HINSTANCE));
    HWND tooltips = CreateWindowExA(
        WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr, WS_POPUP | TTS_ALWAYSTIP, CW_USEDEFAULT,
        CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr, instance, nullptr);
    if (tooltips) SendMessageA(tooltips, TTM_SETDELAYTIME, TTDT_AUTOMATIC, kDelayMs);
    return tooltips;
}

static TTTOOLINFOA ToolInfo(HWND window, UINT flags, UINT_PTR id) {
    TTTOOLINFOA tool = {};
    tool.cbSize = TTTOOLINFOA_V2_SIZE;
    tool.uFlags = flags;
    tool.hwnd = window;
    tool.uId = id;
    return tool;
}

static TTTOOLINFOA ControlTool(HWND window, HWND control) {
    return ToolInfo(window, TTF_IDISHWND | TTF_SUBCLASS, reinterpret_cast<UINT_PTR>(control));
}

static TTTOOLINFOA RectTool(HWND window, UINT toolId) {
    return ToolInfo(window, TTF_SUBCLASS, toolId);
}

static int AddTool(HWND tooltips, TTTOOLINFOA tool, const char* text) {
    if (!tooltips) return 0;
    char copy[kStringMax];
    CopyText(copy, text);
    tool.lpszText = copy;
    return SendMessageA(tooltips, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool)) != 0;
}

static int SetTool(HWND tooltips, TTTOOLINFOA tool, const char* text) {
    if (!tooltips) return 0;
    char wanted[kStringMax], current[2 * kStringMax] = "";
    CopyText(wanted, text);
    tool.lpszText = current;
    SendMessageA(tooltips, TTM_GETTEXTA, kStringMax, reinterpret_cast<LPARAM>(&tool));
    if (!strcmp(wanted, current)) return 1;
    tool.lpszText = wanted;
    SendMessageA(tooltips, TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&tool));
    return 1;
}

int AddToolTip(HWND tooltips, HWND window, HWND control, const char* text) {
    return AddTool(tooltips, ControlTool(window, control), text);
}

int AddToolTipFromString(HWND tooltips, HWND window, HWND control, UINT stringId) {
    char text[kStringMax];
    LoadText(stringId, text);
    return AddToolTip(tooltips, window, control, text);
}

int SetToolTipText(HWND tooltips, HWND window, HWND control, const char* text) {
    return SetTool(tooltips, ControlTool(window, control), text);
}

int SetToolTipTextFromString(HWND tooltips, HWND window, HWND control, UINT stringId) {
    char text[kStringMax];
    LoadText(stringId, text);
    return SetToolTipText(tooltips, window, control, text);
}

int AddRectToolTip(HWND tooltips, HWND window, UINT toolId, const char* text, int left, int top,
                   int right, int bottom) {
    TTTOOLINFOA tool = RectTool(window, toolId);
    tool.rect = {left, top, right, bottom};
    return AddTool(tooltips, tool, text);
}

int SetRectToolTipText(HWND tooltips, HWND window, UINT toolId, const char* text) {
    return SetTool(tooltips, RectTool(window, toolId), text);
}

void PlaceRectToolTip(HWND tooltips, HWND window, UINT toolId, const RECT& area) {
    if (!tooltips) return;
    TTTOOLINFOA tool = RectTool(window, toolId);
    tool.rect = area;
    SendMessageA(tooltips, TTM_NEWTOOLRECTA, 0, reinterpret_cast<LPARAM>(&tool));
}

static RECT RectInWindow(HWND window, HWND child) {
    RECT rect = {};
    GetWindowRect(child, &rect);
    MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&rect), 2);
    return rect;
}

int AddIndicatorToolTip(HWND tooltips, HWND window, HWND indicator, UINT stringId) {
    char text[kStringMax];
    LoadText(stringId, text);
    const RECT rect = RectInWindow(window, indicator);
    return AddRectToolTip(tooltips, window, static_cast<UINT>(GetDlgCtrlID(indicator)), text,
                          rect.left, rect.top, rect.right, rect.bottom);
}

void PlaceIndicatorToolTip(HWND tooltips, HWND window, HWND indicator) {
    PlaceRectToolTip(tooltips, window, static_cast<UINT>(GetDlgCtrlID(indicator)),
                     RectInWindow(window, indicator));
}
