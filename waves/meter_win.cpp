// The volume meter's thread: a hidden window that hears the icon's mouse, and a timer that draws. A
// timer, since the loops of menus and dialogs run it as well: the meter goes on under them.
#include "waves/meter_win.h"

#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/menu_win.h"
#include "ui/tray_win.h"
#include "waves/meter_settings_win.h"
#include "waves/published_win.h"

#include <cstring>

constexpr UINT_PTR kDrawTimer = 1;
constexpr UINT kMsPerRefresh = 10;

namespace {
struct Meter {
    MeterSettings settings;
    TrayIcon tray;
    HBITMAP color, mask;
    void* pixels; // of the colour bitmap
    HICON icon;
    MeterPicture picture; // the icon's
    int taken;            // by the shell
    char tip[kStringMax];
};
} // namespace
static Meter s_meter;

// ---- the picture

static int MakeBitmaps() {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = kMeterSize;
    info.bmiHeader.biHeight = -kMeterSize; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    const uint16_t opaque[kMeterSize] = {};
    s_meter.color = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &s_meter.pixels, nullptr, 0);
    s_meter.mask = CreateBitmap(kMeterSize, kMeterSize, 1, 1, opaque);
    return s_meter.color && s_meter.mask;
}

static HICON MakeIcon(const MeterPicture& picture) {
    GdiFlush();
    memcpy(s_meter.pixels, picture.pixels, sizeof picture.pixels);
    ICONINFO info = {};
    info.fIcon = TRUE;
    info.hbmMask = s_meter.mask;
    info.hbmColor = s_meter.color;
    return CreateIconIndirect(&info);
}

static MeterPicture PictureNow() {
    float left, right, fullScale;
    PublishedPower(&left, &right, &fullScale);
    SoundFormatRecord format;
    const int is8Bit = PublishedFormat(&format) && format.bits == 8;
    MeterPicture picture;
    DrawMeter(
        s_meter.settings,
        LevelsOf(left, right, fullScale, s_meter.settings.Gainer, is8Bit ? PublishedBinCount() : 0),
        &picture);
    return picture;
}

// Replacing costs the shell some milliseconds, so only what looks different is shown. What the
// shell refused is offered again; a shell that has lost the icon gets it as a new one.
static void ShowPicture(const MeterPicture& picture) {
    const int changed = !s_meter.icon || !SamePicture(picture, s_meter.picture);
    if (!changed && s_meter.taken) return;
    HICON before = nullptr;
    if (changed) {
        HICON icon = MakeIcon(picture);
        if (!icon) return;
        before = s_meter.icon;
        s_meter.icon = icon;
        s_meter.picture = picture;
    }
    s_meter.taken = ChangeTrayIcon(&s_meter.tray, s_meter.icon) ||
                    AddTrayIcon(&s_meter.tray, s_meter.icon, s_meter.tip);
    if (before) DestroyIcon(before);
}

static void StartDrawing(HWND window) {
    SetTimer(window, kDrawTimer, s_meter.settings.Refresh * kMsPerRefresh, nullptr);
}

// ---- menu and commands

static void ShowMeterMenu(HWND window) {
    HMENU menu = CreatePopupMenu();
    if (!menu) return;
    AppendMenuEntry(menu, kMeterLeftRight, IDS_METER_MENU_LEFT_RIGHT, s_meter.settings.LeftRight);
    AppendMenuEntry(menu, kMeterCenter, IDS_METER_MENU_CENTER, s_meter.settings.Center);
    AppendMenuSeparator(menu);
    AppendMenuEntry(menu, kMeterConfigure, IDS_METER_MENU_CONFIGURE);
    ShowMenuAtCursor(menu, window);
}

static void Toggle(uint32_t* setting) {
    *setting = !*setting;
    SaveMeterSettings(s_meter.settings);
}

static void Configure(HWND window) {
    const HWND console = MeterThread()->Owner;
    const int onTop = console && (GetWindowLongA(console, GWL_EXSTYLE) & WS_EX_TOPMOST);
    MeterSettings edited = s_meter.settings;
    if (!EditMeterSettings(window, onTop, &edited)) return;
    edited.LeftRight = s_meter.settings.LeftRight; // the menu may have changed them meanwhile
    edited.Center = s_meter.settings.Center;
    s_meter.settings = edited;
    SaveMeterSettings(edited);
    StartDrawing(window);
}

static void OnCommand(HWND window, WPARAM wParam, LPARAM lParam) {
    switch (LOWORD(wParam)) {
    case kMeterLeftRight: Toggle(&s_meter.settings.LeftRight); break;
    case kMeterCenter: Toggle(&s_meter.settings.Center); break;
    case kMeterConfigure: Configure(window); break;
    case kMeterIconCallback:
        if (lParam == WM_RBUTTONUP) ShowMeterMenu(window);
        break;
    default: break;
    }
}

static LRESULT MeterProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_TIMER:
        if (!VisualsHaveTaken()) ShowPicture(PictureNow());
        return 0;
    case WM_COMMAND: OnCommand(window, wParam, lParam); return 0;
    case WM_CLOSE:
        EndMenu();
        DestroyWindow(window); // and the dialog with it
        return 0;
    case WM_DESTROY:
        KillTimer(window, kDrawTimer);
        RemoveTrayIcon(&s_meter.tray);
        PostQuitMessage(0);
        return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

// ---- the component

// Also on the console's thread, when this one was killed.
static void Release(ComponentThread*) {
    RemoveTrayIcon(&s_meter.tray);
    if (s_meter.icon) DestroyIcon(s_meter.icon);
    if (s_meter.color) DeleteObject(s_meter.color);
    if (s_meter.mask) DeleteObject(s_meter.mask);
    s_meter = {};
}

// A shell that is not there yet is no failure: the icon is offered until it is taken.
static int Open(ComponentThread* component) {
    s_meter = {};
    s_meter.settings = LoadMeterSettings();
    LoadText(IDS_METER_TIP, s_meter.tip);
    component->Window =
        CreateHiddenWindow(component->Instance, kMeterClass, kMeterTitle, GuardedProc<MeterProc>);
    if (!component->Window || !MakeBitmaps()) {
        Release(component);
        if (component->Window) DestroyWindow(component->Window);
        return 0;
    }
    s_meter.tray = {component->Window, kMeterIconCallback, 0};
    ShowPicture(PictureNow());
    StartDrawing(component->Window);
    return 1;
}

static ComponentThread NewThread() {
    ComponentThread thread = {};
    thread.title = kMeterTitle;
    thread.Open = Open;
    thread.Close = Release;
    thread.Forget = Release;
    return thread;
}

ComponentThread* MeterThread() {
    static ComponentThread s_thread = NewThread();
    return &s_thread;
}
