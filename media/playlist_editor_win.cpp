// The playlist editor: a modal dialog over a copy of a playlist.
#include "core/component_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "media/dialogs_win.h"
#include "media/gather_win.h"
#include "media/lengths.h"
#include "media/playlist_parts_win.h"
#include "media/playlist_win.h"
#include "resources/ids.h"
#include "ui/components.h"
#include "ui/listview_win.h"

#include <algorithm>
#include <memory>
#include <new>
#include <set>

constexpr const char* kPlaceValue = "PLSEditWndPlcmnt";
static constexpr AnchoredControl kAnchors[] = {
    {IDC_LIST, kGrowX | kGrowY},
    {IDC_LIST_COUNT, kMoveX},
    {IDC_LIST_ADD_FILES, kMoveX},
    {IDC_LIST_ADD_FOLDER, kMoveX},
    {IDC_LIST_UP, kMoveX},
    {IDC_LIST_DOWN, kMoveX},
    {IDC_LIST_REMOVE, kMoveX},
    {IDC_LIST_CLEAR, kMoveX},
    {IDC_LIST_SAVE, kMoveX},
    {IDC_LIST_TOTAL, kMoveY},
    {IDC_LIST_READING, kMoveX | kMoveY},
    {IDC_LIST_HOLD, kMoveX | kMoveY},
    {IDOK, kMoveX | kMoveY},
    {IDCANCEL, kMoveX | kMoveY},
};

