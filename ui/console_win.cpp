// The console's window: creation, messages, options, the one-second timer and the end. What it
// does with components, controls, menus and the window group stands in the files beside it.
#include "ui/console_win.h"

#include "core/settings.h"
#include "core/shared_block.h"
#include "resources/ids.h"
#include "ui/appearance_win.h"
#include "ui/console_state_win.h"
#include "ui/framework_win.h"
#include "ui/layouts_win.h"
#include "ui/hotkeys_win.h"
#include "ui/menu_win.h"
#include "ui/window_thread_win.h"

#include <cstring>
#include <windowsx.h>

constexpr UINT_PTR kTimerId = 799;
constexpr UINT kTimerMs = 1000;

ConsoleState s_console;

// ---- options

static void SaveOption(const char* name, int value) {
    WriteWindowDword(kConsoleWindowId, name, value);
}

static void ReadOptions() {
    ReadColors();
    UIOptions.PreventSS = ReadWindowDword(kConsoleWindowId, "PreventSS", 0);
    UIOptions.DoubleFontSize = ReadWindowDword(kConsoleWindowId, "DoubleFontSize", 0);
    s_console.AlwaysOnTop = ReadWindowDword(kConsoleWindowId, "AlwaysOnTop", 0) != 0;
    ReadFontFace();
    s_console.TaskBarOnly = ReadWindowDword(kConsoleWindowId, "TaskBarOnly", 0) != 0;
    UIOptions.LockMovement = ReadRegDword(kUserRoot, kSettingsRoot, "LockMovement");
    UIOptions.LockWindows = ReadRegDword(kUserRoot, kSettingsRoot, "LockWindows");
}

static void PostToWindows(UINT command) {
    HWND windows[kWindowSlots];
    OpenSlotWindows(windows);
    for (HWND window : windows)
        if (window) PostMessageA(window, WM_COMMAND, command, 0);
}

static void ShowIconIfWanted() {
    s_console.TaskBarIcon = ReadWindowDword(kConsoleWindowId, "TaskBarIcon", 0) != 0;
    if (s_console.TaskBarIcon) AddNotifyIcon();
}

// Also what ends the hidden life of "/pplay".
static void RestoreConsole() {
    if (InterlockedExchange(&UIOptions.PPlay, 0)) ShowIconIfWanted();
    ShowWindow(s_console.window, SW_RESTORE);
    SetForegroundWindow(s_console.window);
    ShowGroup();
}

static void MinimizeAll() {
    HideGroup();
    ShowWindow(s_console.window, s_console.TaskBarOnly ? SW_HIDE : SW_MINIMIZE);
}

static void ToggleAlwaysOnTop() {
    s_console.AlwaysOnTop = !s_console.AlwaysOnTop;
    HWND windows[kWindowSlots];
    OpenSlotWindows(windows);
    ApplyAlwaysOnTop(s_console.window);
    for (HWND window : windows)
        if (window && !IsHungAppWindow(window)) ApplyAlwaysOnTop(window);
    SaveOption("AlwaysOnTop", s_console.AlwaysOnTop);
}

static void ToggleTaskBarIcon() {
    s_console.TaskBarIcon = !s_console.TaskBarIcon;
    if (s_console.TaskBarIcon)
        AddNotifyIcon();
    else
        RemoveNotifyIcon();
    SaveOption("TaskBarIcon", s_console.TaskBarIcon);
}

static void ToggleTaskBarOnly() {
    s_console.TaskBarOnly = IsWindowVisible(s_console.window) != 0;
    if (s_console.TaskBarOnly)
        ShowWindow(s_console.window, SW_HIDE);
    else
        RestoreConsole();
    SaveOption("TaskBarOnly", s_console.TaskBarOnly);
}

static void Toggle3dLook() {
    UIOptions.Use3dLook = !UIOptions.Use3dLook;
    InvalidateRect(s_console.window, nullptr, TRUE);
    PostToWindows(kLookChanged);
    SaveOption("Use3dLook", UIOptions.Use3dLook);
}

static void RebuildFonts() {
    LayOutControls();
    PostToWindows(kFontChanged);
}

static void ToggleLargeFont() {
    UIOptions.DoubleFontSize = !UIOptions.DoubleFontSize;
    SaveOption("DoubleFontSize", UIOptions.DoubleFontSize);
    RebuildFonts();
}

