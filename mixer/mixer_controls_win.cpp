// The controls of the mixer window: how they are made, placed, lettered and coloured. Fonts are
// made when the size or the names change, never in a refresh.
#include "mixer/mixer_state_win.h"

#include <algorithm>
#include <cstring>

#include "core/strings_win.h"
#include "core/text.h"
#include "mixer/mixer_show.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/framework_win.h"
#include "ui/indicator_win.h"
#include "ui/paint_win.h"
#include "ui/tooltips_win.h"
#include "ui/trackbar_win.h"
#include "ui/window_thread_win.h"

static constexpr int kMeasuredHeight = 100; // cell height of the font that texts are measured in
static constexpr int kGroupAir = 3;         // pixels between controls and their group's edge
static constexpr int kSmallestBold = 11;    // cell height from which bold letters are legible

static int WeightOf(MixerFont font, int height) {
    return font == kMixerFontMessage || height < kSmallestBold ? FW_NORMAL : FW_BOLD;
}

static int IsSlider(int fixedId) {
    return fixedId == kMixerVolume || fixedId == kMixerTreble || fixedId == kMixerBass;
}

static int IsMessage(int fixedId) {
    return fixedId == kMixerMessage1 || fixedId == kMixerMessage2;
}

static int IsLabel(int fixedId) {
    return fixedId == kMixerCaption || fixedId >= kMixerTrebleLabel;
}

// ---- making

static HWND CreateSlider(HWND window, int id, DWORD style, HINSTANCE instance) {
    const HWND slider =
        CreateTNVTrackBar(style | kTrackBarVertical, 0, 0, 10, 10, window, id, instance);
    if (!slider) return nullptr;
    SetTrackBarRange(slider, 0, kLevelMax, 0);
    SetTrackBarPos(slider, kMixerBarStart);
    return slider;
}

static HWND CreateFixed(HWND window, int id, HINSTANCE instance) {
    const UINT label = IDS_MIXER_LABELS + MixerFixedIndex(id);
    if (IsSlider(id)) return CreateSlider(window, id, WS_VISIBLE, instance);
    if (IsLabel(id))
        return CreateTNVIndicator(label, IsMessage(id) ? 0 : WS_VISIBLE, 0, 0, 10, 10, window, id,
                                  instance);
    return CreateTNVButtonFromString(label, WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
}

static void AddFixedToolTip(MixerWindow* mixer, int id) {
    const UINT tip = IDS_MIXER_TIPS + MixerFixedIndex(id);
    if (IsMessage(id)) return;
    if (IsLabel(id))
        AddIndicatorToolTip(mixer->tooltips, mixer->window, ControlOf(*mixer, id), tip);
    else
        AddToolTipFromString(mixer->tooltips, mixer->window, ControlOf(*mixer, id), tip);
}

int CreateMixerControls(MixerWindow* mixer) {
    const auto instance =
        reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(mixer->window, GWLP_HINSTANCE));
    mixer->tooltips = CreateToolTips(mixer->window);
    for (int i = 0; i < kMixerFixed; ++i) {
        mixer->fixed[i] = CreateFixed(mixer->window, MixerFixedId(i), instance);
        if (!mixer->fixed[i]) return 0;
        AddFixedToolTip(mixer, MixerFixedId(i));
    }
    mixer->volume = mixer->treble = mixer->bass = {kMixerBarStart, kLevelNone};
    for (int i = 0; i < kMixerColumns; ++i) {
        mixer->buttons[i] =
            CreateTNVButton("", 0, 0, 0, 10, 10, mixer->window, kMixerSource1 + i, instance);
        mixer->sliders[i] = CreateSlider(mixer->window, kMixerSlider1 + i, 0, instance);
        if (!mixer->buttons[i] || !mixer->sliders[i]) return 0;
        AddToolTip(mixer->tooltips, mixer->window, mixer->buttons[i], "");
        AddToolTip(mixer->tooltips, mixer->window, mixer->sliders[i], "");
        mixer->levels[i] = {kMixerBarStart, kLevelNone};
    }
    return 1;
}

// ---- texts and letters

