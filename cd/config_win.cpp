// The dialog over the engine's settings: read when it opens; on OK the engine gets them as
// commands, or the registry while there is no engine.
#include "cd/config_win.h"

#include "cd/engine_win.h"
#include "core/commands.h"
#include "core/component_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/dialog_win.h"

#include <algorithm>
#include <windowsx.h>

constexpr int kIntroLeast = 5, kIntroMost = 30; // seconds
constexpr int kIntroDigits = 4;                 // so that what is typed never overflows

static const struct {
    int id;
    uint32_t CDEngineSettings::*field;
    uint32_t option;
} kBoxes[] = {{IDC_CD_CONFIG_AUTO_EJECT, &CDEngineSettings::AutoEject, kOptionAutoEject},
              {IDC_CD_CONFIG_STOP_EXIT, &CDEngineSettings::StopExit, kOptionStopExit},
              {IDC_CD_CONFIG_DEFAULT, &CDEngineSettings::UseAsDefault, kOptionUseAsDefault},
              {IDC_CD_CONFIG_AUTO_RUN, &CDEngineSettings::AutoRun, kOptionAutoRun},
              {IDC_CD_CONFIG_AUTO_EXIT, &CDEngineSettings::AutoExit, kOptionAutoExit}};

static HWND s_dialog; // the one that is open, or one that is gone

static HWND DriveList(HWND dialog) {
    return GetDlgItem(dialog, IDC_CD_CONFIG_DRIVE);
}

static void FillDrives(HWND list, uint32_t current) {
    const uint32_t drives = CdDriveMask();
    int chosen = 0;
    for (int k = 0; k < 26; ++k) {
        if (!(drives >> k & 1)) continue;
        char text[8];
        FormatText(text, sizeof text, "%c:", 'A' + k);
        const int place = ComboBox_AddString(list, text);
        if (place < 0) continue;
        ComboBox_SetItemData(list, place, 'A' + k);
        if (current == static_cast<uint32_t>('A' + k)) chosen = place;
    }
    ComboBox_SetCurSel(list, chosen);
}

static void FillDialog(HWND dialog) {
    CDEngineSettings settings;
    LoadCdSettings(&settings);
    FillDrives(DriveList(dialog), settings.Drive);
    SendDlgItemMessageA(dialog, IDC_CD_CONFIG_INTRO, EM_LIMITTEXT, kIntroDigits, 0);
    SendDlgItemMessageA(dialog, IDC_CD_CONFIG_INTRO_SPIN, UDM_SETRANGE32, kIntroLeast, kIntroMost);
    SendDlgItemMessageA(dialog, IDC_CD_CONFIG_INTRO_SPIN, UDM_SETPOS32, 0,
                        static_cast<LPARAM>(settings.IntroLength));
    for (const auto& box : kBoxes)
        CheckDlgButton(dialog, box.id, settings.*box.field != 0);
}

static void TakeSettings(HWND dialog, int place, CDEngineSettings* settings) {
    settings->Drive = static_cast<uint32_t>(ComboBox_GetItemData(DriveList(dialog), place));
    const auto typed = static_cast<int>(GetDlgItemInt(dialog, IDC_CD_CONFIG_INTRO, nullptr, TRUE));
    settings->IntroLength = static_cast<uint32_t>(std::clamp(typed, kIntroLeast, kIntroMost));
    for (const auto& box : kBoxes)
        settings->*box.field = IsDlgButtonChecked(dialog, box.id) == BST_CHECKED;
}

// The engine saves after each of these, the play modes that it alone knows included, and so claims
// to be the default player as long as it is to be that. Options come first: who turns that off must
// not have another player's claim taken by the others on the way.
static void GiveToEngine(const CDEngineSettings& settings) {
    uint32_t options = 0;
    for (const auto& box : kBoxes)
        if (settings.*box.field) options |= box.option;
    PostCdCommand(kCdOptions, static_cast<LPARAM>(options));
    PostCdCommand(kCdUseDrive, static_cast<LPARAM>(settings.Drive));
    PostCdCommand(kCdIntroLength, static_cast<LPARAM>(settings.IntroLength));
}

static void OnOk(HWND dialog, ModalDialog* modal) {
    const int place = ComboBox_GetCurSel(DriveList(dialog));
    if (place < 0) {
        ComboBox_SetCurSel(DriveList(dialog), 0);
        return;
    }
    CDEngineSettings settings;
    LoadCdSettings(&settings);
    TakeSettings(dialog, place, &settings);
    if (ComponentIsOn(CdEngineThread()))
        GiveToEngine(settings);
    else
        SaveCdSettings(settings);
    EndModalDialog(modal, IDOK);
}

static INT_PTR ConfigDialog(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(dialog, DWLP_USER, lParam);
        auto* modal = reinterpret_cast<ModalDialog*>(lParam);
        s_dialog = modal->window = dialog;
        FillDialog(dialog);
        PlaceOverOwner(dialog, modal->owner);
        return TRUE;
    }
    auto* modal = reinterpret_cast<ModalDialog*>(GetWindowLongPtrA(dialog, DWLP_USER));
    if (!modal) return FALSE;
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wParam) == IDOK) OnOk(dialog, modal);
        if (LOWORD(wParam) == IDCANCEL) EndModalDialog(modal, IDCANCEL);
        return TRUE;
    case WM_DESTROY: EndModalDialog(modal, 0); return FALSE;
    default: return FALSE;
    }
}

// One at a time, whoever asks: console, CD player and CD icon do, each on its own thread. A handle
// and not a flag, which would stay when the thread was killed.
void ConfigureCd(HWND owner) {
    if (IsWindow(s_dialog)) {
        SetForegroundWindow(s_dialog);
        return;
    }
    ModalDialog modal = {};
    RunModalDialog(&modal, owner, IDD_CD_CONFIG, GuardedDialog<ConfigDialog>,
                   reinterpret_cast<LPARAM>(&modal));
}
