// The shared look on Windows: colours in the settings, fonts, on and off looks of buttons.
#pragma once
#include "core/platform.h"
#include "ui/look.h"

constexpr const char* kDefaultFace = "Arial";
constexpr int kFaceMax = 32; // bytes with the NUL
constexpr int kLabelWeight = FW_BOLD;

// The colours in force. Written on the console's thread only, a word at a time.
extern ColorSet Colors;
// Face of the label fonts ("FontFaceName"); written on the console's thread only.
extern char FontFaceName[kFaceMax];

// Before any setting is read: the defaults for this screen's depth.
void InitColors();
void ReadColors(); // a missing value keeps the colour that stands
void SaveColors();
void SeedColors();   // writes what is not there yet
void ReadFontFace(); // missing or empty: kDefaultFace

// A font that is made anew only when its face, height or weight changes.
struct CachedFont {
    HFONT font;
    char face[kFaceMax];
    int height, weight;
};
// Makes the font (cell height in pixels) and gives it to the controls with WM_SETFONT, then deletes
// the one before; controls that have it already are left alone. Null controls are skipped.
void GiveFont(CachedFont* cached, const char* face, int height, int weight, const HWND* controls,
              int count);
void FreeFont(CachedFont* cached);
HFONT CreateLabelFont(const char* face, int height, int weight);
// For measuring letters: calls use(dc) with such a font of the default face selected.
template <typename Use> void WithLabelFont(int height, int weight, const Use& use) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT made = CreateLabelFont(kDefaultFace, height, weight);
    const HGDIOBJ before = SelectObject(dc, made);
    use(dc);
    SelectObject(dc, before);
    DeleteObject(made);
    DeleteDC(dc);
}

// A toggle button's look: label in BtnLtClr when on, BtnDrkClr when off, on BtnFaceClr, BtnActClr
// under the pointer. Repaints only on change.
void SetButtonOn(HWND button, int on);
