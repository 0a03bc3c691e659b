// The colour chooser and the swatches of settings dialogs. See swatch_win.h.
#include "ui/swatch_win.h"

#include "ui/paint_win.h"

#include <algorithm>
#include <commdlg.h>

constexpr int kCustomColors = 16; // the chooser's row of own colours
constexpr int kFocusMargin = 3;   // pixels around the square, where the focus mark has its place

// Every dialog's thread comes here. A thread works on a copy and puts it back whole words at a
// time, so of two choosers that are open together the one closed last has its way.
static COLORREF s_customColors[kCustomColors] = {
    0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF,
    0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF, 0xFFFFFF};

int PickColor(HWND owner, COLORREF* color) {
    COLORREF own[kCustomColors];
    std::copy_n(s_customColors, kCustomColors, own);
    CHOOSECOLORA choice = {};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = owner;
    choice.rgbResult = *color;
    choice.lpCustColors = own;
    choice.Flags = CC_RGBINIT | CC_ANYCOLOR;
    const int chosen = ChooseColorA(&choice) != 0;
    std::copy_n(own, kCustomColors, s_customColors); // mixed, then cancelled: kept all the same
    if (chosen) *color = choice.rgbResult;
    return chosen;
}

// Half way to the dialog's face.
static COLORREF Washed(COLORREF color) {
    const COLORREF face = GetSysColor(COLOR_BTNFACE);
    return RGB((GetRValue(color) + GetRValue(face)) / 2, (GetGValue(color) + GetGValue(face)) / 2,
               (GetBValue(color) + GetBValue(face)) / 2);
}

// The focus mark stands outside the square: it inverts, and on a grey it could not be seen.
void DrawSwatch(const DRAWITEMSTRUCT& item, COLORREF color) {
    RECT area = item.rcItem;
    FillArea(item.hDC, area, GetSysColor(COLOR_BTNFACE));
    if ((item.itemState & ODS_FOCUS) && !(item.itemState & ODS_NOFOCUSRECT))
        DrawFocusRect(item.hDC, &area);
    InflateRect(&area, -kFocusMargin, -kFocusMargin);
    DrawEdge(item.hDC, &area, EDGE_SUNKEN, BF_RECT | BF_ADJUST);
    FillArea(item.hDC, area, item.itemState & ODS_DISABLED ? Washed(color) : color);
}

int OnSwatchClick(HWND dialog, int swatchId, COLORREF* color) {
    COLORREF chosen = *color;
    if (!PickColor(dialog, &chosen) || chosen == *color) return 0;
    *color = chosen;
    HWND swatch = GetDlgItem(dialog, swatchId);
    if (swatch) InvalidateRect(swatch, nullptr, FALSE); // null would mean the whole screen
    return 1;
}
