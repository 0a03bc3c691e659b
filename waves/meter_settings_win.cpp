// Settings of the volume meter. See meter_settings_win.h.
#include "waves/meter_settings_win.h"

#include "core/component_win.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/swatch_win.h"

constexpr const char* kMeterKey = "Software\\Tonvista\\VolumeMeter";
constexpr int kPageStep = 10; // of both track bars
constexpr int kGainTick = 20, kRefreshTick = 10;
constexpr int kMsPerRefresh = 10;

namespace {
struct StoredField {
    const char* name;
    uint32_t MeterSettings::*field;
};
struct MeterDialog {
    HWND dialog; // null while none is open
    int onTop;
    MeterSettings settings;
};
} // namespace
static MeterDialog s_dialog;

static const StoredField kFields[] = {
    {"Gainer", &MeterSettings::Gainer},       {"Refresh", &MeterSettings::Refresh},
    {"LeftRight", &MeterSettings::LeftRight}, {"Center", &MeterSettings::Center},
    {"FgColor", &MeterSettings::FgColor},     {"BkColor", &MeterSettings::BkColor}};

MeterSettings LoadMeterSettings() {
    MeterSettings settings;
    for (const StoredField& stored : kFields)
        ReadRegValue(kUserRoot, kMeterKey, stored.name, kRegDword, &(settings.*stored.field),
                     sizeof(uint32_t));
    return SaneMeterSettings(settings);
}

void SaveMeterSettings(const MeterSettings& settings) {
    for (const StoredField& stored : kFields)
        WriteRegDword(kUserRoot, kMeterKey, stored.name, kRegDword, settings.*stored.field);
}

// ---- the dialog

static void ShowNumber(HWND dialog, int id, UINT formatId, uint32_t value) {
    char format[kStringMax], text[kStringMax];
    LoadText(formatId, format);
    FormatText(text, sizeof text, format, static_cast<int>(value));
    SetDlgItemTextA(dialog, id, text);
}

static void ShowValues(HWND dialog) {
    ShowNumber(dialog, IDC_METER_GAIN_VALUE, IDS_METER_GAIN_VALUE, s_dialog.settings.Gainer);
    ShowNumber(dialog, IDC_METER_REFRESH_VALUE, IDS_METER_REFRESH_VALUE,
               s_dialog.settings.Refresh * kMsPerRefresh);
}

static void SetUpBar(HWND bar, int from, int to, int tick, int position) {
    SendMessageA(bar, TBM_SETRANGE, FALSE, MAKELPARAM(from, to));
    SendMessageA(bar, TBM_SETPAGESIZE, 0, kPageStep);
    SendMessageA(bar, TBM_SETTICFREQ, tick, 0);
    SendMessageA(bar, TBM_SETPOS, TRUE, position);
}

static void OnInitDialog(HWND dialog) {
    s_dialog.dialog = dialog;
    SetUpBar(GetDlgItem(dialog, IDC_METER_GAIN), kMeterMinGain, kMeterMaxGain, kGainTick,
             s_dialog.settings.Gainer);
    SetUpBar(GetDlgItem(dialog, IDC_METER_REFRESH), kMeterMinRefresh, kMeterMaxRefresh,
             kRefreshTick, s_dialog.settings.Refresh);
    ShowValues(dialog);
    if (s_dialog.onTop)
        SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

static void OnScroll(HWND dialog) {
    s_dialog.settings.Gainer =
        static_cast<uint32_t>(SendDlgItemMessageA(dialog, IDC_METER_GAIN, TBM_GETPOS, 0, 0));
    s_dialog.settings.Refresh =
        static_cast<uint32_t>(SendDlgItemMessageA(dialog, IDC_METER_REFRESH, TBM_GETPOS, 0, 0));
    ShowValues(dialog);
}

static COLORREF* ColorOfSwatch(UINT id) {
    COLORREF* const foreground = reinterpret_cast<COLORREF*>(&s_dialog.settings.FgColor);
    COLORREF* const background = reinterpret_cast<COLORREF*>(&s_dialog.settings.BkColor);
    return id == IDC_METER_FOREGROUND ? foreground : background;
}

static void OnCommand(HWND dialog, UINT id) {
    switch (id) {
    case IDC_METER_FOREGROUND:
    case IDC_METER_BACKGROUND: OnSwatchClick(dialog, id, ColorOfSwatch(id)); break;
    case IDOK:
    case IDCANCEL: EndDialog(dialog, id == IDOK); break;
    default: break;
    }
}

static INT_PTR MeterDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG: OnInitDialog(dialog); return TRUE;
    case WM_HSCROLL: OnScroll(dialog); return TRUE;
    case WM_DRAWITEM: {
        const auto* item = reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        DrawSwatch(*item, *ColorOfSwatch(item->CtlID));
        return TRUE;
    }
    case WM_COMMAND:
        if (HIWORD(wParam) == BN_CLICKED) OnCommand(dialog, LOWORD(wParam));
        return TRUE;
    case WM_DESTROY: s_dialog.dialog = nullptr; return TRUE;
    default: return FALSE;
    }
}

int EditMeterSettings(HWND owner, int onTop, MeterSettings* settings) {
    if (IsWindow(s_dialog.dialog)) { // a killed thread leaves its dead handle
        SetForegroundWindow(GetLastActivePopup(s_dialog.dialog)); // its chooser may be open
        return 0;
    }
    s_dialog.onTop = onTop;
    s_dialog.settings = *settings;
    const INT_PTR result =
        DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_METER_SETTINGS), owner,
                        GuardedDialog<MeterDialogProc>, 0);
    if (result != TRUE) return 0;
    *settings = s_dialog.settings;
    return 1;
}
