// The controls of the CD player window: how they are made, placed, lettered and coloured, and the
// pie. Fonts and the pie's bitmap are made when the size changes, never while playing.
#include "cd/player_state_win.h"

#include <algorithm>
#include <cstring>

#include "cd/player_pie.h"
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
static constexpr int kSmallestBold = 13;    // cell height in pixels of the times

// Bold brackets smaller than that lose their feet, and their strokes are a pixel wide in any
// weight.
static int WeightOf(PlayerFont font, int height) {
    const int light = font == kFontTitles || (font == kFontTimes && height < kSmallestBold);
    return light ? FW_NORMAL : FW_BOLD;
}

static int IsIndicatorId(int id) {
    return id <= kPlayerTrackTime || id == kPlayerCaption || id == kPlayerDiscTime ||
           id == kPlayerDriveTime;
}

static int IsButtonId(int id) {
    return !IsIndicatorId(id) && id != kPlayerSlider;
}

// ---- making

static HWND CreateControl(HWND window, int id, HINSTANCE instance) {
    const UINT label = IDS_CD_LABELS + (id - kPlayerFirst);
    if (id == kPlayerSlider)
        return CreateTNVTrackBar(WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
    if (IsIndicatorId(id))
        return CreateTNVIndicator(label, WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
    return CreateTNVButtonFromString(label, WS_VISIBLE, 0, 0, 10, 10, window, id, instance);
}

// What a control's letters must have room for: its label, or the longest that usually stands there.
static void WidestText(int id, char (&text)[kStringMax]) {
    text[0] = 0;
    if (id == kPlayerArtist || id == kPlayerTrackTitle)
        CopyText(text, "A Title of Usual Length");
    else if (id == kPlayerTrackTime)
        CopyText(text, "[88] 88:88 / 88:88");
    else if (id == kPlayerDiscTime)
        CopyText(text, "188:88");
    else if (id == kPlayerDriveTime)
        CopyText(text, "D: 188:88");
    else if (id >= kPlayerTrack1 && id < kPlayerTrack1 + kPlayerTrackButtons)
        CopyText(text, "100");
    else if (IsButtonId(id) || id == kPlayerCaption)
        LoadText(IDS_CD_LABELS + (id - kPlayerFirst), text);
}

static int TextWidth(HDC dc, const char* text) {
    SIZE size = {};
    GetTextExtentPoint32A(dc, text, static_cast<int>(strlen(text)), &size);
    return size.cx;
}

// Calls use(dc) with the face at that height selected.
template <typename Use> static void WithFont(PlayerFont font, int height, const Use& use) {
    WithLabelFont(height, WeightOf(font, height), use);
}

static void MeasureTexts(PlayerWindow* player) {
    for (int font = 0; font < kPlayerFonts; ++font)
        WithFont(static_cast<PlayerFont>(font), kMeasuredHeight, [&](HDC dc) {
            for (int i = 0; i < kPlayerControls; ++i) {
                char text[kStringMax];
                if (PlayerFontOf(kPlayerFirst + i) != font) continue;
                WidestText(kPlayerFirst + i, text);
                player->widths.width[i] = TextWidth(dc, text) * 1000 / kMeasuredHeight;
            }
        });
}

static void AddToolTipOf(PlayerWindow* player, int id) {
    const HWND control = ControlOf(*player, id);
    const UINT tip = IDS_CD_TIPS + (id - kPlayerFirst);
    if (IsIndicatorId(id))
        AddIndicatorToolTip(player->tooltips, player->window, control, tip);
    else if (id >= kPlayerTrack1 && id < kPlayerTrack1 + kPlayerTrackButtons)
        AddToolTip(player->tooltips, player->window, control, "");
    else
        AddToolTipFromString(player->tooltips, player->window, control, tip);
}

int CreatePlayerControls(PlayerWindow* player) {
    const auto instance =
        reinterpret_cast<HINSTANCE>(GetWindowLongPtrA(player->window, GWLP_HINSTANCE));
    player->tooltips = CreateToolTips(player->window);
    for (int i = 0; i < kPlayerControls; ++i) {
        player->controls[i] = CreateControl(player->window, kPlayerFirst + i, instance);
        if (!player->controls[i]) return 0;
        GetWindowTextA(player->controls[i], player->shown[i], kTextSize);
        AddToolTipOf(player, kPlayerFirst + i);
    }
    SetButtonNotify(ControlOf(*player, kPlayerRepeater), 1);
    MeasureTexts(player);
    return 1;
}

// ---- the pie

void FreePlayerPictures(PlayerWindow* player) {
    PiePicture& pie = player->pie;
    if (pie.dc) {
        SelectObject(pie.dc, pie.bitmapBefore);
        DeleteDC(pie.dc);
    }
    if (pie.bitmap) DeleteObject(pie.bitmap);
    pie = {};
    for (CachedFont& font : player->fonts)
        FreeFont(&font);
}

static void MakePiePicture(PiePicture* pie, int side) {
    if (pie->side == side) return;
    if (!pie->dc) pie->dc = CreateCompatibleDC(nullptr);
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = side;
    info.bmiHeader.biHeight = -side; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    void* pixels = nullptr;
    const HBITMAP made =
        side > 0 ? CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0) : nullptr;
    if (!made) return; // the old picture stays, cut or surrounded by background
    const HGDIOBJ before = SelectObject(pie->dc, made);
    if (pie->bitmap)
        DeleteObject(pie->bitmap);
    else
        pie->bitmapBefore = before;
    pie->bitmap = made;
    pie->pixels = static_cast<uint32_t*>(pixels);
    pie->side = side;
}

static PieColors LookOf(const PlayerWindow& player) {
    return PieLook(WindowBkColor(player.window), Colors.IndtrDrkClr);
}

static void DrawPiePicture(PlayerWindow* player) {
    if (!player->pie.pixels) return;
    GdiFlush(); // no copy may still be under way while the pixels change
    DrawPie(player->pie.pixels, player->pie.side, player->pieDegrees, LookOf(*player));
}

static RECT RectOf(const Box& box) {
    return {box.left, box.top, box.left + box.width, box.top + box.height};
}

void SetPlayerPie(PlayerWindow* player, int degrees) {
    if (player->pieDegrees == degrees) return;
    player->pieDegrees = degrees;
    DrawPiePicture(player);
    const RECT area = RectOf(player->layout.pie);
    InvalidateRect(player->window, &area, FALSE);
}

void PaintPlayer(PlayerWindow* player) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(player->window, &paint);
    if (!dc) return;
    RECT panel = RectOf(player->layout.panel);
    InflateRect(&panel, kPanelAir, kPanelAir);
    const Box& box = player->layout.pie;
    const RECT pie = RectOf(box);
    if (memcmp(&paint.rcPaint, &pie, sizeof pie)) // not on the ticks that move the pie alone
        FillArea(dc, panel, LookOf(*player).back);
    if (player->pie.pixels)
        BitBlt(dc, box.left, box.top, player->pie.side, player->pie.side, player->pie.dc, 0, 0,
               SRCCOPY);
    if (UIOptions.Use3dLook)
        for (const Box& group : player->layout.groups) {
            if (!group.width) continue;
            RECT edge = RectOf(group);
            InflateRect(&edge, kGroupAir, kGroupAir);
            DrawEdge(dc, &edge, BDR_SUNKENOUTER, BF_RECT);
        }
    EndPaint(player->window, &paint);
}

