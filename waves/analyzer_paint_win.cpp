// The analyzer's display. The picture is kept; a frame draws the segments that changed and copies
// their bounds to the window, once. No GDI object is made but when the size changes.
#include "waves/analyzer_state_win.h"

#include <algorithm>
#include <cstring>

#include "core/strings_win.h"
#include "resources/ids.h"
#include "ui/framework_win.h"
#include "ui/paint_win.h"

static constexpr int kGroupAir = 3; // pixels between a group and its edge

COLORREF DisplayColor() {
    const COLORREF c = Colors.CmpntBkClr;
    return RGB(GetRValue(c) * 3 / 10, GetGValue(c) * 3 / 10, GetBValue(c) * 3 / 10);
}

static AnalyzerPixels PixelsOf(const Canvas& canvas) {
    return {canvas.pixels, canvas.width, canvas.height};
}

// ---- texts, which are part of the kept picture

static int TextWidth(HDC dc, const char* text) {
    SIZE size = {};
    GetTextExtentPoint32A(dc, text, static_cast<int>(strlen(text)), &size);
    return size.cx;
}

static void DrawCentered(HDC dc, int x, int y, const char* text) {
    SetTextAlign(dc, TA_CENTER | TA_TOP);
    TextOutA(dc, x, y, text, static_cast<int>(strlen(text)));
}

static void DrawAxis(HDC dc, const AnalyzerPane& pane, const Box& panel,
                     const char* const* labels) {
    int widest = 0;
    for (int i = 0; i < kBands; ++i)
        widest = std::max(widest, TextWidth(dc, labels[i]));
    const int step = pane.axis.height ? AxisStep(pane.bandWidth, widest) : 0;
    if (!step) return;
    for (int i = AxisFirst(step); i < kBands; i += step) {
        const int x = pane.axis.left + i * pane.bandWidth + pane.bandWidth / 2;
        DrawCentered(dc, x - panel.left, pane.axis.top - panel.top, labels[i]);
    }
}

static void DrawTexts(const AnalyzerWindow& analyzer) {
    const HDC dc = analyzer.canvas.dc;
    const Box& panel = analyzer.layout.panel;
    if (!analyzer.axisFont.font) return;
    const HGDIOBJ before = SelectObject(dc, analyzer.axisFont.font);
    SetBkMode(dc, TRANSPARENT);
    SetTextColor(dc, Colors.IndtrLtClr);
    for (int i = 0; i < analyzer.layout.paneCount; ++i) {
        const AnalyzerPane& pane = analyzer.layout.panes[i];
        DrawAxis(dc, pane, panel, BandLabels(analyzer.indicated.rate));
        if (!pane.caption.height) continue;
        char text[kStringMax];
        LoadText(IDS_ANALYZER_CHANNELS + static_cast<UINT>(analyzer.layout.paneChannel[i]), text);
        DrawCentered(dc, pane.caption.left + pane.caption.width / 2 - panel.left,
                     pane.caption.top - panel.top, text);
    }
    SelectObject(dc, before);
}

// ---- the picture

void DrawAnalyzerPicture(AnalyzerWindow* analyzer) {
    const Box& panel = analyzer->layout.panel;
    analyzer->look = LookOfAnalyzer(analyzer->settings, DisplayColor());
    if (!SizeCanvas(&analyzer->canvas, panel.width, panel.height)) return;
    GdiFlush(); // no copy may still be under way while the pixels change
    const AnalyzerPixels into = PixelsOf(analyzer->canvas);
    DrawAnalyzerGround(into, analyzer->layout, analyzer->look);
    DrawAnalyzerFrame(into, analyzer->layout, analyzer->look, analyzer->shown, nullptr);
    DrawTexts(*analyzer);
    const RECT area = RectOf(panel);
    InvalidateRect(analyzer->window, &area, FALSE);
}

void PaintAnalyzerFrame(AnalyzerWindow* analyzer, const AnalyzerInput& input) {
    const AnalyzerLayout& layout = analyzer->layout;
    const AnalyzerFrame frame =
        NextAnalyzerFrame(&analyzer->state, analyzer->settings, input, LevelRoom(layout.level));
    const Canvas& canvas = analyzer->canvas;
    if (!canvas.dc) return;
    GdiFlush();
    const Box changed =
        DrawAnalyzerFrame(PixelsOf(canvas), layout, analyzer->look, frame, &analyzer->shown);
    analyzer->shown = frame;
    if (!changed.width) return;
    const HDC dc = GetDC(analyzer->window);
    if (!dc) return;
    BitBlt(dc, changed.left, changed.top, changed.width, changed.height, canvas.dc,
           changed.left - layout.panel.left, changed.top - layout.panel.top, SRCCOPY);
    ReleaseDC(analyzer->window, dc);
}

void PaintAnalyzer(AnalyzerWindow* analyzer) {
    PAINTSTRUCT paint;
    const HDC dc = BeginPaint(analyzer->window, &paint);
    if (!dc) return;
    ShowCanvas(analyzer->canvas, dc, analyzer->layout.panel.left, analyzer->layout.panel.top);
    if (UIOptions.Use3dLook)
        for (const Box& group : analyzer->layout.groups) {
            if (!group.width) continue;
            RECT edge = RectOf(group);
            InflateRect(&edge, kGroupAir, kGroupAir);
            DrawEdge(dc, &edge, BDR_SUNKENOUTER, BF_RECT);
        }
    EndPaint(analyzer->window, &paint);
}

void FreeAnalyzerPictures(AnalyzerWindow* analyzer) {
    FreeCanvas(&analyzer->canvas);
    for (CachedFont* font : {&analyzer->labelFont, &analyzer->textFont, &analyzer->axisFont})
        FreeFont(font);
}
