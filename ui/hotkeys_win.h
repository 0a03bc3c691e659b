// Ten system-wide hotkeys, registered on the console's window, and the dialog that sets them. All
// on the console's thread.
#pragma once
#include "core/platform.h"
#include "ui/hotkeys.h"

// Once, when the console is there: what is stored and enabled. A combination that another program
// has stays stored; nothing is reported.
void RegisterAllHotkeys(HWND console);
// The dialog "Set Hotkeys...", modal to the console. Changes count at once and are saved when it
// closes, however it does.
void ShowHotkeysDialog(HWND console);
// WM_HOTKEY's id as a place, 0 to 9, or -1.
int HotkeyOf(WPARAM id);

// ---- for the dialog
// A value that is missing or of another size gives a record that is off.
void LoadHotkeys(HotkeyRecord (&records)[kHotkeys]);
void SaveHotkeys(const HotkeyRecord (&records)[kHotkeys]);
// Registers or unregisters. 0 when the system refused.
int ApplyHotkey(const HotkeyRecord& record, int enable);
// The last try to register it was refused.
int HotkeyWasRefused(int place);
