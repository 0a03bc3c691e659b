// The CD information editor: a modal dialog over a copy of a disc's record.
#pragma once
#include "cdinfo/record.h"
#include "core/platform.h"

// Runs until the user or the outside ends it; messages of the calling thread's other windows are
// served meanwhile, `owner` (may be null) is disabled. 1: *record was replaced by the changed copy,
// its revision one higher and its disc artist derived again; identity, track data and device are
// those that came in. 0: nothing was changed, or the user cancelled, or the record has no tracks;
// *record is untouched. An owner that is disabled already (its editor is open) gives 0 and brings
// that one to the front.
//
// Closed from outside: when the owner is destroyed or WM_QUIT arrives while the dialog is open,
// what was typed so far counts as by OK (a cell still open included) and the call returns at once,
// with 1 if anything changed; a WM_QUIT stays in the queue for the caller's loop. So the caller
// must
//   - pass a record of its own, not one in the data block of `owner`, which is freed by then;
//   - look at IsWindow(owner) before it touches that window or its block again;
//   - hand the record over in both cases. The engine may be gone by then (it stops before its
//     windows when it alone is switched off): if it does not take the record, store it in the
//     database directly. The disc may have been swapped too: compare the identity.
int EditCdInformation(HWND owner, CDInfoRecord* record);
