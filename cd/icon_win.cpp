// The CD icon's thread: a hidden window that hears the icon's mouse and the engine's notices. Menu
// and dialogs run their message loops here, so they hold up no other window; notices and the timer
// come through under them.
#include "cd/icon_win.h"

#include "cd/config_win.h"
#include "cd/icon_menu_win.h"
#include "cd/icon_text.h"
#include "cd/menu_win.h"
#include "cd/player_text.h"
#include "core/commands.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/menu_win.h"
#include "ui/settings_dialog_win.h"
#include "ui/tray_win.h"

#include <cstring>

constexpr UINT_PTR kTimerId = 800;
constexpr UINT kTimerMs = 1000;
constexpr int kOptionCount = 5;

namespace {
struct CdIcon {
    TrayIcon tray;
    HICON icon;
    char name[kStringMax];
    int registered;             // with the engine, at the last look
    char discArtist[kTextSize]; // of the record that was read last
    char shown[kTrayTipMax];
    int taken; // by the shell
};
} // namespace
static CdIcon s_icon;
static volatile LONG s_options; // written by the console's thread, too

// ---- options

uint32_t CdIconOptions(int bits) {
    if (bits != -1) {
        const uint32_t kept = static_cast<uint32_t>(bits) & kCdIconOptions;
        WriteRegDword(kUserRoot, kSettingsRoot, kCdIconOptionsValue, kRegDword, kept);
        InterlockedExchange(&s_options, static_cast<LONG>(kept));
        const HWND window = CdIconThread()->Window;
        if (window) PostMessageA(window, WM_COMMAND, kNotifyCdEngine, 0);
        return kept;
    }
    return ReadRegDword(kUserRoot, kSettingsRoot, kCdIconOptionsValue) & kCdIconOptions;
}

void FillCdIconProperties(HMENU menu) {
    const uint32_t options = CdIconOptions(-1);
    for (int bit = 0; bit < kOptionCount; ++bit)
        AppendMenuEntry(menu, static_cast<UINT>(kConsoleCdIconOption + bit),
                        static_cast<UINT>(IDS_CD_ICON_OPTIONS + bit), options >> bit & 1);
}

int OnCdIconProperty(UINT command) {
    if (command < kConsoleCdIconOption || command >= kConsoleCdIconOption + kOptionCount) return 0;
    CdIconOptions(static_cast<int>(CdIconOptions(-1) ^ 1u << (command - kConsoleCdIconOption)));
    return 1;
}

// ---- the tooltip

// What the shell refused is offered again; a shell that has lost the icon gets it as a new one.
static void SetTip(const char* text) {
    char tip[kTrayTipMax];
    CopyText(tip, text);
    if (s_icon.taken && !strcmp(tip, s_icon.shown)) return;
    CopyText(s_icon.shown, tip);
    s_icon.taken = ChangeTrayTip(&s_icon.tray, tip) || AddTrayIcon(&s_icon.tray, s_icon.icon, tip);
}

static void ShowTip(const CdSnapshot& now) {
    const CdIconFacts facts = {
        now.busy,       now.title,   now.busy ? now.trackArtist : s_icon.discArtist,
        now.trackTitle, now.elapsed, now.busy ? now.trackLength : now.discTotal};
    char text[kTrayTipMax];
    CdIconText(text, sizeof text, static_cast<uint32_t>(s_options), facts);
    SetTip(text);
}

// On a notice: the disc may be another. Without an engine there is nothing to tell.
static void Refresh() {
    CdSnapshot now;
    CDInfoRecord record;
    if (!GetCdSnapshot(&now, &record)) {
        SetTip(s_icon.name);
        return;
    }
    CopyText(s_icon.discArtist, TitlesShown(record, 0, 0).artist);
    ShowTip(now);
}

// The engine may have died since, and another one may have taken its place.
static void OnTimer(HWND window) {
    const int before = s_icon.registered;
    s_icon.registered = RegisterCdWindow(window);
    CdSnapshot now;
    if (s_icon.registered == 1 || s_icon.registered != before || !GetCdSnapshot(&now))
        Refresh();
    else
        ShowTip(now);
}

// ---- commands

static const struct {
    UINT id;
    CdEngineCommand command;
    LPARAM argument;
} kTransport[] = {{kCdIconPlay, kCdPlay, 0},    {kCdIconEject, kCdEject, 0},
                  {kCdIconStop, kCdStop, 0},    {kCdIconPause, kCdPause, 0},
                  {kCdIconForward, kCdNext, 1}, {kCdIconBack, kCdPrevious, 0}};

static void PlayEntryOf(int index) {
    if (CdPlayFlags() & kPlayProgrammed)
        PostCdCommand(kCdPlayEntry, index);
    else
        PostCdCommand(kCdPlay, index + 1);
}

