// The controls of the oscilloscope window: how they are made, placed, lettered and coloured. Fonts
// are made when the size changes, never while it draws.
#include "waves/scope_state_win.h"

#include <algorithm>
#include <cstring>

#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/indicator_win.h"
#include "ui/tooltips_win.h"
#include "ui/trackbar_win.h"
#include "ui/window_thread_win.h"

static constexpr int kMeasuredHeight = 100; // cell height of the font that texts are measured in
static constexpr COLORREF kDisplayColor = 0;

static const struct {
    int id;
    UINT label, tip;
    const char* widest; // text that must fit; null: the label
} kTexts[kScopeControls] = {
    {kScopeMode, 0, IDS_SCOPE_MODE_TIP, "stereo"},
    {kScopeFormat, 0, IDS_SCOPE_FORMAT_TIP, "44Khz 16bit"},
    {kScopeForceMono, IDS_SCOPE_FORCE_MONO, IDS_SCOPE_FORCE_MONO_TIP, nullptr},
    {kScopeVertical, IDS_SCOPE_VERTICAL, IDS_SCOPE_VERTICAL_TIP, nullptr},
    {kScopeGradient, IDS_SCOPE_GRADIENT, IDS_SCOPE_GRADIENT_TIP, nullptr},
    {kScopeLegends, IDS_SCOPE_LEGENDS, IDS_SCOPE_LEGENDS_TIP, nullptr},
    {kScopeSettings, IDS_SCOPE_SETTINGS, IDS_SCOPE_SETTINGS_TIP, nullptr},
    {kScopePower, IDS_SCOPE_POWER, IDS_SCOPE_POWER_TIP, nullptr},
    {kScopeGain, 0, IDS_SCOPE_GAIN_TIP, ""}};
static constexpr int kIndicators = 2, kFirstButton = 2, kButtons = 6;

// ---- making

static HWND CreateControl(HWND window, int id, UINT label, HINSTANCE instance) {
    if (id == kScopeGain)
        return CreateTNVTrackBar(WS_VISIBLE | kTrackBarVertical, 0, 0, 10, 10, window, id,
                                 instance);
    if (!label) return CreateTNVIndicator(0, WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
    return CreateTNVButtonFromString(label, WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
}

int CreateScopeControls(ScopeWindow* scope) {
    const HWND window = scope->window;
    const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(window, GWLP_HINSTANCE));
    scope->tooltips = CreateToolTips(window);
    for (int i = 0; i < kScopeControls; ++i) {
        const HWND control = CreateControl(window, kTexts[i].id, kTexts[i].label, instance);
        if (!control) return 0;
        scope->controls[i] = control;
        if (i < kIndicators)
            AddIndicatorToolTip(scope->tooltips, window, control, kTexts[i].tip);
        else
            AddToolTipFromString(scope->tooltips, window, control, kTexts[i].tip);
    }
    const HWND slider = ControlOf(*scope, kScopeGain);
    SetTrackBarRange(slider, kGainSliderMin, kGainSliderMax, 0);
    scope->sliderPosition =
        std::clamp(SliderOfGain(scope->settings.gain), kGainSliderMin, kGainSliderMax);
    SetTrackBarPos(slider, scope->sliderPosition);
    return 1;
}

// ---- letters

static int TextWidth(HDC dc, int control) {
    char text[kStringMax];
    const char* widest = kTexts[control].widest;
    if (!widest) {
        LoadText(kTexts[control].label, text);
        widest = text;
    }
    SIZE size = {};
    GetTextExtentPoint32A(dc, widest, static_cast<int>(strlen(widest)), &size);
    return size.cx;
}

// Calls use(dc) with the label face at that height selected.
template <typename Use> static void WithFont(int height, const Use& use) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT font = CreateLabelFont(FontFaceName, height, kLabelWeight);
    const HGDIOBJ before = SelectObject(dc, font);
    use(dc);
    SelectObject(dc, before);
    DeleteObject(font);
    DeleteDC(dc);
}

static void MeasureTexts(ScopeWindow* scope) {
    WithFont(kMeasuredHeight, [&](HDC dc) {
        for (int i = 0; i < kScopeControls; ++i)
            scope->widths.width[i] = TextWidth(dc, i) * 1000 / kMeasuredHeight;
    });
}

