// The track bar. Sums stand in trackbar.h. See trackbar_win.h.
#include "ui/trackbar_win.h"

#include "core/commands.h"
#include "ui/appearance_win.h"
#include "ui/control_win.h"
#include "ui/paint_win.h"
#include "ui/trackbar.h"

namespace {
struct TrackBarData {
    int Dragging;
    int GrabOffset; // pointer to the thumb's start, along the track
    COLORREF ThumbColor, BackColor;
    HWND Parent;
    uint16_t ControlId;
    TrackBarModel model;
    RECT ThumbRect;
};
constexpr int kDefaultThumbSize = 6;
constexpr int kWheelPositions = 2; // a notch of the wheel
constexpr int kChannelHalf = 3;    // pixels either side of the middle
constexpr int kChannelEnd = 2;     // pixels left free at each end
constexpr COLORREF kDraggedThumb = 0xFFFFFF;
} // namespace

static TrackBarData* Data(HWND bar) {
    return ControlData<TrackBarData>(bar);
}

static RECT ClientOf(HWND bar) {
    RECT client = {};
    GetClientRect(bar, &client);
    return client;
}

static int ExtentOf(const TrackBarData& data, const RECT& client) {
    return data.model.vertical ? client.bottom : client.right;
}

static int AlongTrack(const TrackBarData& data, LPARAM position) {
    return static_cast<short>(data.model.vertical ? HIWORD(position) : LOWORD(position));
}

static void PlaceThumb(HWND bar, TrackBarData* data) {
    const RECT client = ClientOf(bar);
    const int start = ThumbStart(data->model, ExtentOf(*data, client));
    const int end = start + data->model.ThumbSize;
    data->ThumbRect = data->model.vertical ? RECT{1, start, client.right - 1, end}
                                           : RECT{start, 1, end, client.bottom - 1};
}

static void Repaint(HWND bar) {
    InvalidateRect(bar, nullptr, FALSE);
}

static void NotifyParent(HWND bar, const TrackBarData& data) {
    const WORD code = data.Dragging ? SB_THUMBTRACK : SB_ENDSCROLL;
    PostMessageA(data.Parent, data.model.vertical ? WM_VSCROLL : WM_HSCROLL,
                 MAKEWPARAM(code, data.model.Pos), reinterpret_cast<LPARAM>(bar));
}

// 1 when the position changed.
static int MoveTo(HWND bar, TrackBarData* data, int64_t pos) {
    const int32_t clamped = ClampTrackPos(data->model, pos);
    if (clamped == data->model.Pos) return 0;
    data->model.Pos = clamped;
    PlaceThumb(bar, data);
    Repaint(bar);
    return 1;
}

static void MoveAndNotify(HWND bar, TrackBarData* data, int64_t pos) {
    if (MoveTo(bar, data, pos)) NotifyParent(bar, *data);
}

// ---- input

static void OnLButtonDown(HWND bar, LPARAM position) {
    TrackBarData* data = Data(bar);
    const POINT point = {static_cast<short>(LOWORD(position)),
                         static_cast<short>(HIWORD(position))};
    const RECT& thumb = data->ThumbRect;
    if (PtInRect(&thumb, point)) {
        data->GrabOffset =
            AlongTrack(*data, position) - (data->model.vertical ? thumb.top : thumb.left);
        data->Dragging = 1;
        SetCapture(bar);
        Repaint(bar);
        return;
    }
    const RECT client = ClientOf(bar);
    if (!PtInRect(&client, point)) return;
    // A page towards the click. Beside the thumb (in the pixel along its sides) nothing happens.
    const int before = data->model.vertical ? point.y < thumb.top : point.x < thumb.left;
    const int after = data->model.vertical ? point.y >= thumb.bottom : point.x >= thumb.right;
    if (!before && !after) return;
    const int up = data->model.vertical ? before : after;
    PostMessageA(bar, WM_KEYDOWN, up ? VK_PRIOR : VK_NEXT, 0);
}

static void OnMouseMove(HWND bar, LPARAM position) {
    TrackBarData* data = Data(bar);
    if (!data->Dragging || data->model.Min == data->model.Max) return;
    const int start = AlongTrack(*data, position) - data->GrabOffset;
    MoveAndNotify(bar, data, TrackPosAt(data->model, start, ExtentOf(*data, ClientOf(bar))));
}

static void OnLButtonUp(HWND bar) {
    Data(bar)->Dragging = 0;
    if (GetCapture() == bar) ReleaseCapture();
    SetFocus(bar);
    const TrackBarData* data = Data(bar); // the focus change may have ended this window
    if (!data) return;
    Repaint(bar);
    NotifyParent(bar, *data);
}

// The button will be released elsewhere: without this the parent would wait for ever for the end of
// the drag.
static void OnCaptureLost(HWND bar) {
    TrackBarData* data = Data(bar);
    if (!data->Dragging) return;
    data->Dragging = 0;
    Repaint(bar);
    NotifyParent(bar, *data);
}

static void OnKeyDown(HWND bar, WPARAM key) {
    static constexpr TrackKey kKeys[] = {kTrackPageUp, kTrackPageDown, kTrackEnd,   kTrackHome,
                                         kTrackLeft,   kTrackUp,       kTrackRight, kTrackDown};
    static_assert(VK_DOWN - VK_PRIOR == kTrackDown);
    TrackBarData* data = Data(bar);
    if (key >= VK_PRIOR && key <= VK_DOWN)
        MoveAndNotify(bar, data, TrackPosAfterKey(data->model, kKeys[key - VK_PRIOR]));
    else
        NotifyParent(bar, *data);
}