static int MeasureText(const char* text, int length, void* dc) {
    SIZE size = {};
    GetTextExtentPoint32A(static_cast<HDC>(dc), text, length, &size);
    return size.cx;
}

// Calls use(dc) with the face at that height selected.
template <typename Use> static void WithFont(MixerFont font, int height, const Use& use) {
    WithLabelFont(height, WeightOf(font, height), use);
}

static void MeasureTexts(MixerWindow* mixer) {
    const auto share = [](HDC dc, const char* text) {
        return MeasureText(text, lstrlenA(text), dc) * 1000 / kMeasuredHeight;
    };
    for (int font = 0; font < kMixerFonts; ++font)
        WithFont(static_cast<MixerFont>(font), kMeasuredHeight, [&](HDC dc) {
            for (int i = 0; i < kMixerFixed; ++i) {
                char text[kStringMax];
                if (MixerFontOf(MixerFixedId(i)) != font) continue;
                GetWindowTextA(mixer->fixed[i], text, sizeof text);
                mixer->widths.fixed[i] = share(dc, text);
            }
            for (int i = 0; i < mixer->count && font == kMixerFontNames; ++i)
                mixer->widths.names[i] = share(dc, mixer->sources[i].name);
        });
}

static int TextFits(HDC dc, const char* text, const Box& box) {
    return MeasureText(text, lstrlenA(text), dc) <= MixerNameRoom(box.width);
}

// Some heights no font meets exactly.
static int IsExact(HDC dc, int height) {
    TEXTMETRICA metric = {};
    return !GetTextMetricsA(dc, &metric) || metric.tmHeight == height;
}

// Small letters come out wider than their share of the measured ones.
static int LettersFit(const MixerWindow& mixer, MixerFont font, int height) {
    int fits = 1;
    WithFont(font, height, [&](HDC dc) {
        fits = IsExact(dc, height);
        for (int i = 0; i < kMixerFixed; ++i) {
            char text[kStringMax];
            if (MixerFontOf(MixerFixedId(i)) != font || IsSlider(MixerFixedId(i))) continue;
            GetWindowTextA(mixer.fixed[i], text, sizeof text);
            fits &= TextFits(dc, text, mixer.layout.fixed[i]);
        }
    });
    return fits;
}

static void GiveFixedFont(MixerWindow* mixer, MixerFont font, int size) {
    while (size > kMixerMinLetter && !LettersFit(*mixer, font, size))
        --size;
    HWND controls[kMixerFixed];
    int count = 0;
    for (int i = 0; i < kMixerFixed; ++i)
        if (MixerFontOf(MixerFixedId(i)) == font && !IsSlider(MixerFixedId(i)))
            controls[count++] = mixer->fixed[i];
    GiveFont(&mixer->fonts[font], kDefaultFace, size, WeightOf(font, size), controls, count);
}

// Marks the names that do not fit at that height; their number.
static int MarkLongNames(const MixerWindow& mixer, int height, uint8_t (&isLong)[kMixerColumns]) {
    int count = 0;
    WithFont(kMixerFontNames, height, [&](HDC dc) {
        for (int i = 0; i < mixer.count; ++i) {
            isLong[i] = !TextFits(dc, mixer.sources[i].name, mixer.layout.buttons[i]);
            count += isLong[i];
        }
    });
    return count;
}

static void GiveNameFont(MixerWindow* mixer, MixerFont font, int size, int isLong,
                         const uint8_t (&longs)[kMixerColumns]) {
    HWND controls[kMixerColumns];
    int count = 0;
    for (int i = 0; i < kMixerColumns; ++i)
        if (longs[i] == isLong) controls[count++] = mixer->buttons[i];
    GiveFont(&mixer->fonts[font], kDefaultFace, size, WeightOf(font, size), controls, count);
}

