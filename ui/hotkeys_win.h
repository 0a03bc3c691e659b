// Ten system-wide hotkeys, registered on the console's window, and the dialog that sets them. All
// on the console's thread.
#pragma once
#include "core/platform.h"

// Once, when the console is there.
void RegisterAllHotkeys(HWND console);
// The dialog "Set Hotkeys...", modal to the console.
void ShowHotkeysDialog(HWND console);
// WM_HOTKEY's id as a place, 0 to 9, or -1.
int HotkeyOf(WPARAM id);
