// Editing texts in the manager's list, in place. One edit control lies over the cell; what is typed
// into the cells of a row becomes one change of the database when the row is left.
//
// F2, or a second slow click into the selected row, opens a cell; Enter and leaving it keep what
// was typed, Tab and the arrows go on, Esc forgets it. Where several artists share a disc, the CD
// view's artist cell stays shut, since one name would replace them all: the other views and the
// editor change them one by one.
#include "archive/manager_state_win.h"
#include "cdinfo/editor.h"
#include "core/component_win.h"
#include "core/text.h"
#include "ui/listview_win.h"

#include <cstring>

// ---- what a cell stands for

static int CanEdit(const ManagerWindow& manager, const RowKey& key, const CDInfoRecord& record,
                   int column) {
    if (manager.settings.view == kTrackView) {
        if (column == kTrackTitleColumn || column == kArtistColumn) return key.track > 0;
        return column == kTitleColumn || column == kCommentColumn;
    }
    if (column == kArtistColumn)
        return record.trackCount > 0 &&
               (manager.settings.view == kArtistView || IsSingleArtist(record));
    return column == kTitleColumn || column == kCommentColumn;
}

// The track, from 0, whose text a row's cell shows.
static size_t TrackOf(const RowKey& key) {
    const size_t track = key.track ? key.track : key.artist;
    return track ? track - 1 : 0;
}

static const char* CellText(const CDInfoRecord& record, const RowKey& key, int column) {
    switch (column) {
    case kTitleColumn: return record.title;
    case kArtistColumn: return TrackFieldText(record, TrackOf(key), kTrackArtist);
    case kTrackTitleColumn: return TrackFieldText(record, TrackOf(key), kTrackTitle);
    default:
        return key.track ? TrackFieldText(record, TrackOf(key), kTrackComment) : record.comment;
    }
}

static size_t CellLimit(const RowKey& key, int column) {
    switch (column) {
    case kTitleColumn: return kDiscTitleLimit;
    case kArtistColumn: return TrackFieldLimit(kTrackArtist);
    case kTrackTitleColumn: return TrackFieldLimit(kTrackTitle);
    default: return key.track ? TrackFieldLimit(kTrackComment) : kDiscCommentLimit;
    }
}

// An artist of the artist view is renamed on all tracks that he plays, one of the CD view on all.
static void SetArtist(const ManagerWindow& manager, RowKey* key, CDInfoRecord* record,
                      const char* text) {
    char before[kTextSize];
    const size_t track = TrackOf(*key);
    CopyText(before, record->trackArtists[track]);
    if (key->track) {
        SetTrackField(record, track, kTrackArtist, text, 0);
        return;
    }
    for (size_t i = 0; i < record->trackCount; ++i)
        if (!strcmp(record->trackArtists[i], before))
            SetTrackField(record, i, kTrackArtist, text, 0);
    if (manager.settings.view != kArtistView) return;
    // The row is that of the first track with the new name: another one may have had it already.
    size_t first = 0;
    while (first < track && strcmp(record->trackArtists[first], record->trackArtists[track]))
        ++first;
    key->artist = static_cast<uint8_t>(first + 1);
}

static void SetCellText(const ManagerWindow& manager, RowKey* key, CDInfoRecord* record, int column,
                        const char* text) {
    switch (column) {
    case kTitleColumn: SetDiscTitle(record, text); break;
    case kArtistColumn: SetArtist(manager, key, record, text); break;
    case kTrackTitleColumn: SetTrackField(record, TrackOf(*key), kTrackTitle, text, 0); break;
    default:
        if (key->track)
            SetTrackField(record, TrackOf(*key), kTrackComment, text, 0);
        else
            SetDiscComment(record, text);
    }
}

// ---- opening and leaving

void PlaceManagerCell(ManagerWindow* manager) {
    if (!manager->cell || !manager->cell->open) return;
    const CellSession& cell = *manager->cell;
    const long row = CatalogFind(manager->catalog, cell.key);
    if (row < 0) { // the search hides it, or the disc has gone
        CloseManagerCell(manager, 1);
        return;
    }
    const RECT place = RevealCell(ListOf(*manager), static_cast<int>(row), cell.column);
    SetWindowPos(manager->cellEdit, HWND_TOP, place.left, place.top, place.right - place.left,
                 place.bottom - place.top, SWP_SHOWWINDOW);
}

