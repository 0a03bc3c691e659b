// The divider TNVDividerClass: a horizontal bar between two panes. It does not move itself but
// sends its parent WM_VSCROLL, low word SB_THUMBTRACK, high word the vertical displacement (signed
// 16 bits), lParam 0; the parent moves it and resizes the panes.
#pragma once
#include "core/platform.h"

constexpr const char* kDividerClass = "TNVDividerClass";

HWND CreateTNVDivider(DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                      HINSTANCE instance);
void SetDividerColor(HWND divider, COLORREF color);