// ---- layout

// Small letters come out wider than their share of the measured ones. Some heights no font meets
// exactly: a cell that comes out higher is cut by its control, and of one that comes out lower the
// system itself cuts the feet of brackets.
static int LettersFit(const PlayerWindow& player, PlayerFont font, int height) {
    int fits = 1;
    WithFont(font, height, [&](HDC dc) {
        TEXTMETRICA metric = {};
        if (GetTextMetricsA(dc, &metric) && metric.tmHeight != height) fits = 0;
        for (int i = 0; i < kPlayerControls; ++i) {
            char text[kStringMax];
            if (PlayerFontOf(kPlayerFirst + i) != font) continue;
            WidestText(kPlayerFirst + i, text);
            const int edges = IsButtonId(kPlayerFirst + i) ? 4 : 0;
            if (TextWidth(dc, text) > player.layout.boxes[i].width - edges) fits = 0;
        }
    });
    return fits;
}

static void GiveFonts(PlayerWindow* player) {
    int sizes[kPlayerFonts];
    PlayerFontSizes(player->layout, player->widths, UIOptions.DoubleFontSize, sizes);
    for (int font = 0; font < kPlayerFonts; ++font) {
        const auto kind = static_cast<PlayerFont>(font);
        const int least =
            kind == kFontTitles ? std::min(sizes[font], kPlayerMinTitle) : kPlayerMinLetter;
        while (sizes[font] > least && !LettersFit(*player, kind, sizes[font]))
            --sizes[font];
        HWND controls[kPlayerControls];
        int count = 0;
        for (int i = 0; i < kPlayerControls; ++i)
            if (PlayerFontOf(kPlayerFirst + i) == kind) controls[count++] = player->controls[i];
        GiveFont(&player->fonts[font], kDefaultFace, sizes[font], WeightOf(kind, sizes[font]),
                 controls, count);
    }
}

