// What settings dialogs have in common: one at a time over a window, and track bars whose value
// stands beside them as a text.
#pragma once
#include "core/platform.h"

#include <cstdint>

// Where a dialog is open over the window, brings it to the front and returns 1.
int RaiseDialogOf(HWND owner);
// A modal dialog of the program's resources, unless there is one over its owner: then 0.
INT_PTR ShowSettingsDialog(UINT resourceId, HWND owner, DLGPROC procedure, LPARAM argument = 0);

struct DialogBar {
    int id, textId;  // the bar, and the static control beside it
    UINT formatId;   // of the text; it has one "%d"
    int least, most; // positions
    int page, tick;  // steps
    int scale;       // of the text's number: position times this
};
void SetUpDialogBar(HWND dialog, const DialogBar& bar, uint32_t position);
// Its position. The text follows.
uint32_t ReadDialogBar(HWND dialog, const DialogBar& bar);
