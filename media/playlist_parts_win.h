// What the files of the playlist editor share: one open dialog, and its list. Nobody else includes
// this.
#pragma once
#include "core/platform.h"
#include "media/durations_win.h"
#include "media/moves.h"
#include "ui/dialog_win.h"

#include <map>

constexpr UINT kLengthsReady = WM_APP;
constexpr UINT_PTR kScrollTimer = 1;

struct PlaylistEditor {
    ModalDialog modal;
    DialogLayout layout;
    Playlist after; // what is edited

    HWND list;
    int quiet; // rows are being selected: the buttons follow at the end
    HWND mark; // the line where dragged rows would go
    int dragging;
    int gap; // and the entry before which that is

    LengthReader* reader;
    int held;                              // the user wants no more lengths read
    std::map<std::string, double> lengths; // of resolved entries
};

// ---- playlist_list_win.cpp

void SetUpList(PlaylistEditor* editor);
void FitList(const PlaylistEditor* editor);
EntryMarks SelectedRows(const PlaylistEditor* editor);
// Lists the entries anew; the marked ones are selected, the last of them comes in sight.
void ShowEntries(PlaylistEditor* editor, const EntryMarks& marks);
void GiveCellText(const PlaylistEditor* editor, NMLVDISPINFOA* info);
// The entry before which a point of the dialog lies; -1 when it lies beside the list.
int GapAt(const PlaylistEditor* editor, POINT point);

void BeginRowDrag(PlaylistEditor* editor);
void DragRows(PlaylistEditor* editor); // the pointer has moved, or time to scroll
void EndRowDrag(PlaylistEditor* editor, int drop);

// ---- playlist_editor_win.cpp

// After each change of list or selection.
void ShowState(PlaylistEditor* editor);
// Has the unknown lengths read, unless that is held.
void ReadLengths(PlaylistEditor* editor);
