// Filled boxes, clipped to the picture. See analyzer_picture.h.
#include "waves/analyzer_picture.h"

#include <algorithm>

static constexpr uint32_t kDark = 0; // a segment that is not lit
static constexpr int kPeakWidth = 2; // of a peak line of the level bar

namespace {
struct Pen {
    const AnalyzerPixels* into;
    const AnalyzerLayout* layout;
    const AnalyzerLook* look;
    Box touched;
};
} // namespace

static uint32_t PixelOf(uint32_t color) {
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

AnalyzerLook LookOfAnalyzer(const AnalyzerSettings& settings, uint32_t ground) {
    AnalyzerLook look = {};
    AnalyzerRamp(settings.LowColor, settings.HighColor, look.segments);
    for (uint32_t& color : look.segments)
        color = PixelOf(color);
    look.high = PixelOf(settings.HighColor);
    look.ground = PixelOf(ground);
    look.gradient = static_cast<int>(settings.Gradient);
    return look;
}

static Box Joined(const Box& a, const Box& b) {
    if (a.width <= 0 || a.height <= 0) return b;
    const int left = std::min(a.left, b.left), top = std::min(a.top, b.top);
    return {left, top, std::max(a.left + a.width, b.left + b.width) - left,
            std::max(a.top + a.height, b.top + b.height) - top};
}

static void Fill(Pen* pen, const Box& box, uint32_t color) {
    if (box.width <= 0 || box.height <= 0) return;
    const AnalyzerPixels& into = *pen->into;
    const int x = box.left - pen->layout->panel.left, y = box.top - pen->layout->panel.top;
    const int left = std::max(x, 0), right = std::min(x + box.width, into.width);
    const int bottom = std::min(y + box.height, into.height);
    if (left >= right) return;
    for (int row = std::max(y, 0); row < bottom; ++row) {
        uint32_t* line = into.pixels + static_cast<size_t>(row) * into.width;
        std::fill(line + left, line + right, color);
    }
    pen->touched = Joined(pen->touched, box);
}

static uint32_t SegmentColor(const Pen& pen, int k) {
    return pen.look->gradient ? pen.look->segments[k] : pen.look->high;
}

// ---- ground

static void Outline(Pen* pen, const Box& box, uint32_t color) {
    const int right = box.left + box.width - 1, bottom = box.top + box.height - 1;
    Fill(pen, {box.left, box.top, box.width, 1}, color);
    Fill(pen, {box.left, bottom, box.width, 1}, color);
    Fill(pen, {box.left, box.top, 1, box.height}, color);
    Fill(pen, {right, box.top, 1, box.height}, color);
}

void DrawAnalyzerGround(const AnalyzerPixels& into, const AnalyzerLayout& layout,
                        const AnalyzerLook& look) {
    Pen pen = {&into, &layout, &look, {}};
    Fill(&pen, layout.panel, look.ground);
    for (int i = 0; i < layout.paneCount; ++i)
        Outline(&pen, layout.panes[i].frame, look.high);
}

// ---- frames

static void DrawColumn(Pen* pen, const Box& column, ColumnSegments now, unsigned changed) {
    for (int k = 0; changed >> k; ++k) {
        if (!(changed >> k & 1)) continue;
        const uint32_t color = SegmentColor(*pen, k);
        Fill(pen, SegmentBox(column, k), now.lit >> k & 1 ? color : kDark);
        if (now.marked >> k & 1) Fill(pen, SegmentMark(column, k), color);
    }
}

static void DrawColumns(Pen* pen, const AnalyzerFrame& frame, const AnalyzerFrame* before) {
    for (int channel = 0; channel < kAnalyzerChannels; ++channel)
        for (int i = 0; i < kBands; ++i) {
            const ColumnSegments now = frame.columns[channel][i];
            unsigned changed = (1u << kAnalyzerSegments) - 1;
            if (before) {
                const ColumnSegments then = before->columns[channel][i];
                changed = (now.lit ^ then.lit) | (now.marked ^ then.marked);
            }
            DrawColumn(pen, pen->layout->columns[channel][i], now, changed);
        }
}

static void DrawLevelSegments(Pen* pen, int side, ColumnSegments now) {
    const Box& level = pen->layout->level;
    for (int k = 0; k < kAnalyzerSegments; ++k) {
        const Box box = LevelSegment(level, side, k);
        Fill(pen, box, now.lit >> k & 1 ? SegmentColor(*pen, k) : kDark);
        if (!(now.marked >> k & 1)) continue;
        const int width = std::min(box.width, kPeakWidth);
        const int left = side ? box.left + box.width - width : box.left;
        Fill(pen, {left, box.top, width, box.height}, SegmentColor(*pen, k));
    }
}

static void DrawLevelBar(Pen* pen, int side, int length, int peak) {
    const Box& level = pen->layout->level;
    const int room = LevelRoom(level);
    Fill(pen, LevelStretch(level, side, 1, room), kDark);
    Fill(pen, LevelStretch(level, side, 1, length), pen->look->high);
    if (peak)
        Fill(pen, LevelStretch(level, side, std::max(peak - kPeakWidth, 1), peak), pen->look->high);
}

static int SameLevel(const AnalyzerFrame& a, const AnalyzerFrame& b, int side) {
    return a.level[side].lit == b.level[side].lit && a.level[side].marked == b.level[side].marked &&
           a.levelLength[side] == b.levelLength[side] && a.levelPeak[side] == b.levelPeak[side];
}

static void DrawLevel(Pen* pen, const AnalyzerFrame& frame, const AnalyzerFrame* before) {
    for (int side = 0; side < 2; ++side) {
        if (before && SameLevel(frame, *before, side)) continue;
        if (pen->look->gradient)
            DrawLevelSegments(pen, side, frame.level[side]);
        else
            DrawLevelBar(pen, side, frame.levelLength[side], frame.levelPeak[side]);
    }
    if (!before) Fill(pen, LevelMiddle(pen->layout->level), pen->look->high);
}

Box DrawAnalyzerFrame(const AnalyzerPixels& into, const AnalyzerLayout& layout,
                      const AnalyzerLook& look, const AnalyzerFrame& frame,
                      const AnalyzerFrame* before) {
    Pen pen = {&into, &layout, &look, {}};
    DrawColumns(&pen, frame, before);
    DrawLevel(&pen, frame, before);
    return pen.touched;
}