// Names for which even the smallest letters are too large are cut.
static void SetNames(MixerWindow* mixer, MixerFont font, int isLong,
                     const uint8_t (&longs)[kMixerColumns]) {
    WithFont(font, mixer->fonts[font].height, [&](HDC dc) {
        for (int i = 0; i < mixer->count; ++i) {
            char fitted[kMixerNameSize];
            if (longs[i] != isLong) continue;
            FitMixerName(mixer->sources[i].name, MixerNameRoom(mixer->layout.buttons[i].width),
                         MeasureText, dc, fitted, sizeof fitted);
            SetWindowTextA(mixer->buttons[i], fitted);
        }
    });
}

static void LetterNames(MixerWindow* mixer, int size, int longSize) {
    uint8_t longs[kMixerColumns] = {}, still[kMixerColumns] = {};
    while (!EnoughMixerNames(mixer->count - MarkLongNames(*mixer, size, longs), mixer->count) &&
           size > kMixerMinName)
        --size;
    longSize = std::min(longSize, size);
    while (longSize > kMixerMinName && MarkLongNames(*mixer, longSize, still))
        --longSize;
    GiveNameFont(mixer, kMixerFontNames, size, 0, longs);
    GiveNameFont(mixer, kMixerFontLongNames, longSize, 1, longs);
    SetNames(mixer, kMixerFontNames, 0, longs);
    SetNames(mixer, kMixerFontLongNames, 1, longs);
}

static void GiveFonts(MixerWindow* mixer) {
    int sizes[kMixerFonts];
    MixerLetterSizes(mixer->layout, mixer->widths, mixer->count, UIOptions.DoubleFontSize, sizes);
    for (const MixerFont font : {kMixerFontButtons, kMixerFontMasters, kMixerFontMessage})
        GiveFixedFont(mixer, font, sizes[font]);
    LetterNames(mixer, sizes[kMixerFontNames], sizes[kMixerFontLongNames]);
}

void FreeMixerFonts(MixerWindow* mixer) {
    for (CachedFont& font : mixer->fonts)
        FreeFont(&font);
}

// ---- colours

// The columns lie on a panel darker than the window, as the displays of the other windows do.
static COLORREF PanelColor(const MixerWindow& mixer) {
    const COLORREF c = WindowBkColor(mixer.window);
    return RGB(GetRValue(c) * 3 / 10, GetGValue(c) * 3 / 10, GetBValue(c) * 3 / 10);
}

void EnableMixerMasters(MixerWindow* mixer) {
    const COLORREF back = WindowBkColor(mixer->window);
    const struct {
        int id, label, has;
    } bars[] = {{kMixerTreble, kMixerTrebleLabel, mixer->hasTreble},
                {kMixerBass, kMixerBassLabel, mixer->hasBass}};
    for (const auto& bar : bars) {
        const HWND slider = ControlOf(*mixer, bar.id);
        if (!IsWindowEnabled(slider) != !bar.has) EnableWindow(slider, bar.has);
        SetTrackBarColors(slider, bar.has ? Colors.BtnLtClr : back, back);
        SetIndicatorColor(ControlOf(*mixer, bar.label),
                          bar.has ? Colors.IndtrDrkClr : Colors.IndtrLtClr);
    }
}

static void ApplyColors(MixerWindow* mixer) {
    const COLORREF panel = PanelColor(*mixer);
    for (int i = 0; i < kMixerDestinations; ++i)
        SetButtonOn(mixer->fixed[i], mixer->lit[i]);
    SetButtonOn(ControlOf(*mixer, kMixerPower), 0);
    SetButtonOn(ControlOf(*mixer, kMixerConfigure), 0);
    SetButtonOn(ControlOf(*mixer, kMixerMaster), mixer->masterLit);
    SetIndicatorColor(ControlOf(*mixer, kMixerCaption), Colors.IndtrLtClr);
    for (const int id : {kMixerMessage1, kMixerMessage2}) {
        SetIndicatorColor(ControlOf(*mixer, id), Colors.IndtrDrkClr);
        SetIndicatorBack(ControlOf(*mixer, id), panel);
    }
    SetTrackBarColors(ControlOf(*mixer, kMixerVolume), Colors.BtnLtClr,
                      WindowBkColor(mixer->window));
    EnableMixerMasters(mixer);
    for (int i = 0; i < kMixerColumns; ++i) {
        SetButtonOn(mixer->buttons[i], mixer->sourceLit[i]);
        SetTrackBarColors(mixer->sliders[i], Colors.BtnLtClr, panel);
    }
}

