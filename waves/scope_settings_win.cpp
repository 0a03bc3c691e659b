// The oscilloscope's settings in the registry, and the dialog for its colours.
#include "waves/scope_state_win.h"

#include "core/component_win.h"
#include "core/settings.h"
#include "resources/ids.h"
#include "ui/components.h"
#include "ui/settings_dialog_win.h"
#include "ui/swatch_win.h"

static const struct {
    const char* name;
    uint32_t ScopeSettings::*field;
} kWords[] = {{"LineColor", &ScopeSettings::lineColor}, {"LowColor", &ScopeSettings::lowColor},
              {"HighColor", &ScopeSettings::highColor}, {"ForceMono", &ScopeSettings::forceMono},
              {"Vertical", &ScopeSettings::vertical},   {"Legends", &ScopeSettings::legends},
              {"Gradient", &ScopeSettings::gradient}};
static constexpr const char* kGain = "Gain";

ScopeSettings ReadScopeSettings() {
    ScopeSettings settings = DefaultScopeSettings();
    for (const auto& word : kWords)
        ReadWindowSetting(kScopeWindowId, word.name, kRegDword, 4, &(settings.*word.field));
    ReadWindowSetting(kScopeWindowId, kGain, kRegBinary, sizeof settings.gain, &settings.gain);
    ClampScopeSettings(&settings);
    return settings;
}

void WriteScopeSettings(const ScopeSettings& settings) {
    for (const auto& word : kWords)
        WriteWindowDword(kScopeWindowId, word.name, settings.*word.field);
    WriteWindowSetting(kScopeWindowId, kGain, kRegBinary, sizeof settings.gain, &settings.gain);
}

// ---- the dialog

static const struct {
    int id;
    uint32_t ScopeSettings::*field;
} kSwatches[] = {{IDC_SCOPE_HIGH, &ScopeSettings::highColor},
                 {IDC_SCOPE_LOW, &ScopeSettings::lowColor},
                 {IDC_SCOPE_LINE, &ScopeSettings::lineColor}};

static void DrawSwatchOf(const DRAWITEMSTRUCT& item, const ScopeSettings& settings) {
    for (const auto& swatch : kSwatches)
        if (static_cast<int>(item.CtlID) == swatch.id) DrawSwatch(item, settings.*swatch.field);
}

// The chooser runs a loop of its own, at whose end the dialog may be gone with its owner.
static void OnSwatch(HWND dialog, ScopeSettings* settings, int id) {
    for (const auto& swatch : kSwatches) {
        if (swatch.id != id) continue;
        COLORREF color = settings->*swatch.field;
        if (OnSwatchClick(dialog, id, &color)) settings->*swatch.field = color;
    }
}

static void OnReset(HWND dialog, ScopeSettings* settings) {
    ResetScopeColors(settings);
    for (const auto& swatch : kSwatches)
        InvalidateRect(GetDlgItem(dialog, swatch.id), nullptr, FALSE);
}

static INT_PTR ColorsProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrA(dialog, DWLP_USER, lParam);
        return TRUE;
    }
    auto* settings = reinterpret_cast<ScopeSettings*>(GetWindowLongPtrA(dialog, DWLP_USER));
    if (!settings) return FALSE;
    if (message == WM_DRAWITEM) {
        DrawSwatchOf(*reinterpret_cast<DRAWITEMSTRUCT*>(lParam), *settings);
        return TRUE;
    }
    if (message != WM_COMMAND || HIWORD(wParam) != BN_CLICKED) return FALSE;
    switch (LOWORD(wParam)) {
    case IDOK:
    case IDCANCEL: EndDialog(dialog, LOWORD(wParam)); break;
    case IDC_SCOPE_RESET: OnReset(dialog, settings); break;
    default: OnSwatch(dialog, settings, LOWORD(wParam));
    }
    return TRUE;
}

// What is edited is a copy: the window's own toggles go on working meanwhile.
int EditScopeColors(HWND owner, ScopeSettings* settings) {
    ScopeSettings edited = *settings;
    const INT_PTR answer =
        ShowSettingsDialog(IDD_SCOPE_SETTINGS, owner, GuardedDialog<ColorsProcedure>,
                           reinterpret_cast<LPARAM>(&edited));
    if (answer != IDOK || !IsWindow(owner)) return 0;
    for (const auto& swatch : kSwatches)
        settings->*swatch.field = edited.*swatch.field;
    WriteScopeSettings(*settings);
    return 1;
}
