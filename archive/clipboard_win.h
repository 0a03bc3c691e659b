// Discs on the system's clipboard.
#pragma once
#include "archive/clipboard.h"
#include "core/platform.h"

// The registered format's number, as WM_CLIPBOARDUPDATE's receivers need it.
UINT ClipboardDiscFormat();
// 1 when discs of ours may be there; what it is shows when it is taken.
int ClipboardHasDiscs();
// Puts a block there in place of all else. 0 when the clipboard can't be had.
int PutDiscsOnClipboard(HWND owner, const std::vector<uint8_t>& block);
// A copy of a sound block, or 0 and nothing.
int TakeDiscsFromClipboard(HWND owner, std::vector<uint8_t>* block);
