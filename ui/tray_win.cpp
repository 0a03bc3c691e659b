// Icons in the notification area. See tray_win.h.
#include "ui/tray_win.h"

#include "core/text.h"

static_assert(sizeof(NOTIFYICONDATAA::szTip) == kTrayTipMax);

static NOTIFYICONDATAA IconData(const TrayIcon& tray, UINT flags, HICON icon) {
    NOTIFYICONDATAA data = {};
    data.cbSize = NOTIFYICONDATAA_V2_SIZE; // the first with long tooltips
    data.hWnd = tray.window;
    data.uID = tray.id;
    data.uFlags = flags;
    data.uCallbackMessage = WM_COMMAND;
    data.hIcon = icon;
    return data;
}

int AddTrayIcon(TrayIcon* tray, HICON icon, const char* tip) {
    NOTIFYICONDATAA data = IconData(*tray, NIF_MESSAGE | NIF_ICON | NIF_TIP, icon);
    CopyText(data.szTip, kTrayTipMax, tip);
    tray->shown = 1; // even when it is refused: a shell that hangs may take it later
    // Adding is refused also when it stands there already.
    return Shell_NotifyIconA(NIM_ADD, &data) || Shell_NotifyIconA(NIM_MODIFY, &data);
}

int ChangeTrayIcon(TrayIcon* tray, HICON icon) {
    NOTIFYICONDATAA data = IconData(*tray, NIF_ICON, icon);
    return Shell_NotifyIconA(NIM_MODIFY, &data) != 0;
}

int ChangeTrayTip(TrayIcon* tray, const char* tip) {
    NOTIFYICONDATAA data = IconData(*tray, NIF_TIP, nullptr);
    CopyText(data.szTip, kTrayTipMax, tip);
    return Shell_NotifyIconA(NIM_MODIFY, &data) != 0;
}

void RemoveTrayIcon(TrayIcon* tray) {
    if (!tray->shown) return;
    NOTIFYICONDATAA data = IconData(*tray, 0, nullptr);
    Shell_NotifyIconA(NIM_DELETE, &data);
    tray->shown = 0;
}
