// The window "Layouts": six numbers to choose from, buttons that recall and store the chosen
// arrangement, and a small picture of it.
#include "ui/layouts_window_win.h"

#include "core/commands.h"
#include "core/settings.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/indicator_win.h"
#include "ui/layouts_win.h"
#include "ui/look_win.h"
#include "ui/paint_win.h"
#include "ui/tooltips_win.h"
#include "ui/window_thread_win.h"

static constexpr COLORREF kBrandColor = 0xFFFF00;
static constexpr int kScreenEdge = 2;                 // pixels of the sunken edge
static constexpr int kControls = kLayoutsButtons + 1; // the brand is the last
static_assert(kLayoutsChoice + kLayoutsButtons == kLayoutsBrand);

// Texts of the buttons that follow the six numbers.
static const struct {
    UINT label, tip;
} kTexts[kLayoutsButtons - kLayoutCount] = {{IDS_LAYOUTS_RECALL, IDS_LAYOUTS_RECALL_TIP},
                                            {IDS_LAYOUTS_STORE, IDS_LAYOUTS_STORE_TIP},
                                            {IDS_LAYOUTS_CLOSE, IDS_LAYOUTS_CLOSE}};

namespace {
struct LayoutsWindow {
    HWND window, tooltips;
    HWND controls[kControls];
    int setting;
    CachedFont font;
    Box picture;
    LayoutEntry entries[kLayoutWindows]; // of the chosen layout, for the picture
};
} // namespace
static LayoutsWindow s_layouts;

static HWND Owner();

// ---- the picture

static void ReadPicture() {
    for (int place = 0; place < kLayoutWindows; ++place)
        ReadLayoutEntry(s_layouts.setting, kLayoutWindowIds[place] - 1, &s_layouts.entries[place]);
    InvalidateRect(s_layouts.window, nullptr, TRUE);
}

static RECT RectOf(const Box& box) {
    return {box.left, box.top, box.left + box.width, box.top + box.height};
}

// As dark as the players' displays.
static COLORREF ScreenColor() {
    const COLORREF c = Colors.CmpntBkClr;
    return RGB(GetRValue(c) * 3 / 10, GetGValue(c) * 3 / 10, GetBValue(c) * 3 / 10);
}

static void DrawSmallWindow(HDC dc, int windowId, const Box& box) {
    RECT area = RectOf(box);
    if (IsRectEmpty(&area)) return;
    FillArea(dc, area, Colors.BtnFaceClr);
    DrawEdge(dc, &area, BDR_RAISEDINNER, BF_RECT);
    char name[kStringMax];
    const int length = LoadText(IDS_SHORT_NAMES + windowId, name);
    DrawTextA(dc, name, length, &area,
              DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS);
}

// The windows that a layout opens, the console last and on top.
static void DrawPicture(HDC dc) {
    const int width = GetSystemMetrics(SM_CXSCREEN), height = GetSystemMetrics(SM_CYSCREEN);
    const Box screen = SmallScreen(s_layouts.picture, width, height);
    const Box inside = InsetBox(screen, kScreenEdge);
    RECT ground = RectOf(screen);
    if (IsRectEmpty(&ground)) return;
    FillArea(dc, ground, ScreenColor());
    DrawEdge(dc, &ground, EDGE_SUNKEN, BF_RECT);
    const HGDIOBJ before = SelectObject(dc, s_layouts.font.font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, Colors.BtnDrkClr);
    for (int place = kLayoutWindows - 1; place >= 0; --place) {
        const int id = kLayoutWindowIds[place];
        const LayoutEntry& entry = s_layouts.entries[place];
        if (id == kVisualsWindowId || id == kLayoutsWindowId) continue;
        if (entry.Open || id == kConsoleWindowId)
            DrawSmallWindow(dc, id, SmallWindow(inside, width, height, entry));
    }
    SelectObject(dc, before);
}

static void OnPaint(HWND window) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(window, &paint);
    DrawPicture(dc);
    EndPaint(window, &paint);
}

// ---- acting

static void ShowSetting() {
    for (int i = 0; i < kLayoutsButtons; ++i)
        SetButtonOn(s_layouts.controls[i], i == s_layouts.setting);
}

static void SaveSetting() {
    WriteWindowDword(kLayoutsWindowId, "Setting", s_layouts.setting);
}

