// Strips are cut off areas, the rest is for the panes. See analyzer_layout.h.
#include "waves/analyzer_layout.h"

#include <algorithm>

static constexpr int kPanelAir = 2;  // the panel is that much larger than its group's content
static constexpr int kButtonGap = 3; // between buttons
static constexpr int kStripGap = 3;  // between strips of the display
static constexpr int kLowPanel = 24; // panel height below which every pixel is for the columns
static constexpr int kPairs = 5;     // buttons stand in pairs, the slider beside the last one
static constexpr int kMarkHeight = 2;
static constexpr int kLabelAir = 4; // between labels of the axis
static constexpr int kGapFrom = 20; // column heights from which segments are kept apart

const int kAnalyzerControlIds[kAnalyzerControls] = {
    kAnalyzerSides,    kAnalyzerCenter, kAnalyzerSplit,     kAnalyzerCombined, kAnalyzerTrails,
    kAnalyzerGradient, kAnalyzerSetUp,  kAnalyzerConfigure, kAnalyzerPower,    kAnalyzerGain,
    kAnalyzerStereo,   kAnalyzerFormat, kAnalyzerName};

// ---- strips

static Box TakeTop(Box* area, int height, int gap) {
    const int taken = std::clamp(height, 0, area->height);
    const Box strip = {area->left, area->top, area->width, taken};
    const int gone = std::min(taken + gap, area->height);
    area->top += gone;
    area->height -= gone;
    return strip;
}

static Box TakeBottom(Box* area, int height, int gap) {
    const int taken = std::clamp(height, 0, area->height);
    const Box strip = {area->left, area->top + area->height - taken, area->width, taken};
    area->height = std::max(area->height - taken - gap, 0);
    return strip;
}

static Box TakeRight(Box* area, int width, int gap) {
    const int taken = std::clamp(width, 0, area->width);
    const Box strip = {area->left + area->width - taken, area->top, taken, area->height};
    area->width = std::max(area->width - taken - gap, 0);
    return strip;
}

// A share of a length, within limits.
static int Share(int length, int part, int least, int most) {
    return std::clamp(length / part, least, most);
}

// ---- buttons

namespace {
// How the buttons stand: in `columns` columns at the right, or below the display.
struct Arrangement {
    int columns; // 2 or 5; 0: no buttons
    int right;
    int size; // width at the right, height below
};
} // namespace

static Arrangement ChooseArrangement(const Box& area) {
    const int width = area.width, height = area.height;
    if (width >= 300 && width * 10 >= height * 19 && height >= 84)
        return {2, 1, Share(width, 3, 124, 240)};
    if (width >= 520 && width >= height * 2 && height >= 36)
        return {5, 1, Share(width * 2, 5, 270, 420)};
    if (width >= 225 && height >= 100 && (width >= 260 || height < 250))
        return {5, 0, 2 * Share(height, 9, 16, 34) + kButtonGap};
    if (width >= 96 && height >= 180) return {2, 0, 5 * Share(height, 16, 14, 26) + 4 * kButtonGap};
    return {0, 0, 0};
}

static void PlaceButtons(AnalyzerLayout* layout, const Box& area, int columns) {
    const int across = columns == kPairs;
    const Grid grid = {area, columns, across ? 2 : kPairs, kButtonGap};
    for (int pair = 0; pair < kPairs; ++pair)
        for (int second = 0; second < 2; ++second)
            layout->controls[2 * pair + second] =
                across ? GridCell(grid, pair, second) : GridCell(grid, second, pair);
    layout->groups[1] = area;
}

// Cuts the buttons off the area.
static void TakeButtons(AnalyzerLayout* layout, Box* area) {
    const Arrangement chosen = ChooseArrangement(*area);
    if (!chosen.columns) return;
    const Box buttons = chosen.right ? TakeRight(area, chosen.size, kAnalyzerGroupGap)
                                     : TakeBottom(area, chosen.size, kAnalyzerGroupGap);
    PlaceButtons(layout, buttons, chosen.columns);
    layout->groups[0] = *area;
}

// ---- the display

// The two indicators at the ends, the name between them where it has room.
static void PlaceTexts(AnalyzerLayout* layout, const Box& strip) {
    static constexpr int kThree[] = {9, 14, 9}, kTwo[] = {4, 0, 6};
    Box boxes[3];
    SplitRowBy(strip, strip.width >= 330 ? kThree : kTwo, 3, kStripGap, boxes);
    layout->controls[kAnalyzerControls - 3] = boxes[0];
    layout->controls[kAnalyzerControls - 1] = boxes[1];
    layout->controls[kAnalyzerControls - 2] = boxes[2];
}

// Whole segments and columns of one size look crisp, so the plot gives up what would not divide.
static int WholeTenths(int length) {
    return length >= 3 * kAnalyzerSegments ? length - length % kAnalyzerSegments : length;
}

static void LayOutPane(AnalyzerPane* pane, Box area, int captioned) {
    const int line = std::min(area.height / 6, Share(area.width, 24, 10, 15));
    if (captioned && area.height >= 70) pane->caption = TakeTop(&area, line, 0);
    if (area.height >= 56) pane->axis = TakeBottom(&area, line, 1);
    const int pad = area.height >= 40 ? 3 : area.height >= 20 ? 2 : 1; // the outline and air
    const int width = std::max(area.width - 2 * pad, 0),
              height = std::max(area.height - 2 * pad, 0);
    pane->bandWidth = width / kBands;
    // The last column's gap lies on the pad.
    Box plot = {0, 0, std::max(pane->bandWidth * kBands - 1, 0), WholeTenths(height)};
    plot.left = area.left + (area.width - plot.width) / 2;
    plot.top = area.top + pad + (height - plot.height + 1) / 2;
    pane->plot = plot;
    pane->frame = {plot.left - pad, plot.top - pad, plot.width + 2 * pad, plot.height + 2 * pad};
    if (area.width < 2 || area.height < 2) pane->frame = {area.left, area.top, 0, 0};
    pane->axis.left = plot.left;
    pane->axis.width = plot.width;
}