static void ShowNewColors() {
    SetWindowBkColor(s_console.window, Colors.CmpntBkClr);
    ShowConsoleColors();
    PostToWindows(kColorsChanged);
}

static void TogglePreventSaver() {
    UIOptions.PreventSS = !UIOptions.PreventSS;
    SaveOption("PreventSS", UIOptions.PreventSS);
}

static void ToggleLock(volatile LONG* option, const char* name) {
    *option = !*option;
    WriteRegDword(kUserRoot, kSettingsRoot, name, kRegDword, *option);
}

// ---- commands

static void OnIconCallback(LPARAM mouseMessage) {
    if (mouseMessage == WM_LBUTTONDBLCLK) RestoreConsole();
    if (mouseMessage == WM_RBUTTONUP) ShowIconMenu();
}

static void OnComponentClosed(LPARAM windowId) {
    if (!ClosedNoticeCounts(static_cast<int>(windowId))) return;
    const int row = RowByWindowId(static_cast<int>(windowId));
    if (row >= 0) NoticeEnded(row);
}

// Commands of the table: a component's toggle, its properties, an engine's dialog. 1 when it was
// one.
static int OnTableCommand(int command) {
    const int row = RowByCommand(command);
    if (row >= 0) {
        ToggleComponent(row);
        return 1;
    }
    for (int i = 0; i < RowCount(); ++i) {
        if (Row(i).OnProperty && Row(i).OnProperty(static_cast<UINT>(command))) return 1;
        if (Row(i).configureCommand != static_cast<UINT>(command) || !Row(i).Configure) continue;
        Row(i).Configure(s_console.window);
        return 1;
    }
    return 0;
}

static LRESULT OnGroupCommand(WPARAM wParam, LPARAM lParam) {
    const int sender = HIWORD(wParam);
    switch (LOWORD(wParam)) {
    case kGroupAlign: AlignGroup(sender, LOWORD(lParam)); break;
    case kGroupStretch: StretchGroup(sender, LOWORD(lParam)); break;
    case kGroupMove:
        MoveGroup(sender, static_cast<short>(LOWORD(lParam)), static_cast<short>(HIWORD(lParam)));
        break;
    case kGroupRaise: RaiseGroup(reinterpret_cast<HWND>(lParam)); break;
    case kForwardKey: ForwardKey(sender, LOWORD(lParam)); break;
    case kAskMovementLocked: return UIOptions.LockMovement;
    default: break;
    }
    return 0;
}

static LRESULT OnCommand(WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
    case kConsoleClose: PostMessageA(s_console.window, WM_CLOSE, 0, 0); break;
    case kConsoleMinimizeAll: MinimizeAll(); break;
    case kConsoleAlwaysOnTop: ToggleAlwaysOnTop(); break;
    case kConsoleTaskbarIcon: ToggleTaskBarIcon(); break;
    case kConsole3dLook: Toggle3dLook(); break;
    case kConsoleTaskbarOnly: ToggleTaskBarOnly(); break;
    case kConsolePreventSaver: TogglePreventSaver(); break;
    case kConsoleLargeFont: ToggleLargeFont(); break;
    case kConsoleColors: ShowColorsDialog(s_console.window); break;
    case kConsoleFont: ShowFontDialog(s_console.window); break;
    case kColorsChanged: ShowNewColors(); break;
    case kFontChanged: RebuildFonts(); break;
    case kConsoleLockMovement: ToggleLock(&UIOptions.LockMovement, "LockMovement"); break;
    case kConsoleLockWindows: ToggleLock(&UIOptions.LockWindows, "LockWindows"); break;
    case kConsoleHotkeys: ShowHotkeysDialog(s_console.window); break;
    case kConsoleIconCallback: OnIconCallback(lParam); break;
    case kConsoleHelp:
        if (s_console.start.table->ShowHelp) s_console.start.table->ShowHelp(s_console.window);
        break;
    case kComponentClosed: OnComponentClosed(lParam); break;
    case kNotifyMixer: RefreshVolumeBar(); break;
    case kWheelStep:
        if (IsWindowEnabled(s_console.volume))
            SendMessageA(s_console.volume, WM_COMMAND, kWheelStep, lParam);
        break;
    default:
        if (LOWORD(wParam) >= kLayoutFirst && LOWORD(wParam) <= kLayoutLast)
            OnLayoutCommand(LOWORD(wParam) - kLayoutFirst, lParam);
        else if (!OnTableCommand(LOWORD(wParam)))
            return OnGroupCommand(wParam, lParam);
    }
    return 0;
}

