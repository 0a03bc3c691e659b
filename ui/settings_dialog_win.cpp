// Settings dialogs. See settings_dialog_win.h.
#include "ui/settings_dialog_win.h"

#include "core/strings_win.h"
#include "core/text.h"

#include <algorithm>
#include <commctrl.h>

constexpr const char* kDialogClass = "#32770";

int RaiseDialogOf(HWND owner) {
    if (!owner || IsWindowEnabled(owner)) return 0;
    HWND dialog = nullptr;
    while ((dialog = FindWindowExA(nullptr, dialog, kDialogClass, nullptr)) &&
           GetWindow(dialog, GW_OWNER) != owner)
        continue;
    // What the dialog itself has opened, first. Not the owner's last popup: that is the owner where
    // its menu has just been open.
    SetForegroundWindow(GetLastActivePopup(dialog ? dialog : owner));
    return 1;
}

INT_PTR ShowSettingsDialog(UINT resourceId, HWND owner, DLGPROC procedure, LPARAM argument) {
    if (RaiseDialogOf(owner)) return 0;
    return DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(resourceId), owner,
                           procedure, argument);
}

void SetUpDialogBar(HWND dialog, const DialogBar& bar, uint32_t position) {
    const HWND control = GetDlgItem(dialog, bar.id);
    SendMessageA(control, TBM_SETRANGE, FALSE, MAKELPARAM(bar.least, bar.most));
    SendMessageA(control, TBM_SETPAGESIZE, 0, bar.page);
    SendMessageA(control, TBM_SETTICFREQ, static_cast<WPARAM>(bar.tick), 0);
    SendMessageA(control, TBM_SETPOS, TRUE, static_cast<LPARAM>(position));
    ReadDialogBar(dialog, bar);
}

uint32_t ReadDialogBar(HWND dialog, const DialogBar& bar) {
    const auto read = static_cast<int>(SendDlgItemMessageA(dialog, bar.id, TBM_GETPOS, 0, 0));
    const int position = std::clamp(read, bar.least, bar.most);
    char format[kStringMax], text[kStringMax];
    LoadText(bar.formatId, format);
    FormatText(text, sizeof text, format, position * bar.scale);
    SetDlgItemTextA(dialog, bar.textId, text);
    return static_cast<uint32_t>(position);
}
