// The oscilloscope window from the inside: what its files share. Everything belongs to the window's
// own thread.
#pragma once
#include <vector>

#include "core/platform.h"
#include "ui/canvas_win.h"
#include "ui/look_win.h"
#include "waves/scope.h"
#include "waves/scope_layout.h"

constexpr int kMaxPanes = 2;

// A pane and what the picture shows in it; sized when the panes are laid out.
struct ScopeTrace {
    ScopePane place; // in the picture
    std::vector<ScopeColumn> shown, next;
    std::vector<uint32_t> rowColors;
};

struct ScopeWindow {
    HWND window;
    HWND tooltips;
    HWND controls[kScopeControls];
    ScopeSettings settings;
    ScopeLayout layout;
    ScopeTextWidths widths;
    CachedFont buttonFont, indicatorFont, legendFont;
    int sliderPosition; // what the slider said last, or was set to

    SoundFormatRecord shownFormat; // of the indicators
    int repaintBackground;         // the picture is to be begun anew
    Canvas picture;                // of the display
    int panes;                     // in the picture
    ScopeTrace traces[kMaxPanes];
    uint8_t samples[kSoundBufferBytes];
};

inline HWND ControlOf(const ScopeWindow& scope, int id) {
    return scope.controls[ScopeControlIndex(id)];
}
inline RECT RectOf(const Box& box) {
    return {box.left, box.top, box.left + box.width, box.top + box.height};
}

// ---- scope_controls_win.cpp: making, placing, lettering, colouring
COLORREF ScopePanelColor(); // the ground of the indicators
int CreateScopeControls(ScopeWindow* scope);
void LayOutScopeWindow(ScopeWindow* scope, int width, int height);
// Colours of the toggles by their state.
void ShowScopeToggles(const ScopeWindow& scope);
// The indicators, after the published format.
void ShowScopeFormat(ScopeWindow* scope, const SoundFormatRecord& format);

// ---- scope_paint_win.cpp
// Brings the picture up to the published sound and copies what changed; nothing while it can't be
// seen.
void ShowScopeTraces(ScopeWindow* scope);
void PaintScope(ScopeWindow* scope); // WM_PAINT
void FreeScopePictures(ScopeWindow* scope);

// ---- scope_settings_win.cpp
ScopeSettings ReadScopeSettings();
void WriteScopeSettings(const ScopeSettings& settings);
// The dialog; 1 when colours were changed and stored. Runs a message loop: the window may be gone
// afterwards.
int EditScopeColors(HWND owner, ScopeSettings* settings);
