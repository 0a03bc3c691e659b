// Applying a layout: the console moves its windows, opens and closes them. See layouts_win.h.
#include "ui/layouts_win.h"

#include "core/settings.h"
#include "ui/console_state_win.h"
#include "ui/framework_win.h"

#include <algorithm>

// Of the layouts window's section: 1 once the first layout was chosen, or was found not to be
// wanted. "Setting" can't tell, since it is written only when somebody has chosen.
constexpr const char* kFirstChosen = "FirstLayoutChosen";
constexpr UINT kActivationMs = 500; // for a window to take up that it was brought forward

static void Save(int windowId, const LayoutEntry& e) {
    SetSavedPlacement(windowId, e.X, e.Y, e.Width, e.Height);
}

// Another thread's window gets there by itself: one that hangs, or that just now waits for the
// console, must not hold up the rest.
static void MoveTo(HWND window, const LayoutEntry& e) {
    WindowPlacement place = {e.X, e.Y, e.Width, e.Height, 0, 0};
    KeepPlacementInSight(&place);
    if (IsIconic(window)) { // its icon would be moved
        WINDOWPLACEMENT later = {};
        later.length = sizeof later;
        later.showCmd = SW_HIDE;
        later.rcNormalPosition = {
            place.X, place.Y, place.X + std::clamp(place.Width, 0, GetSystemMetrics(SM_CXMAXTRACK)),
            place.Y + std::clamp(place.Height, 0, GetSystemMetrics(SM_CYMAXTRACK))};
        SetWindowPlacement(window, &later);
        return;
    }
    SetWindowPos(window, nullptr, place.X, place.Y, place.Width, place.Height,
                 SWP_NOZORDER | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
}

static const LayoutEntry& EntryOf(const LayoutEntry entries[kLayoutWindows], int windowId) {
    int place = 0;
    while (kLayoutWindowIds[place] != windowId)
        ++place;
    return entries[place];
}

static void Perform(LayoutStep step, int row, int windowId, const LayoutEntry& entry) {
    switch (step) {
    case kOpenWindow: SwitchRow(row); break;
    case kMoveWindow:
        if (HWND window = OpenWindowOfRow(row)) MoveTo(window, entry);
        break;
    case kCloseWindow:
        SwitchRow(row);
        Save(windowId, entry); // its last moves may have been saved after the layout's were
        break;
    default: break;
    }
}

static void SwitchAndMove(const LayoutEntry entries[kLayoutWindows], uint32_t mask) {
    s_console.switching = 1;
    for (const int id : kSwitchedWindowIds) {
        const int row = RowByWindowId(id);
        if (row >= 0) Perform(LayoutStepOf(id, mask, RowIsOn(row)), row, id, EntryOf(entries, id));
    }
    s_console.switching = 0;
    // Whoever asks for an arrangement wants to see it; a console that lives in its icon stays
    // there.
    if (IsIconic(s_console.window) && IsWindowVisible(s_console.window))
        ShowWindow(s_console.window, SW_RESTORE);
    ShowGroup();
    MoveTo(s_console.window, EntryOf(entries, kConsoleWindowId));
}

static void WriteOnValues(uint32_t mask) {
    for (const int id : kSwitchedWindowIds) {
        const int row = RowByWindowId(id);
        if (row >= 0 && Row(row).traits.onValue)
            WriteWindowDword(kConsoleWindowId, Row(row).traits.onValue,
                             (mask & WindowBit(id)) != 0);
    }
}

void ApplyLayout(int layout, HWND owner) {
    LayoutEntry entries[kLayoutWindows];
    uint32_t mask = WindowBit(kConsoleWindowId);
    if (layout < 0 || layout >= kLayoutCount) return;
    for (int place = 0; place < kLayoutWindows; ++place) {
        const int id = kLayoutWindowIds[place];
        ReadLayoutEntry(layout, id - 1, &entries[place]);
        if (entries[place].Open) mask |= WindowBit(id);
        Save(id, entries[place]);
    }
    if (owner)
        SwitchAndMove(entries, mask);
    else
        WriteOnValues(mask);
}

// A window that was opened comes to the top when its own thread takes up its activation. Messages
// reach a thread in order: who has answered this one has that behind him.
static void AwaitActivations() {
    HWND windows[kWindowSlots];
    OpenSlotWindows(windows);
    s_console.switching = 1;
    for (HWND window : windows)
        if (window)
            SendMessageTimeoutA(window, WM_NULL, 0, 0, SMTO_ABORTIFHUNG, kActivationMs, nullptr);
    s_console.switching = 0;
}

void OnLayoutCommand(int layout, LPARAM raise) {
    if (s_console.switching) { // sent from outside in the middle of a switch: afterwards
        PostMessageA(s_console.window, WM_COMMAND, kLayoutFirst + layout, raise);
        return;
    }
    ApplyLayout(layout, s_console.window);
    const auto window = reinterpret_cast<HWND>(raise);
    if (!IsUIWindow(window)) return;
    AwaitActivations();
    SetWindowPos(window, HWND_TOP, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE | SWP_ASYNCWINDOWPOS);
}

// ---- the first start

static int HasSetting(int windowId, const char* name) {
    uint32_t value;
    return ReadWindowSetting(windowId, name, kRegBinary, sizeof value, &value);
}

static int HasPlacements() {
    for (const int id : kLayoutWindowIds)
        if (HasSetting(id, "X")) return 1;
    return 0;
}

static int ScreenWidth() {
    const HDC screen = GetDC(nullptr);
    const int width = GetDeviceCaps(screen, HORZRES);
    ReleaseDC(nullptr, screen);
    return width;
}

void ChooseFirstLayout() {
    if (ReadWindowDword(kLayoutsWindowId, kFirstChosen, 0)) return;
    SeedLayouts(0); // an older installation has none
    if (!HasSetting(kLayoutsWindowId, "Setting") && !HasPlacements())
        ApplyLayout(LayoutOfScreenWidth(ScreenWidth()), nullptr);
    WriteWindowDword(kLayoutsWindowId, kFirstChosen, 1);
}
