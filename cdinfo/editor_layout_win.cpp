// Geometry of the CD information editor: the track list takes what the dialog grows by, the program
// below it keeps its height. Also the list-view helpers of both lists.
#include "cdinfo/editor_parts_win.h"

#include "core/strings_win.h"
#include "resources/ids.h"

#include <algorithm>

constexpr int kNarrowestColumn = 60; // pixels

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

void PlaceDialog(const Editor* editor) {
    const HWND owner = editor->owner;
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoA(MonitorFromWindow(owner ? owner : editor->dialog, MONITOR_DEFAULTTONEAREST),
                    &monitor);
    const RECT work = monitor.rcWork;
    RECT around = work;
    if (owner && IsWindowVisible(owner) && !IsIconic(owner)) GetWindowRect(owner, &around);
    const int width = editor->minimum.cx;
    const int height = editor->minimum.cy;
    int x = (around.left + around.right - width) / 2;
    int y = (around.top + around.bottom - height) / 2;
    x = std::max<int>(std::min<int>(x, work.right - width), work.left);
    y = std::max<int>(std::min<int>(y, work.bottom - height), work.top);
    // A dialog does not follow an owner that stays on top by itself.
    const bool onTop = owner && (GetWindowLongA(owner, GWL_EXSTYLE) & WS_EX_TOPMOST);
    SetWindowPos(editor->dialog, onTop ? HWND_TOPMOST : HWND_TOP, x, y, 0, 0, SWP_NOSIZE);
}

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
    LVITEMA item = {};
    item.stateMask = item.state = LVIS_SELECTED;
    SendMessageA(list, LVM_SETITEMSTATE, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(&item));
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

void FitColumn(HWND list, int column, int columns) {
    RECT client;
    GetClientRect(list, &client);
    int left = client.right;
    for (int i = 0; i < columns; ++i) {
        if (i != column) left -= static_cast<int>(SendMessageA(list, LVM_GETCOLUMNWIDTH, i, 0));
    }
    SendMessageA(list, LVM_SETCOLUMNWIDTH, column, MAKELPARAM(std::max(left, kNarrowestColumn), 0));
}
