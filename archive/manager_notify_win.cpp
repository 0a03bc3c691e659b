// What the manager's list tells its window: texts that it needs, clicks, and what is selected.
#include "archive/manager_state_win.h"
#include "archive/text_key_win.h"
#include "core/text.h"

#include <cstring>

static void OnWantText(const ManagerWindow& manager, NMLVDISPINFOA* info) {
    LVITEMA& item = info->item;
    if (!(item.mask & LVIF_TEXT) || !item.pszText || item.cchTextMax < 1) return;
    char text[kCommentSize] = "";
    if (item.iItem >= 0 && item.iSubItem >= 0 && item.iSubItem < kTrackViewColumns)
        CatalogCell(manager.catalog, static_cast<size_t>(item.iItem),
                    static_cast<CatalogColumn>(item.iSubItem), text);
    CopyText(item.pszText, static_cast<size_t>(item.cchTextMax), text);
}

// ---- type to find

// The column that the rows are sorted by, where it holds words; else the title.
static CatalogColumn FindColumn(const ManagerWindow& manager) {
    const int column = ColumnOfKey(manager.settings.key);
    if (column == kTimeColumn || column == kTrackNumberColumn) return kTitleColumn;
    return static_cast<CatalogColumn>(column);
}

static int BeginsWith(const char* text, const char* start, int whole) {
    const uint8_t* lower = PlatformLowerCase();
    for (; *start; ++text, ++start)
        if (lower[static_cast<uint8_t>(*text)] != lower[static_cast<uint8_t>(*start)]) return 0;
    return !whole || !*text;
}

// -1 for none.
static LRESULT FindRow(const ManagerWindow& manager, int from, UINT flags, const char* words) {
    const size_t rows = CatalogRowCount(manager.catalog);
    const size_t start = from > 0 ? static_cast<size_t>(from) : 0;
    for (size_t i = 0; i < rows && (start + i < rows || flags & LVFI_WRAP); ++i) {
        const size_t row = (start + i) % rows;
        char text[kCommentSize];
        CatalogCell(manager.catalog, row, FindColumn(manager), text);
        if (BeginsWith(text, words, !(flags & LVFI_PARTIAL))) return static_cast<LRESULT>(row);
    }
    return -1;
}

static LRESULT OnFindRow(const ManagerWindow& manager, const NMLVFINDITEMA& find) {
    if (!(find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !find.lvfi.psz) return -1;
    return FindRow(manager, find.iStart, find.lvfi.flags, find.lvfi.psz);
}

// Wide even where the window is not.
static LRESULT OnFindRow(const ManagerWindow& manager, const NMLVFINDITEMW& find) {
    char words[kCommentSize] = "";
    if (!(find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) || !find.lvfi.psz) return -1;
    if (!WideCharToMultiByte(CP_ACP, 0, find.lvfi.psz, -1, words, sizeof words, nullptr, nullptr))
        return -1;
    return FindRow(manager, find.iStart, find.lvfi.flags, words);
}

// ---- selection and clicks

// Many rows may change at once: one look afterwards is enough.
static void OnSelection(ManagerWindow* manager) {
    if (manager->quiet) return;
    manager->outOfSight.clear(); // the user has chosen anew
    if (manager->selectionPosted) return;
    manager->selectionPosted = 1;
    PostMessageA(manager->window, WM_COMMAND, kManagerSelection, 0);
}

static void OnItemChanged(ManagerWindow* manager, const NMLISTVIEW& change) {
    if (change.uChanged & LVIF_STATE && (change.uNewState ^ change.uOldState) & LVIS_SELECTED)
        OnSelection(manager);
}

static void OnDoubleClick(ManagerWindow* manager, const NMITEMACTIVATE& click) {
    KillTimer(manager->window, kClickTimer);
    if (click.iItem < 0) return;
    if (manager->settings.view == kTrackView)
        OpenManagerCell(manager, click.iItem, click.iSubItem);
    else
        PostMessageA(manager->window, WM_COMMAND, kManagerEdit, 0);
}

LRESULT OnManagerNotify(ManagerWindow* manager, NMHDR* header) {
    switch (header->code) {
    case static_cast<UINT>(LVN_GETDISPINFOA):
        OnWantText(*manager, reinterpret_cast<NMLVDISPINFOA*>(header));
        break;
    case static_cast<UINT>(LVN_ODFINDITEMA):
        return OnFindRow(*manager, *reinterpret_cast<NMLVFINDITEMA*>(header));
    case static_cast<UINT>(LVN_ODFINDITEMW):
        return OnFindRow(*manager, *reinterpret_cast<NMLVFINDITEMW*>(header));
    case static_cast<UINT>(LVN_COLUMNCLICK): {
        ManagerSettings sorted = manager->settings;
        SortByColumn(&sorted, reinterpret_cast<NMLISTVIEW*>(header)->iSubItem);
        SortManager(manager, sorted.key, sorted.ascending);
        break;
    }
    case static_cast<UINT>(LVN_ITEMCHANGED):
        OnItemChanged(manager, *reinterpret_cast<NMLISTVIEW*>(header));
        break;
    case static_cast<UINT>(LVN_ODSTATECHANGED): OnSelection(manager); break;
    case static_cast<UINT>(NM_CLICK):
        NoteManagerClick(manager, *reinterpret_cast<NMITEMACTIVATE*>(header));
        break;
    case static_cast<UINT>(NM_DBLCLK):
        OnDoubleClick(manager, *reinterpret_cast<NMITEMACTIVATE*>(header));
        break;
    default: break;
    }
    return 0;
}
