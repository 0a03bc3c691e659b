// Keys in the manager's window. The framework moves a window by the arrow keys and widens it by
// letters; here the list has the focus and takes them, until somebody clicks the background.
#include "archive/manager_state_win.h"
#include "core/component_win.h"
#include "core/strings_win.h"
#include "resources/ids.h"

#include <iterator>

static int IsDown(int key) {
    return GetKeyState(key) < 0;
}

static void Do(const ManagerWindow& manager, int command) {
    PostMessageA(manager.window, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

// ---- from control to control

static void FocusNext(const ManagerWindow& manager, HWND from, int back) {
    static constexpr int kOrder[] = {kManagerList, kManagerSummary, kManagerSearch};
    constexpr int kCount = std::size(kOrder);
    int place = 0;
    for (int i = 0; i < kCount; ++i)
        if (ControlOf(manager, kOrder[i]) == from) place = i;
    for (int i = 1; i <= kCount; ++i) {
        const int next = kOrder[(place + (back ? kCount - i : i)) % kCount];
        if (!manager.layout.boxes[ManagerControlIndex(next)].width) continue;
        SetFocus(ControlOf(manager, next));
        return;
    }
}

void FocusManager(const ManagerWindow& manager) {
    const HWND focus = manager.focus && IsWindowVisible(manager.focus) ? manager.focus : nullptr;
    SetFocus(focus ? focus : ListOf(manager));
}

// ---- keys of all children; 1 when taken

static int OnControlKey(const ManagerWindow& manager, WPARAM key) {
    if (!IsDown(VK_CONTROL) || IsDown(VK_MENU)) return 0;
    switch (key) {
    case 'F': Do(manager, kManagerFind); return 1;
    case 'P': Do(manager, kManagerPrint); return 1;
    default: return 0;
    }
}

static int OnSharedKey(const ManagerWindow& manager, HWND from, WPARAM key) {
    switch (key) {
    case VK_TAB: FocusNext(manager, from, IsDown(VK_SHIFT)); return 1;
    case VK_F5: Do(manager, kManagerRefresh); return 1;
    case VK_PAUSE:
    case VK_PLAY: SendMessageA(manager.window, WM_KEYDOWN, key, 0); return 1;
    default: return OnControlKey(manager, key);
    }
}

static int OnListKey(const ManagerWindow& manager, WPARAM key) {
    const int control = IsDown(VK_CONTROL) && !IsDown(VK_MENU);
    switch (key) {
    case VK_RETURN: { // the editor is for whole discs
        const int isTrack = manager.settings.view == kTrackView;
        Do(manager, isTrack ? int{kManagerCellOpen} : int{kManagerEdit});
        return 1;
    }
    case VK_F2: Do(manager, kManagerCellOpen); return 1;
    case VK_DELETE: Do(manager, kManagerDelete); return 1;
    case VK_ESCAPE: Do(manager, kManagerStop); return 1;
    case 'A':
        if (control) SendMessageA(manager.window, WM_COMMAND, kManagerSelectEach, 0);
        return control;
    case 'C':
        if (control) Do(manager, kManagerCopy);
        return control;
    case 'V':
        if (control) Do(manager, kManagerPaste);
        return control;
    default: return 0;
    }
}

static int OnSearchKey(const ManagerWindow& manager, HWND search, WPARAM key) {
    switch (key) {
    case VK_ESCAPE:
        if (GetWindowTextLengthA(search))
            SetWindowTextA(search, "");
        else
            SetFocus(ListOf(manager));
        return 1;
    case VK_RETURN:
    case VK_DOWN: SetFocus(ListOf(manager)); return 1;
    default: return 0;
    }
}

static int OnChildKey(const ManagerWindow& manager, HWND child, WPARAM key) {
    const int id = GetDlgCtrlID(child);
    if (id == kManagerList && OnListKey(manager, key)) return 1;
    if (id == kManagerSearch && OnSearchKey(manager, child, key)) return 1;
    if (id != kManagerList && key == 'A' && IsDown(VK_CONTROL)) {
        SendMessageA(child, EM_SETSEL, 0, -1);
        return 1;
    }
    if (id == kManagerSummary && key == VK_ESCAPE) {
        SetFocus(ListOf(manager));
        return 1;
    }
    return OnSharedKey(manager, child, key);
}

// ---- the list's mouse

// A click into the only row that is selected, while the list has the focus, may open a cell.
static void NoteMouseDown(ManagerWindow* manager, HWND list, WPARAM keys, LPARAM place) {
    LVHITTESTINFO hit = {};
    hit.pt = {static_cast<short>(LOWORD(place)), static_cast<short>(HIWORD(place))};
    SendMessageA(list, LVM_SUBITEMHITTEST, 0, reinterpret_cast<LPARAM>(&hit));
    KillTimer(manager->window, kClickTimer);
    manager->clickOpensCell = 0;
    if (hit.iItem < 0 || keys & (MK_SHIFT | MK_CONTROL) || GetFocus() != list) return;
    const LRESULT state =
        SendMessageA(list, LVM_GETITEMSTATE, static_cast<WPARAM>(hit.iItem), LVIS_SELECTED);
    manager->clickOpensCell = SelectedCount(*manager) == 1 && state & LVIS_SELECTED;
}

static void OnHeader(ManagerWindow* manager, const NMHDR* header) {
    if (header->code == static_cast<UINT>(HDN_BEGINTRACKA) ||
        header->code == static_cast<UINT>(HDN_BEGINTRACKW) ||
        header->code == static_cast<UINT>(HDN_BEGINDRAG))
        CloseManagerCell(manager, 1); // it would stay behind
}

// ---- the search field's hint

static void PaintHint(const ManagerWindow& manager, HWND search) {
    if (GetWindowTextLengthA(search) || GetFocus() == search) return;
    char text[kStringMax];
    RECT client;
    const int length = LoadText(IDS_DATABASE_SEARCH, text);
    const HDC dc = GetDC(search);
    GetClientRect(search, &client);
    client.left += 3;
    const HGDIOBJ before = SelectObject(dc, manager.searchFont.font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, RGB(128, 128, 128));
    DrawTextA(dc, text, length, &client, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX);
    SelectObject(dc, before);
    ReleaseDC(search, dc);
}

// ---- procedures

static LRESULT ListProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
    ManagerWindow* manager = OpenManager();
    if (!manager) return DefWindowProcA(list, message, wParam, lParam);
    switch (message) {
    case WM_KEYDOWN:
        KillTimer(manager->window, kClickTimer);
        if (OnChildKey(*manager, list, wParam)) return 0;
        break;
    case WM_CHAR:
        if (wParam < ' ') return 0; // of the keys above: nothing to find
        break;
    case WM_LBUTTONDOWN: NoteMouseDown(manager, list, wParam, lParam); break;
    case WM_VSCROLL:
    case WM_HSCROLL:
    case WM_MOUSEWHEEL:
        if (manager->cell && !manager->quiet) CloseManagerCell(manager, 1);
        break;
    case WM_NOTIFY: OnHeader(manager, reinterpret_cast<const NMHDR*>(lParam)); break;
    case WM_SETFOCUS: manager->focus = list; break;
    case WM_CTLCOLOREDIT: return SendMessageA(manager->window, message, wParam, lParam);
    default: break;
    }
    return CallWindowProcA(manager->listProcedure, list, message, wParam, lParam);
}

static LRESULT FieldProc(HWND field, UINT message, WPARAM wParam, LPARAM lParam) {
    ManagerWindow* manager = OpenManager();
    if (!manager) return DefWindowProcA(field, message, wParam, lParam);
    const int isSearch = GetDlgCtrlID(field) == kManagerSearch;
    switch (message) {
    case WM_KEYDOWN:
        if (OnChildKey(*manager, field, wParam)) return 0;
        break;
    case WM_CHAR: // of the keys that were taken: an edit control beeps at them
        if (wParam < ' ' && wParam != VK_BACK && (!IsDown(VK_CONTROL) || wParam == 1)) return 0;
        break;
    case WM_SETFOCUS: manager->focus = field; break;
    default: break;
    }
    const LRESULT result = CallWindowProcA(manager->editProcedure, field, message, wParam, lParam);
    if (isSearch && (message == WM_SETFOCUS || message == WM_KILLFOCUS))
        InvalidateRect(field, nullptr, TRUE);
    if (isSearch && message == WM_PAINT) PaintHint(*manager, field);
    return result;
}

static WNDPROC Subclass(HWND control, WNDPROC procedure) {
    return reinterpret_cast<WNDPROC>(
        SetWindowLongPtrA(control, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(procedure)));
}

void TakeOverKeys(ManagerWindow* manager) {
    manager->listProcedure = Subclass(ListOf(*manager), GuardedProc<ListProc>);
    Subclass(ControlOf(*manager, kManagerSearch), GuardedProc<FieldProc>);
    Subclass(ControlOf(*manager, kManagerSummary), GuardedProc<FieldProc>);
}
