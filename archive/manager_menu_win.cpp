// The manager's context menu: everything that its controls do, and what only keys do besides.
#include "archive/clipboard_win.h"
#include "archive/manager_state_win.h"
#include "resources/ids.h"
#include "ui/layouts_win.h"
#include "ui/menu_win.h"

static UINT LabelOf(int id) {
    return IDS_DATABASE_LABELS + static_cast<UINT>(id - kManagerPower);
}

static void AppendCommand(HMENU menu, UINT id, UINT text, int enabled) {
    AppendMenuEntry(menu, id, text);
    if (!enabled) EnableMenuItem(menu, id, MF_BYCOMMAND | MF_GRAYED);
}

static void AppendDiscs(HMENU menu, const ManagerWindow& manager) {
    const int whole = manager.settings.view != kTrackView, selected = SelectedCount(manager);
    const int free = whole && !IsManagerBusy(manager);
    AppendCommand(menu, kManagerEdit, LabelOf(kManagerEdit), whole && selected == 1);
    AppendCommand(menu, kManagerCellOpen, IDS_DATABASE_MENU_CELL, selected > 0);
    AppendCommand(menu, kManagerCopy, LabelOf(kManagerCopy), whole && selected);
    AppendCommand(menu, kManagerPaste, LabelOf(kManagerPaste), free && ClipboardHasDiscs());
    AppendCommand(menu, kManagerDelete, LabelOf(kManagerDelete), free && selected);
    AppendCommand(menu, kManagerSelect, LabelOf(kManagerSelect), whole);
    AppendMenuSeparator(menu);
    AppendCommand(menu, kManagerExport, LabelOf(kManagerExport), free);
    AppendCommand(menu, kManagerImport, LabelOf(kManagerImport), free);
    if (manager.transfer) AppendMenuEntry(menu, kManagerStop, IDS_DATABASE_MENU_STOP);
    AppendMenuEntry(menu, kManagerPrint, LabelOf(kManagerPrint));
}

static void AppendOrder(HMENU menu, const ManagerWindow& manager) {
    const HMENU views = CreatePopupMenu(), sorts = CreatePopupMenu();
    for (UINT view = kCdView; view <= kArtistView; ++view)
        AppendMenuEntry(views, kManagerViewFirst + view, IDS_DATABASE_VIEWS + view,
                        manager.settings.view == static_cast<CatalogView>(view));
    for (int key = 0; key < ViewKeys(manager.settings.view); ++key)
        AppendMenuEntry(sorts, static_cast<UINT>(kManagerSortFirst + key),
                        key == kByTrackNumber ? IDS_DATABASE_SORT_NUMBER
                                              : IDS_DATABASE_SORTS + static_cast<UINT>(key),
                        manager.settings.key == key);
    AppendMenuSeparator(sorts);
    AppendMenuEntry(sorts, kManagerDirection, IDS_DATABASE_MENU_DIRECTION,
                    manager.settings.ascending);
    AppendSubmenu(menu, views, LabelOf(kManagerToggle));
    AppendSubmenu(menu, sorts, IDS_DATABASE_MENU_SORT);
    AppendMenuEntry(menu, kManagerFind, IDS_DATABASE_MENU_FIND);
    AppendMenuEntry(menu, kManagerRefresh, IDS_DATABASE_MENU_REFRESH);
}

// From the keyboard: below the row that has the focus.
static POINT MenuPlace(const ManagerWindow& manager, HWND from, LPARAM place) {
    const HWND list = ListOf(manager);
    const auto row = static_cast<int>(
        SendMessageA(list, LVM_GETNEXTITEM, static_cast<WPARAM>(-1), LVNI_FOCUSED));
    if (from != list || row < 0 || static_cast<DWORD>(place) != MAXDWORD)
        return ContextMenuPlace(manager.window, place);
    RECT area = {LVIR_LABEL, 0, 0, 0};
    SendMessageA(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    SendMessageA(list, LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&area));
    POINT at = {area.left, area.bottom};
    ClientToScreen(list, &at);
    return at;
}

void ShowManagerMenu(ManagerWindow* manager, HWND from, LPARAM place) {
    const HMENU menu = CreatePopupMenu();
    if (!menu) return;
    AppendDiscs(menu, *manager);
    AppendMenuSeparator(menu);
    AppendOrder(menu, *manager);
    AppendMenuSeparator(menu);
    AppendLayoutsMenu(menu);
    AppendMenuSeparator(menu);
    AppendMenuEntry(menu, kManagerPower, IDS_DATABASE_MENU_POWER);
    ShowMenu(menu, manager->window, MenuPlace(*manager, from, place));
}