// ---- layout

static void SetThumb(HWND slider, int height) {
    SetTrackBarThumbSize(slider, std::clamp(height / 7, 5, 12));
}

static void PlaceAll(MixerWindow* mixer) {
    ControlPlace places[kMixerFixed + 2 * kMixerColumns];
    int count = 0;
    for (int i = 0; i < kMixerFixed; ++i)
        places[count++] = {MixerFixedId(i), mixer->layout.fixed[i]};
    for (int i = 0; i < mixer->count; ++i) {
        places[count++] = {kMixerSource1 + i, mixer->layout.buttons[i]};
        places[count++] = {kMixerSlider1 + i, mixer->layout.sliders[i]};
    }
    PlaceControls(mixer->window, places, count);
    for (int i = 0; i < kMixerFixed; ++i) {
        const int id = MixerFixedId(i);
        if (IsSlider(id)) SetThumb(mixer->fixed[i], mixer->layout.fixed[i].height);
        if (IsLabel(id) && !IsMessage(id))
            PlaceIndicatorToolTip(mixer->tooltips, mixer->window, mixer->fixed[i]);
    }
    for (int i = 0; i < mixer->count; ++i)
        SetThumb(mixer->sliders[i], mixer->layout.sliders[i].height);
}

static void ShowControl(HWND control, int shown) {
    if (!IsWindowEnabled(control) != !shown && !IsIndicator(control)) EnableWindow(control, shown);
    const int isShown = (GetWindowLongA(control, GWL_STYLE) & WS_VISIBLE) != 0;
    if (isShown != shown) ShowWindow(control, shown ? SW_SHOWNA : SW_HIDE);
}

void LayOutMixerWindow(MixerWindow* mixer, int width, int height) {
    MeasureTexts(mixer);
    mixer->layout = LayOutMixer(width, height, mixer->widths, mixer->count);
    PlaceAll(mixer);
    GiveFonts(mixer);
    ApplyColors(mixer);
    InvalidateRect(mixer->window, nullptr, TRUE);
}

void ShowMixerColumns(MixerWindow* mixer) {
    char text[kStringMax];
    LoadText(IDS_MIXER_MESSAGES + mixer->destination, text);
    SetWindowTextA(ControlOf(*mixer, kMixerMessage2), text);
    RECT client;
    GetClientRect(mixer->window, &client);
    if (client.right > 0 && client.bottom > 0)
        LayOutMixerWindow(mixer, client.right, client.bottom);
    for (int i = 0; i < kMixerColumns; ++i) {
        const int shown = i < mixer->count;
        const char* name = shown ? mixer->sources[i].name : "";
        SetToolTipText(mixer->tooltips, mixer->window, mixer->buttons[i], name);
        SetToolTipText(mixer->tooltips, mixer->window, mixer->sliders[i], name);
        ShowControl(mixer->buttons[i], shown);
        ShowControl(mixer->sliders[i], shown);
    }
    ShowControl(ControlOf(*mixer, kMixerMessage1), !mixer->count);
    ShowControl(ControlOf(*mixer, kMixerMessage2), !mixer->count);
}

// ---- painting

static RECT RectOf(const Box& box, int air) {
    RECT rect = {box.left, box.top, box.left + box.width, box.top + box.height};
    InflateRect(&rect, air, air);
    return rect;
}

void PaintMixer(MixerWindow* mixer) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(mixer->window, &paint);
    if (!dc) return;
    FillArea(dc, RectOf(mixer->layout.groups[kMixerSources], kMixerPanelAir), PanelColor(*mixer));
    if (UIOptions.Use3dLook && mixer->layout.edges)
        for (const Box& group : mixer->layout.groups) {
            RECT edge = RectOf(group, kGroupAir);
            DrawEdge(dc, &edge, BDR_SUNKENOUTER, BF_RECT);
        }
    EndPaint(mixer->window, &paint);
}
