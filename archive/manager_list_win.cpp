// The manager's list: a report list without rows of its own. What it shows comes from the catalog,
// row by row, when it is drawn; only which rows are selected stands in the control, by their place,
// and is carried along when the places change.
#include "archive/manager_state_win.h"

#include <algorithm>
#include <cstring>
#include <unordered_set>

#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/listview_win.h"

static constexpr UINT kSelectedState = LVIS_SELECTED, kFocusedState = LVIS_FOCUSED;

static LRESULT AskList(const ManagerWindow& manager, UINT message, WPARAM wParam, LPARAM lParam) {
    return SendMessageA(ListOf(manager), message, wParam, lParam);
}

static int ShownColumns(const ManagerWindow& manager) {
    return manager.tracksShown ? kTrackViewColumns : kCatalogColumns;
}

// ---- columns

static void AddColumns(ManagerWindow* manager, int from, int to) {
    RECT window;
    GetClientRect(manager->window, &window);
    for (int i = from; i < to; ++i) {
        const int saved = manager->settings.widths[i];
        AddColumn(ListOf(*manager), i, IDS_DATABASE_COLUMNS + static_cast<UINT>(i),
                  saved ? saved : window.right / 5, LVCFMT_LEFT);
    }
}

// Columns that have the width by rule keep it when the window gets another one.
void FitManagerColumns(ManagerWindow* manager, int clientWidth) {
    const int before = manager->columnRule, now = clientWidth / 5;
    manager->columnRule = now;
    if (before == now || !before) return;
    for (int i = 0; i < ShownColumns(*manager); ++i)
        if (AskList(*manager, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(i), 0) == before)
            AskList(*manager, LVM_SETCOLUMNWIDTH, static_cast<WPARAM>(i), MAKELPARAM(now, 0));
}

static void OrderColumns(ManagerWindow* manager) {
    int shown[kTrackViewColumns];
    const int count = ShownColumns(*manager);
    ShownOrder(manager->settings, count, shown);
    AskList(*manager, LVM_SETCOLUMNORDERARRAY, static_cast<WPARAM>(count),
            reinterpret_cast<LPARAM>(shown));
}

void NoteManagerColumns(ManagerWindow* manager) {
    int shown[kTrackViewColumns] = {};
    const int count = ShownColumns(*manager);
    if (AskList(*manager, LVM_GETCOLUMNORDERARRAY, static_cast<WPARAM>(count),
                reinterpret_cast<LPARAM>(shown)))
        KeepShownOrder(&manager->settings, count, shown);
    for (int i = 0; i < count; ++i)
        manager->settings.widths[i] =
            static_cast<int>(AskList(*manager, LVM_GETCOLUMNWIDTH, static_cast<WPARAM>(i), 0));
}

static void FitColumnsToView(ManagerWindow* manager) {
    const int tracks = manager->settings.view == kTrackView;
    if (tracks == manager->tracksShown) return;
    NoteManagerColumns(manager);
    for (int i = kTrackViewColumns - 1; !tracks && i >= kCatalogColumns; --i)
        AskList(*manager, LVM_DELETECOLUMN, static_cast<WPARAM>(i), 0);
    if (tracks) AddColumns(manager, kCatalogColumns, kTrackViewColumns);
    manager->tracksShown = tracks;
    OrderColumns(manager);
}

