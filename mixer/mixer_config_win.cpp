// The dialog that chooses the mixer device. It keeps nothing: the list comes from the engine's
// choices, and the index goes back to them.
#include "mixer/mixer_win.h"

#include <algorithm>

#include "core/strings_win.h"
#include "mixer/engine_win.h"
#include "resources/ids.h"
#include "ui/settings_dialog_win.h"

static HWND ListOf(HWND dialog) {
    return GetDlgItem(dialog, IDC_MIXER_DEVICES);
}

// Names may be wider than the list: it then scrolls sideways.
static int NameWidth(HWND list, const char* name) {
    const HDC dc = GetDC(list);
    const HGDIOBJ before =
        SelectObject(dc, reinterpret_cast<HGDIOBJ>(SendMessageA(list, WM_GETFONT, 0, 0)));
    SIZE size = {};
    GetTextExtentPoint32A(dc, name, lstrlenA(name), &size);
    SelectObject(dc, before);
    ReleaseDC(list, dc);
    return size.cx;
}

static void FillList(HWND dialog) {
    constexpr int kAir = 8; // pixels
    const HWND list = ListOf(dialog);
    int widest = 0;
    const int count = CountMixerChoices();
    for (int i = 0; i < count; ++i) {
        char name[kStringMax] = "";
        MixerChoiceName(i, name, sizeof name); // one without a name keeps its place
        SendMessageA(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name));
        widest = std::max(widest, NameWidth(list, name));
    }
    SendMessageA(list, LB_SETHORIZONTALEXTENT, widest + kAir, 0);
    if (SendMessageA(list, LB_SETCURSEL, CurrentMixerChoice(), 0) == LB_ERR)
        SendMessageA(list, LB_SETCURSEL, 0, 0);
    EnableWindow(GetDlgItem(dialog, IDOK), count > 0);
}

static void OnOk(HWND dialog) {
    const LRESULT chosen = SendMessageA(ListOf(dialog), LB_GETCURSEL, 0, 0);
    if (chosen != LB_ERR) ChooseMixer(static_cast<int>(chosen));
    EndDialog(dialog, IDOK);
}

// A dialog does not follow an owner that stays on top by itself.
static void FollowOwner(HWND dialog) {
    const HWND owner = GetWindow(dialog, GW_OWNER);
    if (owner && (GetWindowLongA(owner, GWL_EXSTYLE) & WS_EX_TOPMOST))
        SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
}

static INT_PTR ConfigureProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) {
        FillList(dialog);
        FollowOwner(dialog);
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const int id = LOWORD(wParam);
    if (id == IDOK || (id == IDC_MIXER_DEVICES && HIWORD(wParam) == LBN_DBLCLK))
        OnOk(dialog);
    else if (id == IDCANCEL)
        EndDialog(dialog, IDCANCEL);
    else
        return FALSE;
    return TRUE;
}

void ConfigureMixer(HWND owner) {
    ShowSettingsDialog(IDD_MIXER_CONFIG, owner, GuardedDialog<ConfigureProc>);
}
