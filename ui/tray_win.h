// An icon in the notification area. The window gets WM_COMMAND with the icon's id as wParam and the
// mouse message as lParam.
#pragma once
#include "core/platform.h"

constexpr int kTrayTipMax = 128; // bytes of a tooltip with the NUL; the rest is cut

struct TrayIcon {
    HWND window;
    UINT id;
    int shown; // or may be: to be removed
};

// Adds it, or adds it again after the shell has come back. 1 when it stands there with this
// picture.
int AddTrayIcon(TrayIcon* tray, HICON icon, const char* tip);
// 1 when the shell took the new picture.
int ChangeTrayIcon(TrayIcon* tray, HICON icon);
// 1 when the shell took the new text.
int ChangeTrayTip(TrayIcon* tray, const char* tip);
void RemoveTrayIcon(TrayIcon* tray);
