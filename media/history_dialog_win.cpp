// The history: what was played, to be played again or removed.
#include "core/component_win.h"
#include "media/dialogs_win.h"
#include "media/history_win.h"
#include "media/lengths.h"
#include "resources/ids.h"
#include "ui/components.h"
#include "ui/dialog_win.h"
#include "ui/listview_win.h"

#include <algorithm>

constexpr const char* kPlaceValue = "HstryWndPlcmnt";
enum HistoryColumn { kFile, kFolder, kColumns };
static constexpr AnchoredControl kAnchors[] = {
    {IDC_LIST, kGrowX | kGrowY}, {IDC_HISTORY_REMOVE, kMoveY}, {IDC_HISTORY_CLEAR, kMoveY},
    {IDOK, kMoveX | kMoveY},     {IDCANCEL, kMoveX | kMoveY},
};

namespace {
struct HistoryDialog {
    ModalDialog modal;
    DialogLayout layout;
    HWND list;
    std::vector<std::string> paths;
    std::string chosen; // to be played
};
} // namespace

// The chosen row, or -1.
static int ChosenRow(const HistoryDialog* dialog) {
    const LRESULT row = SendMessageA(dialog->list, LVM_GETNEXTITEM, -1, LVNI_SELECTED);
    return row < static_cast<LRESULT>(dialog->paths.size()) ? static_cast<int>(row) : -1;
}

static void EnableButtons(const HistoryDialog* dialog) {
    const HWND window = dialog->modal.window;
    const int chosen = ChosenRow(dialog) >= 0;
    EnableDialogButton(window, IDOK, chosen, IDC_LIST);
    EnableDialogButton(window, IDC_HISTORY_REMOVE, chosen, IDC_LIST);
    EnableDialogButton(window, IDC_HISTORY_CLEAR, !dialog->paths.empty(), IDC_LIST);
}

// Lists what there is, with that row chosen, or the last one.
static void ShowPaths(HistoryDialog* dialog, int row) {
    dialog->paths = ListHistory();
    const int count = static_cast<int>(dialog->paths.size());
    SetRowCount(dialog->list, count);
    for (int i = 0; i < count; ++i) {
        SetCellText(dialog->list, i, kFile, FileOf(dialog->paths[i]).c_str());
        SetCellText(dialog->list, i, kFolder, FolderOf(dialog->paths[i]).c_str());
    }
    row = std::min(row, count - 1);
    LVITEMA item = {};
    item.state = item.stateMask = LVIS_SELECTED | LVIS_FOCUSED;
    if (row >= 0) {
        SendMessageA(dialog->list, LVM_SETITEMSTATE, row, reinterpret_cast<LPARAM>(&item));
        SendMessageA(dialog->list, LVM_ENSUREVISIBLE, row, FALSE);
    }
    FitColumn(dialog->list, kFolder, kColumns);
    EnableButtons(dialog);
}

static void RemoveChosen(HistoryDialog* dialog) {
    const int row = ChosenRow(dialog);
    if (row < 0) return;
    RemoveHistory(dialog->paths[row]);
    ShowPaths(dialog, row);
}

static void PlayChosen(HistoryDialog* dialog) {
    const int row = ChosenRow(dialog);
    if (row < 0) return;
    dialog->chosen = dialog->paths[row];
    EndModalDialog(&dialog->modal, IDOK);
}

static void OnInitDialog(HWND window, HistoryDialog* dialog) {
    SetWindowLongPtrA(window, DWLP_USER, reinterpret_cast<LONG_PTR>(dialog));
    dialog->modal.window = window;
    dialog->list = GetDlgItem(window, IDC_LIST);
    NoteDialogLayout(&dialog->layout, window, kAnchors, std::size(kAnchors));
    SendMessageA(dialog->list, LVM_SETEXTENDEDLISTVIEWSTYLE, 0, LVS_EX_FULLROWSELECT);
    AddColumn(dialog->list, kFile, IDS_COLUMN_FILE, 200, LVCFMT_LEFT);
    AddColumn(dialog->list, kFolder, IDS_COLUMN_FOLDER, 140, LVCFMT_LEFT);
    RestoreDialogPlace(window, dialog->modal.owner, kMediaWindowId, kPlaceValue);
    LayOutDialog(dialog->layout, window);
    ShowPaths(dialog, 0);
    SetFocus(dialog->list);
}

static void OnCommand(HistoryDialog* dialog, WORD id) {
    switch (id) {
    case IDOK: PlayChosen(dialog); break;
    case IDCANCEL: EndModalDialog(&dialog->modal, IDCANCEL); break;
    case IDC_HISTORY_REMOVE: RemoveChosen(dialog); break;
    case IDC_HISTORY_CLEAR:
        ClearHistory();
        ShowPaths(dialog, 0);
        break;
    default: break;
    }
}

static void OnNotify(HistoryDialog* dialog, const NMHDR* header) {
    if (header->idFrom != IDC_LIST) return;
    const int code = static_cast<int>(header->code);
    if (code == static_cast<int>(NM_DBLCLK)) PlayChosen(dialog);
    if (code == static_cast<int>(LVN_ITEMCHANGED)) EnableButtons(dialog);
    if (code == static_cast<int>(LVN_KEYDOWN) &&
        reinterpret_cast<const NMLVKEYDOWN*>(header)->wVKey == VK_DELETE)
        RemoveChosen(dialog);
}

static INT_PTR HistoryProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(window, reinterpret_cast<HistoryDialog*>(lParam));
        return FALSE; // the list has the focus
    }
    auto* dialog = reinterpret_cast<HistoryDialog*>(GetWindowLongPtrA(window, DWLP_USER));
    if (!dialog) return FALSE;
    switch (message) {
    case WM_COMMAND: OnCommand(dialog, LOWORD(wParam)); return TRUE;
    case WM_NOTIFY: OnNotify(dialog, reinterpret_cast<const NMHDR*>(lParam)); return TRUE;
    case WM_SIZE:
        LayOutDialog(dialog->layout, window);
        FitColumn(dialog->list, kFolder, kColumns);
        return TRUE;
    case WM_GETMINMAXINFO:
        if (dialog->layout.minimum.cx)
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {dialog->layout.minimum.cx,
                                                                     dialog->layout.minimum.cy};
        return TRUE;
    case WM_DESTROY:
        StoreDialogPlace(window, kMediaWindowId, kPlaceValue);
        EndModalDialog(&dialog->modal, 0);
        return TRUE;
    case WM_NCDESTROY: SetWindowLongPtrA(window, DWLP_USER, 0); return FALSE;
    default: return FALSE;
    }
}

int ShowHistory(HWND owner, std::string* path) {
    HistoryDialog dialog = {};
    if (RunModalDialog(&dialog.modal, owner, IDD_HISTORY, GuardedDialog<HistoryProcedure>,
                       reinterpret_cast<LPARAM>(&dialog)) != IDOK)
        return 0;
    *path = dialog.chosen;
    return 1;
}
