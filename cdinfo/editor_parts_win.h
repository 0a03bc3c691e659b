// What the files of the CD information editor share: the state of one open dialog, and the two
// halves that editor_win.cpp puts together, track list and program. Nobody else includes this.
#pragma once
#include "cdinfo/editor.h"
#include "cdinfo/program.h"
#include "core/platform.h"
#include "ui/dialog_win.h"
#include "ui/listview_win.h"

constexpr int kEditorMaxControls = 48;

// One open editor. It lives on the heap as long as its dialog; DWLP_USER of the dialog points to
// it.
struct Editor {
    HWND dialog;
    HWND owner;
    int done;    // the loop is to end
    int outside; // it ends because the owner or the thread does
    int kept;    // what was edited counts

    CDInfoRecord before;
    CDInfoRecord after;

    // The track list and the edit control over one of its cells.
    HWND tracks;
    HWND cellEdit;
    WNDPROC tracksProcedure; // the control's own, before ours
    WNDPROC cellProcedure;
    int cellOpen;
    TrackCell cell;     // the open one, else the last one that was
    int clickOpensCell; // the mouse went down on the one selected row
    // The artists as they were when "same artist" was ticked, until one is typed.
    char differentArtists[kMaxTracks][kTextSize];
    int hasDifferentArtists;

    HWND program;
    int programQuiet; // entries are being listed: their selection does not matter yet

    // Where the controls stand in the dialog as it was designed.
    SIZE minimum; // outer size
    SIZE client;
    int middle; // left half and right half
    int controlCount;
    HWND controls[kEditorMaxControls];
    RECT places[kEditorMaxControls];
};

// ---- editor_tracks_win.cpp

void SetUpTracks(Editor* editor);
// Texts of all rows, the sum above them, the state of "same artist".
void ShowTracks(Editor* editor);
// Lets the widest column fill the list.
void FitTracks(const Editor* editor);
// Makes a row (from 0) the one that is selected.
void SelectTrack(Editor* editor, size_t track);
// Takes over (keep) or forgets what stands in the open cell, and closes it. Nothing when none is.
void CloseCell(Editor* editor, int keep);
void OnSameArtist(Editor* editor);
// 1 when the notification was one of the track list's.
int OnTracksNotify(Editor* editor, const NMHDR* header);
// Selected rows as track numbers (1-based); returns how many.
size_t SelectedTracks(const Editor* editor, uint32_t (&tracks)[kMaxTracks]);

// ---- editor_program_win.cpp

void SetUpProgram(Editor* editor);
// Entries, their total and the choice of tracks for a stretch, after texts have changed.
void ShowProgram(Editor* editor);
void FitProgram(const Editor* editor);
// Offers a track (1-based) for a stretch, from its start to its end.
void OfferStretch(Editor* editor, uint32_t track);
void EnableProgramButtons(Editor* editor);
// Enter in the fields of a stretch adds it, if that can be: 1, and the dialog stays open.
int AddStretchByEnter(Editor* editor);
// 1 when the control was one of the program's.
int OnProgramCommand(Editor* editor, WORD id, WORD code);
int OnProgramNotify(Editor* editor, NMHDR* header, LRESULT* result);

// ---- editor_layout_win.cpp

// Notes where the controls stand; the dialog gets no smaller than it is now.
void SetUpLayout(Editor* editor);
void LayOut(const Editor* editor);