// ---- the timer: what other processes left in the shared block, and threads that have ended

static void OnTimer() {
    NoticeAllEnded();
    if (ClearSharedBits(SHARED_FIELD(CommandFlags), kCommandNew) & kCommandNew) RestoreConsole();
    if (ExchangeShared(SHARED_FIELD(CloseRequest), 0)) {
        if (ReadShared(SHARED_FIELD(CommandFlags)) & kCommandNoUi)
            PostEngineCommand(kConsoleCdEngine, kCdStop, 0);
        PostMessageA(s_console.window, WM_CLOSE, 0, 0);
    }
    const int delta = static_cast<int>(ExchangeShared(SHARED_FIELD(VolumeDelta), 0));
    if (delta) ChangeVolume(delta);
    if (ReadShared(SHARED_FIELD(CommandFlags)) & kCommandOpenFile) {
        const int row = RowByWindowId(kMediaWindowId);
        if (row >= 0 && !RowIsOn(row)) ToggleComponent(row);
    }
}

// ---- messages

static void OnWheel(WPARAM wParam) {
    const int delta =
        UIOptions.WheelIsNative ? GET_WHEEL_DELTA_WPARAM(wParam) : static_cast<int>(wParam);
    if (UIOptions.WheelIsNative && (GET_KEYSTATE_WPARAM(wParam) & MK_MBUTTON))
        PostEngineCommand(kConsoleCdEngine, delta > 0 ? kCdNext : kCdPrevious, 1);
    else
        OnCommand(kWheelStep, delta > 0);
}

static void OnTaskbarCreated() {
    if (s_console.TaskBarIcon) AddNotifyIcon();
    if (s_console.switching) return;
    for (int row = 0; row < RowCount(); ++row) {
        if (Row(row).traits.kind != kIconComponent || !RowIsOn(row)) continue;
        StopComponentThread(Row(row).thread);
        StartComponentThread(Row(row).thread, s_console.start.instance, s_console.window);
        ShowRowState(row);
    }
}

