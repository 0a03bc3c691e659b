// Background and button-face bitmaps, and the dialogs in which colours, bitmaps and the label font
// are chosen.
//
// What is in force is kept for the whole process and painted from there: no paint reads the
// registry or a file. Colours and fonts themselves stand in look_win.h.
#pragma once
#include "core/platform.h"
#include "ui/tiling.h"

#include <cstdint>

struct BitmapSettings {
    uint32_t UseBitmap;  // draw it instead of the plain colour
    uint32_t UseDefault; // the built-in one
    uint32_t Stretch;    // over the area instead of in tiles
    uint32_t Align;      // BitmapAlign: where tiles begin
    char FileName[MAX_PATH];
};

// ---- what is stored. A missing value reads as 0, the name as empty.
void ReadBackgroundSettings(BitmapSettings* settings);
void ReadButtonFaceSettings(BitmapSettings* settings);
// Without force only values that are not there yet. What then is stored comes into force, its
// bitmap loaded anew. 1 when every write succeeded.
int SaveBackgroundSettings(const BitmapSettings& settings, int force);
int SaveButtonFaceSettings(const BitmapSettings& settings, int force);
// Colours, bitmaps and font as an installation leaves them; never over what is there.
void SeedAppearance();

// ---- what is in force
// Brings what is stored into force: before the first window is made. This and all that brings a
// file's bitmap into force waits 150 ms for it at most; then the built-in one is in force until the
// file has been read, which the console is told by a posted kColorsChanged.
void LoadAppearance();
// In force without being stored, for a preview. A bitmap that is loaded already is kept.
void UseBackground(const BitmapSettings& settings);
void UseButtonFace(const BitmapSettings& settings);
// The bitmap in force, loaded by `settings` when none is (as above: a file that takes its time
// gives the built-in one): a section of 32 bits at its own size, which belongs to the process. Null
// when not even the built-in one can be had. It stays until the next change of settings; select it
// into no dc, all threads share it.
HBITMAP GetBackgroundBitmap(const BitmapSettings& settings);
HBITMAP GetButtonFaceBitmap(const BitmapSettings& settings);

// ---- painting, by any window's thread
// Stretched over `area` (client coordinates of `window`), or in tiles from its upper left corner by
// alignment. Gives 1, or 0 when there is no bitmap and the plain colour is to be used. The bitmap
// is the one in force, placed as `settings` say.
int DrawBitmapBackground(HDC dc, const RECT& area, const BitmapSettings& settings, HWND window);
// The same as the settings in force say; 0 also when they want no bitmap.
int DrawBackground(HDC dc, const RECT& area, HWND window);
int DrawButtonFace(HDC dc, const RECT& area, HWND button);
// What the window around a control shows beneath it: for controls that look transparent. 0 where
// that is the plain colour.
int DrawBackgroundBeneath(HDC dc, HWND control);

// ---- for the framework: windows whose picture depends on where they stand
void NoteOpenWindow(HWND window, int isComponent);
void NoteClosedWindow(HWND window); // also gives back what its thread holds for painting
void NoteMovedWindow(HWND window);

// ---- dialogs, modal to the console, which is told of changes by kColorsChanged and kFontChanged.
// 1 when something was changed.
int ShowColorsDialog(HWND console);
int ShowFontDialog(HWND console);
// The system's dialog for a bitmap file; path holds MAX_PATH characters. 1 when one was chosen.
int PickBitmapFile(HWND owner, const char* title, char* path);
