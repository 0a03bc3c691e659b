// The window class of all component windows. See framework_win.h.
//
// The data block hangs in the first pointer of the window's extra bytes and belongs to the window's
// thread. The id stands in the extra bytes a second time, where other threads can read it without
// touching a block that may just be freed.
#include "ui/framework_win.h"

#include "core/commands.h"
#include "core/component_win.h"
#include "core/settings.h"
#include "resources/ids.h"
#include "ui/appearance_win.h"
#include "ui/control_win.h"
#include "ui/indicator_win.h"
#include "ui/layouts_win.h"
#include "ui/paint_win.h"

#include <cstring>

WindowOptions UIOptions;

namespace {
struct WindowData {
    COLORREF BkColor;
    int Dragging;
    int16_t DragX, DragY; // client position of the button-down
    uint32_t WindowId;
    HWND Owner;
    HBRUSH brush; // of BkColor
    WindowPlacement written;
    int hasWritten;
    LONG writtenAt; // s_setPlacements then
};
// Passed to WM_CREATE.
struct CreationRecord {
    WindowPlacement placement;
    HWND Owner;
};
constexpr int kExtraBytes = 20;
constexpr int kIdOffset = 8;
static_assert(kIdOffset >= sizeof(void*));
constexpr DWORD kStyle =
    WS_POPUP | WS_CLIPSIBLINGS | WS_CLIPCHILDREN | WS_BORDER | WS_SYSMENU | WS_THICKFRAME;
constexpr int kEdge = 2; // pixels of the raised edge
constexpr int kSmallIcon = 16;
} // namespace

// Counts what others write: a window whose placement may have been replaced writes its own again.
static volatile LONG s_setPlacements;

static WindowData* Data(HWND window) {
    return ControlData<WindowData>(window);
}

static LRESULT AskOwner(const WindowData& data, WORD command, LPARAM argument) {
    return SendMessageA(data.Owner, WM_COMMAND, MAKEWPARAM(command, data.WindowId), argument);
}

static void RaiseGroup(HWND window, const WindowData& data) {
    PostMessageA(data.Owner, WM_COMMAND, kGroupRaise, reinterpret_cast<LPARAM>(window));
}

// ---- placement

// The normal rectangle of a window with a taskbar button is given in work-area coordinates.
static int WorkAreaTop(HWND window) {
    if (!(GetWindowLongPtrA(window, GWL_EXSTYLE) & WS_EX_APPWINDOW)) return 0;
    RECT area = {};
    SystemParametersInfoA(SPI_GETWORKAREA, 0, &area, 0);
    return area.top;
}

int SaveWindowPlacement(HWND window) {
    if (!IsUIWindow(window) || !Data(window)) return 0;
    WINDOWPLACEMENT shown = {};
    shown.length = sizeof shown;
    if (!GetWindowPlacement(window, &shown)) return 0;
    const RECT& rect = shown.rcNormalPosition;
    WindowData* data = Data(window);
    WindowPlacement now = {};
    now.X = rect.left;
    now.Y = rect.top + WorkAreaTop(window);
    now.Width = rect.right - rect.left;
    now.Height = rect.bottom - rect.top;
    now.BkColor = data->BkColor;
    now.WindowId = data->WindowId;
    const LONG others = s_setPlacements;
    if (data->hasWritten && data->writtenAt == others && !memcmp(&now, &data->written, sizeof now))
        return 1;
    data->writtenAt = others;
    data->hasWritten = WriteWindowPlacement(now);
    data->written = now;
    return data->hasWritten;
}

int GetSavedPlacement(uint32_t windowId, int* x, int* y, int* width, int* height) {
    WindowPlacement placement;
    if (!LoadWindowPlacement(windowId, &placement)) return 0;
    *x = placement.X;
    *y = placement.Y;
    *width = placement.Width;
    *height = placement.Height;
    return 1;
}

int SetSavedPlacement(uint32_t windowId, int x, int y, int width, int height) {
    WindowPlacement placement;
    if (!LoadWindowPlacement(windowId, &placement)) return 0; // for its background colour
    placement.X = x;
    placement.Y = y;
    placement.Width = width;
    placement.Height = height;
    const int good = WriteWindowPlacement(placement);
    InterlockedIncrement(&s_setPlacements);
    return good;
}