static void ShowCell(ManagerWindow* manager, int column) {
    CellSession& cell = *manager->cell;
    const HWND edit = manager->cellEdit;
    cell.column = column;
    cell.open = 1;
    // The place first: a text that is selected in a field without width stays scrolled out of it.
    PlaceManagerCell(manager);
    SendMessageA(edit, EM_SETLIMITTEXT, CellLimit(cell.key, column), 0);
    SetWindowTextA(edit, CellText(cell.after, cell.key, column));
    SendMessageA(edit, EM_SETMODIFY, FALSE, 0);
    SendMessageA(edit, EM_SETSEL, 0, -1);
    SetFocus(edit);
}

void OpenManagerCell(ManagerWindow* manager, long row, int column) {
    CloseManagerCell(manager, 1);
    if (row < 0 || static_cast<size_t>(row) >= CatalogRowCount(manager->catalog)) return;
    auto cell = std::make_unique<CellSession>();
    cell->key = CatalogRow(manager->catalog, static_cast<size_t>(row));
    if (!CatalogRecord(manager->catalog, cell->key.identity, &cell->before)) return;
    cell->after = cell->before;
    if (column < 0) column = cell->key.track ? kTrackTitleColumn : kTitleColumn;
    if (!CanEdit(*manager, cell->key, cell->before, column)) return;
    SelectManagerRow(manager, cell->key);
    manager->cell = std::move(cell);
    ShowCell(manager, column);
}

// What was typed, into the row's record. A text that nobody touched is left alone: it may hold what
// an edit control does not give back.
static void TakeCell(ManagerWindow* manager) {
    CellSession& cell = *manager->cell;
    char text[kCommentSize];
    if (!SendMessageA(manager->cellEdit, EM_GETMODIFY, 0, 0)) return;
    GetWindowTextA(manager->cellEdit, text, sizeof text);
    const auto changed = std::make_unique<CDInfoRecord>(cell.after);
    RowKey key = cell.key;
    SetCellText(*manager, &key, changed.get(), cell.column, text);
    if (!FitsEntry(*changed)) {
        MessageBeep(MB_ICONWARNING);
        return;
    }
    cell.after = *changed;
    cell.key = key;
}

// The row is left.
static void EndSession(ManagerWindow* manager) {
    const std::unique_ptr<CellSession> cell = std::move(manager->cell);
    const auto edited = std::make_unique<CDInfoRecord>(cell->before);
    if (!TakeEdited(edited.get(), cell->after)) return;
    StoreEdited(manager, cell->before, *edited);
    if (manager->settings.view == kArtistView) SelectManagerRow(manager, cell->key);
}

void CloseManagerCell(ManagerWindow* manager, int keep) {
    if (!manager->cell || !manager->cell->open) return;
    manager->cell->open = 0; // hiding takes the focus away, which comes back here
    if (keep) TakeCell(manager);
    if (GetFocus() == manager->cellEdit) SetFocus(ListOf(*manager));
    ShowWindow(manager->cellEdit, SW_HIDE);
    EndSession(manager);
}

// ---- from cell to cell

// The next column in `step`'s direction that can be edited, as the list shows them; -1 for none.
static int NextColumn(const ManagerWindow& manager, const RowKey& key, const CDInfoRecord& record,
                      int from, int step) {
    int shown[kTrackViewColumns];
    const int count = ViewColumns(manager.settings.view);
    ShownOrder(manager.settings, count, shown);
    int place = step > 0 ? -1 : count;
    for (int i = 0; i < count && from >= 0; ++i)
        if (shown[i] == from) place = i;
    for (place += step; place >= 0 && place < count; place += step)
        if (CanEdit(manager, key, record, shown[place])) return shown[place];
    return -1;
}

