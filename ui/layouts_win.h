// Layouts: six saved arrangements of the program's windows, in the registry. Any thread of the
// program may read, write and store them; ApplyLayout and ChooseFirstLayout belong to the
// console's.
#pragma once
#include "core/platform.h"
#include "ui/layouts.h"

// index: window id - 1. A missing or damaged entry gives a zeroed record (0).
int ReadLayoutEntry(int layout, int index, LayoutEntry* entry);
int WriteLayoutEntry(int layout, int index, int x, int y, int width, int height, uint32_t open);
int LayoutEntryExists(int layout, int index);
// The built-in layouts; without force only what is not there yet.
void SeedLayouts(int force);
// The saved placements of all windows, and which are open. 1 when every write succeeded.
int StoreLayout(int layout);

// "Setting" of the layouts window, 0 to 5.
int SelectedLayout();

// Writes the placements and opens, moves and closes windows; owner is the console, which must not
// be switching anything. Windows of other threads are asked to move and may stand at their places a
// moment after the return. Without an owner (first run) the on/off values are written instead.
void ApplyLayout(int layout, HWND owner);
// Once for each user, before the console's placement is read: the layout that suits the screen. An
// installation that has placements of its own is left as it is.
void ChooseFirstLayout();

// The submenu "Layout 1" .. "Layout 6"; its commands reach the console from any component window.
void AppendLayoutsMenu(HMENU menu);
