// For tests of windows: a parent that records what its controls tell it, messages made by hand and
// by the real mouse, and pixels.
#pragma once
#include "core/platform.h"

#include <functional>
#include <string>
#include <vector>

struct Note {
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
};

// Records commands, scroll and wheel messages. One lives at a time.
struct Recorder {
    Recorder();
    ~Recorder();
    HWND window;
    LRESULT answer = 0; // to commands that are sent
    std::function<void(const Note&)> onNote;
    std::vector<Note> notes;

    // Codes (high words) of the commands of a control, or all with that command id.
    std::vector<int> CodesOf(HWND control) const;
    std::vector<Note> Commands(int id) const;
};

// Handles everything that waits.
void Pump();
// Pumps until the condition holds; false after the time.
bool PumpUntil(const std::function<bool()>& condition, DWORD waitMs = 5000);

inline LPARAM At(int x, int y) {
    return MAKELPARAM(x, y);
}

// The real pointer, in screen pixels; pumps afterwards.
void MovePointer(int x, int y);
// Keeps the real pointer away from what a test does by hand.
void ParkPointer();

// Pixels of the client area, painted up to date.
int CountPixels(HWND window, RECT area, COLORREF color);
RECT ClientRect(HWND window);
