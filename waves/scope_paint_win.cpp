// The oscilloscope's picture. Frames and legends are drawn when something about them changes;
// after that a frame recolours only those pixels in which the traces differ from the ones before,
// and copies the rows between them. A frame makes nothing, and silence after silence costs a look.
#include "waves/scope_state_win.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/framework_win.h"
#include "ui/paint_win.h"
#include "waves/published_win.h"

static constexpr int kGroupAir = 3; // pixels between controls and their group's edge
static constexpr int kPanelAir = 1;
static constexpr uint32_t kBlackPixel = 0;

namespace {
// Rows of the picture that differ from the window's: none when first >= end.
struct Dirt {
    int first, end;
};
} // namespace

static void Soil(Dirt* dirt, int first, int end) {
    dirt->first = std::min(dirt->first, first);
    dirt->end = std::max(dirt->end, end);
}

// ---- background

static void Outline(HDC dc, const Box& box) {
    const RECT rect = RectOf(box);
    const RECT sides[] = {{rect.left, rect.top, rect.right, rect.top + 1},
                          {rect.left, rect.bottom - 1, rect.right, rect.bottom},
                          {rect.left, rect.top, rect.left + 1, rect.bottom},
                          {rect.right - 1, rect.top, rect.right, rect.bottom}};
    if (box.width > 0 && box.height > 0)
        for (const RECT& side : sides)
            FillRect(dc, &side, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

static UINT LegendOf(int panes, int pane) {
    if (panes == 1) return IDS_SCOPE_MONO_LEGEND;
    return pane ? IDS_SCOPE_RIGHT_LEGEND : IDS_SCOPE_LEFT_LEGEND;
}

// Makes the legends' font; the width of the wider one.
static int MeasureLegends(ScopeWindow* scope, HDC dc) {
    int widest = 0;
    const Box area = {0, 0, scope->picture.width, scope->picture.height};
    const int height =
        ScopeLegendHeight(area, scope->panes, static_cast<int>(scope->settings.vertical));
    GiveFont(&scope->legendFont, FontFaceName, height, FW_NORMAL, nullptr, 0);
    const HGDIOBJ before = SelectObject(dc, scope->legendFont.font);
    for (int pane = 0; pane < scope->panes; ++pane) {
        char text[kStringMax];
        SIZE size = {};
        const int length = LoadText(LegendOf(scope->panes, pane), text);
        GetTextExtentPoint32A(dc, text, length, &size);
        widest = std::max(widest, static_cast<int>(size.cx));
    }
    SelectObject(dc, before);
    return widest;
}

static void DrawFrame(const ScopeWindow& scope, int pane) {
    const HDC dc = scope.picture.dc;
    const ScopePane& place = scope.traces[pane].place;
    SetDCBrushColor(dc, scope.settings.lineColor);
    Outline(dc, place.frame);
    if (place.divider < 0) return;
    char text[kStringMax];
    const int length = LoadText(LegendOf(scope.panes, pane), text);
    RECT area = RectOf(place.legend);
    const HGDIOBJ before = SelectObject(dc, scope.legendFont.font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, scope.settings.lineColor);
    DrawTextA(dc, text, length, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
    SelectObject(dc, before);
    const RECT line = {place.divider, place.trace.top, place.divider + 1,
                       place.trace.top + place.trace.height};
    FillArea(dc, line, scope.settings.lineColor);
}

static uint32_t* PixelAt(const ScopeWindow& scope, const ScopeTrace& trace, int x, int y) {
    return scope.picture.pixels + (trace.place.trace.top + y) * scope.picture.width +
           trace.place.trace.left + x;
}

// An empty trace with its centre line.
static void BeginTrace(ScopeWindow* scope, ScopeTrace* trace) {
    const int width = std::max(trace->place.trace.width, 0);
    const int height = std::max(trace->place.trace.height, 0);
    trace->shown.assign(width, {0, 0});
    trace->next.assign(width, {0, 0});
    trace->rowColors.assign(height, kBlackPixel);
    ScopeRowColors(scope->settings, height, trace->rowColors.data());
    if (!height) return;
    const int centre = CentreRow(height);
    std::fill_n(PixelAt(*scope, *trace, 0, centre), width, trace->rowColors[centre]);
}

static void DrawBackground(ScopeWindow* scope, int panes) {
    const Canvas& picture = scope->picture;
    scope->panes = panes;
    const int legendWidth = scope->settings.legends ? MeasureLegends(scope, picture.dc) : 0;
    ScopePane places[kMaxPanes] = {};
    LayOutPanes({0, 0, picture.width, picture.height}, panes,
                static_cast<int>(scope->settings.vertical), legendWidth, places);
    PatBlt(picture.dc, 0, 0, picture.width, picture.height, BLACKNESS);
    for (int pane = 0; pane < panes; ++pane) {
        scope->traces[pane].place = places[pane];
        DrawFrame(*scope, pane);
    }
    GdiFlush();
    for (int pane = 0; pane < panes; ++pane)
        BeginTrace(scope, &scope->traces[pane]);
    scope->repaintBackground = 0;
}

// ---- traces

// Colours the rows of a column, or blackens them: all but the centre line, which stays.
static void Recolor(const ScopeWindow& scope, const ScopeTrace& trace, int x, int first, int end,
                    int lit) {
    const int centre = CentreRow(trace.place.trace.height), stride = scope.picture.width;
    uint32_t* pixel = PixelAt(scope, trace, x, first);
    for (int y = first; y < end; ++y, pixel += stride)
        if (y != centre) *pixel = lit ? trace.rowColors[y] : kBlackPixel;
}

// The rows of `a` that are not in `b`.
static void RecolorDifference(const ScopeWindow& scope, const ScopeTrace& trace, int x,
                              const ScopeColumn& a, const ScopeColumn& b, int lit, Dirt* dirt) {
    const int top = trace.place.trace.top;
    const ScopeColumn parts[] = {{a.first, std::min(a.end, b.first)},
                                 {std::max(a.first, b.end), a.end}};
    for (const ScopeColumn& part : parts) {
        if (part.first >= part.end) continue;
        Recolor(scope, trace, x, part.first, part.end, lit);
        Soil(dirt, top + part.first, top + part.end);
    }
}

static void DrawTrace(const ScopeWindow& scope, ScopeTrace* trace, Dirt* dirt) {
    const int width = static_cast<int>(trace->shown.size());
    for (int x = 0; x < width; ++x) {
        RecolorDifference(scope, *trace, x, trace->shown[x], trace->next[x], 0, dirt);
        RecolorDifference(scope, *trace, x, trace->next[x], trace->shown[x], 1, dirt);
    }
    trace->shown.swap(trace->next);
}

static ScopeChannel ChannelOf(int panes, int pane) {
    if (panes == 1) return kScopeMean;
    return pane ? kScopeRight : kScopeLeft;
}

// The picture as the published sound asks for it. A picture that was begun anew is dirty as a
// whole.
static Dirt UpdatePicture(ScopeWindow* scope) {
    Dirt dirt = {scope->picture.height, 0};
    SoundFormatRecord format;
    PublishedFormat(&format);
    PublishedSamples(scope->samples);
    GdiFlush(); // no copy may still be under way while the pixels change
    const int panes = format.channels < 2 || scope->settings.forceMono ? 1 : 2;
    if (scope->repaintBackground || panes != scope->panes) {
        DrawBackground(scope, panes);
        dirt = {0, scope->picture.height};
    }
    for (int pane = 0; pane < panes; ++pane) {
        ScopeTrace& trace = scope->traces[pane];
        TraceColumns(scope->samples, format, ChannelOf(panes, pane), scope->settings.gain,
                     trace.place.trace.width, trace.place.trace.height, trace.next.data());
        DrawTrace(*scope, &trace, &dirt);
    }
    return dirt;
}

// 1 when there is a picture to draw into. A new one is begun anew.
static int HavePicture(ScopeWindow* scope) {
    const Box& display = scope->layout.display;
    Canvas& picture = scope->picture;
    if (display.width != picture.width || display.height != picture.height)
        scope->repaintBackground = 1;
    return SizeCanvas(&picture, display.width, display.height);
}

void ShowScopeTraces(ScopeWindow* scope) {
    const Box& display = scope->layout.display;
    if (!AreaInSight(scope->window, RectOf(display)) || !HavePicture(scope)) return;
    const Dirt dirt = UpdatePicture(scope);
    if (dirt.first >= dirt.end) return;
    const HDC dc = GetDC(scope->window);
    if (!dc) return;
    BitBlt(dc, display.left, display.top + dirt.first, display.width, dirt.end - dirt.first,
           scope->picture.dc, 0, dirt.first, SRCCOPY);
    ReleaseDC(scope->window, dc);
}

// ---- the window

// What an exposure uncovers is the picture as it stands: were it brought up to date here, the rest
// of the window would miss what changed.
void PaintScope(ScopeWindow* scope) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(scope->window, &paint);
    if (!dc) return;
    const ScopeLayout& layout = scope->layout;
    RECT panel = RectOf(layout.panel);
    if (layout.panel.width) {
        InflateRect(&panel, kPanelAir, kPanelAir);
        FillArea(dc, panel, ScopePanelColor());
    }
    if (HavePicture(scope)) {
        if (scope->repaintBackground && !VisualsHaveTaken()) {
            UpdatePicture(scope);
            scope->repaintBackground = 1; // the next frame is copied whole
        }
        ShowCanvas(scope->picture, dc, layout.display.left, layout.display.top);
    }
    if (UIOptions.Use3dLook)
        for (const Box& group : layout.groups) {
            if (!group.width) continue;
            RECT edge = RectOf(group);
            InflateRect(&edge, kGroupAir, kGroupAir);
            DrawEdge(dc, &edge, BDR_SUNKENOUTER, BF_RECT);
        }
    EndPaint(scope->window, &paint);
}

void FreeScopePictures(ScopeWindow* scope) {
    FreeCanvas(&scope->picture);
    for (CachedFont* font : {&scope->buttonFont, &scope->indicatorFont, &scope->legendFont})
        FreeFont(font);
}