int RestoreWindowPlacement(HWND window) {
    if (!IsUIWindow(window) || !Data(window)) return 0;
    WindowPlacement placement;
    if (!LoadWindowPlacement(Data(window)->WindowId, &placement)) return 0;
    Data(window)->hasWritten = 0; // what is saved is no longer what this window wrote
    return SetWindowPos(window, nullptr, placement.X, placement.Y, placement.Width,
                        placement.Height, SWP_NOZORDER | SWP_NOACTIVATE) != 0;
}

// ---- creation and end

static LRESULT OnCreate(HWND window, const CREATESTRUCTA* create) {
    const auto* record = static_cast<const CreationRecord*>(create->lpCreateParams);
    if (!record) return 0; // not made by CreateUIWindow: a window with default handling
    auto* data = CreateControlData<WindowData>(window);
    if (!data) return -1;
    data->BkColor = record->placement.BkColor;
    data->WindowId = record->placement.WindowId;
    data->Owner = record->Owner ? record->Owner : window;
    data->brush = CreateSolidBrush(data->BkColor);
    SetWindowLongA(window, kIdOffset, static_cast<LONG>(data->WindowId));
    NoteOpenWindow(window, !(create->dwExStyle & WS_EX_APPWINDOW));
    return 0;
}

static void OnDestroy(HWND window) {
    NoteClosedWindow(window);
    if (Data(window)->brush) DeleteObject(Data(window)->brush);
    FreeControlData<WindowData>(window);
    DestroyChildWindows(window);
    FreePaintBuffer();
}

void DestroyChildWindows(HWND window) {
    for (;;) {
        HWND child = GetWindow(window, GW_CHILD);
        if (!child || !DestroyWindow(child)) return;
    }
}

// ---- dragging

static int MovementLocked(HWND window) {
    const LRESULT locked = AskOwner(*Data(window), kAskMovementLocked, 0);
    return locked != 0 || !Data(window); // the answer may take its time: this window may be gone
}

static void OnLButtonDown(HWND window, LPARAM position) {
    if (MovementLocked(window)) return;
    WindowData* data = Data(window);
    SetCapture(window);
    data->Dragging = 1;
    data->DragX = static_cast<int16_t>(LOWORD(position));
    data->DragY = static_cast<int16_t>(HIWORD(position));
}

