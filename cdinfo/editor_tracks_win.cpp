// The track list of the CD information editor: a report list whose cells are edited in place.
//
// One edit control lies over the cell that is edited. F2, a double click, a click into the only
// selected row or typing opens a cell; Enter and the arrows go on below or above, Tab beside it,
// Esc forgets what was typed, leaving the cell by other means keeps it.
#include "cdinfo/editor_parts_win.h"

#include "core/component_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"

constexpr int kNumberColumn = 0;
constexpr int kCommentColumn = 3;
constexpr int kLengthColumn = 4;
constexpr int kColumns = 5;

// The columns 1, 2 and 3 are the texts of a track in their order.
static int ColumnOf(TrackField field) {
    return field + 1;
}
static int IsTextColumn(int column) {
    return column >= 1 && column <= kTrackFields;
}

static Editor* EditorOf(HWND dialog) {
    return reinterpret_cast<Editor*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

static int IsSameArtist(const Editor* editor) {
    return IsDlgButtonChecked(editor->dialog, IDC_EDITOR_SAME_ARTIST) == BST_CHECKED;
}

// -1 without one.
static int FocusedRow(const Editor* editor) {
    return static_cast<int>(
        SendMessageA(editor->tracks, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
}

// ---- rows

static void ShowRow(Editor* editor, size_t track) {
    const int row = static_cast<int>(track);
    for (int field = 0; field < kTrackFields; ++field)
        SetCellText(editor->tracks, row, field + 1,
                    TrackFieldText(editor->after, track, static_cast<TrackField>(field)));
}

void ShowTracks(Editor* editor) {
    for (size_t i = 0; i < editor->after.trackCount; ++i)
        ShowRow(editor, i);
}

void FitTracks(const Editor* editor) {
    FitColumn(editor->tracks, kCommentColumn, kColumns);
}

static void FillFixedColumns(Editor* editor) {
    const CDInfoRecord& record = editor->after;
    char text[kStringMax], format[kStringMax];
    unsigned total = 0;
    SetRowCount(editor->tracks, record.trackCount);
    for (int i = 0; i < record.trackCount; ++i) {
        const unsigned seconds = record.trackSeconds[i];
        total += seconds;
        FormatText(text, sizeof text, "%d", i + 1);
        SetCellText(editor->tracks, i, kNumberColumn, text);
        FormatText(text, sizeof text, "%02u:%02u", seconds / 60, seconds % 60);
        SetCellText(editor->tracks, i, kLengthColumn, text);
    }
    LoadText(IDS_EDITOR_TRACKS_SUM, format);
    FormatText(text, sizeof text, format, record.trackCount, total / 60, total % 60);
    SetDlgItemTextA(editor->dialog, IDC_EDITOR_TRACKS_SUM, text);
}

size_t SelectedTracks(const Editor* editor, uint32_t (&tracks)[kMaxTracks]) {
    size_t count = 0;
    int row = -1;
    while (count < kMaxTracks &&
           (row = static_cast<int>(SendMessageA(editor->tracks, LVM_GETNEXTITEM,
                                                static_cast<WPARAM>(row), LVNI_SELECTED))) >= 0)
        tracks[count++] = static_cast<uint32_t>(row + 1);
    return count;
}

void SelectTrack(Editor* editor, size_t track) {
    const int row = static_cast<int>(track);
    SetRowState(editor->tracks, -1, 0, LVIS_SELECTED);
    SetRowState(editor->tracks, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    SendMessageA(editor->tracks, LVM_SETSELECTIONMARK, 0, row);
}

// ---- the cell

static void OpenCell(Editor* editor, const TrackCell& cell) {
    CloseCell(editor, 1);
    if (cell.track >= editor->after.trackCount) return;
    SelectTrack(editor, cell.track);
    const RECT place =
        RevealCell(editor->tracks, static_cast<int>(cell.track), ColumnOf(cell.field));
    editor->cell = cell;
    editor->cellOpen = 1;
    // The place first: a text that is selected in a field without width stays scrolled out of it.
    SetWindowPos(editor->cellEdit, HWND_TOP, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_SHOWWINDOW);
    SendMessageA(editor->cellEdit, EM_SETLIMITTEXT, TrackFieldLimit(cell.field), 0);
    SetWindowTextA(editor->cellEdit, TrackFieldText(editor->after, cell.track, cell.field));
    SendMessageA(editor->cellEdit, EM_SETSEL, 0, -1);
    SetFocus(editor->cellEdit);
}

static void TakeCell(Editor* editor) {
    char text[kCommentSize];
    GetWindowTextA(editor->cellEdit, text, sizeof text);
    const TrackCell cell = editor->cell;
    if (!SetTrackField(&editor->after, cell.track, cell.field, text, IsSameArtist(editor))) return;
    if (cell.field == kTrackArtist && IsSameArtist(editor)) {
        editor->hasDifferentArtists = 0;
        ShowTracks(editor);
    } else {
        ShowRow(editor, cell.track);
    }
    if (cell.field == kTrackTitle) ShowProgram(editor);
}

void CloseCell(Editor* editor, int keep) {
    if (!editor->cellOpen) return;
    editor->cellOpen = 0; // hiding takes the focus away, which comes back here
    if (keep) TakeCell(editor);
    if (GetFocus() == editor->cellEdit) SetFocus(editor->tracks);
    ShowWindow(editor->cellEdit, SW_HIDE);
}

static void GoToCell(Editor* editor, CellStep step) {
    TrackCell cell = editor->cell;
    if (StepCell(&cell, step, editor->after.trackCount))
        OpenCell(editor, cell);
    else
        CloseCell(editor, 1);
}

// 1 when the key was one that leads out of the cell.
static int OnCellKey(Editor* editor, WPARAM key) {
    const int shift = GetKeyState(VK_SHIFT) < 0;
    switch (key) {
    case VK_RETURN:
    case VK_DOWN: GoToCell(editor, kCellDown); return 1;
    case VK_UP: GoToCell(editor, kCellUp); return 1;
    case VK_TAB: GoToCell(editor, shift ? kCellPrevious : kCellNext); return 1;
    case VK_ESCAPE: CloseCell(editor, 0); return 1;
    }
    return 0;
}

static LRESULT CellProcedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
    Editor* editor = EditorOf(GetParent(GetParent(edit)));
    if (!editor) return DefWindowProcA(edit, message, wParam, lParam);
    const WNDPROC next = editor->cellProcedure;
    switch (message) {
    case WM_GETDLGCODE:
        return CallWindowProcA(next, edit, message, wParam, lParam) | DLGC_WANTALLKEYS;
    case WM_KEYDOWN:
        if (OnCellKey(editor, wParam)) return 0;
        break;
    case WM_CHAR: // of the keys above: an edit control beeps at them
        if (wParam == VK_RETURN || wParam == VK_TAB || wParam == VK_ESCAPE) return 0;
        break;
    case WM_KILLFOCUS: {
        const LRESULT result = CallWindowProcA(next, edit, message, wParam, lParam);
        CloseCell(editor, 1);
        return result;
    }
    }
    return CallWindowProcA(next, edit, message, wParam, lParam);
}

// ---- the list

static void OpenCellAt(Editor* editor, int row, int column) {
    if (row < 0) return;
    TrackCell cell = editor->cell;
    cell.track = static_cast<size_t>(row);
    if (IsTextColumn(column)) cell.field = static_cast<TrackField>(column - 1);
    OpenCell(editor, cell);
}

static void NoteMouseDown(Editor* editor, WPARAM keys, LPARAM place) {
    editor->clickOpensCell = 0;
    LVHITTESTINFO hit = {};
    hit.pt.x = static_cast<short>(LOWORD(place));
    hit.pt.y = static_cast<short>(HIWORD(place));
    SendMessageA(editor->tracks, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    if (hit.iItem < 0 || (keys & (MK_SHIFT | MK_CONTROL)) || GetFocus() != editor->tracks) return;
    const LRESULT selected = SendMessageA(editor->tracks, LVM_GETSELECTEDCOUNT, 0, 0);
    const LRESULT state = SendMessageA(editor->tracks, LVM_GETITEMSTATE, hit.iItem, LVIS_SELECTED);
    editor->clickOpensCell = selected == 1 && (state & LVIS_SELECTED);
}

static LRESULT TracksProcedure(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
    Editor* editor = EditorOf(GetParent(list));
    if (!editor) return DefWindowProcA(list, message, wParam, lParam);
    switch (message) {
    case WM_VSCROLL: // the cell would stay behind
    case WM_HSCROLL:
    case WM_MOUSEWHEEL:
    case WM_SIZE: CloseCell(editor, 1); break;
    case WM_NOTIFY: // of the header: a column changes its width
        if (reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(HDN_BEGINTRACKA) ||
            reinterpret_cast<const NMHDR*>(lParam)->code == static_cast<UINT>(HDN_BEGINTRACKW))
            CloseCell(editor, 1);
        break;
    case WM_LBUTTONDOWN: NoteMouseDown(editor, wParam, lParam); break;
    case WM_CHAR:
        if (wParam <= ' ' || FocusedRow(editor) < 0) break;
        // The first character replaces the cell's text; more may be on their way to the list.
        if (!editor->cellOpen) OpenCellAt(editor, FocusedRow(editor), kNumberColumn);
        SendMessageA(editor->cellEdit, WM_CHAR, wParam, lParam);
        return 0;
    }
    return CallWindowProcA(editor->tracksProcedure, list, message, wParam, lParam);
}

int OnTracksNotify(Editor* editor, const NMHDR* header) {
    if (header->idFrom != IDC_EDITOR_TRACKS) return 0;
    switch (header->code) {
    case static_cast<UINT>(NM_CLICK): {
        const auto* click = reinterpret_cast<const NMITEMACTIVATE*>(header);
        if (editor->clickOpensCell && IsTextColumn(click->iSubItem))
            OpenCellAt(editor, click->iItem, click->iSubItem);
        editor->clickOpensCell = 0;
        break;
    }
    case static_cast<UINT>(NM_DBLCLK): {
        const auto* click = reinterpret_cast<const NMITEMACTIVATE*>(header);
        OpenCellAt(editor, click->iItem, click->iSubItem);
        break;
    }
    case static_cast<UINT>(LVN_KEYDOWN):
        if (reinterpret_cast<const NMLVKEYDOWN*>(header)->wVKey == VK_F2)
            OpenCellAt(editor, FocusedRow(editor), kNumberColumn);
        else if (IsSelectAllKey(header))
            SelectAllRows(editor->tracks);
        break;
    case static_cast<UINT>(LVN_ITEMCHANGED): {
        const auto* change = reinterpret_cast<const NMLISTVIEW*>(header);
        if (!(change->uChanged & LVIF_STATE)) break;
        if ((change->uNewState & ~change->uOldState & LVIS_FOCUSED) && change->iItem >= 0)
            OfferStretch(editor, static_cast<uint32_t>(change->iItem + 1));
        EnableProgramButtons(editor);
        break;
    }
    }
    return 1;
}

void OnSameArtist(Editor* editor) {
    CDInfoRecord& record = editor->after;
    if (IsSameArtist(editor)) {
        const int row = FocusedRow(editor);
        memcpy(editor->differentArtists, record.trackArtists, sizeof record.trackArtists);
        editor->hasDifferentArtists =
            SetAllArtists(&record, record.trackArtists[row < 0 ? 0 : row]);
    } else if (editor->hasDifferentArtists) {
        memcpy(record.trackArtists, editor->differentArtists, sizeof record.trackArtists);
        editor->hasDifferentArtists = 0;
    }
    ShowTracks(editor);
}

void SetUpTracks(Editor* editor) {
    const HWND dialog = editor->dialog;
    const HWND list = editor->tracks = GetDlgItem(dialog, IDC_EDITOR_TRACKS);
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    AddColumn(list, kNumberColumn, IDS_EDITOR_COLUMN_NUMBER, 32, LVCFMT_LEFT);
    AddColumn(list, ColumnOf(kTrackArtist), IDS_EDITOR_COLUMN_ARTIST, 150, LVCFMT_LEFT);
    AddColumn(list, ColumnOf(kTrackTitle), IDS_EDITOR_COLUMN_TITLE, 200, LVCFMT_LEFT);
    AddColumn(list, kCommentColumn, IDS_EDITOR_COLUMN_COMMENT, 150, LVCFMT_LEFT);
    AddColumn(list, kLengthColumn, IDS_EDITOR_COLUMN_LENGTH, 56, LVCFMT_RIGHT);
    FillFixedColumns(editor);
    ShowTracks(editor);
    FitTracks(editor);
    editor->cellEdit =
        CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_BORDER | ES_AUTOHSCROLL, 0, 0, 0, 0, list,
                        reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_EDITOR_CELL)),
                        GetModuleHandleA(nullptr), nullptr);
    SendMessageA(editor->cellEdit, WM_SETFONT, SendMessageA(list, WM_GETFONT, 0, 0), 0);
    editor->cellProcedure = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(
        editor->cellEdit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(GuardedProc<CellProcedure>)));
    editor->tracksProcedure = reinterpret_cast<WNDPROC>(SetWindowLongPtrA(
        list, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(GuardedProc<TracksProcedure>)));
    CheckDlgButton(dialog, IDC_EDITOR_SAME_ARTIST,
                   IsSingleArtist(editor->after) ? BST_CHECKED : BST_UNCHECKED);
    EnableWindow(GetDlgItem(dialog, IDC_EDITOR_SAME_ARTIST), editor->after.trackCount > 1);
}
