// The push button. Input decides the state, painting consumes it. See button_win.h.
//
// A notification that is sent may end in the parent destroying the button, so data is fetched anew
// after each.
#include "ui/button_win.h"

#include "core/strings_win.h"
#include "ui/appearance_win.h"
#include "ui/control_win.h"
#include "ui/paint_win.h"

namespace {
enum ButtonState : uint8_t { kPressed = 1, kChecked = 2, kDisabled = 4 };

struct ButtonData {
    uint8_t State;
    int Tracking; // holds the capture to follow the pointer
    COLORREF TextColor, FaceColor, HotTextColor;
    HWND Parent;
    uint16_t ControlId;
    HFONT Font;
    DWORD Style;
    HBITMAP Bitmap;
    HICON Icon;
    int ImageWidth, ImageHeight;
    int Hover;
    int Down; // a press began inside
    int Notify;
    int UseIconResources;
    HICON IconNormal, IconPressed, IconHover;
};
constexpr int kComparedCharacters = 127;
constexpr UINT_PTR kHoverTimer = 1;
constexpr UINT kHoverMs = 100;
} // namespace

static ButtonData* Data(HWND button) {
    return ControlData<ButtonData>(button);
}

static void Repaint(HWND button) {
    InvalidateRect(button, nullptr, FALSE);
}

static WPARAM NotificationOf(const ButtonData& data, ButtonNotification code) {
    return MAKEWPARAM(data.ControlId, code);
}

static void SendNotification(HWND button, ButtonNotification code) {
    const ButtonData* data = Data(button);
    if (!data || !data->Notify) return;
    SendMessageA(data->Parent, WM_COMMAND, NotificationOf(*data, code),
                 reinterpret_cast<LPARAM>(button));
}

static int IsInside(HWND button, LPARAM position) {
    RECT client;
    GetClientRect(button, &client);
    const POINT point = {static_cast<short>(LOWORD(position)),
                         static_cast<short>(HIWORD(position))};
    return PtInRect(&client, point);
}

// ---- input

static int IsPointerHere(HWND button) {
    POINT cursor;
    return GetCursorPos(&cursor) && WindowFromPoint(cursor) == button;
}

// The capture ends at the border of this thread's windows while no button is down, and most windows
// near by belong to other threads. The system's leave notice would cover that way out, but it gets
// lost when a dialog has just gone; so a lit button looks for the pointer itself.
static void SetHover(HWND button, ButtonData* data, int hover) {
    if (data->Hover == hover) return;
    data->Hover = hover;
    if (hover)
        SetTimer(button, kHoverTimer, kHoverMs, nullptr);
    else
        KillTimer(button, kHoverTimer);
    Repaint(button);
}

// The pointer crossed the border while the button is held.
static void FollowPress(HWND button, ButtonData* data, int inside) {
    const int pressed = data->State & kPressed;
    if (!inside == !pressed) return;
    if (inside)
        data->State |= kPressed;
    else
        data->State &= ~kPressed;
    Repaint(button);
    SendNotification(button, inside ? kButtonPressed : kButtonReleased);
}

static void StartTracking(HWND button, ButtonData* data) {
    if (data->Tracking) return;
    SetCapture(button);
    data->Tracking = 1;
}

// The button went up where it was not seen: under a menu's mouse, say.
static void DropPress(HWND button, ButtonData* data) {
    data->Down = 0;
    data->State &= ~kPressed;
    Repaint(button);
    SendNotification(button, kButtonReleased);
}

static void OnMouseMove(HWND button, WPARAM keys, LPARAM position) {
    ButtonData* data = Data(button);
    const int inside = IsInside(button, position);
    StartTracking(button, data);
    if (data->Down) {
        if (keys & MK_LBUTTON)
            FollowPress(button, data, inside);
        else
            DropPress(button, data);
    }
    data = Data(button);
    if (!data) return;
    SetHover(button, data, inside);
    if (!inside && !(keys & (MK_LBUTTON | MK_MBUTTON | MK_RBUTTON)) && GetCapture() == button)
        ReleaseCapture(); // the rest happens in OnCaptureLost
}