static PlaylistEditor* EditorOf(HWND dialog) {
    return reinterpret_cast<PlaylistEditor*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

// ---- lengths

static double KnownLength(const PlaylistEditor* editor, const std::string& entry) {
    const auto known = editor->lengths.find(ResolveEntry(editor->after, entry));
    return known == editor->lengths.end() ? -1 : known->second;
}

void ReadLengths(PlaylistEditor* editor) {
    if (!editor->reader) return;
    std::vector<std::string> unknown;
    std::set<std::string> asked;
    for (const std::string& entry : editor->after.entries) {
        const std::string path = ResolveEntry(editor->after, entry);
        if (editor->held || editor->lengths.count(path) || !asked.insert(path).second) continue;
        unknown.push_back(path);
    }
    AskForLengths(editor->reader, unknown);
}

static void ShowLengths(const PlaylistEditor* editor) {
    const HWND dialog = editor->modal.window;
    long long total = 0;
    int known = 0;
    for (const std::string& entry : editor->after.entries) {
        const double length = KnownLength(editor, entry);
        known += length >= 0;
        total += WholeSeconds(length);
    }
    SetDlgItemTextA(dialog, IDC_LIST_TOTAL, TotalText(total).c_str());
    const int count = static_cast<int>(editor->after.entries.size());
    char format[kStringMax], text[kStringMax] = "";
    if (known < count) {
        LoadText(editor->held ? IDS_LENGTHS_HELD : IDS_READING_LENGTHS, format);
        FormatText(text, sizeof text, format, editor->held ? count - known : known, count);
    }
    SetDlgItemTextA(dialog, IDC_LIST_READING, text);
    EnableDialogButton(dialog, IDC_LIST_HOLD, known < count, IDC_LIST);
    ShowWindow(GetDlgItem(dialog, IDC_LIST_HOLD), known < count ? SW_SHOWNA : SW_HIDE);
}

static void TakeReadLengths(PlaylistEditor* editor) {
    for (const FileLength& length : TakeLengths(editor->reader)) {
        editor->lengths[length.path] = length.seconds;
        for (size_t row = 0; row < editor->after.entries.size(); ++row)
            if (ResolveEntry(editor->after, editor->after.entries[row]) == length.path)
                SendMessageA(editor->list, LVM_REDRAWITEMS, row, row);
    }
    ShowLengths(editor);
}

static void OnHold(PlaylistEditor* editor) {
    char text[kStringMax];
    editor->held = !editor->held;
    LoadText(editor->held ? IDS_GO_ON_LENGTHS : IDS_HOLD_LENGTHS, text);
    SetDlgItemTextA(editor->modal.window, IDC_LIST_HOLD, text);
    ReadLengths(editor);
    ShowLengths(editor);
}

// ---- what is shown

static void ShowCaption(const PlaylistEditor* editor) {
    const std::string file = FileOf(editor->after.name);
    if (file.empty()) return; // the dialog's own says enough
    char format[kStringMax], text[kStringMax];
    LoadText(IDS_PLAYLIST_CAPTION, format);
    FormatText(text, sizeof text, format, file.c_str());
    SetWindowTextA(editor->modal.window, text);
}

static void EnableButton(const PlaylistEditor* editor, int id, int enable) {
    EnableDialogButton(editor->modal.window, id, enable, IDC_LIST);
}

void ShowState(PlaylistEditor* editor) {
    if (editor->quiet) return;
    const EntryMarks marks = SelectedRows(editor);
    const int count = static_cast<int>(marks.size());
    int chosen = 0, canRise = 0, canSink = 0;
    for (int i = 0; i < count; ++i) {
        chosen += marks[i];
        canRise |= marks[i] && i > 0 && !marks[i - 1];
        canSink |= marks[i] && i + 1 < count && !marks[i + 1];
    }
    EnableButton(editor, IDC_LIST_UP, canRise);
    EnableButton(editor, IDC_LIST_DOWN, canSink);
    EnableButton(editor, IDC_LIST_REMOVE, chosen > 0);
    EnableButton(editor, IDC_LIST_CLEAR, count > 0);
    EnableButton(editor, IDC_LIST_SAVE, count > 0);
    EnableButton(editor, IDC_LIST_ADD_FILES, count < kPlaylistMax);
    EnableButton(editor, IDC_LIST_ADD_FOLDER, count < kPlaylistMax);
    char format[kStringMax], text[kStringMax];
    LoadText(IDS_ENTRY_COUNT, format);
    FormatText(text, sizeof text, format, count, kPlaylistMax);
    SetDlgItemTextA(editor->modal.window, IDC_LIST_COUNT, text);
    ShowLengths(editor);
}

// ---- changes

// Entries were added at `index`, or at the end when that is below 0.
static void ShowAdded(PlaylistEditor* editor, int index, int added) {
    if (!added || editor->modal.done) return;
    const int count = static_cast<int>(editor->after.entries.size());
    const int first = index < 0 ? count - added : index;
    EntryMarks marks(count);
    std::fill_n(marks.begin() + std::clamp(first, 0, count - added), added, 1);
    ShowEntries(editor, marks);
}

static void MoveSelected(PlaylistEditor* editor, int step) {
    EntryMarks marks = SelectedRows(editor);
    if (MoveEntries(&editor->after, &marks, step)) ShowEntries(editor, marks);
}

// The entry that comes to stand where the first removed one was is selected, so that the next
// press goes on there.
static void RemoveSelected(PlaylistEditor* editor) {
    const EntryMarks marks = SelectedRows(editor);
    const auto first = std::find(marks.begin(), marks.end(), 1) - marks.begin();
    if (!RemoveEntries(&editor->after, marks)) return;
    EntryMarks next(editor->after.entries.size());
    if (!next.empty()) next[std::min<size_t>(first, next.size() - 1)] = 1;
    ShowEntries(editor, next);
}

static void SaveAs(PlaylistEditor* editor) {
    if (!SavePlaylistByDialog(editor->modal.window, &editor->after) || editor->modal.done) return;
    ShowCaption(editor);
    InvalidateRect(editor->list, nullptr, TRUE); // entries may have got their folder
}

static void OnDropFiles(PlaylistEditor* editor, HDROP drop) {
    std::vector<std::string> paths, songs;
    const UINT count = DragQueryFileA(drop, 0xFFFFFFFF, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::string path(DragQueryFileA(drop, i, nullptr, 0) + 1, '\0');
        path.resize(DragQueryFileA(drop, i, path.data(), static_cast<UINT>(path.size())));
        paths.push_back(path);
    }
    POINT point;
    DragQueryPoint(drop, &point);
    DragFinish(drop);
    const int gap = GapAt(editor, point);
    const int index = gap < static_cast<int>(editor->after.entries.size()) ? gap : -1;
    if (!GatherDropped(editor->modal.window, paths, &songs)) return;
    ShowAdded(editor, index, AddPaths(editor->modal.window, songs, &editor->after, index));
}

// ---- the dialog

static void OnInitDialog(HWND dialog, PlaylistEditor* editor) {
    SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(editor));
    editor->modal.window = dialog;
    NoteDialogLayout(&editor->layout, dialog, kAnchors, std::size(kAnchors));
    SetUpList(editor);
    RestoreDialogPlace(dialog, editor->modal.owner, kMediaWindowId, kPlaceValue);
    LayOutDialog(editor->layout, dialog);
    ShowCaption(editor);
    editor->reader = StartLengthReader(dialog, kLengthsReady);
    EntryMarks marks(editor->after.entries.size());
    if (editor->after.position < marks.size()) marks[editor->after.position] = 1;
    ShowEntries(editor, marks);
    DragAcceptFiles(dialog, TRUE);
    SetFocus(editor->list);
}

