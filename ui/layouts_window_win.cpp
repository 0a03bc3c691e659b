// The window "Layouts": six numbers to choose from, and buttons that recall and store the chosen
// arrangement.
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
#include "ui/tooltips_win.h"
#include "ui/window_thread_win.h"

static constexpr COLORREF kBrandColor = 0xFFFF00;
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
};
} // namespace
static LayoutsWindow s_layouts;

static HWND Owner();

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
        return 1;
    }
    switch (id) {
    case kLayoutsRecall: // this window comes out on top of those that are opened
        PostMessageA(Owner(), WM_COMMAND, kLayoutFirst + s_layouts.setting,
                     reinterpret_cast<LPARAM>(s_layouts.window));
        return 1;
    case kLayoutsStore: StoreLayout(s_layouts.setting); return 1;
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
    return 1;
}

static void OnLayout(HWND window, int width, int height) {
    const LayoutsWindowBoxes boxes = LayOutLayoutsWindow(width, height);
    ControlPlace places[kControls];
    for (int i = 0; i < kLayoutsButtons; ++i)
        places[i] = {kLayoutsChoice + i, boxes.buttons[i]};
    places[kLayoutsButtons] = {kLayoutsBrand, boxes.brand};
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
    if (s_layouts.window == window && message == WM_COMMAND && HIWORD(wParam) == kButtonClicked &&
        OnCommand(LOWORD(wParam)))
        return 0;
    return PassOnMessage(&s_component, window, message, wParam, lParam);
}

ComponentThread* LayoutsThread() {
    return ComponentThreadOf(&s_component);
}
