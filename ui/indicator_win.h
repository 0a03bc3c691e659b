// The indicator TNVIndicatorClass: a passive label or lamp in one colour, on the background of the
// window it lies on; it can show progress instead.
//
// An indicator is a disabled window, so that it takes no focus and the window can be dragged by it.
// The framework finds double clicks on it (the parent gets WM_COMMAND with the id, code
// kIndicatorDoubleClicked and the handle); its tooltip is a rectangle (ui/tooltips_win.h).
#pragma once
#include "core/platform.h"

constexpr const char* kIndicatorClass = "TNVIndicatorClass";
constexpr int kIndicatorDoubleClicked = 5;

// stringId 0: no text yet.
HWND CreateTNVIndicator(UINT stringId, DWORD style, int x, int y, int width, int height,
                        HWND parent, UINT id, HINSTANCE instance);
void SetIndicatorColor(HWND indicator, COLORREF color);
// For one that does not lie on the window's plain background; CLR_NONE goes back to that.
void SetIndicatorBack(HWND indicator, COLORREF color);
// on = 0 goes back to the label.
void SetIndicatorProgress(HWND indicator, int on, int minimum, int maximum, int position);
void StepIndicatorProgress(HWND indicator, int delta);
int IsIndicator(HWND window);
