// The track bar TNVTrackBarClass: volume and level sliders.
//
// It notifies its parent by posting WM_HSCROLL or WM_VSCROLL, wParam = position << 16 | code,
// lParam its window; the code is SB_THUMBTRACK while the user drags and SB_ENDSCROLL otherwise.
// Ranges and positions that travel in messages are unsigned 16-bit words.
#pragma once
#include "core/platform.h"

constexpr const char* kTrackBarClass = "TNVTrackBarClass";
constexpr DWORD kTrackBarVertical = 0x2; // style bit; minimum at the top

enum TrackBarMessage {
    kTrackBarSetPos = WM_USER + 5,  // lParam: position; ignored while the user drags; no notice
    kTrackBarSetRange = WM_USER + 6 // lParam: Min, Max; wParam not 0 repaints
};

HWND CreateTNVTrackBar(DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                       HINSTANCE instance);
void SetTrackBarColors(HWND trackBar, COLORREF thumbColor, COLORREF backColor);
// 1 to the client height, else refused with 0.
int SetTrackBarThumbSize(HWND trackBar, int size);

// The messages above; from any thread.
inline void SetTrackBarPos(HWND trackBar, int pos) {
    SendMessageA(trackBar, kTrackBarSetPos, 0, pos);
}
inline void SetTrackBarRange(HWND trackBar, int minimum, int maximum, int repaint) {
    SendMessageA(trackBar, kTrackBarSetRange, repaint, MAKELPARAM(minimum, maximum));
}