// A lamp, its round part included; 0 when the click was elsewhere.
static int OnDoubleClick(LPARAM lParam) {
    const int row = LampAt({GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    if (row >= 0) ToggleComponent(row);
    return row >= 0;
}

static void OnPaint() {
    PAINTSTRUCT paint;
    HDC dc = BeginPaint(s_console.window, &paint);
    PaintConsole(dc);
    EndPaint(s_console.window, &paint);
}

static void RemoveShellHook() {
    if (s_console.shellHook) UnhookWindowsHookEx(s_console.shellHook);
    if (s_console.iconLibrary) FreeLibrary(s_console.iconLibrary);
    s_console.shellHook = nullptr;
    s_console.iconLibrary = nullptr;
}

// Stops everything. From here on no notice and no command is acted on.
static void OnDestroy() {
    if (s_console.shuttingDown) return;
    s_console.shuttingDown = 1;
    KillTimer(s_console.window, kTimerId);
    RemoveShellHook();
    FreeFont(&s_console.font);
    StopAllComponents();
    WriteLastOk(1);
    SaveColors();
    RemoveNotifyIcon();
    PostQuitMessage(0);
}

// Messages that are sent come in also while a component is being started or stopped, and the end
// would stop the very component that is waited for. A closing can wait; the system's own end, which
// comes without another message, can't: what belongs on record is written.
static void OnClose(UINT message) {
    if (!s_console.switching) {
        DestroyWindow(s_console.window);
    } else if (message == WM_CLOSE) {
        PostMessageA(s_console.window, WM_CLOSE, 0, 0);
    } else {
        WriteLastOk(1);
        SaveColors();
    }
}

static LRESULT CALLBACK ConsoleProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (s_console.shuttingDown) return CallKeptProcedure(window, message, wParam, lParam);
    if (message == UIOptions.WheelMessage && message) {
        OnWheel(wParam);
        return 0;
    }
    if (message == s_console.start.taskbarCreated && message) {
        OnTaskbarCreated();
        return 0;
    }
    switch (message) {
    case WM_COMMAND: return OnCommand(wParam, lParam);
    case WM_CONTEXTMENU: ShowContextMenu(ContextMenuPlace(window, lParam)); return 0;
    case WM_CLOSE: OnClose(message); return 0;
    case WM_DESTROY: OnDestroy(); break;
    case WM_ENDSESSION:
        if (wParam) OnClose(message);
        return 0;
    case WM_HOTKEY: OnHotkey(wParam); return 0;
    case WM_LBUTTONDBLCLK:
        if (OnDoubleClick(lParam)) return 0;
        break;
    case WM_PAINT: OnPaint(); return 0;
    case WM_SIZE:
        LayOutControls();
        if (wParam == SIZE_RESTORED && IsWindowVisible(window)) ShowGroup();
        break;
    case WM_SYSCOMMAND:
        if ((wParam & 0xFFF0) == SC_SCREENSAVE && UIOptions.PreventSS) return 0;
        break;
    case WM_TIMER:
        if (wParam == kTimerId) OnTimer();
        return 0;
    case WM_VSCROLL:
        if (reinterpret_cast<HWND>(lParam) == s_console.volume) OnVolumeScroll(HIWORD(wParam));
        return 0;
    default: break;
    }
    return CallKeptProcedure(window, message, wParam, lParam);
}

// ---- creation

static int MakeWindow() {
    HWND window =
        CreateUIWindow(s_console.start.instance, kConsoleWindowId, "Tonvista", 1, nullptr);
    if (!window) return 0;
    s_console.window = window;
    if (!SubclassUIWindow(window, ConsoleProc)) return 0;
    SetWindowBkColor(window, Colors.CmpntBkClr);
    SetTimer(window, kTimerId, kTimerMs, nullptr);
    if (!CreateConsoleControls()) return 0;
    LayOutControls();
    return 1;
}

static void ShowConsole() {
    UIOptions.Use3dLook = ReadWindowDword(kConsoleWindowId, "Use3dLook", 1);
    if (UIOptions.PPlay) {
        ShowWindow(s_console.window, SW_HIDE);
        return;
    }
    ShowIconIfWanted();
    ShowWindow(s_console.window, SW_SHOW);
    UpdateWindow(s_console.window);
}

// An icon library beside the executable may hook the shell's events. By its full path only:
// anything else would load whatever of that name lies on the search path.
static void LoadIconLibrary() {
    char path[MAX_PATH];
    const DWORD length = GetModuleFileNameA(nullptr, path, MAX_PATH);
    char* name = length < MAX_PATH ? std::strrchr(path, '\\') : nullptr;
    constexpr char kLibrary[] = "TONVIcon.dll";
    if (!name || name + 1 + sizeof kLibrary > path + MAX_PATH) return;
    std::memcpy(name + 1, kLibrary, sizeof kLibrary);
    s_console.iconLibrary = LoadLibraryExA(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    if (!s_console.iconLibrary) return;
    const auto hook = reinterpret_cast<HOOKPROC>(
        reinterpret_cast<void*>(GetProcAddress(s_console.iconLibrary, "ConsoleShellHookProc")));
    if (hook) s_console.shellHook = SetWindowsHookExA(WH_SHELL, hook, s_console.iconLibrary, 0);
    if (!s_console.shellHook) {
        RemoveShellHook();
        return;
    }
    using SetHandles = void(WINAPI*)(HWND, HHOOK);
    const auto set = reinterpret_cast<SetHandles>(reinterpret_cast<void*>(
        GetProcAddress(s_console.iconLibrary, "SetConsoleWindowHandleAndShellHook")));
    if (set) set(s_console.window, s_console.shellHook);
}

HWND CreateConsole(const ConsoleStart& start) {
    s_console.start = start;
    InitCommonControls();
    ChooseFirstLayout();
    ReadOptions();
    LoadAppearance();
    if (!MakeWindow()) return nullptr;
    ShowConsole();
    RestoreComponents();
    if (s_console.shuttingDown) return s_console.window; // closed while its message stood there
    RefreshVolumeBar();
    if (s_console.TaskBarOnly) PostMessageA(s_console.window, WM_COMMAND, kConsoleMinimizeAll, 0);
    if (s_console.AlwaysOnTop) { // the toggle sets it again, for all windows
        s_console.AlwaysOnTop = 0;
        PostMessageA(s_console.window, WM_COMMAND, kConsoleAlwaysOnTop, 0);
    }
    RegisterAllHotkeys(s_console.window);
    LoadIconLibrary();
    return s_console.window;
}
