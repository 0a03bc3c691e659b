// Popup menus: built entry by entry, shown, and gone. What is chosen comes to the window as a
// posted WM_COMMAND.
#pragma once
#include "core/platform.h"

// An id without a text appends nothing.
void AppendMenuEntry(HMENU menu, UINT id, UINT textId, int checked = 0);
void AppendMenuText(HMENU menu, UINT id, const char* text, int checked = 0);
void AppendMenuSeparator(HMENU menu); // not as the first thing
// The entry appended last begins a new column; not as the first thing.
void BeginMenuColumn(HMENU menu);
// What the menu has so far, in as many columns as the screen's height asks for: a menu that goes on
// with a column of its own does not scroll.
void FoldMenu(HMENU menu);
void AppendSubmenu(HMENU menu, HMENU submenu, UINT textId);

// Where the menu of a WM_CONTEXTMENU belongs. From the keyboard it has no place of its own: the
// window's middle.
POINT ContextMenuPlace(HWND window, LPARAM lParam);

// Shows it at `at`, its corner or (TPM_CENTERALIGN | TPM_VCENTERALIGN) its middle there, and
// destroys it, submenus included. Runs a message loop: the window may be gone afterwards.
void ShowMenu(HMENU menu, HWND window, POINT at, UINT alignment = 0);
void ShowMenuAtCursor(HMENU menu, HWND window);
