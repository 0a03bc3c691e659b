// The icon chooser: the icons of a file in a row, and a button for another file.
#include "media/icon_dialog_win.h"

#include "core/component_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"

#include <commdlg.h>
#include <windowsx.h>

#include <algorithm>

constexpr UINT kIconsMax = 500; // a list of more is no choice
constexpr int kIconSize = 32, kIconSpace = 8;

namespace {
struct IconDialog {
    UINT caption;
    char file[MAX_PATH];
    int index;
    UINT count;
    HICON icons[kIconsMax];
};
} // namespace

static IconDialog* DialogState(HWND dialog) {
    return reinterpret_cast<IconDialog*>(GetWindowLongPtrA(dialog, DWLP_USER));
}

static void DestroyIcons(IconDialog* state) {
    for (UINT i = 0; i < state->count; ++i)
        if (state->icons[i]) DestroyIcon(state->icons[i]);
    state->count = 0;
}

static void ShowFile(HWND dialog, IconDialog* state) {
    const HWND list = GetDlgItem(dialog, IDC_ICON_LIST);
    SetWindowRedraw(list, FALSE);
    ListBox_ResetContent(list);
    DestroyIcons(state);
    const UINT found = ExtractIconExA(state->file, -1, nullptr, nullptr, 0);
    state->count = std::min(found, kIconsMax);
    std::fill(state->icons, state->icons + kIconsMax, nullptr);
    if (state->count) ExtractIconExA(state->file, 0, state->icons, nullptr, state->count);
    for (UINT i = 0; i < state->count; ++i)
        ListBox_AddItemData(list, i);
    const int chosen = state->index;
    ListBox_SetCurSel(list, chosen >= 0 && chosen < static_cast<int>(state->count) ? chosen : 0);
    SetWindowRedraw(list, TRUE);
    InvalidateRect(list, nullptr, TRUE);
    SetDlgItemTextA(dialog, IDC_ICON_FILE, state->file);
    EnableWindow(GetDlgItem(dialog, IDOK), state->count != 0);
}

static void DrawIcon(const IconDialog* state, const DRAWITEMSTRUCT& item) {
    if (item.itemID >= state->count) return;
    const bool selected = item.itemState & ODS_SELECTED;
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(selected ? COLOR_HIGHLIGHT : COLOR_WINDOW));
    const RECT& r = item.rcItem;
    DrawIconEx(item.hDC, (r.left + r.right - kIconSize) / 2, (r.top + r.bottom - kIconSize) / 2,
               state->icons[item.itemID], kIconSize, kIconSize, 0, nullptr, DI_NORMAL);
    if (item.itemState & ODS_FOCUS) DrawFocusRect(item.hDC, &r);
}

static void OnBrowse(HWND dialog, IconDialog* state) {
    char filter[kStringMax], path[MAX_PATH] = "";
    const int length = LoadText(IDS_ICON_FILTER, filter);
    std::replace(filter, filter + length, '|', '\0');
    OPENFILENAMEA choice = {};
    choice.lStructSize = sizeof choice;
    choice.hwndOwner = dialog;
    choice.lpstrFilter = filter;
    choice.lpstrFile = path;
    choice.nMaxFile = sizeof path;
    choice.Flags = OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_HIDEREADONLY | OFN_NOCHANGEDIR;
    if (!GetOpenFileNameA(&choice)) return;
    CopyText(state->file, path);
    state->index = 0;
    ShowFile(dialog, state);
}

static void OnIconOk(HWND dialog, IconDialog* state) {
    const int chosen = ListBox_GetCurSel(GetDlgItem(dialog, IDC_ICON_LIST));
    if (chosen < 0) return;
    state->index = chosen;
    EndDialog(dialog, IDOK);
}

static void OnIconCommand(HWND dialog, IconDialog* state, WPARAM command) {
    switch (LOWORD(command)) {
    case IDC_ICON_LIST:
        if (HIWORD(command) == LBN_DBLCLK) OnIconOk(dialog, state);
        break;
    case IDC_ICON_BROWSE: OnBrowse(dialog, state); break;
    case IDOK: OnIconOk(dialog, state); break;
    case IDCANCEL: EndDialog(dialog, IDCANCEL); break;
    default: break;
    }
}

static void InitIconDialog(HWND dialog, IconDialog* state) {
    SetWindowLongPtrA(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(state));
    char text[kStringMax];
    LoadText(state->caption, text);
    SetWindowTextA(dialog, text);
    const HWND list = GetDlgItem(dialog, IDC_ICON_LIST);
    RECT area;
    GetClientRect(list, &area);
    const int bar = GetSystemMetrics(SM_CYHSCROLL);
    ListBox_SetItemHeight(list, 0, std::max<int>(area.bottom - bar, kIconSize + kIconSpace));
    ListBox_SetColumnWidth(list, kIconSize + kIconSpace);
    ShowFile(dialog, state);
    SetFocus(list);
}

static INT_PTR IconDialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        InitIconDialog(dialog, reinterpret_cast<IconDialog*>(lParam));
        return FALSE; // the focus is set
    }
    IconDialog* state = DialogState(dialog);
    if (!state) return FALSE; // before the list is measured
    if (message == WM_DRAWITEM) {
        DrawIcon(state, *reinterpret_cast<const DRAWITEMSTRUCT*>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    OnIconCommand(dialog, state, wParam);
    return TRUE;
}

int ChooseIcon(HWND owner, UINT caption, char (&file)[MAX_PATH], int* index) {
    IconDialog state = {};
    state.caption = caption;
    CopyText(state.file, file);
    state.index = *index;
    const INT_PTR answer =
        DialogBoxParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_PICK_ICON), owner,
                        GuardedDialog<IconDialogProc>, reinterpret_cast<LPARAM>(&state));
    DestroyIcons(&state);
    if (answer != IDOK) return 0;
    CopyText(file, state.file);
    *index = state.index;
    return 1;
}
