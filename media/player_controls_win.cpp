// The controls of the media player window: how they are made, placed, lettered and coloured. Fonts
// are made when the size changes, never while it plays.
#include "media/player_state_win.h"

#include <algorithm>
#include <cstring>

#include "core/strings_win.h"
#include "core/text.h"
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
static constexpr int kPanelAir = 2;         // the panel is that much larger than what lies on it

static int IsIndicatorId(int id) {
    return id == kMediaCaption || id == kMediaTime || id == kMediaName;
}

static int IsButtonId(int id) {
    return !IsIndicatorId(id) && id != kMediaSeek;
}

static int WeightOf(MediaFont font) {
    return font == kMediaFontCaption ? FW_NORMAL : FW_BOLD;
}

// ---- making

static HWND CreateControl(HWND window, int id, HINSTANCE instance) {
    const UINT label = IDS_MEDIA_LABELS + (id - kMediaFirst);
    if (id == kMediaSeek) return CreateTNVTrackBar(WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
    if (IsIndicatorId(id))
        return CreateTNVIndicator(label, WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
    return CreateTNVButtonFromString(label, WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
}

int CreateMediaControls(MediaPlayer* player) {
    const HWND window = player->window;
    const auto instance = reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(window, GWLP_HINSTANCE));
    player->tooltips = CreateToolTips(window);
    for (int i = 0; i < kMediaControls; ++i) {
        const int id = kMediaFirst + i;
        const UINT tip = IDS_MEDIA_TIPS + i;
        const HWND control = CreateControl(window, id, instance);
        if (!control) return 0;
        player->controls[i] = control;
        if (IsIndicatorId(id))
            AddIndicatorToolTip(player->tooltips, window, control, tip);
        else
            AddToolTipFromString(player->tooltips, window, control, tip);
    }
    return 1;
}

// ---- letters

// What a control's letters must have room for: its label, or what usually stands there.
static void WidestText(int id, char (&text)[kStringMax]) {
    text[0] = 0;
    if (id == kMediaCaption)
        CopyText(text, "A Playlist.m3u :: A Song of Usual Length.mp3");
    else if (id == kMediaTime)
        CopyText(text, "88:88 / 88:88");
    else if (id != kMediaSeek)
        LoadText(IDS_MEDIA_LABELS + (id - kMediaFirst), text);
}

static int TextWidth(HDC dc, const char* text) {
    SIZE size = {};
    GetTextExtentPoint32A(dc, text, static_cast<int>(strlen(text)), &size);
    return size.cx;
}

// Calls use(dc) with the label face at that height selected.
template <typename Use> static void WithFont(MediaFont font, int height, const Use& use) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HFONT made = CreateLabelFont(FontFaceName, height, WeightOf(font));
    const HGDIOBJ before = SelectObject(dc, made);
    use(dc);
    SelectObject(dc, before);
    DeleteObject(made);
    DeleteDC(dc);
}

static void MeasureTexts(MediaPlayer* player) {
    for (int font = 0; font < kMediaFonts; ++font)
        WithFont(static_cast<MediaFont>(font), kMeasuredHeight, [&](HDC dc) {
            for (int i = 0; i < kMediaControls; ++i) {
                char text[kStringMax];
                if (MediaFontOf(kMediaFirst + i) != font) continue;
                WidestText(kMediaFirst + i, text);
                player->widths.width[i] = TextWidth(dc, text) * 1000 / kMeasuredHeight;
            }
        });
}

// Small letters come out wider than their share of the measured ones, and some heights no font
// meets exactly: a cell that comes out higher would be cut.
static int LettersFit(const MediaPlayer& player, MediaFont font, int height) {
    int fits = 1;
    WithFont(font, height, [&](HDC dc) {
        TEXTMETRICA metric = {};
        if (GetTextMetricsA(dc, &metric) && metric.tmHeight > height) fits = 0;
        for (int i = 0; i < kMediaControls; ++i) {
            const int id = kMediaFirst + i, width = player.layout.boxes[i].width;
            char text[kStringMax];
            if (MediaFontOf(id) != font || !width || id == kMediaCaption) continue;
            WidestText(id, text);
            if (TextWidth(dc, text) > width - (IsButtonId(id) ? 4 : 0)) fits = 0;
        }
    });
    return fits;
}

static void GiveFonts(MediaPlayer* player) {
    int sizes[kMediaFonts];
    MeasureTexts(player);
    MediaFontSizes(player->layout, player->widths, UIOptions.DoubleFontSize, sizes);
    for (int font = 0; font < kMediaFonts; ++font) {
        const auto kind = static_cast<MediaFont>(font);
        while (sizes[font] > kMediaMinLetter && !LettersFit(*player, kind, sizes[font]))
            --sizes[font];
        HWND controls[kMediaControls];
        int count = 0;
        for (int i = 0; i < kMediaControls; ++i)
            if (MediaFontOf(kMediaFirst + i) == kind) controls[count++] = player->controls[i];
        GiveFont(&player->fonts[font], FontFaceName, sizes[font], WeightOf(kind), controls, count);
    }
}

void FreeMediaFonts(MediaPlayer* player) {
    for (CachedFont& font : player->fonts)
        FreeFont(&font);
}

// ---- colours and layout

// As dark as the other players' displays.
static COLORREF PanelColor(const MediaPlayer& player) {
    const COLORREF c = WindowBkColor(player.window);
    return RGB(GetRValue(c) * 3 / 10, GetGValue(c) * 3 / 10, GetBValue(c) * 3 / 10);
}

static void ApplyColors(const MediaPlayer& player) {
    const COLORREF panel = PanelColor(player);
    for (int i = 0; i < kMediaControls; ++i) {
        const int id = kMediaFirst + i;
        if (IsButtonId(id)) SetButtonOn(player.controls[i], player.lit[i]);
    }
    for (const int id : {kMediaCaption, kMediaTime}) {
        SetIndicatorColor(ControlOf(player, id), Colors.IndtrDrkClr);
        SetIndicatorBack(ControlOf(player, id), panel);
    }
    SetIndicatorColor(ControlOf(player, kMediaName), Colors.IndtrLtClr);
    SetTrackBarColors(ControlOf(player, kMediaSeek), Colors.BtnLtClr, panel);
}

void LayOutMediaWindow(MediaPlayer* player, int width, int height) {
    player->layout = LayOutMedia(width, height);
    ControlPlace places[kMediaControls];
    for (int i = 0; i < kMediaControls; ++i)
        places[i] = {kMediaFirst + i, player->layout.boxes[i]};
    PlaceControls(player->window, places, kMediaControls);
    for (const int id : {kMediaCaption, kMediaTime, kMediaName})
        PlaceIndicatorToolTip(player->tooltips, player->window, ControlOf(*player, id));
    const int track = player->layout.boxes[kMediaSeek - kMediaFirst].height;
    SetTrackBarThumbSize(ControlOf(*player, kMediaSeek), std::clamp(track / 2, 6, 16));
    GiveFonts(player);
    ApplyColors(*player);
    ShowMediaCaption(player);
    InvalidateRect(player->window, nullptr, TRUE);
}

static RECT RectOf(const Box& box, int air) {
    RECT rect = {box.left, box.top, box.left + box.width, box.top + box.height};
    InflateRect(&rect, air, air);
    return rect;
}

void PaintMediaWindow(const MediaPlayer& player) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(player.window, &paint);
    if (!dc) return;
    FillArea(dc, RectOf(player.layout.panel, kPanelAir), PanelColor(player));
    if (UIOptions.Use3dLook)
        for (const Box& group : player.layout.groups) {
            RECT edge = RectOf(group, kGroupAir);
            if (group.width) DrawEdge(dc, &edge, BDR_SUNKENOUTER, BF_RECT);
        }
    EndPaint(player.window, &paint);
}