static int OnCommand(int id) {
    if (id >= kLayoutsChoice && id < kLayoutsChoice + kLayoutCount) {
        s_layouts.setting = id - kLayoutsChoice;
        ShowSetting();
        SaveSetting(); // at once: Home in any window follows it
        ReadPicture();
        return 1;
    }
    switch (id) {
    case kLayoutsRecall: // this window comes out on top of those that are opened
        PostMessageA(Owner(), WM_COMMAND, kLayoutFirst + s_layouts.setting,
                     reinterpret_cast<LPARAM>(s_layouts.window));
        return 1;
    case kLayoutsStore:
        StoreLayout(s_layouts.setting);
        ReadPicture();
        return 1;
    case kLayoutsClose: PostMessageA(s_layouts.window, WM_CLOSE, 0, 0); return 1;
    default: return 0;
    }
}

// ---- the window as a component

static void TextsOf(int control, char (&label)[kStringMax], char (&tip)[kStringMax]) {
    if (control < kLayoutCount) {
        char format[kStringMax];
        LoadText(IDS_LAYOUTS_CHOICE_TIP, format);
        FormatText(label, sizeof label, "%d", control + 1);
        FormatText(tip, sizeof tip, format, control + 1);
        return;
    }
    LoadText(kTexts[control - kLayoutCount].label, label);
    LoadText(kTexts[control - kLayoutCount].tip, tip);
}

static int OnCreateControls(HWND window) {
    s_layouts = {};
    s_layouts.window = window;
    s_layouts.setting = SelectedLayout();
    s_layouts.tooltips = CreateToolTips(window);
    for (int i = 0; i < kLayoutsButtons; ++i) {
        char label[kStringMax], tip[kStringMax];
        TextsOf(i, label, tip);
        s_layouts.controls[i] =
            CreateTNVButton(label, WS_VISIBLE, 0, 0, 1, 1, window, kLayoutsChoice + i, nullptr);
        if (!s_layouts.controls[i]) return 0;
        AddToolTip(s_layouts.tooltips, window, s_layouts.controls[i], tip);
    }
    HWND brand = CreateTNVIndicator(IDS_LAYOUTS_BRAND, WS_VISIBLE, 0, 0, 1, 1, window,
                                    kLayoutsBrand, nullptr);
    if (!brand) return 0;
    s_layouts.controls[kLayoutsButtons] = brand;
    SetIndicatorColor(brand, kBrandColor);
    AddIndicatorToolTip(s_layouts.tooltips, window, brand, IDS_LAYOUTS_BRAND_TIP);
    ReadPicture();
    return 1;
}

static void OnLayout(HWND window, int width, int height) {
    const LayoutsWindowBoxes boxes = LayOutLayoutsWindow(width, height);
    ControlPlace places[kControls];
    for (int i = 0; i < kLayoutsButtons; ++i)
        places[i] = {kLayoutsChoice + i, boxes.buttons[i]};
    places[kLayoutsButtons] = {kLayoutsBrand, boxes.brand};
    s_layouts.picture = boxes.picture;
    PlaceControls(window, places, kControls);
    ShowSetting(); // colours may be others now
    PlaceIndicatorToolTip(s_layouts.tooltips, window, s_layouts.controls[kLayoutsButtons]);
    const int letters =
        LabelFontHeight(boxes.buttons[0].width, boxes.buttons[0].height, UIOptions.DoubleFontSize);
    GiveFont(&s_layouts.font, kDefaultFace, letters, kLabelWeight, s_layouts.controls, kControls);
}

static void OnDestroy(HWND) {
    FreeFont(&s_layouts.font);
    s_layouts.window = nullptr; // what children still send on their way out concerns nobody
}

static void OnSave() {
    SaveSetting();
}

static void Forget() {
    s_layouts = {};
}

static LRESULT LayoutsProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

static ComponentWindow s_component = {.title = "Layouts",
                                      .windowId = kLayoutsWindowId,
                                      .procedure = GuardedProc<LayoutsProc>,
                                      .OnCreateControls = OnCreateControls,
                                      .OnLayout = OnLayout,
                                      .OnDestroy = OnDestroy,
                                      .OnSave = OnSave,
                                      .Forget = Forget};

static HWND Owner() {
    return s_component.thread.Owner;
}

static LRESULT LayoutsProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (s_layouts.window == window && message == WM_PAINT) {
        OnPaint(window);
        return 0;
    }
    if (s_layouts.window == window && message == WM_COMMAND && HIWORD(wParam) == kButtonClicked &&
        OnCommand(LOWORD(wParam)))
        return 0;
    return PassOnMessage(&s_component, window, message, wParam, lParam);
}

ComponentThread* LayoutsThread() {
    return ComponentThreadOf(&s_component);
}
