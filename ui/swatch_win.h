// Choosing colours: the system's chooser, and the coloured squares of settings dialogs that open
// it. A swatch is a button of style BS_OWNERDRAW in the dialog's resource.
#pragma once
#include "core/platform.h"

// The chooser, modal to owner, starting from *color; 1 when the user chose. Own colours that
// somebody mixed are kept for the program's life.
int PickColor(HWND owner, COLORREF* color);

// In WM_DRAWITEM.
void DrawSwatch(const DRAWITEMSTRUCT& item, COLORREF color);
// On a swatch's click: the chooser, then the swatch repainted. 1 when the colour was changed.
int OnSwatchClick(HWND dialog, int swatchId, COLORREF* color);
