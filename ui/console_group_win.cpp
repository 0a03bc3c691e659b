// The component windows and the console as a group: moved, aligned, stretched and brought forward
// together. A window whose thread hangs is left out, or the console would hang with it.
#include "ui/console_group.h"
#include "ui/console_state_win.h"
#include "ui/framework_win.h"

#include <initializer_list>

constexpr UINT kMoveOnly = SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE;

struct Group {
    HWND windows[kWindowSlots + 1];
    int count;
};

static Group OpenGroup() {
    Group group = {};
    HWND slots[kWindowSlots];
    OpenSlotWindows(slots);
    for (HWND window : slots)
        if (window && !IsHungAppWindow(window)) group.windows[group.count++] = window;
    if (!IsIconic(s_console.window)) group.windows[group.count++] = s_console.window;
    return group;
}

static Edges EdgesOf(HWND window) {
    RECT r = {};
    GetWindowRect(window, &r);
    return {r.left, r.top, r.right, r.bottom};
}

static void Place(HWND window, const Edges& e) {
    SetWindowPos(window, nullptr, e.left, e.top, e.right - e.left, e.bottom - e.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

void MoveGroup(int senderId, int dx, int dy) {
    const Group group = OpenGroup();
    for (int i = 0; i < group.count; ++i) {
        if (static_cast<int>(WindowIdOf(group.windows[i])) == senderId) continue;
        const Edges e = EdgesOf(group.windows[i]);
        SetWindowPos(group.windows[i], nullptr, e.left + dx, e.top + dy, 0, 0, kMoveOnly);
    }
}

void RaiseGroup(HWND window) {
    const Group group = OpenGroup();
    int member = 0;
    for (int i = 0; i < group.count; ++i)
        member |= group.windows[i] == window;
    if (!member) return; // the handle came in a message: anyone may have posted it
    for (int i = 0; i < group.count; ++i)
        if (group.windows[i] != window)
            SetWindowPos(group.windows[i], window, 0, 0, 0, 0,
                         SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

// The sender's rectangle. Only four windows are references of their own; all others mean the
// console's.
static Edges ReferenceOf(int senderId) {
    HWND window = nullptr;
    if (senderId == kCdPlayerWindowId || senderId == kSpectrumWindowId ||
        senderId == kMixerWindowId || senderId == kVisualsWindowId) {
        const int row = RowByWindowId(senderId);
        if (row >= 0) window = OpenWindowOfRow(row);
    }
    if (window) return EdgesOf(window);
    WINDOWPLACEMENT placed = {}; // a minimized console counts where it will come back
    placed.length = sizeof placed;
    if (!IsIconic(s_console.window) || !GetWindowPlacement(s_console.window, &placed))
        return EdgesOf(s_console.window);
    const RECT& r = placed.rcNormalPosition;
    return {r.left, r.top, r.right, r.bottom};
}

static GroupSide SideOf(int key) {
    switch (key) {
    case VK_LEFT: return kLeftSide;
    case VK_RIGHT: return kRightSide;
    case VK_UP: return kTopSide;
    case VK_DOWN: return kBottomSide;
    default: return kNoSide;
    }
}

void AlignGroup(int senderId, int key) {
    const GroupSide side = SideOf(key);
    if (side == kNoSide) return;
    const Edges reference = ReferenceOf(senderId);
    const Group group = OpenGroup();
    for (int i = 0; i < group.count; ++i)
        Place(group.windows[i], AlignEdges(EdgesOf(group.windows[i]), reference, side));
}

void StretchGroup(int senderId, int key) {
    const GroupSide side = SideOf(key);
    if (side == kNoSide) return;
    const Edges reference = ReferenceOf(senderId);
    const Group group = OpenGroup();
    for (int i = 0; i < group.count; ++i) {
        if (WindowIdOf(group.windows[i]) == kLayoutsWindowId) continue;
        Place(group.windows[i],
              StretchEdges(EdgesOf(group.windows[i]), reference, side,
                           GetSystemMetrics(SM_CXMINTRACK), GetSystemMetrics(SM_CYMINTRACK)));
    }
}

void ForwardKey(int senderId, int key) {
    for (const int id : {kCdPlayerWindowId, kMediaWindowId}) {
        const int row = RowByWindowId(id);
        HWND window = row >= 0 ? OpenWindowOfRow(row) : nullptr;
        if (!window || senderId == id) continue;
        PostMessageA(window, WM_KEYDOWN, key, 1);
        return;
    }
}

void ApplyAlwaysOnTop(HWND window) {
    SetWindowPos(window, s_console.AlwaysOnTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void HideGroup() {
    HWND slots[kWindowSlots];
    OpenSlotWindows(slots);
    for (int slot = 0; slot < kWindowSlots; ++slot) {
        if (!slots[slot] || !IsWindowVisible(slots[slot])) continue;
        ShowWindowAsync(slots[slot], SW_HIDE);
        s_console.hiddenByMinimize[slot] = 1;
    }
}

void ShowGroup() {
    HWND slots[kWindowSlots];
    OpenSlotWindows(slots);
    for (int slot = 0; slot < kWindowSlots; ++slot) {
        if (slots[slot] && s_console.hiddenByMinimize[slot])
            ShowWindowAsync(slots[slot], SW_SHOWNA);
        s_console.hiddenByMinimize[slot] = 0;
    }
}
