// The list of the playlist editor. It keeps no texts but asks for them; its rows are dragged by the
// mouse.
#include "media/lengths.h"
#include "media/playlist_parts_win.h"

#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/listview_win.h"

#include <algorithm>

enum EntryColumn { kNumber, kFile, kFolder, kLength, kColumns };
constexpr UINT kScrollMs = 60; // a row each, while rows are held above or below the list
constexpr int kMarkHeight = 2;

// ---- rows

void SetUpList(PlaylistEditor* editor) {
    const HWND list = editor->list = GetDlgItem(editor->modal.window, IDC_LIST);
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                 LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_DOUBLEBUFFER);
    AddColumn(list, kNumber, IDS_COLUMN_NUMBER, 36, LVCFMT_LEFT);
    AddColumn(list, kFile, IDS_COLUMN_FILE, 190, LVCFMT_LEFT);
    AddColumn(list, kFolder, IDS_COLUMN_FOLDER, 140, LVCFMT_LEFT);
    AddColumn(list, kLength, IDS_COLUMN_LENGTH, 56, LVCFMT_RIGHT);
    editor->mark =
        CreateWindowExA(0, "STATIC", "", WS_CHILD | SS_BLACKRECT, 0, 0, 0, 0, list,
                        reinterpret_cast<HMENU>(IDC_LIST_MARK), GetModuleHandleA(nullptr), nullptr);
}

void FitList(const PlaylistEditor* editor) {
    FitColumn(editor->list, kFolder, kColumns);
}

EntryMarks SelectedRows(const PlaylistEditor* editor) {
    EntryMarks marks(editor->after.entries.size());
    for (size_t row = 0; row < marks.size(); ++row)
        marks[row] = SendMessageA(editor->list, LVM_GETITEMSTATE, row, LVIS_SELECTED) != 0;
    return marks;
}

static void SetRowState(const PlaylistEditor* editor, int row, UINT state, UINT mask) {
    LVITEMA item = {};
    item.state = state;
    item.stateMask = mask;
    SendMessageA(editor->list, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
}

void ShowEntries(PlaylistEditor* editor, const EntryMarks& marks) {
    const int count = static_cast<int>(editor->after.entries.size());
    int last = -1;
    editor->quiet = 1;
    SendMessageA(editor->list, LVM_SETITEMCOUNT, count, LVSICF_NOSCROLL);
    SetRowState(editor, -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    for (int row = 0; row < count && row < static_cast<int>(marks.size()); ++row) {
        if (!marks[row]) continue;
        SetRowState(editor, row, LVIS_SELECTED, LVIS_SELECTED);
        last = row;
    }
    if (last >= 0) {
        SetRowState(editor, last, LVIS_FOCUSED, LVIS_FOCUSED);
        SendMessageA(editor->list, LVM_ENSUREVISIBLE, last, FALSE);
    }
    editor->quiet = 0;
    InvalidateRect(editor->list, nullptr, TRUE);
    FitList(editor);
    ShowState(editor);
    ReadLengths(editor);
}

static std::string CellText(const PlaylistEditor* editor, int row, int column) {
    const std::string& entry = editor->after.entries[row];
    switch (column) {
    case kNumber: return std::to_string(row + 1);
    case kFile: return FileOf(entry);
    case kFolder: return FolderOf(entry);
    default: break;
    }
    const auto known = editor->lengths.find(ResolveEntry(editor->after, entry));
    return LengthText(known == editor->lengths.end() ? -1 : known->second);
}

void GiveCellText(const PlaylistEditor* editor, NMLVDISPINFOA* info) {
    LVITEMA& item = info->item;
    if (!(item.mask & LVIF_TEXT) || !item.pszText || item.cchTextMax < 1) return;
    const int row = item.iItem;
    const bool there = row >= 0 && row < static_cast<int>(editor->after.entries.size());
    CopyText(item.pszText, item.cchTextMax,
             there ? CellText(editor, row, item.iSubItem).c_str() : "");
}

// ---- places in the list

namespace {
struct RowPlaces {
    int first;  // row in sight, and its upper edge
    int top;    // pixels
    int height; // of a row; 0 without rows
};
} // namespace

static RowPlaces PlacesOf(const PlaylistEditor* editor) {
    RowPlaces places = {};
    RECT row = {}; // .left is the question: the whole row
    places.first = static_cast<int>(SendMessageA(editor->list, LVM_GETTOPINDEX, 0, 0));
    if (SendMessageA(editor->list, LVM_GETITEMRECT, places.first, reinterpret_cast<LPARAM>(&row))) {
        places.top = row.top;
        places.height = row.bottom - row.top;
    }
    return places;
}

static int GapAtHeight(const PlaylistEditor* editor, int y) {
    const RowPlaces places = PlacesOf(editor);
    const int count = static_cast<int>(editor->after.entries.size());
    if (places.height <= 0) return count;
    const int rows = (y - places.top + places.height / 2) / places.height;
    return std::clamp(places.first + rows, 0, count);
}

int GapAt(const PlaylistEditor* editor, POINT point) {
    RECT client;
    GetClientRect(editor->list, &client);
    MapWindowPoints(editor->modal.window, editor->list, &point, 1);
    return PtInRect(&client, point) ? GapAtHeight(editor, point.y) : -1;
}

// ---- dragging rows

static void ShowMark(const PlaylistEditor* editor) {
    const RowPlaces places = PlacesOf(editor);
    RECT client;
    GetClientRect(editor->list, &client);
    const int y = places.top + (editor->gap - places.first) * places.height - kMarkHeight / 2;
    SetWindowPos(editor->mark, HWND_TOP, 0,
                 std::clamp<int>(y, places.top - kMarkHeight / 2, client.bottom - kMarkHeight),
                 client.right, kMarkHeight, SWP_NOACTIVATE | SWP_SHOWWINDOW);
}

void BeginRowDrag(PlaylistEditor* editor) {
    editor->dragging = 1;
    SetCapture(editor->modal.window);
    SetTimer(editor->modal.window, kScrollTimer, kScrollMs, nullptr);
    DragRows(editor);
}

void DragRows(PlaylistEditor* editor) {
    if (!editor->dragging) return;
    POINT point;
    RECT client;
    GetCursorPos(&point);
    ScreenToClient(editor->list, &point);
    GetClientRect(editor->list, &client);
    const RowPlaces places = PlacesOf(editor);
    const int step = point.y < places.top ? -1 : point.y >= client.bottom ? 1 : 0;
    if (step) {
        ShowWindow(editor->mark, SW_HIDE); // or it would be scrolled along
        SendMessageA(editor->list, LVM_SCROLL, 0, step * places.height);
    }
    editor->gap = GapAtHeight(
        editor, std::clamp<int>(point.y, places.top, std::max<int>(places.top, client.bottom - 1)));
    ShowMark(editor);
}

void EndRowDrag(PlaylistEditor* editor, int drop) {
    if (!editor->dragging) return;
    editor->dragging = 0; // first: the capture's end comes here again
    KillTimer(editor->modal.window, kScrollTimer);
    ShowWindow(editor->mark, SW_HIDE);
    ReleaseCapture();
    if (!drop) return;
    EntryMarks marks = SelectedRows(editor);
    if (DropEntries(&editor->after, &marks, editor->gap)) ShowEntries(editor, marks);
}