// ---- what is shown

void SetMediaText(MediaPlayer* player, int id, const std::string& text) {
    std::string& shown = player->shown[id - kMediaFirst];
    if (shown == text) return;
    shown = text;
    SetWindowTextA(ControlOf(*player, id), text.c_str());
}

void SetMediaLit(MediaPlayer* player, int id, int on) {
    player->lit[id - kMediaFirst] = on != 0;
    SetButtonOn(ControlOf(*player, id), on != 0);
}

namespace {
struct CaptionRoom {
    HDC dc;
    int width;
};
} // namespace

static int FitsCaption(void* context, const std::string& text) {
    const auto* room = static_cast<const CaptionRoom*>(context);
    return TextWidth(room->dc, text.c_str()) <= room->width;
}

void ShowMediaCaption(MediaPlayer* player) {
    if (player->unknownType) {
        char text[kStringMax];
        LoadText(IDS_MEDIA_UNKNOWN_TYPE, text);
        SetMediaText(player, kMediaCaption, text);
        return;
    }
    CaptionRoom room = {CreateCompatibleDC(nullptr),
                        player->layout.boxes[kMediaCaption - kMediaFirst].width};
    const HFONT font = player->fonts[kMediaFontCaption].font;
    const HGDIOBJ before = font ? SelectObject(room.dc, font) : nullptr;
    const std::string caption = MediaCaption(player->list, player->playing, FitsCaption, &room);
    if (before) SelectObject(room.dc, before);
    DeleteDC(room.dc);
    SetMediaText(player, kMediaCaption, caption);
}
