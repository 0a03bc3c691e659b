// The dialog "Set Hotkeys...". Every change counts at once; so OK and Cancel do the same.
#include "ui/hotkeys_win.h"

#include "core/component_win.h"
#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/dialog_win.h"
#include "ui/hotkey_field_win.h"

constexpr COLORREF kRefusedColor = RGB(160, 72, 0);

namespace {
struct HotkeysDialog {
    ModalDialog modal;
    HotkeyRecord records[kHotkeys];
    uint32_t heldKey; // set a hotkey, and may be down still
};
} // namespace

static HWND FieldOf(HWND dialog) {
    return FindWindowExA(dialog, nullptr, kHotkeyFieldClass, nullptr);
}

static void ShowHotkey(const HotkeysDialog& dialog, int place) {
    const HotkeyRecord& record = dialog.records[place];
    char text[kHotkeyTextMax], refused[kStringMax] = "";
    FormatHotkey(record, text);
    CheckDlgButton(dialog.modal.window, record.CheckControlId, record.Enabled != 0);
    SetDlgItemTextA(dialog.modal.window, record.TextControlId, text);
    if (record.Enabled && record.VirtualKey && HotkeyWasRefused(place))
        LoadText(IDS_HOTKEY_REFUSED, refused);
    SetDlgItemTextA(dialog.modal.window, IDC_HOTKEY_REFUSED + place, refused);
}

// Whoever had a refused combination, another of the ten perhaps, may have let go of it meanwhile.
static void ShowHotkeys(HotkeysDialog* dialog) {
    for (int i = 0; i < kHotkeys; ++i) {
        if (dialog->records[i].Enabled && HotkeyWasRefused(i)) ApplyHotkey(dialog->records[i], 1);
        ShowHotkey(*dialog, i);
    }
}

static void OnInitDialog(HWND window, HotkeysDialog* dialog) {
    SetWindowLongPtrA(window, DWLP_USER, reinterpret_cast<LONG_PTR>(dialog));
    dialog->modal.window = window;
    LoadHotkeys(dialog->records);
    char caption[kStringMax];
    LoadText(IDS_HOTKEYS_CAPTION, caption);
    SetDlgItemTextA(window, IDC_HOTKEYS_CAPTION, caption);
    ShowHotkeys(dialog);
    PlaceOverOwner(window, dialog->modal.owner);
}

static void OnTick(HotkeysDialog* dialog, int place) {
    HotkeyRecord* record = &dialog->records[place];
    record->Enabled = IsDlgButtonChecked(dialog->modal.window, record->CheckControlId);
    if (!record->Enabled) ClearHotkey(record);
    ApplyHotkey(*record, static_cast<int>(record->Enabled));
    ShowHotkeys(dialog);
}

static void ApplyAll(const HotkeysDialog& dialog, int enable) {
    for (const HotkeyRecord& record : dialog.records)
        if (record.Enabled) ApplyHotkey(record, enable);
}

// A combination that is a hotkey already would do its work and not reach the field: all are off
// meanwhile. The key that ended it may be down still, and must not press the dialog's buttons.
static void OnSet(HotkeysDialog* dialog, int place) {
    const HWND window = dialog->modal.window;
    ApplyAll(*dialog, 0);
    const int taken = CaptureHotkey(window, &dialog->records[place]);
    ApplyAll(*dialog, 1);
    if (taken) dialog->heldKey = dialog->records[place].VirtualKey;
    if (!IsWindow(window)) return;
    ShowHotkeys(dialog);
    SetFocus(GetDlgItem(window, kHotkeyKinds[place].setId));
}

static void OnCommand(HotkeysDialog* dialog, int id, int code) {
    if (id == IDOK || id == IDCANCEL) EndModalDialog(&dialog->modal, id);
    for (int i = 0; i < kHotkeys; ++i) {
        if (code != BN_CLICKED) continue;
        if (id == kHotkeyKinds[i].checkId) OnTick(dialog, i);
        if (id == kHotkeyKinds[i].setId) OnSet(dialog, i);
    }
}

static int SwallowHeldKey(ModalDialog* modal, const MSG& message) {
    auto* dialog = reinterpret_cast<HotkeysDialog*>(modal);
    if (!dialog->heldKey || message.wParam != dialog->heldKey) return 0;
    if (message.message == WM_KEYDOWN || message.message == WM_SYSKEYDOWN) {
        if (message.lParam & kKeyRepeated) return 1;
        dialog->heldKey = 0;
    }
    return 0;
}

static INT_PTR HotkeysProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(window, reinterpret_cast<HotkeysDialog*>(lParam));
        return TRUE;
    }
    auto* dialog = reinterpret_cast<HotkeysDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!dialog) return FALSE;
    switch (message) {
    case WM_COMMAND: OnCommand(dialog, LOWORD(wParam), HIWORD(wParam)); return TRUE;
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_INACTIVE && FieldOf(window))
            PostMessageA(FieldOf(window), WM_CANCELMODE, 0, 0);
        return FALSE;
    case WM_CTLCOLORSTATIC: {
        const int place = GetDlgCtrlID(reinterpret_cast<HWND>(lParam)) - IDC_HOTKEY_REFUSED;
        if (place < 0 || place >= kHotkeys) return FALSE;
        SetTextColor(reinterpret_cast<HDC>(wParam), kRefusedColor);
        SetBkMode(reinterpret_cast<HDC>(wParam), TRANSPARENT);
        return reinterpret_cast<INT_PTR>(GetSysColorBrush(COLOR_3DFACE));
    }
    case WM_DESTROY: EndModalDialog(&dialog->modal, 0); return FALSE;
    default: return FALSE;
    }
}

void ShowHotkeysDialog(HWND console) {
    HotkeysDialog dialog = {};
    dialog.modal.OnMessage = SwallowHeldKey;
    LoadHotkeys(dialog.records); // also saved when no dialog could be shown
    RunModalDialog(&dialog.modal, console, IDD_HOTKEYS, GuardedDialog<HotkeysProcedure>,
                   reinterpret_cast<LPARAM>(&dialog));
    SaveHotkeys(dialog.records);
}
