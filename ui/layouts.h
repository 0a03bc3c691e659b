// Saved arrangements of the windows, without Windows: the built-in ones, what applying one does
// with each window, and the boxes of the window in which they are chosen.
#pragma once
#include "ui/components.h"
#include "ui/geometry.h"

#include <cstdint>

constexpr int kLayoutCount = 6;

struct LayoutEntry {             // as stored: 20 bytes
    int32_t X, Y, Width, Height; // outer rectangle in screen pixels
    uint32_t Open;               // not 0: the window belongs open
};
static_assert(sizeof(LayoutEntry) == 20);

// The windows that an arrangement holds; an entry's index is the window id - 1.
constexpr int kLayoutWindows = 8;
extern const uint16_t kLayoutWindowIds[kLayoutWindows];

// place: in kLayoutWindowIds.
LayoutEntry BuiltInLayoutEntry(int layout, int place);

// A stored number of a chosen layout; what is none means the first.
int LayoutOfSetting(uint32_t stored);
// Which of the built-in layouts suits a screen of that many pixels.
int LayoutOfScreenWidth(int pixels);

// ---- applying
constexpr uint32_t WindowBit(int windowId) {
    return 1u << (windowId - 1);
}
// The windows that a layout opens and closes, in the order in which it does so.
constexpr int kSwitchedWindows = 6;
extern const uint16_t kSwitchedWindowIds[kSwitchedWindows];

enum LayoutStep { kLeaveWindow, kCloseWindow, kMoveWindow, kOpenWindow };
LayoutStep LayoutStepOf(int windowId, uint32_t openMask, int isOpen);

// ---- the window "Layouts": a column of equal buttons at the left; beside it the label, and below
// that the chosen layout in small
enum LayoutsControl {
    kLayoutsChoice = 700, // + layout
    kLayoutsRecall = 706,
    kLayoutsStore = 707,
    kLayoutsClose = 708,
    kLayoutsBrand = 709
};
constexpr int kLayoutsButtons = 9; // from kLayoutsChoice

struct LayoutsWindowBoxes {
    Box buttons[kLayoutsButtons];
    Box brand, picture; // nothing where the window is too narrow for them
};
LayoutsWindowBoxes LayOutLayoutsWindow(int width, int height);

// A screen in small, as large as fits into the area, in its proportions; and on it a window. What
// lies outside the screen is cut off, and may leave nothing.
Box SmallScreen(const Box& area, int screenWidth, int screenHeight);
Box SmallWindow(const Box& screen, int screenWidth, int screenHeight, const LayoutEntry& entry);
