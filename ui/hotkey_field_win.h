// The field that takes a hotkey from the keyboard, over the middle of a dialog.
#pragma once
#include "core/platform.h"
#include "ui/hotkeys.h"

constexpr const char* kHotkeyFieldClass = "TNVGetHotKey";
constexpr LPARAM kKeyRepeated = 1 << 30; // of a key message: the key was down already

// Shows the field, disables the dialog and runs until the first key that is no modifier: 1, and the
// record's modifiers and key are those that were pressed. 0 with the record as it was after Esc, a
// click, WM_CANCELMODE to the field, or when the dialog or the program ends; the dialog may be gone
// then.
int CaptureHotkey(HWND dialog, HotkeyRecord* record);
