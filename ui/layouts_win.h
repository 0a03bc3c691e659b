// Layouts: six saved arrangements of the program's windows. Registry only, but for ApplyLayout,
// which belongs to the console's thread.
#pragma once
#include "core/platform.h"

#include <cstdint>

constexpr int kLayoutCount = 6;

struct LayoutEntry { // as stored: 20 bytes
    int32_t X, Y, Width, Height;
    uint32_t Open; // not 0: the window belongs open
};

// index: window id - 1. A missing entry leaves a zeroed record (0).
int ReadLayoutEntry(int layout, int index, LayoutEntry* entry);
int WriteLayoutEntry(int layout, int index, int x, int y, int width, int height, uint32_t open);
int LayoutEntryExists(int layout, int index);
// The saved placements of all windows, and which are open. 1 when every write succeeded.
int StoreLayout(int layout);
// Writes the placements and opens, moves and closes windows; owner is the console. Without an owner
// (first run) the on/off values are written instead.
void ApplyLayout(int layout, HWND owner);
// The built-in layouts; without force only what is not there yet.
void SeedLayouts(int force);
// Once, before the console's placement is read: the layout that suits the screen.
void ChooseFirstLayout();
// "Setting" of the layouts window, 0 to 5.
int SelectedLayout();
// The submenu "Layout 1" .. "Layout 6"; its commands reach the console from any component window.
void AppendLayoutsMenu(HMENU menu);
