// The analyzer's settings in the registry, and the dialog for those that have no button.
#include "waves/analyzer_state_win.h"

#include "core/component_win.h"
#include "core/settings.h"
#include "resources/ids.h"
#include "ui/components.h"
#include "ui/settings_dialog_win.h"
#include "ui/swatch_win.h"

// ---- registry

static const struct {
    const char* name;
    uint32_t AnalyzerSettings::*field;
} kNumbers[] = {
    {"LeftAndRight", &AnalyzerSettings::LeftAndRight},
    {"Center", &AnalyzerSettings::Center},
    {"Split", &AnalyzerSettings::Split},
    {"Trails", &AnalyzerSettings::Trails},
    {"Gradient", &AnalyzerSettings::Gradient},
    {"TrailsCount", &AnalyzerSettings::TrailsCount},
    {"Falloff", &AnalyzerSettings::Falloff},
    {"LowColor", &AnalyzerSettings::LowColor},
    {"HighColor", &AnalyzerSettings::HighColor},
};

void ReadAnalyzerSettings(AnalyzerSettings* settings) {
    HDC screen = GetDC(nullptr);
    *settings = DefaultAnalyzerSettings(GetDeviceCaps(screen, BITSPIXEL));
    ReleaseDC(nullptr, screen);
    for (const auto& number : kNumbers)
        ReadWindowSetting(kSpectrumWindowId, number.name, kRegDword, 4, &(settings->*number.field));
    ReadWindowSetting(kSpectrumWindowId, "Gainer", kRegBinary, 4, &settings->Gainer);
    MendAnalyzerSettings(settings);
}

void WriteAnalyzerSettings(const AnalyzerSettings& settings) {
    for (const auto& number : kNumbers)
        WriteWindowSetting(kSpectrumWindowId, number.name, kRegDword, 4, &(settings.*number.field));
    WriteWindowSetting(kSpectrumWindowId, "Gainer", kRegBinary, 4, &settings.Gainer);
}

// ---- dialog: it changes a copy

static AnalyzerSettings* CopyOf(HWND dialog) {
    return reinterpret_cast<AnalyzerSettings*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

static COLORREF* SwatchColor(HWND dialog, UINT id) {
    AnalyzerSettings* copy = CopyOf(dialog);
    static_assert(sizeof(COLORREF) == sizeof copy->LowColor);
    if (id == IDC_ANALYZER_HIGH) return reinterpret_cast<COLORREF*>(&copy->HighColor);
    if (id == IDC_ANALYZER_LOW) return reinterpret_cast<COLORREF*>(&copy->LowColor);
    return nullptr;
}

static constexpr DialogBar kHold = {.id = IDC_ANALYZER_HOLD,
                                    .textId = IDC_ANALYZER_HOLD_TEXT,
                                    .formatId = IDS_ANALYZER_HOLD,
                                    .least = 1,
                                    .most = kAnalyzerMaxHold,
                                    .page = 5,
                                    .tick = 1,
                                    .scale = 1};

static void OnInitDialog(HWND dialog, LPARAM settings) {
    SetWindowLongPtrA(dialog, DWLP_USER, settings);
    SetUpDialogBar(dialog, kHold, CopyOf(dialog)->TrailsCount);
    CheckDlgButton(dialog, IDC_ANALYZER_FALLOFF,
                   CopyOf(dialog)->Falloff ? BST_CHECKED : BST_UNCHECKED);
}

static void OnDialogCommand(HWND dialog, UINT id, UINT code) {
    COLORREF* color = SwatchColor(dialog, id);
    if (color && code == BN_CLICKED) OnSwatchClick(dialog, static_cast<int>(id), color);
    if (id == IDOK) {
        CopyOf(dialog)->TrailsCount = ReadDialogBar(dialog, kHold);
        CopyOf(dialog)->Falloff = IsDlgButtonChecked(dialog, IDC_ANALYZER_FALLOFF) == BST_CHECKED;
    }
    if (id == IDOK || id == IDCANCEL) EndDialog(dialog, static_cast<INT_PTR>(id));
}

static INT_PTR SettingsProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(dialog, lParam);
        return TRUE;
    }
    if (!CopyOf(dialog)) return FALSE; // what comes before the dialog is filled
    switch (message) {
    case WM_COMMAND: OnDialogCommand(dialog, LOWORD(wParam), HIWORD(wParam)); return TRUE;
    case WM_HSCROLL: ReadDialogBar(dialog, kHold); return TRUE;
    case WM_DRAWITEM: {
        const auto& item = *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam);
        const COLORREF* color = SwatchColor(dialog, item.CtlID);
        if (color) DrawSwatch(item, *color);
        return TRUE;
    }
    default: return FALSE;
    }
}

int EditAnalyzerSettings(HWND owner, AnalyzerSettings* settings) {
    AnalyzerSettings copy = *settings;
    const INT_PTR answer =
        ShowSettingsDialog(IDD_SPECTRUM_SETTINGS, owner, GuardedDialog<SettingsProcedure>,
                           reinterpret_cast<LPARAM>(&copy));
    if (answer != IDOK) return 0;
    // The others may have been switched from outside meanwhile.
    MendAnalyzerSettings(&copy);
    settings->TrailsCount = copy.TrailsCount;
    settings->Falloff = copy.Falloff;
    settings->LowColor = copy.LowColor;
    settings->HighColor = copy.HighColor;
    return 1;
}
