// The push button TNVButtonClass, drawn in the user's colours.
//
// Styles honoured: BS_ICON, BS_BITMAP, BS_PUSHLIKE (stays in until clicked again). It notifies its
// parent by WM_COMMAND, lParam its window, the code in the high word: kButtonClicked is posted,
// the other two are sent, and only after SetButtonNotify. A disabled button shows no label; that is
// how one is greyed out. Functions are called on the button's thread and do nothing with other
// windows.
#pragma once
#include "core/platform.h"

constexpr const char* kButtonClass = "TNVButtonClass";

enum ButtonNotification {
    kButtonClicked = 0,
    kButtonPressed = 2,
    kButtonReleased = 3 // also whenever the capture is lost: treat one without a press as nothing
};

HWND CreateTNVButton(const char* text, DWORD style, int x, int y, int width, int height,
                     HWND parent, UINT id, HINSTANCE instance);
HWND CreateTNVButtonFromString(UINT stringId, DWORD style, int x, int y, int width, int height,
                               HWND parent, UINT id, HINSTANCE instance);

// Repaints only if one of the three changes.
void SetButtonColors(HWND button, COLORREF textColor, COLORREF faceColor, COLORREF hotTextColor);
void SetButtonNotify(HWND button, int on);
// Draws 32 by 32 icon resources, stretched to the button's height, in place of a label. Icons are
// loaded here, once; 0 for all three goes back to the label.
void SetButtonIcons(HWND button, UINT normal, UINT pressed, UINT hover);