static void ApplyColors(PlayerWindow* player) {
    const COLORREF panel = LookOf(*player).back;
    for (int i = 0; i < kPlayerControls; ++i) {
        const int id = kPlayerFirst + i;
        const HWND control = player->controls[i];
        if (IsButtonId(id))
            SetButtonOn(control, player->lit[i]);
        else if (id == kPlayerSlider)
            SetTrackBarColors(control, Colors.BtnLtClr, panel);
        else if (id == kPlayerCaption)
            SetIndicatorColor(control, Colors.IndtrLtClr);
        else {
            SetIndicatorColor(control, Colors.IndtrDrkClr);
            SetIndicatorBack(control, panel);
        }
    }
}

void LayOutPlayerWindow(PlayerWindow* player, int width, int height) {
    player->layout = LayOutPlayer(width, height);
    ControlPlace places[kPlayerControls];
    for (int i = 0; i < kPlayerControls; ++i)
        places[i] = {kPlayerFirst + i, player->layout.boxes[i]};
    PlaceControls(player->window, places, kPlayerControls);
    for (int i = 0; i < kPlayerControls; ++i)
        if (IsIndicatorId(kPlayerFirst + i))
            PlaceIndicatorToolTip(player->tooltips, player->window, player->controls[i]);
    const int sliderHeight = player->layout.boxes[kPlayerSlider - kPlayerFirst].height;
    SetTrackBarThumbSize(ControlOf(*player, kPlayerSlider), std::clamp(sliderHeight / 2, 6, 16));
    GiveFonts(player);
    ApplyColors(player);
    MakePiePicture(&player->pie, player->layout.pie.width);
    DrawPiePicture(player);
    InvalidateRect(player->window, nullptr, TRUE);
}

// ---- what a refresh sets

void SetPlayerText(PlayerWindow* player, int id, const char* text) {
    char(&shown)[kTextSize] = player->shown[id - kPlayerFirst];
    if (!strcmp(shown, text)) return;
    CopyText(shown, text);
    SetWindowTextA(ControlOf(*player, id), shown);
}

void SetPlayerLit(PlayerWindow* player, int id, int on) {
    player->lit[id - kPlayerFirst] = on != 0;
    SetButtonOn(ControlOf(*player, id), on != 0);
}

void SetPlayerEnabled(PlayerWindow* player, int id, int on) {
    const HWND control = ControlOf(*player, id);
    if (!IsWindowEnabled(control) != !on) EnableWindow(control, on != 0);
}