static void OnCommand(PlaylistEditor* editor, WORD id) {
    const HWND dialog = editor->modal.window;
    switch (id) {
    case IDOK: EndModalDialog(&editor->modal, IDOK); break;
    case IDCANCEL:
        if (editor->dragging)
            EndRowDrag(editor, 0); // Escape
        else
            EndModalDialog(&editor->modal, IDCANCEL);
        break;
    case IDC_LIST_ADD_FILES:
        ShowAdded(editor, -1, AddFilesByDialog(dialog, &editor->after, -1));
        break;
    case IDC_LIST_ADD_FOLDER:
        ShowAdded(editor, -1, AddFolderByDialog(dialog, &editor->after, -1));
        break;
    case IDC_LIST_UP: MoveSelected(editor, -1); break;
    case IDC_LIST_DOWN: MoveSelected(editor, 1); break;
    case IDC_LIST_REMOVE: RemoveSelected(editor); break;
    case IDC_LIST_CLEAR:
        RemoveEntries(&editor->after, EntryMarks(editor->after.entries.size(), 1));
        ShowEntries(editor, {});
        break;
    case IDC_LIST_SAVE: SaveAs(editor); break;
    case IDC_LIST_HOLD: OnHold(editor); break;
    default: break;
    }
}

static void OnNotify(PlaylistEditor* editor, NMHDR* header) {
    if (header->idFrom != IDC_LIST) return;
    const int code = static_cast<int>(header->code);
    if (code == static_cast<int>(LVN_GETDISPINFOA)) {
        GiveCellText(editor, reinterpret_cast<NMLVDISPINFOA*>(header));
    } else if (code == static_cast<int>(LVN_ITEMCHANGED) ||
               code == static_cast<int>(LVN_ODSTATECHANGED)) {
        ShowState(editor);
    } else if (code == static_cast<int>(LVN_BEGINDRAG)) {
        BeginRowDrag(editor);
    } else if (code == static_cast<int>(LVN_KEYDOWN)) {
        if (reinterpret_cast<const NMLVKEYDOWN*>(header)->wVKey == VK_DELETE)
            RemoveSelected(editor);
        else if (IsSelectAllKey(header))
            SelectAllRows(editor->list);
    }
}

static void OnDestroy(PlaylistEditor* editor) {
    StoreDialogPlace(editor->modal.window, kMediaWindowId, kPlaceValue);
    EndLengthReader(editor->reader);
    editor->reader = nullptr;
    EndModalDialog(&editor->modal, 0);
}

static INT_PTR EditorProcedure(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(dialog, reinterpret_cast<PlaylistEditor*>(lParam));
        return FALSE; // the list has the focus
    }
    PlaylistEditor* editor = EditorOf(dialog);
    if (!editor) return FALSE;
    switch (message) {
    case WM_COMMAND: OnCommand(editor, LOWORD(wParam)); return TRUE;
    case WM_NOTIFY: OnNotify(editor, reinterpret_cast<NMHDR*>(lParam)); return TRUE;
    case kLengthsReady: TakeReadLengths(editor); return TRUE;
    case WM_DROPFILES: OnDropFiles(editor, reinterpret_cast<HDROP>(wParam)); return TRUE;
    case WM_MOUSEMOVE: DragRows(editor); return TRUE;
    case WM_TIMER: DragRows(editor); return TRUE;
    case WM_LBUTTONUP: EndRowDrag(editor, 1); return TRUE;
    case WM_CAPTURECHANGED: EndRowDrag(editor, 0); return TRUE;
    case WM_SIZE:
        LayOutDialog(editor->layout, dialog);
        FitList(editor);
        return TRUE;
    case WM_GETMINMAXINFO:
        if (editor->layout.minimum.cx)
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {editor->layout.minimum.cx,
                                                                     editor->layout.minimum.cy};
        return TRUE;
    case WM_DESTROY: OnDestroy(editor); return TRUE;
    case WM_NCDESTROY: SetWindowLongPtrA(dialog, DWLP_USER, 0); return FALSE;
    default: return FALSE;
    }
}

// Alt with an arrow moves the selected rows; the list itself never hears of it.
static int OnMessage(ModalDialog* modal, const MSG& message) {
    PlaylistEditor* editor = EditorOf(modal->window);
    if (!editor || message.hwnd != editor->list || message.message != WM_SYSKEYDOWN) return 0;
    if (message.wParam != VK_UP && message.wParam != VK_DOWN) return 0;
    MoveSelected(editor, message.wParam == VK_UP ? -1 : 1);
    return 1;
}

int EditPlaylist(HWND owner, Playlist* list) {
    const std::unique_ptr<PlaylistEditor> editor(new (std::nothrow) PlaylistEditor{});
    if (!editor) return 0;
    editor->after = *list;
    editor->modal.OnMessage = OnMessage;
    if (RunModalDialog(&editor->modal, owner, IDD_PLAYLIST, GuardedDialog<EditorProcedure>,
                       reinterpret_cast<LPARAM>(editor.get())) != IDOK)
        return 0;
    const Playlist& after = editor->after;
    if (after.name == list->name && after.position == list->position &&
        after.entries == list->entries)
        return 0;
    *list = after;
    return 1;
}