// The head of the column that sorts bears an arrow.
static void MarkSortColumn(const ManagerWindow& manager) {
    const auto header = reinterpret_cast<HWND>(AskList(manager, LVM_GETHEADER, 0, 0));
    const int sorted = ColumnOfKey(manager.settings.key);
    for (int i = 0; i < ShownColumns(manager); ++i) {
        HDITEMA item = {};
        item.mask = HDI_FORMAT;
        SendMessageA(header, HDM_GETITEMA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (i == sorted) item.fmt |= manager.settings.ascending ? HDF_SORTUP : HDF_SORTDOWN;
        SendMessageA(header, HDM_SETITEMA, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    }
}

// ---- selection

int SelectedCount(const ManagerWindow& manager) {
    return static_cast<int>(AskList(manager, LVM_GETSELECTEDCOUNT, 0, 0));
}

static long NextRow(const ManagerWindow& manager, long from, UINT what) {
    return static_cast<long>(
        AskList(manager, LVM_GETNEXTITEM, static_cast<WPARAM>(from), static_cast<LPARAM>(what)));
}

static std::vector<RowKey> AllRows(const ManagerWindow& manager) {
    std::vector<RowKey> keys(CatalogRowCount(manager.catalog));
    for (size_t row = 0; row < keys.size(); ++row)
        keys[row] = CatalogRow(manager.catalog, row);
    return keys;
}

std::vector<RowKey> SelectedRows(const ManagerWindow& manager) {
    std::vector<RowKey> keys;
    const auto count = static_cast<size_t>(SelectedCount(manager));
    if (count == CatalogRowCount(manager.catalog)) return AllRows(manager); // without asking
    if (!count) return keys;
    for (long row = -1; (row = NextRow(manager, row, LVNI_SELECTED)) >= 0;)
        keys.push_back(CatalogRow(manager.catalog, static_cast<size_t>(row)));
    return keys;
}

static std::vector<uint32_t> DiscsOf(const std::vector<RowKey>& keys) {
    std::vector<uint32_t> discs;
    std::unordered_set<uint32_t> known;
    for (const RowKey& key : keys)
        if (known.insert(key.identity).second) discs.push_back(key.identity);
    return discs;
}

std::vector<uint32_t> SelectedDiscs(const ManagerWindow& manager) {
    return DiscsOf(SelectedRows(manager));
}

std::vector<uint32_t> SelectedOrAllDiscs(const ManagerWindow& manager) {
    return DiscsOf(SelectedCount(manager) ? SelectedRows(manager) : AllRows(manager));
}

static void SetRow(const ManagerWindow& manager, long row, UINT state, UINT mask) {
    SetRowState(ListOf(manager), static_cast<int>(row), state, mask);
}

void SelectManagerRow(ManagerWindow* manager, RowKey key) {
    const long row = CatalogFind(manager->catalog, key);
    if (row < 0) return;
    SetRow(*manager, -1, 0, kSelectedState);
    SetRow(*manager, row, kSelectedState | kFocusedState, kSelectedState | kFocusedState);
    AskList(*manager, LVM_SETSELECTIONMARK, 0, row);
    AskList(*manager, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
}

// Row by row the list would ask for its own repainting: by the hundred thousand that takes long.
void SelectManagerRows(ManagerWindow* manager, int all) {
    AskList(*manager, WM_SETREDRAW, FALSE, 0);
    SetRow(*manager, -1, all ? kSelectedState : 0, kSelectedState);
    AskList(*manager, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(ListOf(*manager), nullptr, TRUE);
}

void SelectAllOrNone(ManagerWindow* manager) {
    const auto rows = static_cast<int>(CatalogRowCount(manager->catalog));
    SelectManagerRows(manager, SelectedCount(*manager) < rows);
}

void DeselectDiscs(ManagerWindow* manager, const std::vector<uint32_t>& discs) {
    const std::unordered_set<uint32_t> left(discs.begin(), discs.end());
    ++manager->quiet;
    for (long row = -1; (row = NextRow(*manager, row, LVNI_SELECTED)) >= 0;)
        if (left.count(CatalogRow(manager->catalog, static_cast<size_t>(row)).identity))
            SetRow(*manager, row, 0, kSelectedState);
    --manager->quiet;
    ShowManagerSummary(manager);
}

// ---- making

int CreateManagerList(ManagerWindow* manager) {
    const HWND window = manager->window;
    const auto id = reinterpret_cast<HMENU>(static_cast<INT_PTR>(kManagerList));
    const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(window, GWLP_HINSTANCE));
    const HWND list = CreateWindowExA(WS_EX_CLIENTEDGE, WC_LISTVIEWA, "",
                                      WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN |
                                          LVS_REPORT | LVS_OWNERDATA | LVS_SHOWSELALWAYS,
                                      0, 0, 10, 10, window, id, instance, nullptr);
    manager->controls[ManagerControlIndex(kManagerList)] = list;
    if (!list) return 0;
    SendMessageA(list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0,
                 LVS_EX_GRIDLINES | LVS_EX_HEADERDRAGDROP | LVS_EX_FULLROWSELECT);
    AddColumns(manager, 0, ViewColumns(manager->settings.view));
    manager->tracksShown = manager->settings.view == kTrackView;
    OrderColumns(manager);
    MarkSortColumn(*manager);
    return CreateCellEdit(manager);
}

// ---- arranging

static int IsInSight(const ManagerWindow& manager, long row) {
    const auto top = static_cast<long>(AskList(manager, LVM_GETTOPINDEX, 0, 0));
    return row >= top && row < top + AskList(manager, LVM_GETCOUNTPERPAGE, 0, 0);
}

static void SelectAgain(ManagerWindow* manager, const std::vector<RowKey>& selected) {
    std::vector<long> rows;
    manager->outOfSight.clear();
    for (const RowKey& key : selected) {
        const long row = CatalogFind(manager->catalog, key);
        if (row >= 0)
            rows.push_back(row);
        else
            manager->outOfSight.push_back(key);
    }
    if (!rows.empty() && rows.size() == CatalogRowCount(manager->catalog)) { // quickly
        SetRow(*manager, -1, kSelectedState, kSelectedState);
        return;
    }
    SetRow(*manager, -1, 0, kSelectedState);
    for (const long row : rows)
        SetRow(*manager, row, kSelectedState, kSelectedState);
}

// `focused` is where the row with the focus is now, -1 for none.
static void ArrangeRows(ManagerWindow* manager, const std::vector<RowKey>& selected, long focused,
                        int keepInSight) {
    ++manager->quiet;
    AskList(*manager, WM_SETREDRAW, FALSE, 0);
    SetRow(*manager, -1, 0, kFocusedState);
    AskList(*manager, LVM_SETITEMCOUNT, CatalogRowCount(manager->catalog), LVSICF_NOSCROLL);
    SelectAgain(manager, selected);
    if (focused >= 0) {
        SetRow(*manager, focused, kFocusedState, kFocusedState);
        AskList(*manager, LVM_SETSELECTIONMARK, 0, focused);
        if (keepInSight) AskList(*manager, LVM_ENSUREVISIBLE, static_cast<WPARAM>(focused), FALSE);
    }
    AskList(*manager, WM_SETREDRAW, TRUE, 0);
    InvalidateRect(ListOf(*manager), nullptr, TRUE);
    --manager->quiet;
}

static CatalogOrder OrderOf(const ManagerWindow& manager) {
    CatalogOrder order;
    order.view = manager.settings.view;
    order.key = manager.settings.key;
    order.ascending = manager.settings.ascending;
    order.words = manager.words;
    return order;
}

void ArrangeManager(ManagerWindow* manager) {
    std::vector<RowKey> selected = SelectedRows(*manager);
    selected.insert(selected.end(), manager->outOfSight.begin(), manager->outOfSight.end());
    const long focusedRow = NextRow(*manager, -1, LVNI_FOCUSED);
    const RowKey focus = CatalogRow(manager->catalog, static_cast<size_t>(focusedRow));
    const int inSight = focusedRow >= 0 && IsInSight(*manager, focusedRow);
    CatalogArrange(manager->catalog, OrderOf(*manager));
    const long focused = focusedRow < 0 ? -1 : CatalogFind(manager->catalog, focus);
    ArrangeRows(manager, selected, focused, inSight);
    PlaceManagerCell(manager);
    ShowManagerCaptions(manager);
    ShowManagerSummary(manager);
}

void ArrangeAfterDeletion(ManagerWindow* manager) {
    const long before = NextRow(*manager, -1, LVNI_FOCUSED);
    ArrangeManager(manager);
    const auto rows = static_cast<long>(CatalogRowCount(manager->catalog));
    if (before < 0 || !rows || NextRow(*manager, -1, LVNI_FOCUSED) >= 0) return;
    const long next = std::min(before, rows - 1);
    SetRow(*manager, next, kFocusedState, kFocusedState);
    AskList(*manager, LVM_SETSELECTIONMARK, 0, next);
    AskList(*manager, LVM_ENSUREVISIBLE, static_cast<WPARAM>(next), FALSE);
}

void SortManager(ManagerWindow* manager, SortKey key, int ascending) {
    if (key >= ViewKeys(manager->settings.view)) return;
    manager->settings.key = key;
    manager->settings.ascending = ascending;
    MarkSortColumn(*manager);
    ArrangeManager(manager);
}

// Rows of one view are none of another: nothing stays selected, and the focus goes to the disc that
// had it.
void ShowManagerView(ManagerWindow* manager, CatalogView view) {
    CloseManagerCell(manager, 1);
    const long focusedRow = NextRow(*manager, -1, LVNI_FOCUSED);
    RowKey focus = CatalogRow(manager->catalog, static_cast<size_t>(focusedRow));
    SetManagerView(&manager->settings, view);
    SetWindowTextA(ControlOf(*manager, kManagerSummary), "");
    FitColumnsToView(manager);
    MarkSortColumn(*manager);
    manager->outOfSight.clear();
    CatalogArrange(manager->catalog, OrderOf(*manager));
    const uint8_t part = view == kCdView ? 0 : 1;
    focus = {focus.identity, static_cast<uint8_t>(view == kTrackView ? part : 0),
             static_cast<uint8_t>(view == kArtistView ? part : 0)};
    const long focused = focusedRow < 0 ? -1 : CatalogFind(manager->catalog, focus);
    ArrangeRows(manager, {}, focused, 1);
    EnableManagerButtons(*manager);
    ShowManagerCaptions(manager);
    ShowManagerSummary(manager);
}

// ---- the summary

void ShowManagerSummary(ManagerWindow* manager) {
    if (manager->settings.view != kCdView) return;
    char text[kStringMax], selected[kStringMax];
    const int count = SelectedCount(*manager);
    const HWND summary = ControlOf(*manager, kManagerSummary);
    const auto record = std::make_unique<CDInfoRecord>();
    if (count == 1 &&
        CatalogRecord(manager->catalog, SelectedRows(*manager)[0].identity, record.get())) {
        const std::string whole = DiscSummary(*record);
        std::string now(static_cast<size_t>(GetWindowTextLengthA(summary)), 0);
        GetWindowTextA(summary, now.data(), static_cast<int>(now.size() + 1));
        if (now != whole) SetWindowTextA(summary, whole.c_str()); // a refresh does not scroll it
        return;
    }
    LoadText(IDS_DATABASE_SELECTED, selected);
    FormatText(text, sizeof text, "%d %s", count, selected);
    SetWindowTextA(summary, text);
}