// The pointer's place relative to where the window was grabbed is how far the window has to go.
// That is the same as pointer minus grab minus frame on the screen, whatever the frame measures:
// themes add a padded border that SM_CXFRAME leaves out. The group moves by exactly as much.
static void OnMouseMove(HWND window, WPARAM keys, LPARAM position) {
    const WindowData* data = Data(window);
    if (!data->Dragging) return;
    const int dx = static_cast<int16_t>(LOWORD(position)) - data->DragX;
    const int dy = static_cast<int16_t>(HIWORD(position)) - data->DragY;
    if (!dx && !dy) return; // the system reports a move after each move of the window itself
    RECT rect;
    GetWindowRect(window, &rect);
    SetWindowPos(window, nullptr, rect.left + dx, rect.top + dy, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    if ((keys & MK_CONTROL) || UIOptions.LockWindows)
        AskOwner(*data, kGroupMove, MAKELPARAM(dx, dy));
}

// A drag that has begun ends in any case; a lock that came meanwhile must not leave the window
// hanging on the pointer.
static void OnLButtonUp(HWND window) {
    MovementLocked(window);
    WindowData* data = Data(window);
    if (!data || !data->Dragging) return;
    data->Dragging = 0;
    if (GetCapture() == window) ReleaseCapture();
}

// Indicators are disabled, so their double clicks arrive here. Everywhere else the second press of
// a double click is a press like any other.
static void OnDoubleClick(HWND window, WPARAM keys, LPARAM position) {
    const POINT point = {static_cast<short>(LOWORD(position)),
                         static_cast<short>(HIWORD(position))};
    HWND child = ChildWindowFromPointEx(window, point, CWP_SKIPINVISIBLE);
    if (child && child != window && IsIndicator(child)) {
        POINT inside = point;
        MapWindowPoints(window, child, &inside, 1);
        SendMessageA(child, WM_LBUTTONDBLCLK, keys, MAKELPARAM(inside.x, inside.y));
        return;
    }
    OnLButtonDown(window, position);
}

// ---- keyboard

static void MoveBy(HWND window, int dx, int dy, int dwidth, int dheight) {
    RECT rect;
    GetWindowRect(window, &rect);
    SetWindowPos(window, nullptr, rect.left + dx, rect.top + dy, rect.right - rect.left + dwidth,
                 rect.bottom - rect.top + dheight, SWP_NOZORDER | SWP_NOACTIVATE);
}

static void OnArrow(HWND window, WPARAM key) {
    const auto argument = static_cast<LPARAM>(key);
    if (GetKeyState(VK_CONTROL) < 0)
        AskOwner(*Data(window), kGroupAlign, argument);
    else if (GetKeyState(VK_SHIFT) < 0)
        AskOwner(*Data(window), kGroupStretch, argument);
    else
        MoveBy(window, (key == VK_RIGHT) - (key == VK_LEFT), (key == VK_DOWN) - (key == VK_UP), 0,
               0);
}

static void OnKeyDown(HWND window, WPARAM key, LPARAM lParam) {
    switch (key) {
    case VK_PAUSE:
    case VK_PRIOR:
    case VK_NEXT:
    case VK_PLAY: AskOwner(*Data(window), kForwardKey, static_cast<LPARAM>(key)); break;
    case VK_HOME: // posted: the layout may close this very window, and waits for its end
        if (HIWORD(lParam) & KF_REPEAT) break; // a key held down asks once
        PostMessageA(Data(window)->Owner, WM_COMMAND, kLayoutFirst + SelectedLayout(), 0);
        break;
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: OnArrow(window, key); break;
    default: break;
    }
}

// Upper and lower case are different commands on purpose.
static void OnChar(HWND window, WPARAM character) {
    switch (character) {
    case 'X': MoveBy(window, 0, 0, 1, 0); break;
    case 'x': MoveBy(window, 0, 0, -1, 0); break;
    case 'Y': MoveBy(window, 0, 0, 0, 1); break;
    case 'y': MoveBy(window, 0, 0, 0, -1); break;
    default: break;
    }
}

// ---- the rest of the procedure

static void OnEraseBackground(HWND window, HDC dc) {
    RECT client;
    GetClientRect(window, &client);
    const int saved = SaveDC(dc); // the edge's pixels are painted once, by the edge
    IntersectClipRect(dc, kEdge, kEdge, client.right - kEdge, client.bottom - kEdge);
    if (!DrawBackground(dc, client, window)) FillRect(dc, &client, Data(window)->brush);
    RestoreDC(dc, saved);
    DrawEdge(dc, &client, EDGE_RAISED, BF_RECT);
}

static LRESULT OnWheel(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    HWND owner = Data(window)->Owner;
    if (owner == window) return DefWindowProcA(window, message, wParam, lParam);
    return SendMessageA(owner, message, wParam, lParam);
}

static LRESULT OnPlaced(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    const LRESULT result = DefWindowProcA(window, message, wParam, lParam);
    if (Data(window)) SaveWindowPlacement(window);
    if (Data(window) && message == WM_MOVE) NoteMovedWindow(window);
    return result;
}

static LRESULT OnNotify(HWND window, WPARAM wParam, LPARAM lParam) {
    const auto* header = reinterpret_cast<const NMHDR*>(lParam);
    if (header && header->code == static_cast<UINT>(TTN_SHOW)) RaiseGroup(window, *Data(window));
    return DefWindowProcA(window, WM_NOTIFY, wParam, lParam);
}

static LRESULT UIWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return OnCreate(window, reinterpret_cast<CREATESTRUCTA*>(lParam));
    WindowData* data = Data(window);
    if (!data) return DefWindowProcA(window, message, wParam, lParam);
    if (message == UIOptions.WheelMessage) return OnWheel(window, message, wParam, lParam);
    switch (message) {
    case WM_DESTROY: OnDestroy(window); return 0;
    case WM_MOVE:
    case WM_SIZE:
    case WM_WINDOWPOSCHANGED: return OnPlaced(window, message, wParam, lParam);
    case WM_ACTIVATE:
        if (LOWORD(wParam) == WA_CLICKACTIVE) RaiseGroup(window, *data);
        return DefWindowProcA(window, message, wParam, lParam);
    case WM_ERASEBKGND: OnEraseBackground(window, reinterpret_cast<HDC>(wParam)); return 1;
    case WM_LBUTTONDOWN: OnLButtonDown(window, lParam); return 0;
    case WM_LBUTTONDBLCLK: OnDoubleClick(window, wParam, lParam); return 0;
    case WM_MOUSEMOVE: OnMouseMove(window, wParam, lParam); return 0;
    case WM_LBUTTONUP: OnLButtonUp(window); return 0;
    case WM_CAPTURECHANGED: // a drag whose release will not be seen here is over
        if (reinterpret_cast<HWND>(lParam) != window) data->Dragging = 0;
        return 0;
    case WM_KEYDOWN: OnKeyDown(window, wParam, lParam); return 0;
    case WM_CHAR: OnChar(window, wParam); return 0;
    case WM_NOTIFY: return OnNotify(window, wParam, lParam);
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

// ---- interface

static void RegisterUIClass(HINSTANCE instance) {
    WNDCLASSEXA windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
    windowClass.lpfnWndProc = GuardedProc<UIWindowProc>;
    windowClass.cbWndExtra = kExtraBytes;
    windowClass.hInstance = instance;
    windowClass.hIcon = LoadIconA(instance, MAKEINTRESOURCEA(IDI_TONVISTA));
    windowClass.hIconSm = static_cast<HICON>(LoadImageA(
        instance, MAKEINTRESOURCEA(IDI_TONVISTA), IMAGE_ICON, kSmallIcon, kSmallIcon, LR_SHARED));
    windowClass.hCursor = LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_ARROW));
    windowClass.lpszClassName = kUIWindowClass;
    RegisterClassExA(&windowClass); // simply fails when it is registered already
}

