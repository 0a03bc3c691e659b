// The controls of the spectrum analyzer: how they are made, placed, lettered and coloured, the
// columns' tooltips, and the context menu.
#include "waves/analyzer_state_win.h"

#include <algorithm>
#include <cstring>

#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/framework_win.h"
#include "ui/indicator_win.h"
#include "ui/menu_win.h"
#include "ui/tooltips_win.h"
#include "ui/trackbar_win.h"
#include "ui/window_thread_win.h"

static constexpr int kMinLetter = 7;    // cell height in pixels
static constexpr int kUsualLetter = 14; // in windows of usual size
static constexpr int kLargeLetter = 20; // in large ones
static constexpr int kEdge = 2;         // of a button
static constexpr int kTextAir = 2;      // between a label and the edge

static int IsIndicator(int id) {
    return id >= kAnalyzerStereo && id <= kAnalyzerName;
}

static HWND ControlOf(const AnalyzerWindow& analyzer, int id) {
    for (int i = 0; i < kAnalyzerControls; ++i)
        if (kAnalyzerControlIds[i] == id) return analyzer.controls[i];
    return nullptr;
}

// ---- making

static HWND CreateControl(const AnalyzerWindow& analyzer, int index, HINSTANCE instance) {
    const int id = kAnalyzerControlIds[index];
    const UINT label = IDS_ANALYZER_LABELS + static_cast<UINT>(index);
    const HWND window = analyzer.window;
    if (id == kAnalyzerGain)
        return CreateTNVTrackBar(WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
    if (IsIndicator(id))
        return CreateTNVIndicator(id == kAnalyzerName ? label : 0, WS_VISIBLE, 0, 0, 10, 10, window,
                                  id, instance);
    return CreateTNVButtonFromString(label, WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
}

int CreateAnalyzerControls(AnalyzerWindow* analyzer) {
    const HWND window = analyzer->window;
    const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(window, GWLP_HINSTANCE));
    analyzer->tooltips = CreateToolTips(window);
    for (int i = 0; i < kAnalyzerControls; ++i) {
        const HWND control = CreateControl(*analyzer, i, instance);
        analyzer->controls[i] = control;
        if (!control) return 0;
        const UINT tip = IDS_ANALYZER_TIPS + static_cast<UINT>(i);
        if (IsIndicator(kAnalyzerControlIds[i]))
            AddIndicatorToolTip(analyzer->tooltips, window, control, tip);
        else
            AddToolTipFromString(analyzer->tooltips, window, control, tip);
    }
    for (int i = 0; i < kAnalyzerChannels * kBands; ++i)
        AddRectToolTip(analyzer->tooltips, window, static_cast<UINT>(kAnalyzerFirstTip + i), "", 0,
                       0, 0, 0);
    const HWND gain = ControlOf(*analyzer, kAnalyzerGain);
    SetTrackBarRange(gain, 1, kAnalyzerGainSteps, 0);
    SetTrackBarPos(gain, GainPosition(analyzer->settings.Gainer));
    return 1;
}

// ---- what they show

void ShowAnalyzerSwitches(AnalyzerWindow* analyzer) {
    for (int i = 0; i < kAnalyzerButtons; ++i)
        SetButtonOn(analyzer->controls[i],
                    AnalyzerSwitchIsOn(analyzer->settings, kAnalyzerControlIds[i]));
}

void ShowAnalyzerFormat(AnalyzerWindow* analyzer) {
    const SoundFormatRecord& format = analyzer->indicated;
    char text[kStringMax], pattern[kStringMax];
    LoadText(format.channels == 2 ? IDS_ANALYZER_STEREO : IDS_ANALYZER_MONO, text);
    SetWindowTextA(ControlOf(*analyzer, kAnalyzerStereo), text);
    LoadText(IDS_ANALYZER_FORMAT, pattern);
    FormatText(text, sizeof text, pattern, static_cast<int>(format.rate / 1000),
               static_cast<int>(format.bits));
    SetWindowTextA(ControlOf(*analyzer, kAnalyzerFormat), text);
    const char* const* labels = BandLabels(format.rate);
    for (int i = 0; i < kAnalyzerChannels * kBands; ++i)
        SetRectToolTipText(analyzer->tooltips, analyzer->window,
                           static_cast<UINT>(kAnalyzerFirstTip + i), labels[i % kBands]);
}

// ---- letters

namespace {
// Controls that are lettered alike.
struct Lettering {
    int first, count; // in kAnalyzerControlIds
    int edge;         // pixels of a control that letters must not cover, on each side
};
} // namespace
static constexpr Lettering kButtonLetters = {0, kAnalyzerButtons, kEdge};
static constexpr Lettering kTextLetters = {kAnalyzerButtons + 1, 3, 0};

// The widest that may stand on it.
static void WidestText(int index, char (&text)[kStringMax]) {
    if (kAnalyzerControlIds[index] == kAnalyzerFormat)
        CopyText(text, "44Khz 16bit");
    else if (kAnalyzerControlIds[index] == kAnalyzerStereo)
        LoadText(IDS_ANALYZER_STEREO, text);
    else
        LoadText(IDS_ANALYZER_LABELS + static_cast<UINT>(index), text);
}

static int LettersFit(const AnalyzerWindow& analyzer, const Lettering& kind, HDC dc, int height) {
    const HFONT font = CreateLabelFont(FontFaceName, height, kLabelWeight);
    const HGDIOBJ before = SelectObject(dc, font);
    int fits = 1;
    for (int i = kind.first; i < kind.first + kind.count; ++i) {
        char text[kStringMax];
        SIZE size = {};
        WidestText(i, text);
        GetTextExtentPoint32A(dc, text, static_cast<int>(strlen(text)), &size);
        const Box& box = analyzer.layout.controls[i];
        const int taken = 2 * (kind.edge + kTextAir);
        if (box.width && (size.cx > box.width - taken || height > box.height - kind.edge)) fits = 0;
    }
    SelectObject(dc, before);
    DeleteObject(font);
    return fits;
}

// The largest that fits, but not larger than the display is in scale.
static int LetterHeight(const AnalyzerWindow& analyzer, const Lettering& kind) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const int usual = std::clamp(analyzer.layout.panel.height / 20, kUsualLetter, kLargeLetter);
    int low = kMinLetter, high = UIOptions.DoubleFontSize ? usual * 3 / 2 : usual;
    for (int i = kind.first; i < kind.first + kind.count; ++i)
        if (analyzer.layout.controls[i].width)
            high = std::min(high, analyzer.layout.controls[i].height);
    while (low < high) {
        const int middle = (low + high + 1) / 2;
        if (LettersFit(analyzer, kind, dc, middle))
            low = middle;
        else
            high = middle - 1;
    }
    DeleteDC(dc);
    return low;
}