// ---- painting

static void OnPaint(HWND bar) {
    const TrackBarData& data = *Data(bar);
    MemoryPaint paint;
    BeginMemoryPaint(bar, &paint);
    const RECT& client = paint.client;
    if (!DrawBackground(paint.dc, client, bar))
        PatBlt(paint.dc, 0, 0, client.right, client.bottom, BLACKNESS);
    RECT channel;
    if (data.model.vertical)
        channel = {client.right / 2 - kChannelHalf, kChannelEnd, client.right / 2 + kChannelHalf,
                   client.bottom - kChannelEnd};
    else
        channel = {kChannelEnd, client.bottom / 2 - kChannelHalf, client.right - kChannelEnd,
                   client.bottom / 2 + kChannelHalf};
    DrawEdge(paint.dc, &channel, EDGE_SUNKEN, BF_RECT);
    RECT thumb = data.ThumbRect;
    COLORREF color = data.Dragging ? kDraggedThumb : data.ThumbColor;
    if (data.model.Min == data.model.Max) color = data.BackColor;
    FillArea(paint.dc, thumb, color);
    DrawEdge(paint.dc, &thumb, EDGE_RAISED, BF_RECT);
    EndMemoryPaint(&paint);
}

// ---- state set from outside

static LRESULT OnCreate(HWND bar, const CREATESTRUCTA* create) {
    auto* data = CreateControlData<TrackBarData>(bar);
    if (!data) return -1;
    data->ThumbColor = GetSysColor(COLOR_BTNFACE);
    data->Parent = create->hwndParent;
    data->ControlId = static_cast<uint16_t>(reinterpret_cast<UINT_PTR>(create->hMenu));
    data->model.ThumbSize = kDefaultThumbSize;
    data->model.vertical = (create->style & kTrackBarVertical) != 0;
    PlaceThumb(bar, data);
    return 0;
}

static void OnSetRange(HWND bar, WPARAM repaint, LPARAM range) {
    TrackBarData* data = Data(bar);
    SetTrackRange(&data->model, LOWORD(range), HIWORD(range));
    PlaceThumb(bar, data);
    if (repaint) Repaint(bar);
}

static void OnCommand(HWND bar, WPARAM wParam, LPARAM lParam) {
    if (LOWORD(wParam) != kWheelStep) return;
    TrackBarData* data = Data(bar);
    MoveAndNotify(bar, data,
                  int64_t{data->model.Pos} + (lParam ? -kWheelPositions : kWheelPositions));
}

static LRESULT TrackBarProc(HWND bar, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return OnCreate(bar, reinterpret_cast<CREATESTRUCTA*>(lParam));
    TrackBarData* data = Data(bar);
    if (!data) return DefWindowProcA(bar, message, wParam, lParam);
    switch (message) {
    case WM_DESTROY: FreeControlData<TrackBarData>(bar); return 0;
    case WM_SIZE: PlaceThumb(bar, data); return 0;
    case WM_LBUTTONDOWN: OnLButtonDown(bar, lParam); return 0;
    case WM_MOUSEMOVE: OnMouseMove(bar, lParam); return 0;
    case WM_LBUTTONUP: OnLButtonUp(bar); return 0;
    case WM_CAPTURECHANGED:
        if (reinterpret_cast<HWND>(lParam) != bar) OnCaptureLost(bar);
        return 0;
    case WM_KEYDOWN: OnKeyDown(bar, wParam); return 0;
    case WM_COMMAND: OnCommand(bar, wParam, lParam); return 0;
    case WM_ERASEBKGND: return 1; // the whole bar is painted at once
    case WM_PAINT: OnPaint(bar); return 0;
    case kTrackBarSetPos:
        if (!data->Dragging) MoveTo(bar, data, lParam);
        return 0;
    case kTrackBarSetRange: OnSetRange(bar, wParam, lParam); return 0;
    default: return DefWindowProcA(bar, message, wParam, lParam);
    }
}

// ---- interface

HWND CreateTNVTrackBar(DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                       HINSTANCE instance) {
    RegisterControlClass(instance, kTrackBarClass, GuardedProc<TrackBarProc>,
                         static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    return CreateControl(kTrackBarClass, "", style, x, y, width, height, parent, id, instance);
}

void SetTrackBarColors(HWND trackBar, COLORREF thumbColor, COLORREF backColor) {
    auto* data = ControlDataOf<TrackBarData>(trackBar, kTrackBarClass);
    if (!data || (data->ThumbColor == thumbColor && data->BackColor == backColor)) return;
    data->ThumbColor = thumbColor;
    data->BackColor = backColor;
    Repaint(trackBar);
}

int SetTrackBarThumbSize(HWND trackBar, int size) {
    auto* data = ControlDataOf<TrackBarData>(trackBar, kTrackBarClass);
    if (!data || size < 1 || size > ClientOf(trackBar).bottom) return 0;
    data->model.ThumbSize = size;
    PlaceThumb(trackBar, data);
    Repaint(trackBar);
    return 1;
}