HWND CreateUIWindow(HINSTANCE instance, uint32_t windowId, const char* title, int isConsole,
                    HWND owner) {
    CreationRecord record = {};
    LoadWindowPlacement(windowId, &record.placement);
    record.Owner = owner;
    RegisterUIClass(instance);
    const WindowPlacement& place = record.placement;
    HWND window =
        CreateWindowExA(isConsole ? WS_EX_APPWINDOW : WS_EX_TOOLWINDOW, kUIWindowClass, title,
                        kStyle | (UIOptions.PPlay ? 0 : WS_VISIBLE), place.X, place.Y, place.Width,
                        place.Height, nullptr, nullptr, instance, &record);
    if (window) ShowWindow(window, UIOptions.PPlay ? SW_HIDE : SW_SHOW);
    return window;
}

COLORREF SetWindowBkColor(HWND window, COLORREF color) {
    if (!IsUIWindow(window) || !Data(window)) return 0;
    WindowData* data = Data(window);
    const COLORREF previous = data->BkColor;
    data->BkColor = color;
    if (color != previous) {
        if (data->brush) DeleteObject(data->brush);
        data->brush = CreateSolidBrush(color);
    }
    SaveWindowPlacement(window);
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    return previous;
}

COLORREF WindowBkColor(HWND window) {
    return IsUIWindow(window) && Data(window) ? Data(window)->BkColor : 0;
}

UINT RegisterWheelMessage() {
    OSVERSIONINFOA version = {};
    version.dwOSVersionInfoSize = sizeof version;
    GetVersionExA(&version);
    UIOptions.WheelIsNative =
        version.dwPlatformId == VER_PLATFORM_WIN32_NT && version.dwMajorVersion >= 4;
    UIOptions.WheelMessage =
        UIOptions.WheelIsNative ? WM_MOUSEWHEEL : RegisterWindowMessageA("MSWHEEL_ROLLMSG");
    return UIOptions.WheelMessage;
}

// Of the class and of this process: extra bytes of other processes' windows say nothing to us.
int IsUIWindow(HWND window) {
    DWORD process = 0;
    if (!window || !GetWindowThreadProcessId(window, &process)) return 0;
    return process == GetCurrentProcessId() && IsOfClass(window, kUIWindowClass);
}

uint32_t WindowIdOf(HWND window) {
    return IsUIWindow(window) ? static_cast<uint32_t>(GetWindowLongA(window, kIdOffset)) : 0;
}