static void GiveFonts(AnalyzerWindow* analyzer) {
    HWND texts[3];
    for (int i = 0; i < 3; ++i)
        texts[i] = analyzer->controls[kTextLetters.first + i];
    GiveFont(&analyzer->labelFont, FontFaceName, LetterHeight(*analyzer, kButtonLetters),
             kLabelWeight, analyzer->controls, kAnalyzerButtons);
    GiveFont(&analyzer->textFont, FontFaceName, LetterHeight(*analyzer, kTextLetters), kLabelWeight,
             texts, 3);
    const AnalyzerPane& pane = analyzer->layout.panes[0]; // all are alike
    const int axis = std::max(pane.axis.height, pane.caption.height);
    GiveFont(&analyzer->axisFont, FontFaceName, std::max(axis, kMinLetter), FW_NORMAL, nullptr, 0);
}

// ---- layout

static void ApplyColors(AnalyzerWindow* analyzer) {
    ShowAnalyzerSwitches(analyzer);
    for (int id : {kAnalyzerStereo, kAnalyzerFormat, kAnalyzerName}) {
        const HWND indicator = ControlOf(*analyzer, id);
        SetIndicatorColor(indicator, id == kAnalyzerName ? Colors.IndtrLtClr : Colors.IndtrDrkClr);
        SetIndicatorBack(indicator, DisplayColor());
    }
    SetTrackBarColors(ControlOf(*analyzer, kAnalyzerGain), Colors.BtnLtClr, DisplayColor());
}

// The whole height of the pane belongs to a column, and the gap at its right.
static void PlaceColumnTips(const AnalyzerWindow& analyzer) {
    for (int i = 0; i < kAnalyzerChannels * kBands; ++i) {
        const Box& column = analyzer.layout.columns[i / kBands][i % kBands];
        RECT area = RectOf(column);
        if (column.width <= 0) area = {};
        PlaceRectToolTip(analyzer.tooltips, analyzer.window,
                         static_cast<UINT>(kAnalyzerFirstTip + i), area);
    }
}

void LayOutAnalyzerWindow(AnalyzerWindow* analyzer, int width, int height) {
    analyzer->layout = LayOutAnalyzer(width, height, analyzer->settings);
    ControlPlace places[kAnalyzerControls];
    for (int i = 0; i < kAnalyzerControls; ++i)
        places[i] = {kAnalyzerControlIds[i], analyzer->layout.controls[i]};
    PlaceControls(analyzer->window, places, kAnalyzerControls);
    for (int i = 0; i < kAnalyzerControls; ++i)
        if (IsIndicator(kAnalyzerControlIds[i]))
            PlaceIndicatorToolTip(analyzer->tooltips, analyzer->window, analyzer->controls[i]);
    PlaceColumnTips(*analyzer);
    const HWND gain = ControlOf(*analyzer, kAnalyzerGain);
    RECT bar = {};
    GetClientRect(gain, &bar);
    SetTrackBarThumbSize(gain, std::clamp(static_cast<int>(bar.bottom) / 2, 6, 16));
    GiveFonts(analyzer);
    ApplyColors(analyzer);
    DrawAnalyzerPicture(analyzer);
    InvalidateRect(analyzer->window, nullptr, TRUE);
}

// ---- context menu

void ShowAnalyzerMenu(AnalyzerWindow* analyzer, POINT at) {
    const HMENU menu = CreatePopupMenu();
    if (!menu) return;
    for (int i = 0; i < kAnalyzerButtons; ++i) {
        const int id = kAnalyzerControlIds[i];
        if (id == kAnalyzerSplit || id == kAnalyzerTrails || id == kAnalyzerSetUp ||
            id == kAnalyzerPower)
            AppendMenuSeparator(menu);
        AppendMenuEntry(menu, static_cast<UINT>(id), IDS_ANALYZER_MENU + static_cast<UINT>(i),
                        AnalyzerSwitchIsOn(analyzer->settings, id));
    }
    ShowMenu(menu, analyzer->window, at);
}
