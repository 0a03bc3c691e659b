// What the CD player window and the CD icon offer alike.
#pragma once
#include "cd/engine_win.h"

// The submenu "CD Drive": an entry for each CD drive, with the id firstId + k for letter 'A' + k.
void AppendCdDrives(HMENU menu, UINT firstId, char current);
// An entry for each track of the disc, with the id firstId for track 1; `checked` 0: none.
void AppendCdTracks(HMENU menu, UINT firstId, const CDInfoRecord& record, int checked);
// The editor on a copy of the disc's record; what the user accepts goes to the engine. Runs a
// message loop: the window may be gone afterwards.
void EditDiscInformation(HWND window);
