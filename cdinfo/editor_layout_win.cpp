// Geometry of the CD information editor: the track list takes what the dialog grows by, the program
// below it keeps its height.
#include "cdinfo/editor_parts_win.h"

#include "resources/ids.h"

#include <algorithm>

void SetUpLayout(Editor* editor) {
    RECT outer, client, list;
    GetWindowRect(editor->dialog, &outer);
    GetClientRect(editor->dialog, &client);
    editor->minimum = {outer.right - outer.left, outer.bottom - outer.top};
    editor->client = {client.right, client.bottom};
    GetWindowRect(editor->program, &list);
    MapWindowPoints(nullptr, editor->dialog, reinterpret_cast<POINT*>(&list), 2);
    editor->middle = list.right;
    editor->controlCount = 0;
    for (HWND control = GetWindow(editor->dialog, GW_CHILD);
         control && editor->controlCount < kEditorMaxControls;
         control = GetWindow(control, GW_HWNDNEXT)) {
        RECT* place = &editor->places[editor->controlCount];
        GetWindowRect(control, place);
        MapWindowPoints(nullptr, editor->dialog, reinterpret_cast<POINT*>(place), 2);
        editor->controls[editor->controlCount++] = control;
    }
}

// The place of a control when the dialog is wider and higher than designed.
static RECT PlaceOf(const Editor* editor, HWND control, RECT place, int wider, int higher) {
    const int id = GetDlgCtrlID(control);
    RECT tracks = {};
    for (int i = 0; i < editor->controlCount; ++i) {
        if (editor->controls[i] == editor->tracks) tracks = editor->places[i];
    }
    if (place.top >= tracks.bottom) OffsetRect(&place, 0, higher);
    switch (id) {
    case IDC_EDITOR_TRACKS: place.bottom += higher; [[fallthrough]];
    case IDC_EDITOR_TITLE:
    case IDC_EDITOR_COMMENT:
    case IDC_EDITOR_PROGRAM: place.right += wider; break;
    default:
        if (place.left >= editor->middle) OffsetRect(&place, wider, 0);
    }
    return place;
}

void LayOut(const Editor* editor) {
    RECT client;
    GetClientRect(editor->dialog, &client);
    const int wider = std::max<int>(0, client.right - editor->client.cx);
    const int higher = std::max<int>(0, client.bottom - editor->client.cy);
    HDWP batch = BeginDeferWindowPos(editor->controlCount);
    for (int i = 0; i < editor->controlCount && batch; ++i) {
        const RECT place = PlaceOf(editor, editor->controls[i], editor->places[i], wider, higher);
        batch = DeferWindowPos(batch, editor->controls[i], nullptr, place.left, place.top,
                               place.right - place.left, place.bottom - place.top,
                               SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
    }
    if (batch) EndDeferWindowPos(batch);
    FitTracks(editor);
    FitProgram(editor);
    // The group's frame lies around others and cannot tell what it has uncovered.
    RedrawWindow(editor->dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}
