// The divider between two panes. See divider_win.h.
#include "ui/divider_win.h"

#include "ui/control_win.h"
#include "ui/paint_win.h"

namespace {
struct DividerData {
    int Dragging;
    HWND Parent;
    uint16_t ControlId;
    COLORREF Color;
    int GrabOffset; // pointer's y in the divider when the drag began
    int Reporting;  // the parent moves the divider during a report: not to be reported again
};
} // namespace

static DividerData* Data(HWND divider) {
    return ControlData<DividerData>(divider);
}

static int PointerY(LPARAM position) {
    return static_cast<short>(HIWORD(position));
}

static void Repaint(HWND divider) {
    InvalidateRect(divider, nullptr, FALSE);
}

static LRESULT OnCreate(HWND divider, const CREATESTRUCTA* create) {
    auto* data = CreateControlData<DividerData>(divider);
    if (!data) return -1;
    data->Parent = create->hwndParent;
    data->ControlId = static_cast<uint16_t>(reinterpret_cast<UINT_PTR>(create->hMenu));
    data->Color = 0x808080;
    return 0;
}

static void OnLButtonDown(HWND divider, LPARAM position) {
    DividerData* data = Data(divider);
    if (data->Dragging) return;
    SetCapture(divider);
    data->Dragging = 1;
    data->GrabOffset = PointerY(position);
}

static void OnMouseMove(HWND divider, WPARAM keys, LPARAM position) {
    DividerData* data = Data(divider);
    if (!(keys & MK_LBUTTON) || !data->Dragging || data->Reporting) return;
    data->Reporting = 1;
    SendMessageA(data->Parent, WM_VSCROLL,
                 MAKEWPARAM(SB_THUMBTRACK, PointerY(position) - data->GrabOffset), 0);
    data = Data(divider); // the parent may have destroyed it
    if (data) data->Reporting = 0;
}

static void OnLButtonUp(HWND divider) {
    DividerData* data = Data(divider);
    Repaint(divider);
    if (!data->Dragging) return;
    data->Dragging = 0;
    if (GetCapture() == divider) ReleaseCapture();
}

static void OnCaptureLost(HWND divider) {
    Data(divider)->Dragging = 0;
    Repaint(divider);
}

static void OnPaint(HWND divider) {
    MemoryPaint paint;
    BeginMemoryPaint(divider, &paint);
    FillArea(paint.dc, paint.client, Data(divider)->Color);
    DrawEdge(paint.dc, &paint.client, EDGE_RAISED, BF_RECT);
    EndMemoryPaint(&paint);
}

static LRESULT DividerProc(HWND divider, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return OnCreate(divider, reinterpret_cast<CREATESTRUCTA*>(lParam));
    if (!Data(divider)) return DefWindowProcA(divider, message, wParam, lParam);
    switch (message) {
    case WM_DESTROY: FreeControlData<DividerData>(divider); return 0;
    case WM_LBUTTONDOWN: OnLButtonDown(divider, lParam); return 0;
    case WM_MOUSEMOVE: OnMouseMove(divider, wParam, lParam); return 0;
    case WM_LBUTTONUP: OnLButtonUp(divider); return 0;
    case WM_CAPTURECHANGED:
        if (reinterpret_cast<HWND>(lParam) != divider) OnCaptureLost(divider);
        return 0;
    case WM_KILLFOCUS: Repaint(divider); return 0;
    case WM_ERASEBKGND: return 1; // painted at once
    case WM_PAINT: OnPaint(divider); return 0;
    default: return DefWindowProcA(divider, message, wParam, lParam);
    }
}

HWND CreateTNVDivider(DWORD style, int x, int y, int width, int height, HWND parent, UINT id,
                      HINSTANCE instance) {
    RegisterControlClass(instance, kDividerClass, GuardedProc<DividerProc>, nullptr);
    return CreateControl(kDividerClass, "", style, x, y, width, height, parent, id, instance);
}

void SetDividerColor(HWND divider, COLORREF color) {
    auto* data = ControlDataOf<DividerData>(divider, kDividerClass);
    if (!data || data->Color == color) return;
    data->Color = color;
    Repaint(divider);
}
