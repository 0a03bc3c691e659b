// Modal dialogs that can also end from outside: a component is stopped by WM_CLOSE to its window,
// which takes the dialogs that it owns along, and DialogBox would go on waiting. Also their layout
// while they are resized, and where they stand.
#pragma once
#include "core/platform.h"

#include <cstdint>

struct ModalDialog {
    HWND owner;
    HWND window; // set in WM_INITDIALOG
    int done;    // the loop is to end
    int result;  // IDOK, IDCANCEL ...; 0 when owner or thread ended it
    // May be null. Sees each message before the dialog's own keys do; 1 swallows it.
    int (*OnMessage)(ModalDialog* dialog, const MSG& message);
};

// Shows the dialog `templateId` and runs until EndModalDialog; messages of the thread's other
// windows are served meanwhile, the owner (may be null) is disabled. WM_QUIT ends it and stays in
// the queue. Gives `result`; 0 also for an owner that is disabled already, whose dialog comes to
// the front. With `hidden` the procedure shows the window itself. The procedure calls
// EndModalDialog(dialog, 0) in WM_DESTROY.
int RunModalDialog(ModalDialog* dialog, HWND owner, UINT templateId, DLGPROC procedure,
                   LPARAM parameter, int hidden = 0);
// The first call counts.
void EndModalDialog(ModalDialog* dialog, int result);

// A disabled button that keeps the focus swallows the keyboard: the control `next` then gets it.
void EnableDialogButton(HWND dialog, int id, int enable, int next);

// Over the middle of the owner, inside the work area of its monitor; on top where the owner is.
void PlaceOverOwner(HWND dialog, HWND owner);
// The same unless a setting of that component window says where it stood last. What it says is
// moved into a work area, and is no smaller than the dialog is now.
void RestoreDialogPlace(HWND dialog, HWND owner, uint32_t windowId, const char* setting);
void StoreDialogPlace(HWND dialog, uint32_t windowId, const char* setting);

// ---- layout: what each control does with the pixels by which the dialog grows

enum DialogAnchor { kMoveX = 1, kMoveY = 2, kGrowX = 4, kGrowY = 8 };
struct AnchoredControl {
    int id;
    int anchor;
};
constexpr int kAnchoredMax = 24;
struct DialogLayout {
    const AnchoredControl* controls;
    int count;
    SIZE minimum; // outer size as designed
    SIZE client;
    RECT places[kAnchoredMax];
};
void NoteDialogLayout(DialogLayout* layout, HWND dialog, const AnchoredControl* controls,
                      int count);
void LayOutDialog(const DialogLayout& layout, HWND dialog);
