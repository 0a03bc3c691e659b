// The indicator lamp. See indicator_win.h.
#include "ui/indicator_win.h"

#include "core/strings_win.h"
#include "ui/appearance_win.h"
#include "ui/control_win.h"
#include "ui/framework_win.h"
#include "ui/indicator.h"
#include "ui/paint_win.h"

#include <cstring>

namespace {
struct IndicatorData {
    COLORREF Color;
    COLORREF back; // CLR_NONE: the parent's
    HWND Parent;
    uint16_t ControlId;
    HFONT Font;
    IndicatorProgress progress;
};
constexpr int kReadBack = 62; // characters of the old text that a new one is compared with
} // namespace

static IndicatorData* Data(HWND indicator) {
    return ControlData<IndicatorData>(indicator);
}

static void Repaint(HWND indicator) {
    InvalidateRect(indicator, nullptr, FALSE);
}

static LRESULT OnCreate(HWND indicator, const CREATESTRUCTA* create) {
    auto* data = CreateControlData<IndicatorData>(indicator);
    if (!data) return -1;
    data->Color = 0x808080;
    data->back = CLR_NONE;
    data->Parent = create->hwndParent;
    data->ControlId = static_cast<uint16_t>(reinterpret_cast<UINT_PTR>(create->hMenu));
    data->Font = static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
    EnableWindow(indicator, FALSE);
    return 0;
}

static LRESULT OnSetText(HWND indicator, LPARAM text) {
    char current[kReadBack + 1];
    GetWindowTextA(indicator, current, sizeof current);
    const auto* wanted = reinterpret_cast<const char*>(text);
    if (!strcmp(current, wanted ? wanted : "")) return TRUE;
    const LRESULT result = DefWindowProcA(indicator, WM_SETTEXT, 0, text);
    Repaint(indicator);
    return result;
}

static void OnSetFont(HWND indicator, WPARAM font, LPARAM redraw) {
    Data(indicator)->Font =
        font ? reinterpret_cast<HFONT>(font) : static_cast<HFONT>(GetStockObject(SYSTEM_FONT));
    if (LOWORD(redraw)) Repaint(indicator);
}

static void OnDoubleClick(HWND indicator) {
    const IndicatorData& data = *Data(indicator);
    PostMessageA(data.Parent, WM_COMMAND, MAKEWPARAM(data.ControlId, kIndicatorDoubleClicked),
                 reinterpret_cast<LPARAM>(indicator));
}

// With a rim of another colour (CLR_NONE: none) the label can be read on any picture.
static void DrawLabel(HWND indicator, const IndicatorData& data, HDC dc, RECT client,
                      COLORREF rim) {
    char text[kStringMax];
    const int length = GetWindowTextA(indicator, text, sizeof text);
    if (!length) return;
    HGDIOBJ oldFont = SelectObject(dc, data.Font);
    SetBkMode(dc, TRANSPARENT);
    constexpr UINT kFormat = DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;
    if (rim != CLR_NONE) {
        SetTextColor(dc, rim);
        constexpr POINT kSides[] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
        for (const POINT& by : kSides) {
            RECT beside = client;
            OffsetRect(&beside, by.x, by.y);
            DrawTextA(dc, text, length, &beside, kFormat);
        }
    }
    SetTextColor(dc, data.Color);
    DrawTextA(dc, text, length, &client, kFormat);
    SelectObject(dc, oldFont);
}

static COLORREF BackgroundOf(const IndicatorData& data) {
    if (data.back != CLR_NONE) return data.back;
    if (IsUIWindow(data.Parent)) return WindowBkColor(data.Parent);
    return GetSysColor(COLOR_BTNFACE);
}

static void OnPaint(HWND indicator) {
    const IndicatorData& data = *Data(indicator);
    MemoryPaint paint;
    BeginMemoryPaint(indicator, &paint);
    const int onPicture = data.back == CLR_NONE && DrawBackgroundBeneath(paint.dc, indicator);
    if (!onPicture) FillArea(paint.dc, paint.client, BackgroundOf(data));
    if (data.progress.on) {
        RECT done = paint.client;
        done.right = ProgressWidth(data.progress, paint.client.right);
        FillArea(paint.dc, done, data.Color);
    } else {
        DrawLabel(indicator, data, paint.dc, paint.client,
                  onPicture ? BackgroundOf(data) : CLR_NONE);
    }
    EndMemoryPaint(&paint);
}

static LRESULT IndicatorProc(HWND indicator, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CREATE) return OnCreate(indicator, reinterpret_cast<CREATESTRUCTA*>(lParam));
    if (!Data(indicator)) return DefWindowProcA(indicator, message, wParam, lParam);
    switch (message) {
    case WM_DESTROY: FreeControlData<IndicatorData>(indicator); return 0;
    case WM_SETTEXT: return OnSetText(indicator, lParam);
    case WM_SETFONT: OnSetFont(indicator, wParam, lParam); return 0;
    case WM_GETFONT: return reinterpret_cast<LRESULT>(Data(indicator)->Font);
    case WM_LBUTTONDBLCLK: OnDoubleClick(indicator); return 0;
    case WM_ERASEBKGND: return 1; // painted at once, background and all
    case WM_PAINT: OnPaint(indicator); return 0;
    default: return DefWindowProcA(indicator, message, wParam, lParam);
    }
}

HWND CreateTNVIndicator(UINT stringId, DWORD style, int x, int y, int width, int height,
                        HWND parent, UINT id, HINSTANCE instance) {
    RegisterControlClass(instance, kIndicatorClass, GuardedProc<IndicatorProc>, nullptr);
    char text[kStringMax] = "";
    if (stringId) LoadText(stringId, text);
    return CreateControl(kIndicatorClass, text, style, x, y, width, height, parent, id, instance);
}

void SetIndicatorColor(HWND indicator, COLORREF color) {
    auto* data = ControlDataOf<IndicatorData>(indicator, kIndicatorClass);
    if (!data || data->Color == color) return;
    data->Color = color;
    Repaint(indicator);
    UpdateWindow(indicator);
}

void SetIndicatorBack(HWND indicator, COLORREF color) {
    auto* data = ControlDataOf<IndicatorData>(indicator, kIndicatorClass);
    if (!data || data->back == color) return;
    data->back = color;
    Repaint(indicator);
}

void SetIndicatorProgress(HWND indicator, int on, int minimum, int maximum, int position) {
    auto* data = ControlDataOf<IndicatorData>(indicator, kIndicatorClass);
    if (!data) return;
    data->progress = {on, position, minimum, maximum};
    Repaint(indicator);
}

void StepIndicatorProgress(HWND indicator, int delta) {
    auto* data = ControlDataOf<IndicatorData>(indicator, kIndicatorClass);
    if (!data || !data->progress.on) return;
    data->progress.position = SteppedProgress(data->progress, delta);
    Repaint(indicator);
}

int IsIndicator(HWND window) {
    return IsOfClass(window, kIndicatorClass);
}
