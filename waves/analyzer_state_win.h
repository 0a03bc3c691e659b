// The spectrum analyzer's window from the inside: what its files share. Everything belongs to the
// window's own thread.
#pragma once
#include "ui/canvas_win.h"
#include "ui/look_win.h"
#include "waves/analyzer_layout.h"
#include "waves/analyzer_picture.h"

struct AnalyzerWindow {
    HWND window, owner, tooltips;
    HWND controls[kAnalyzerControls]; // in the order of kAnalyzerControlIds
    AnalyzerSettings settings;
    AnalyzerLayout layout;
    CachedFont labelFont, textFont, axisFont;

    HANDLE formatLock; // guards the two below
    SoundFormatRecord format;
    uint32_t bins;               // 0: nothing is painted
    SoundFormatRecord indicated; // on the indicators, the tooltips and the axis
    uint32_t paints;

    // The display: kept between frames, drawn where something changes.
    Canvas canvas;
    AnalyzerLook look;
    AnalyzerState state;
    AnalyzerFrame shown;
};

inline RECT RectOf(const Box& box) {
    return {box.left, box.top, box.left + box.width, box.top + box.height};
}
COLORREF DisplayColor(); // of the dark display

// ---- analyzer_controls_win.cpp
int CreateAnalyzerControls(AnalyzerWindow* analyzer);
void LayOutAnalyzerWindow(AnalyzerWindow* analyzer, int width, int height);
void ShowAnalyzerSwitches(AnalyzerWindow* analyzer);
// Indicators and the columns' tooltips.
void ShowAnalyzerFormat(AnalyzerWindow* analyzer);
// The context menu; what is chosen arrives as WM_COMMAND.
void ShowAnalyzerMenu(AnalyzerWindow* analyzer, POINT at);

// ---- analyzer_paint_win.cpp
// Draws the whole picture anew: after a change of size, colours, labels or panes.
void DrawAnalyzerPicture(AnalyzerWindow* analyzer);
// The next frame, copied to the screen as far as it differs.
void PaintAnalyzerFrame(AnalyzerWindow* analyzer, const AnalyzerInput& input);
void PaintAnalyzer(AnalyzerWindow* analyzer); // in WM_PAINT
void FreeAnalyzerPictures(AnalyzerWindow* analyzer);

// ---- analyzer_settings_win.cpp
void ReadAnalyzerSettings(AnalyzerSettings* settings);
void WriteAnalyzerSettings(const AnalyzerSettings& settings);
// The dialog; 1 when it was confirmed, and the four values that it is for are changed. Runs a
// message loop: the window may be gone afterwards.
int EditAnalyzerSettings(HWND owner, AnalyzerSettings* settings);