// One dialog at a time; 0 when there is one already, which then comes to the front. Dialogs do not
// follow a console that stays on top by themselves, and theirs is no visible owner.
static int MayShowDialog(HWND window) {
    if (RaiseDialogOf(window)) return 0;
    const HWND console = CdIconThread()->Owner;
    const int onTop = console && (GetWindowLongA(console, GWL_EXSTYLE) & WS_EX_TOPMOST);
    SetWindowPos(window, onTop ? HWND_TOPMOST : HWND_NOTOPMOST, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
    return 1;
}

static void OnMouse(HWND window, LPARAM message) {
    if (message == WM_LBUTTONDOWN) PostCdCommand(kCdPause, 0);
    if (message == WM_RBUTTONUP) ShowCdIconMenu(window);
}

static void OnCommand(HWND window, UINT id, LPARAM lParam) {
    for (const auto& entry : kTransport)
        if (entry.id == id) PostCdCommand(entry.command, entry.argument);
    if (const uint32_t mode = CdIconMode(id)) SetCdPlayFlags(CdPlayFlags() ^ mode);
    if (id >= kCdIconEntryFirst && id < kCdIconEntryFirst + kMaxPlayEntries)
        PlayEntryOf(static_cast<int>(id - kCdIconEntryFirst));
    if (id >= kCdIconDriveFirst && id < kCdIconDriveFirst + 26)
        ChangeCdDrive(static_cast<char>('A' + id - kCdIconDriveFirst));
    switch (id) {
    case kCdIconCallback: OnMouse(window, lParam); break;
    case kNotifyCdEngine: Refresh(); break;
    case kCdIconInfo:
        if (MayShowDialog(window)) EditDiscInformation(window);
        break;
    case kCdIconConfigure:
        if (MayShowDialog(window)) ConfigureCd(window);
        break;
    default: break;
    }
}

static LRESULT CdIconProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE: return SetTimer(window, kTimerId, kTimerMs, nullptr) ? 0 : -1;
    case WM_TIMER: OnTimer(window); return 0;
    case WM_COMMAND: OnCommand(window, LOWORD(wParam), lParam); return 0;
    case WM_CLOSE:
        EndMenu();
        DestroyWindow(window); // and the dialog with it
        return 0;
    case WM_DESTROY:
        KillTimer(window, kTimerId);
        UnregisterCdWindow(window);
        RemoveTrayIcon(&s_icon.tray);
        PostQuitMessage(0);
        return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

// ---- the component

// Also on the console's thread, when this one was killed.
static void Release(ComponentThread*) {
    RemoveTrayIcon(&s_icon.tray);
    if (s_icon.icon) DestroyIcon(s_icon.icon);
    s_icon = {};
}

static HWND MakeWindow(HINSTANCE instance) {
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = GuardedProc<CdIconProc>;
    windowClass.hInstance = instance;
    windowClass.lpszClassName = kCdIconClass;
    RegisterClassA(&windowClass); // fails harmlessly when it is registered already
    return CreateWindowExA(WS_EX_TOOLWINDOW, kCdIconClass, "", WS_POPUP, -20, -20, 10, 10, nullptr,
                           nullptr, instance, nullptr);
}

// A shell that is not there yet is no failure: the icon is offered until it is taken. Nor is an
// engine that takes no more windows: the timer asks again.
static int Open(ComponentThread* component) {
    s_icon = {};
    InterlockedExchange(&s_options, static_cast<LONG>(CdIconOptions(-1)));
    LoadText(IDS_CD_ICON_NAME, s_icon.name);
    s_icon.icon = static_cast<HICON>(LoadImageA(component->Instance, MAKEINTRESOURCEA(IDI_CD_ICON),
                                                IMAGE_ICON, GetSystemMetrics(SM_CXSMICON),
                                                GetSystemMetrics(SM_CYSMICON), 0));
    component->Window = MakeWindow(component->Instance);
    if (!component->Window) {
        Release(component);
        return 0;
    }
    s_icon.tray = {component->Window, kCdIconCallback, 0};
    s_icon.taken = AddTrayIcon(&s_icon.tray, s_icon.icon, s_icon.name);
    CopyText(s_icon.shown, s_icon.name);
    s_icon.registered = RegisterCdWindow(component->Window);
    Refresh();
    return 1;
}

static ComponentThread NewThread() {
    ComponentThread thread = {};
    thread.title = "CDTaskBarIcon";
    thread.Open = Open;
    thread.Close = Release;
    thread.Forget = Release;
    return thread;
}

ComponentThread* CdIconThread() {
    static ComponentThread s_thread = NewThread();
    return &s_thread;
}
