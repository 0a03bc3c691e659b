// Background and button-face bitmaps, and the dialogs in which colours, bitmaps and the label font
// are chosen.
#pragma once
#include "core/platform.h"

#include <cstdint>

enum BitmapAlign { kAlignObject, kAlignParent, kAlignGroup, kAlignScreen };
struct BitmapSettings {
    uint32_t UseBitmap;  // draw it instead of the plain colour
    uint32_t UseDefault; // the built-in one
    uint32_t Stretch;    // over the area instead of in tiles
    uint32_t Align;      // BitmapAlign: where tiles begin
    char FileName[MAX_PATH];
};

void ReadBackgroundSettings(BitmapSettings* settings);
void ReadButtonFaceSettings(BitmapSettings* settings);
// Without force only values that are not there yet. Both load the bitmap anew.
int SaveBackgroundSettings(const BitmapSettings& settings, int force);
int SaveButtonFaceSettings(const BitmapSettings& settings, int force);

// What is in force now: no registry read, for paints of any window's thread. Draws over the
// rectangle (client coordinates of `window`) and gives 1, or 0 when the plain colour is to be used.
int DrawBackground(HDC dc, const RECT& area, HWND window);
int DrawButtonFace(HDC dc, const RECT& area, HWND button);

// Dialogs, modal to the console. 1 when something was changed.
int ShowColorsDialog(HWND console);
int ShowFontDialog(HWND console);
