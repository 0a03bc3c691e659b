// The loop, layout and places of dialogs. See dialog_win.h.
#include "ui/dialog_win.h"

#include "core/settings.h"

#include <algorithm>

// ---- the loop

// The loop may be waiting inside GetMessage while a sent message ends it.
void EndModalDialog(ModalDialog* dialog, int result) {
    if (dialog->done) return;
    dialog->done = 1;
    dialog->result = result;
    PostThreadMessageA(GetCurrentThreadId(), WM_NULL, 0, 0);
}

static void RunLoop(ModalDialog* dialog) {
    MSG message;
    while (!dialog->done) {
        const BOOL got = GetMessageA(&message, nullptr, 0, 0);
        if (got <= 0) {
            if (got == 0) PostQuitMessage(static_cast<int>(message.wParam));
            EndModalDialog(dialog, 0);
            break;
        }
        if (dialog->OnMessage && dialog->OnMessage(dialog, message)) continue;
        if (IsDialogMessageA(dialog->window, &message)) continue;
        TranslateMessage(&message);
        DispatchMessageA(&message);
    }
}

int RunModalDialog(ModalDialog* dialog, HWND owner, UINT templateId, DLGPROC procedure,
                   LPARAM parameter, int hidden) {
    if (owner && !IsWindowEnabled(owner)) {
        SetForegroundWindow(GetLastActivePopup(owner));
        return 0;
    }
    dialog->owner = owner;
    if (!CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(templateId), owner,
                            procedure, parameter))
        return 0;
    if (owner) EnableWindow(owner, FALSE);
    if (!hidden) ShowWindow(dialog->window, SW_SHOW);
    RunLoop(dialog);
    // First, or another program is activated.
    if (owner && IsWindow(owner)) EnableWindow(owner, TRUE);
    if (IsWindow(dialog->window)) DestroyWindow(dialog->window);
    return dialog->result;
}

void EnableDialogButton(HWND dialog, int id, int enable, int next) {
    const HWND button = GetDlgItem(dialog, id);
    if (!enable && GetFocus() == button)
        SendMessageA(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, next)),
                     TRUE);
    EnableWindow(button, enable);
}

// ---- its place

static RECT WorkArea(HMONITOR handle) {
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    if (!GetMonitorInfoA(handle, &monitor))
        SystemParametersInfoA(SPI_GETWORKAREA, 0, &monitor.rcWork, 0);
    return monitor.rcWork;
}

// Upper left corner, so that as much as can be stands inside the work area.
static POINT Inside(const RECT& work, LONG x, LONG y, LONG width, LONG height) {
    return {std::max(std::min(x, work.right - width), work.left),
            std::max(std::min(y, work.bottom - height), work.top)};
}

void PlaceOverOwner(HWND dialog, HWND owner) {
    const RECT work = WorkArea(MonitorFromWindow(owner ? owner : dialog, MONITOR_DEFAULTTONEAREST));
    RECT around = work, own;
    if (owner && IsWindowVisible(owner) && !IsIconic(owner)) GetWindowRect(owner, &around);
    GetWindowRect(dialog, &own);
    const LONG width = own.right - own.left, height = own.bottom - own.top;
    const POINT at = Inside(work, (around.left + around.right - width) / 2,
                            (around.top + around.bottom - height) / 2, width, height);
    // A dialog does not follow an owner that stays on top by itself.
    const bool onTop = owner && (GetWindowLongA(owner, GWL_EXSTYLE) & WS_EX_TOPMOST);
    SetWindowPos(dialog, onTop ? HWND_TOPMOST : HWND_TOP, at.x, at.y, 0, 0, SWP_NOSIZE);
}

void RestoreDialogPlace(HWND dialog, HWND owner, uint32_t windowId, const char* setting) {
    WINDOWPLACEMENT placement = {};
    PlaceOverOwner(dialog, owner);
    if (!ReadWindowSetting(windowId, setting, kRegBinary, sizeof placement, &placement)) return;
    RECT own;
    GetWindowRect(dialog, &own);
    const RECT& saved = placement.rcNormalPosition;
    const RECT work = WorkArea(MonitorFromRect(&saved, MONITOR_DEFAULTTONEAREST));
    // The setting may hold anything: differences in more bits than coordinates have.
    const auto side = [](long long from, long long to, LONG least, LONG most) {
        return static_cast<LONG>(std::max<long long>(std::min<long long>(to - from, most), least));
    };
    const LONG width = side(saved.left, saved.right, own.right - own.left, work.right - work.left);
    const LONG height = side(saved.top, saved.bottom, own.bottom - own.top, work.bottom - work.top);
    const POINT at = Inside(work, saved.left, saved.top, width, height);
    SetWindowPos(dialog, nullptr, at.x, at.y, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
}

void StoreDialogPlace(HWND dialog, uint32_t windowId, const char* setting) {
    WINDOWPLACEMENT placement = {};
    placement.length = sizeof placement;
    if (!GetWindowPlacement(dialog, &placement)) return;
    // On screen and not in the work area, which may start elsewhere when it is read again.
    GetWindowRect(dialog, &placement.rcNormalPosition);
    placement.showCmd = SW_SHOWNORMAL;
    WriteWindowSetting(windowId, setting, kRegBinary, sizeof placement, &placement);
}

// ---- layout

void NoteDialogLayout(DialogLayout* layout, HWND dialog, const AnchoredControl* controls,
                      int count) {
    RECT outer, client;
    GetWindowRect(dialog, &outer);
    GetClientRect(dialog, &client);
    layout->controls = controls;
    layout->count = std::min(count, kAnchoredMax);
    layout->minimum = {outer.right - outer.left, outer.bottom - outer.top};
    layout->client = {client.right, client.bottom};
    for (int i = 0; i < layout->count; ++i) {
        RECT& place = layout->places[i];
        GetWindowRect(GetDlgItem(dialog, controls[i].id), &place);
        MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    }
}

void LayOutDialog(const DialogLayout& layout, HWND dialog) {
    RECT client;
    GetClientRect(dialog, &client);
    const int wider = std::max<int>(0, client.right - layout.client.cx);
    const int higher = std::max<int>(0, client.bottom - layout.client.cy);
    HDWP batch = BeginDeferWindowPos(layout.count);
    for (int i = 0; i < layout.count && batch; ++i) {
        const int anchor = layout.controls[i].anchor;
        RECT place = layout.places[i];
        OffsetRect(&place, anchor & kMoveX ? wider : 0, anchor & kMoveY ? higher : 0);
        if (anchor & kGrowX) place.right += wider;
        if (anchor & kGrowY) place.bottom += higher;
        batch =
            DeferWindowPos(batch, GetDlgItem(dialog, layout.controls[i].id), nullptr, place.left,
                           place.top, place.right - place.left, place.bottom - place.top,
                           SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
    }
    if (batch) EndDeferWindowPos(batch);
    // Controls that changed places with each other do not all tell what they have uncovered.
    RedrawWindow(dialog, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}