static void GoToNeighbour(ManagerWindow* manager, int down, int step) {
    CellSession* cell = manager->cell.get();
    const long row = CatalogFind(manager->catalog, cell->key) + down;
    const RowKey neighbour =
        row < 0 ? RowKey() : CatalogRow(manager->catalog, static_cast<size_t>(row));
    const int column = cell->column;
    CloseManagerCell(manager, 1);
    // Where the row stands by now: the change may have moved it.
    const long place = neighbour.identity ? CatalogFind(manager->catalog, neighbour) : -1;
    const auto record = std::make_unique<CDInfoRecord>();
    if (place < 0 || !CatalogRecord(manager->catalog, neighbour.identity, record.get())) return;
    const int first = NextColumn(*manager, neighbour, *record, -1, step ? step : 1);
    OpenManagerCell(manager, place,
                    step || !CanEdit(*manager, neighbour, *record, column) ? first : column);
}

static void GoAlong(ManagerWindow* manager, int step) {
    CellSession* cell = manager->cell.get();
    NoteManagerColumns(manager); // the user may have moved them
    const int column = NextColumn(*manager, cell->key, cell->after, cell->column, step);
    if (column < 0) {
        GoToNeighbour(manager, step, step);
        return;
    }
    TakeCell(manager);
    ShowCell(manager, column);
}

// 1 when the key was one that leads out of the cell.
static int OnCellKey(ManagerWindow* manager, WPARAM key) {
    if (!manager->cell || !manager->cell->open) return 0; // a key that came late
    switch (key) {
    case VK_RETURN: CloseManagerCell(manager, 1); return 1;
    case VK_ESCAPE: CloseManagerCell(manager, 0); return 1;
    case VK_TAB: GoAlong(manager, GetKeyState(VK_SHIFT) < 0 ? -1 : 1); return 1;
    case VK_DOWN: GoToNeighbour(manager, 1, 0); return 1;
    case VK_UP: GoToNeighbour(manager, -1, 0); return 1;
    default: return 0;
    }
}

static LRESULT CellProc(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) {
    ManagerWindow* manager = OpenManager();
    if (!manager) return DefWindowProcA(edit, message, wParam, lParam);
    const WNDPROC next = manager->editProcedure;
    switch (message) {
    case WM_KEYDOWN:
        if (OnCellKey(manager, wParam)) return 0;
        break;
    case WM_CHAR: // of the keys above: an edit control beeps at them
        if (wParam == VK_RETURN || wParam == VK_TAB || wParam == VK_ESCAPE) return 0;
        break;
    case WM_KILLFOCUS: {
        const LRESULT result = CallWindowProcA(next, edit, message, wParam, lParam);
        CloseManagerCell(manager, 1);
        return result;
    }
    default: break;
    }
    return CallWindowProcA(next, edit, message, wParam, lParam);
}

int CreateCellEdit(ManagerWindow* manager) {
    const auto id = reinterpret_cast<HMENU>(static_cast<INT_PTR>(kManagerCellEdit));
    const HWND edit = CreateWindowExA(0, "EDIT", "", WS_CHILD | WS_BORDER | ES_AUTOHSCROLL, 0, 0, 0,
                                      0, ListOf(*manager), id, GetModuleHandleA(nullptr), nullptr);
    manager->cellEdit = edit;
    if (!edit) return 0;
    manager->editProcedure = reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(edit, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(GuardedProc<CellProc>)));
    return 1;
}

// ---- the second, slow click

void NoteManagerClick(ManagerWindow* manager, const NMITEMACTIVATE& click) {
    if (!manager->clickOpensCell || click.iItem < 0) return;
    manager->clickOpensCell = 0;
    manager->clicked = CatalogRow(manager->catalog, static_cast<size_t>(click.iItem));
    manager->clickedColumn = click.iSubItem;
    SetTimer(manager->window, kClickTimer, GetDoubleClickTime(), nullptr);
}

void OnManagerClickTimer(ManagerWindow* manager) {
    KillTimer(manager->window, kClickTimer);
    const std::vector<RowKey> selected = SelectedRows(*manager);
    if (selected.size() != 1 || !(selected[0] == manager->clicked)) return;
    if (GetFocus() == ListOf(*manager))
        OpenManagerCell(manager, CatalogFind(manager->catalog, manager->clicked),
                        manager->clickedColumn);
}