// Small letters come out wider than their share of the measured ones, and some heights no font
// meets exactly: a cell that comes out higher would be cut.
static int LettersFit(const ScopeWindow& scope, int from, int count, int edges, int height) {
    int fits = 1;
    WithFont(height, [&](HDC dc) {
        TEXTMETRICA metric = {};
        if (GetTextMetricsA(dc, &metric) && metric.tmHeight > height) fits = 0;
        for (int i = from; i < from + count; ++i)
            if (TextWidth(dc, i) > scope.layout.boxes[i].width - edges) fits = 0;
    });
    return fits;
}

static void GiveLabelFont(ScopeWindow* scope, CachedFont* font, int size, int from, int count,
                          int edges) {
    while (size > kScopeMinLetter && !LettersFit(*scope, from, count, edges, size))
        --size;
    GiveFont(font, FontFaceName, size, kLabelWeight, scope->controls + from, count);
}

static void GiveFonts(ScopeWindow* scope) {
    constexpr int kButtonEdges = 4;
    int buttons, indicators;
    MeasureTexts(scope);
    ScopeFontSizes(scope->layout, scope->widths, UIOptions.DoubleFontSize, &buttons, &indicators);
    GiveLabelFont(scope, &scope->buttonFont, buttons, kFirstButton, kButtons, kButtonEdges);
    GiveLabelFont(scope, &scope->indicatorFont, indicators, 0, kIndicators, 0);
}

// ---- colours and layout

// As dark as the players' displays.
COLORREF ScopePanelColor() {
    const COLORREF c = Colors.CmpntBkClr;
    return RGB(GetRValue(c) * 3 / 10, GetGValue(c) * 3 / 10, GetBValue(c) * 3 / 10);
}

void ShowScopeToggles(const ScopeWindow& scope) {
    const ScopeSettings& settings = scope.settings;
    SetButtonOn(ControlOf(scope, kScopeForceMono), static_cast<int>(settings.forceMono));
    SetButtonOn(ControlOf(scope, kScopeVertical), static_cast<int>(settings.vertical));
    SetButtonOn(ControlOf(scope, kScopeGradient), static_cast<int>(settings.gradient));
    SetButtonOn(ControlOf(scope, kScopeLegends), static_cast<int>(settings.legends));
    SetButtonOn(ControlOf(scope, kScopeSettings), 0);
    SetButtonOn(ControlOf(scope, kScopePower), 0);
}

static void ApplyColors(const ScopeWindow& scope) {
    ShowScopeToggles(scope);
    for (int i = 0; i < kIndicators; ++i) {
        SetIndicatorColor(scope.controls[i], Colors.IndtrDrkClr);
        SetIndicatorBack(scope.controls[i], ScopePanelColor());
    }
    SetTrackBarColors(ControlOf(scope, kScopeGain), Colors.BtnLtClr, kDisplayColor);
}

void LayOutScopeWindow(ScopeWindow* scope, int width, int height) {
    scope->layout = LayOutScope(width, height);
    ControlPlace places[kScopeControls];
    for (int i = 0; i < kScopeControls; ++i)
        places[i] = {kScopeControlIds[i], scope->layout.boxes[i]};
    PlaceControls(scope->window, places, kScopeControls);
    for (int i = 0; i < kIndicators; ++i)
        PlaceIndicatorToolTip(scope->tooltips, scope->window, scope->controls[i]);
    const int track = scope->layout.boxes[ScopeControlIndex(kScopeGain)].height;
    SetTrackBarThumbSize(ControlOf(*scope, kScopeGain), std::clamp(track / 10, 5, 12));
    GiveFonts(scope);
    ApplyColors(*scope);
    scope->repaintBackground = 1;
    InvalidateRect(scope->window, nullptr, TRUE);
}

void ShowScopeFormat(ScopeWindow* scope, const SoundFormatRecord& format) {
    char mode[kStringMax] = "", text[kFormatTextSize];
    if (format.channels) LoadText(format.channels > 1 ? IDS_SCOPE_STEREO : IDS_SCOPE_MONO, mode);
    ScopeFormatText(format, text);
    SetWindowTextA(ControlOf(*scope, kScopeMode), mode);
    SetWindowTextA(ControlOf(*scope, kScopeFormat), text);
    scope->shownFormat = format;
}