// Within each band the channels that are shown stand side by side, each a pixel apart.
static void PlaceColumns(AnalyzerLayout* layout, const AnalyzerPane& pane, const int* channels,
                         int count) {
    const int share = pane.bandWidth / count;
    const int gap = share < 2 ? 0 : count == 1 && share >= 24 ? 2 : 1;
    for (int i = 0; i < kBands; ++i)
        for (int c = 0; c < count; ++c)
            layout->columns[channels[c]][i] = {pane.plot.left + i * pane.bandWidth + c * share,
                                               pane.plot.top, share - gap, pane.plot.height};
}

static void LayOutPanes(AnalyzerLayout* layout, const Box& area, const AnalyzerSettings& settings) {
    int channels[kAnalyzerChannels], count = 0;
    if (settings.LeftAndRight) channels[count++] = kAnalyzerLeft;
    if (settings.Center) channels[count++] = kAnalyzerMiddle;
    if (settings.LeftAndRight) channels[count++] = kAnalyzerRight;
    layout->paneCount = settings.Split ? count : 1;
    Box boxes[kAnalyzerChannels];
    if (area.width >= area.height)
        SplitRow(area, layout->paneCount, 2 * kStripGap, boxes);
    else
        SplitColumn(area, layout->paneCount, kStripGap, boxes);
    for (int i = 0; i < layout->paneCount; ++i) {
        layout->paneChannel[i] = channels[i];
        LayOutPane(&layout->panes[i], boxes[i], layout->paneCount > 1);
        if (settings.Split)
            PlaceColumns(layout, layout->panes[i], channels + i, 1);
        else
            PlaceColumns(layout, layout->panes[i], channels, count);
    }
}

// As wide as the panes together, less what would not divide into even segments.
static Box LevelBelow(const AnalyzerLayout& layout, Box strip) {
    const AnalyzerPane &first = layout.panes[0], &last = layout.panes[layout.paneCount - 1];
    const int left = first.frame.left, right = last.frame.left + last.frame.width;
    const int room = std::max((right - left - 1) / 2, 0);
    const int width = room ? 2 * WholeTenths(room) + 1 : 0;
    return {left + (right - left - width) / 2, strip.top, width, strip.height};
}

static void LayOutDisplay(AnalyzerLayout* layout, Box area, const AnalyzerSettings& settings) {
    const int tiny = !layout->groups[0].width;
    layout->panel = area;
    if (!tiny)
        layout->panel = {area.left - kPanelAir, area.top - kPanelAir, area.width + 2 * kPanelAir,
                         area.height + 2 * kPanelAir};
    area = InsetBox(layout->panel, tiny ? (area.height < kLowPanel ? 0 : 2) : 5);
    if (area.height >= 64 && area.width >= 90)
        PlaceTexts(layout, TakeTop(&area, Share(area.height, 8, 11, 18), kStripGap));
    Box strip = {};
    if (area.height >= 24) strip = TakeBottom(&area, Share(area.height, 11, 4, 16), kStripGap);
    LayOutPanes(layout, area, settings);
    if (strip.height) layout->level = LevelBelow(*layout, strip);
}

AnalyzerLayout LayOutAnalyzer(int width, int height, const AnalyzerSettings& settings) {
    AnalyzerLayout layout = {};
    const Box client = {0, 0, std::max(width, 0), std::max(height, 0)};
    Box area = InsetBox(client, kAnalyzerMargin);
    TakeButtons(&layout, &area);
    if (!layout.groups[0].width) area = InsetBox(client, kAnalyzerTinyMargin);
    LayOutDisplay(&layout, area, settings);
    return layout;
}

// ---- labels of the axis

int AxisStep(int bandWidth, int widest) {
    for (int step = 1; step <= kBands / 2; step *= 2)
        if (widest + kLabelAir <= step * bandWidth) return step;
    return 0;
}

int AxisFirst(int step) {
    return (step - 1) / 2;
}

// ---- inside a column and the level bar

static int Tenths(int length, int k) {
    return length * k / kAnalyzerSegments;
}

Box SegmentBox(const Box& column, int k) {
    const int gap = column.height >= kGapFrom, bottom = column.top + column.height;
    const int top = bottom - Tenths(column.height, k + 1) + gap;
    return {column.left, top, column.width, std::max(bottom - Tenths(column.height, k) - top, 0)};
}

Box SegmentMark(const Box& column, int k) {
    Box mark = SegmentBox(column, k);
    mark.height = std::min(mark.height, kMarkHeight);
    return mark;
}

int LevelRoom(const Box& level) {
    return std::max((level.width - 1) / 2, 0);
}

Box LevelMiddle(const Box& level) {
    return {level.left + LevelRoom(level), level.top, std::min(level.width, 1), level.height};
}

Box LevelStretch(const Box& level, int side, int from, int to) {
    const int room = LevelRoom(level), middle = level.left + room;
    from = std::clamp(from, 0, room);
    to = std::clamp(to, from, room);
    return {side ? middle + 1 + from : middle - to, level.top, to - from, level.height};
}

Box LevelSegment(const Box& level, int side, int k) {
    const int room = LevelRoom(level), gap = room >= kGapFrom;
    return LevelStretch(level, side, Tenths(room, k) + gap, Tenths(room, k + 1));
}