static void OnHoverTimer(HWND button) {
    ButtonData* data = Data(button);
    if (IsPointerHere(button)) return;
    if (data->Down) {
        // Physical keys: a left-handed mouse has its main button on the right.
        const int held = GetSystemMetrics(SM_SWAPBUTTON) ? VK_RBUTTON : VK_LBUTTON;
        if (GetAsyncKeyState(held) < 0) return; // the capture follows it
        DropPress(button, data);
    }
    data = Data(button);
    if (!data) return;
    if (data->Tracking && GetCapture() == button)
        ReleaseCapture(); // the rest happens in OnCaptureLost
    else
        SetHover(button, data, 0);
}

static void OnLButtonDown(HWND button) {
    ButtonData* data = Data(button);
    StartTracking(button, data); // a press may come before any move: after a menu has closed
    data->State |= kPressed;
    data->Down = 1;
    Repaint(button);
    SendNotification(button, kButtonPressed);
}

static void OnClick(HWND button, ButtonData* data) {
    if (data->Style & BS_PUSHLIKE) data->State ^= kChecked;
    SendNotification(button, kButtonReleased);
    data = Data(button);
    if (!data) return;
    PostMessageA(data->Parent, WM_COMMAND, NotificationOf(*data, kButtonClicked),
                 reinterpret_cast<LPARAM>(button));
}

static void OnLButtonUp(HWND button, LPARAM position) {
    ButtonData* data = Data(button);
    const int inside = IsInside(button, position);
    const int click = inside && (data->State & kPressed) && data->Down;
    data->State &= ~kPressed;
    data->Down = 0;
    Repaint(button);
    if (click) OnClick(button, data);
    data = Data(button);
    if (!data || !data->Tracking) return;
    SetHover(button, data, inside);
    if (!inside && GetCapture() == button) ReleaseCapture();
}

// The press ends as well: the release will never be seen here, and a later one that began
// elsewhere must not count as a click.
static void OnCaptureLost(HWND button) {
    ButtonData* data = Data(button);
    data->Tracking = 0;
    data->Down = 0;
    data->State &= ~kPressed;
    SetHover(button, data, 0);
    Repaint(button);
    SendNotification(button, kButtonReleased);
}

// ---- painting

static HICON ResourceIcon(const ButtonData& data, int sunken) {
    if (sunken) return data.IconPressed;
    return data.Hover ? data.IconHover : data.IconNormal;
}

static void DrawLabel(HWND button, const ButtonData& data, HDC dc, RECT area) {
    char text[256];
    const int length = GetWindowTextA(button, text, sizeof text);
    if (!length) return;
    HGDIOBJ oldFont = SelectObject(dc, data.Font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, data.Hover ? data.HotTextColor : data.TextColor);
    OffsetRect(&area, 1, 1);
    DrawTextA(dc, text, length, &area,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_NOCLIP);
    SelectObject(dc, oldFont);
}

static void DrawContent(HWND button, const ButtonData& data, HDC dc, const RECT& client) {
    const int sunken = data.State & (kPressed | kChecked);
    if (data.UseIconResources) {
        const int side = client.bottom;
        HICON icon = ResourceIcon(data, sunken);
        if (icon)
            DrawIconEx(dc, (client.right - side) / 2, 0, icon, side, side, 0, nullptr, DI_NORMAL);
        return;
    }
    RECT area = client;
    if (!sunken) OffsetRect(&area, -GetSystemMetrics(SM_CXEDGE), -GetSystemMetrics(SM_CYEDGE));
    const int x = area.left + (client.right - data.ImageWidth) / 2;
    const int y = area.top + (client.bottom - data.ImageHeight) / 2;
    if ((data.Style & BS_BITMAP) && data.Bitmap)
        DrawBitmapAt(dc, data.Bitmap, x, y, data.ImageWidth, data.ImageHeight);
    else if ((data.Style & BS_ICON) && data.Icon)
        DrawIconEx(dc, x, y, data.Icon, data.ImageWidth, data.ImageHeight, 0, nullptr, DI_NORMAL);
    else if (!(data.State & kDisabled))
        DrawLabel(button, data, dc, area);
}

