// Settings of the volume meter. See meter_settings_win.h.
#include "waves/meter_settings_win.h"

#include "core/component_win.h"
#include "core/settings.h"
#include "resources/ids.h"
#include "ui/settings_dialog_win.h"
#include "ui/swatch_win.h"

constexpr const char* kMeterKey = "Software\\Tonvista\\VolumeMeter";

namespace {
struct StoredField {
    const char* name;
    uint32_t MeterSettings::*field;
};
struct MeterDialog {
    int onTop;
    MeterSettings settings;
};
} // namespace
static MeterDialog s_dialog; // of the one that is open

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

static constexpr DialogBar kGainBar = {.id = IDC_METER_GAIN,
                                       .textId = IDC_METER_GAIN_VALUE,
                                       .formatId = IDS_METER_GAIN_VALUE,
                                       .least = kMeterMinGain,
                                       .most = kMeterMaxGain,
                                       .page = 10,
                                       .tick = 20,
                                       .scale = 1};
static constexpr DialogBar kRefreshBar = {.id = IDC_METER_REFRESH,
                                          .textId = IDC_METER_REFRESH_VALUE,
                                          .formatId = IDS_METER_REFRESH_VALUE,
                                          .least = kMeterMinRefresh,
                                          .most = kMeterMaxRefresh,
                                          .page = 10,
                                          .tick = 10,
                                          .scale = 10}; // to milliseconds

static void OnInitDialog(HWND dialog) {
    SetUpDialogBar(dialog, kGainBar, s_dialog.settings.Gainer);
    SetUpDialogBar(dialog, kRefreshBar, s_dialog.settings.Refresh);
    if (s_dialog.onTop)
        SetWindowPos(dialog, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

static void OnScroll(HWND dialog) {
    s_dialog.settings.Gainer = ReadDialogBar(dialog, kGainBar);
    s_dialog.settings.Refresh = ReadDialogBar(dialog, kRefreshBar);
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
    case IDCANCEL: EndDialog(dialog, static_cast<INT_PTR>(id)); break;
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
    default: return FALSE;
    }
}

int EditMeterSettings(HWND owner, int onTop, MeterSettings* settings) {
    if (RaiseDialogOf(owner)) return 0;
    s_dialog = {onTop, *settings};
    if (ShowSettingsDialog(IDD_METER_SETTINGS, owner, GuardedDialog<MeterDialogProc>) != IDOK)
        return 0;
    *settings = s_dialog.settings;
    return 1;
}
