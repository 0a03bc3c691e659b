// Columns, cells and marks of lists. See listview_win.h.
#include "ui/listview_win.h"

#include "core/strings_win.h"

#include <algorithm>

constexpr int kNarrowestColumn = 60; // pixels

void AddColumn(HWND list, int column, UINT nameId, int width, int format) {
    char name[kStringMax];
    LoadText(nameId, name);
    LVCOLUMNA item = {};
    item.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
    item.fmt = format;
    item.cx = width;
    item.pszText = name;
    item.iSubItem = column;
    SendMessageA(list, LVM_INSERTCOLUMNA, column, reinterpret_cast<LPARAM>(&item));
}

void SelectAllRows(HWND list) {
    SetRowState(list, -1, LVIS_SELECTED, LVIS_SELECTED);
}

int IsSelectAllKey(const NMHDR* keyDown) {
    return reinterpret_cast<const NMLVKEYDOWN*>(keyDown)->wVKey == 'A' &&
           GetKeyState(VK_CONTROL) < 0 && GetKeyState(VK_MENU) >= 0;
}

void SetCellText(HWND list, int row, int column, const char* text) {
    LVITEMA item = {};
    item.iSubItem = column;
    item.pszText = const_cast<char*>(text); // the message only reads it
    SendMessageA(list, LVM_SETITEMTEXTA, row, reinterpret_cast<LPARAM>(&item));
}

void SetRowCount(HWND list, int rows) {
    int count = static_cast<int>(SendMessageA(list, LVM_GETITEMCOUNT, 0, 0));
    for (; count < rows; ++count) {
        LVITEMA item = {};
        item.mask = LVIF_TEXT;
        item.iItem = count;
        item.pszText = const_cast<char*>("");
        SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
    }
    for (; count > rows; --count)
        SendMessageA(list, LVM_DELETEITEM, count - 1, 0);
}

void SetRowState(HWND list, int row, UINT state, UINT mask) {
    LVITEMA item = {};
    item.state = state;
    item.stateMask = mask;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
}

static RECT CellPlace(HWND list, int row, int column) {
    RECT place = {LVIR_LABEL, column, 0, 0}; // left and top carry the question
    SendMessageA(list, LVM_GETSUBITEMRECT, static_cast<WPARAM>(row),
                 reinterpret_cast<LPARAM>(&place));
    return place;
}

RECT RevealCell(HWND list, int row, int column) {
    RECT client;
    SendMessageA(list, LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
    GetClientRect(list, &client);
    RECT place = CellPlace(list, row, column);
    const int shift = place.left < 0 || place.right - place.left > client.right ? place.left
                      : place.right > client.right ? place.right - client.right
                                                   : 0;
    if (!shift) return place;
    SendMessageA(list, LVM_SCROLL, static_cast<WPARAM>(shift), 0);
    return CellPlace(list, row, column);
}

void FitColumn(HWND list, int column, int columns) {
    RECT client;
    GetClientRect(list, &client);
    int left = client.right;
    for (int i = 0; i < columns; ++i) {
        if (i != column) left -= static_cast<int>(SendMessageA(list, LVM_GETCOLUMNWIDTH, i, 0));
    }
    SendMessageA(list, LVM_SETCOLUMNWIDTH, column, MAKELPARAM(std::max(left, kNarrowestColumn), 0));
}