static void OnPaint(HWND button) {
    const ButtonData& data = *Data(button);
    MemoryPaint paint;
    BeginMemoryPaint(button, &paint);
    if (!DrawButtonFace(paint.dc, paint.client, button))
        FillArea(paint.dc, paint.client, data.FaceColor);
    const UINT edge = data.State & (kPressed | kChecked) ? EDGE_SUNKEN : EDGE_RAISED;
    DrawEdge(paint.dc, &paint.client, edge, BF_RECT);
    DrawContent(button, data, paint.dc, paint.client);
    EndMemoryPaint(&paint);
}

// ---- state set from outside

static LRESULT OnCreate(HWND button, const CREATESTRUCTA* create) {
    auto* data = CreateControlData<ButtonData>(button);
    if (!data) return -1;
    data->FaceColor = 0x808080;
    data->HotTextColor = 0xFFFFFF;
    data->Parent = create->hwndParent;
    data->ControlId = static_cast<uint16_t>(reinterpret_cast<UINT_PTR>(create->hMenu));
    data->Font = static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
    data->Style = static_cast<DWORD>(create->style);
    if (data->Style & WS_DISABLED) data->State = kDisabled;
    return 0;
}

static LRESULT OnSetText(HWND button, LPARAM text) {
    if (SameWindowText(button, text, kComparedCharacters)) return TRUE;
    const LRESULT result = DefWindowProcA(button, WM_SETTEXT, 0, text);
    Repaint(button);
    return result;
}

static void OnEnable(HWND button, WPARAM enabled) {
    ButtonData* data = Data(button);
    if (enabled)
        data->State &= ~kDisabled;
    else
        data->State |= kDisabled;
    Repaint(button);
}

static void OnSetFont(HWND button, WPARAM font, LPARAM redraw) {
    Data(button)->Font =
        font ? reinterpret_cast<HFONT>(font) : static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
    if (LOWORD(redraw)) Repaint(button);
}

static LRESULT OnGetCheck(const ButtonData& data) {
    return (data.Style & BS_PUSHLIKE) && (data.State & kChecked) ? BST_CHECKED : BST_UNCHECKED;
}

static void SetImageSize(ButtonData* data, HGDIOBJ bitmap) {
    BITMAP info = {};
    if (bitmap) GetObjectA(bitmap, sizeof info, &info);
    data->ImageWidth = info.bmWidth;
    data->ImageHeight = info.bmHeight;
}

static void SetIconSize(ButtonData* data, HICON icon) {
    ICONINFO info = {};
    SetImageSize(data, nullptr);
    if (!icon || !GetIconInfo(icon, &info)) return;
    SetImageSize(data, info.hbmColor ? info.hbmColor : info.hbmMask);
    if (!info.hbmColor) data->ImageHeight /= 2; // both masks of a two-colour icon lie in one bitmap
    if (info.hbmColor) DeleteObject(info.hbmColor);
    if (info.hbmMask) DeleteObject(info.hbmMask);
}

static LRESULT OnSetImage(HWND button, WPARAM type, LPARAM image) {
    ButtonData* data = Data(button);
    LRESULT previous = 0;
    if (type == IMAGE_BITMAP) {
        previous = reinterpret_cast<LRESULT>(data->Bitmap);
        data->Bitmap = reinterpret_cast<HBITMAP>(image);
        SetImageSize(data, data->Bitmap);
    } else if (type == IMAGE_ICON) {
        previous = reinterpret_cast<LRESULT>(data->Icon);
        data->Icon = reinterpret_cast<HICON>(image);
        SetIconSize(data, data->Icon);
    }
    Repaint(button);
    return previous;
}

static LRESULT OnGetImage(const ButtonData& data, WPARAM type) {
    if (type == IMAGE_BITMAP) return reinterpret_cast<LRESULT>(data.Bitmap);
    return type == IMAGE_ICON ? reinterpret_cast<LRESULT>(data.Icon) : 0;
}

static LRESULT ButtonProc(HWND button, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return OnCreate(button, reinterpret_cast<CREATESTRUCTA*>(lParam));
    if (!Data(button)) return DefWindowProcA(button, message, wParam, lParam);
    switch (message) {
    case WM_DESTROY: FreeControlData<ButtonData>(button); return 0;
    case WM_MOUSEMOVE: OnMouseMove(button, wParam, lParam); return 0;
    case WM_TIMER: OnHoverTimer(button); return 0;
    case WM_LBUTTONDOWN: OnLButtonDown(button); return 0;
    case WM_LBUTTONUP: OnLButtonUp(button, lParam); return 0;
    case WM_CAPTURECHANGED:
        if (reinterpret_cast<HWND>(lParam) != button) OnCaptureLost(button);
        return 0;
    case WM_ERASEBKGND: return 1; // the whole face is painted at once
    case WM_PAINT: OnPaint(button); return 0;
    case WM_SETTEXT: return OnSetText(button, lParam);
    case WM_ENABLE: OnEnable(button, wParam); return 0;
    case WM_SETFONT: OnSetFont(button, wParam, lParam); return 0;
    case WM_GETFONT: return reinterpret_cast<LRESULT>(Data(button)->Font);
    case BM_GETCHECK: return OnGetCheck(*Data(button));
    case BM_SETIMAGE: return OnSetImage(button, wParam, lParam);
    case BM_GETIMAGE: return OnGetImage(*Data(button), wParam);
    default: return DefWindowProcA(button, message, wParam, lParam);
    }
}

// ---- interface

HWND CreateTNVButton(const char* text, DWORD style, int x, int y, int width, int height,
                     HWND parent, UINT id, HINSTANCE instance) {
    RegisterControlClass(instance, kButtonClass, GuardedProc<ButtonProc>, nullptr);
    return CreateControl(kButtonClass, text, style, x, y, width, height, parent, id, instance);
}

HWND CreateTNVButtonFromString(UINT stringId, DWORD style, int x, int y, int width, int height,
                               HWND parent, UINT id, HINSTANCE instance) {
    char text[kStringMax];
    LoadText(stringId, text);
    return CreateTNVButton(text, style, x, y, width, height, parent, id, instance);
}

void SetButtonColors(HWND button, COLORREF textColor, COLORREF faceColor, COLORREF hotTextColor) {
    auto* data = ControlDataOf<ButtonData>(button, kButtonClass);
    if (!data) return;
    if (data->TextColor == textColor && data->FaceColor == faceColor &&
        data->HotTextColor == hotTextColor)
        return;
    data->TextColor = textColor;
    data->FaceColor = faceColor;
    data->HotTextColor = hotTextColor;
    Repaint(button);
}

void SetButtonNotify(HWND button, int on) {
    auto* data = ControlDataOf<ButtonData>(button, kButtonClass);
    if (data) data->Notify = on;
}

static HICON LoadButtonIcon(UINT id) {
    if (!id) return nullptr;
    return static_cast<HICON>(
        LoadImageA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(id), IMAGE_ICON, 32, 32, LR_SHARED));
}

void SetButtonIcons(HWND button, UINT normal, UINT pressed, UINT hover) {
    auto* data = ControlDataOf<ButtonData>(button, kButtonClass);
    if (!data) return;
    data->IconNormal = LoadButtonIcon(normal);
    data->IconPressed = LoadButtonIcon(pressed);
    data->IconHover = LoadButtonIcon(hover);
    data->UseIconResources = normal || pressed || hover;
    Repaint(button);
}
