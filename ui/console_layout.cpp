// Geometry of the console. See console_layout.h.
#include "ui/console_layout.h"

#include <algorithm>

constexpr int kMaxRows = 4;
constexpr int kWantedRatio = 35;   // width of a button over its height, in tenths
constexpr int kMaxHeightShare = 2; // a button is at most 1/2 as high as wide
constexpr int kStripInset = 4;     // between the strip's edge and what it shows
constexpr int kDotGap = 3;         // between a lamp and its label
constexpr int kTextPad = 6;        // pixels a label needs beside and above itself

// What every box is derived from.
struct Panel {
    int gap;     // between groups
    int pad;     // between a group's edge and its buttons
    int spacing; // between buttons
    int areaWidth, contentHeight;
    int rows, columns, systemColumns;
    int cellWidth, rowHeight;
    int stripText; // height of the text that the strip should have room for
    int stripHeight;
};

static int AtLeast0(int value) {
    return std::max(value, 0);
}

static int ButtonsHeight(const Panel& g) {
    return g.rows * g.rowHeight + (g.rows - 1) * g.spacing;
}

// Cell sizes for a number of rows.
static void SizeCells(Panel* g, int buttons, int rows) {
    g->rows = rows;
    g->columns = (buttons + rows - 1) / rows;
    if (g->columns) rows = g->rows = (buttons + g->columns - 1) / g->columns; // no empty rows
    g->systemColumns = rows >= 2 ? 1 : 2;
    const int groups = g->columns ? 2 : 1;
    const int cells = g->columns + g->systemColumns;
    const int spaces = (cells - groups) * g->spacing + groups * 2 * g->pad + (groups - 1) * g->gap;
    g->cellWidth = AtLeast0(g->areaWidth - spaces) / cells;
    const int share = rows == 1 ? g->contentHeight * 3 / 10 : g->contentHeight / 4;
    const int text = std::min(g->stripText + 2 + 2 * kStripInset, g->contentHeight * 2 / 5);
    const int wantedStrip = std::max(std::clamp(share, 14, 40), text);
    const int below = g->contentHeight - wantedStrip - g->gap - 2 * g->pad;
    g->rowHeight = AtLeast0((below - (rows - 1) * g->spacing) / rows);
    g->rowHeight = std::min(g->rowHeight, std::max(g->cellWidth / kMaxHeightShare, 16));
    g->stripHeight = AtLeast0(g->contentHeight - g->gap - 2 * g->pad - ButtonsHeight(*g));
}

// How far a cell is from a comfortable shape; 1000 is the best.
static int Badness(const Panel& g) {
    if (g.cellWidth < 1 || g.rowHeight < 1) return 1 << 20;
    const int ratio = std::max(g.cellWidth * 10 / g.rowHeight, 1);
    return ratio > kWantedRatio ? ratio * 1000 / kWantedRatio : kWantedRatio * 1000 / ratio;
}

static Panel ChoosePanel(int areaWidth, int contentHeight, int buttons, int stripText, int tight) {
    Panel best = {};
    for (int rows = 1; rows <= std::clamp(buttons, 1, kMaxRows); ++rows) {
        Panel g = {};
        g.gap = tight ? 4 : kConsoleMargin;
        g.pad = tight ? 2 : 4;
        g.spacing = tight ? 2 : 4;
        g.areaWidth = areaWidth;
        g.contentHeight = contentHeight;
        g.stripText = stripText;
        SizeCells(&g, buttons, rows);
        if (rows == 1 || Badness(g) < Badness(best)) best = g;
    }
    return best;
}

static Box StripInside(const ConsoleLayout& layout) {
    return InsetBox(layout.strip, layout.strip.height < 24 ? 2 : kStripInset);
}

static int DotSize(const Box& inner) {
    return std::clamp(inner.height / 2, 0, 11);
}

// Name to the left, lamps to the right, each a round dot and its label, in even shares until the
// labels' widths are known.
static void LayOutStrip(ConsoleLayout* layout, int lamps) {
    const Box inner = StripInside(*layout);
    const int wanted = layout->reference.width * 8 / 10;
    const int brandLeft = inner.width - lamps * wanted;
    const int showBrand = brandLeft >= layout->reference.width / 2;
    if (showBrand)
        layout->brand = {inner.left, inner.top, std::min(brandLeft, wanted), inner.height};
    const int lampWidth = lamps ? (showBrand ? wanted : inner.width / lamps) : 0;
    const int dot = DotSize(inner);
    for (int i = 0; i < lamps; ++i) {
        const int left = inner.left + inner.width - (lamps - i) * lampWidth;
        const int used = std::min(dot + kDotGap, lampWidth);
        if (lampWidth >= dot + kDotGap)
            layout->lampDots[i] = {left, inner.top + (inner.height - dot) / 2, dot, dot};
        layout->lamps[i] = {left + used, inner.top, lampWidth - used, inner.height};
    }
}

void TightenStrip(ConsoleLayout* layout, int brandWidth, const int* labelWidths, int lamps) {
    lamps = std::clamp(lamps, 0, kMaxComponents);
    const Box inner = StripInside(*layout);
    layout->brand.width = std::min(layout->brand.width, brandWidth + kTextPad);
    int used = layout->brand.width;
    for (int i = 0; i < lamps; ++i)
        used += std::clamp(labelWidths[i] + kTextPad, 0, layout->lamps[i].width) +
                layout->lampDots[i].width + kDotGap;
    const int spare = std::clamp((inner.width - used) / std::max(lamps, 1), 0, 2 * kConsoleMargin);
    int right = inner.left + inner.width;
    for (int i = lamps - 1; i >= 0; --i) {
        Box& label = layout->lamps[i];
        Box& dot = layout->lampDots[i];
        const int width = std::clamp(labelWidths[i] + kTextPad, 0, label.width);
        label.left = right - width;
        label.width = width;
        dot.left = label.left - (dot.width ? dot.width + kDotGap : 0);
        right = dot.left - spare;
    }
}

ConsoleLayout LayOutConsole(int width, int height, int buttons, int lamps, int stripText) {
    ConsoleLayout layout = {};
    buttons = std::clamp(buttons, 0, kMaxComponents);
    lamps = std::clamp(lamps, 0, kMaxComponents);
    const int contentWidth = width - 2 * kConsoleMargin;
    const int contentHeight = height - 2 * kConsoleMargin;
    if (contentWidth <= 0 || contentHeight <= 0) {
        layout.reference = {0, 0, kMinReference, 0};
        return layout;
    }
    const int tight = width < 300 || height < 80;
    const int bar = std::min(std::clamp(width / 30, 12, 22), contentWidth);
    layout.volume = {width - kConsoleMargin - bar, kConsoleMargin, bar, contentHeight};
    const Panel g = ChoosePanel(AtLeast0(contentWidth - bar - (tight ? 4 : kConsoleMargin)),
                                contentHeight, buttons, stripText, tight);
    layout.reference = {0, 0, std::clamp(g.cellWidth, kMinReference, kMaxReference), g.rowHeight};

    layout.strip = {kConsoleMargin, kConsoleMargin, g.areaWidth, g.stripHeight};
    const int top = kConsoleMargin + g.stripHeight + g.gap;
    const int groupHeight = AtLeast0(height - kConsoleMargin - top);
    const int systemWidth = std::min(
        g.systemColumns * g.cellWidth + (g.systemColumns - 1) * g.spacing + 2 * g.pad, g.areaWidth);
    const int right = kConsoleMargin + g.areaWidth;
    layout.systemGroup = {right - systemWidth, top, systemWidth, groupHeight};
    layout.group = {kConsoleMargin, top, AtLeast0(g.areaWidth - systemWidth - g.gap), groupHeight};
    if (!g.columns) {
        layout.group = {};
        layout.systemGroup.left = kConsoleMargin;
        layout.systemGroup.width = g.areaWidth;
    }
    const Grid inner = {InsetBox(layout.group, g.pad), g.columns, g.rows, g.spacing};
    for (int i = 0; i < buttons; ++i)
        layout.buttons[i] = GridCell(inner, i % g.columns, i / g.columns);
    const int systemRows = g.systemColumns == 2 ? 1 : 2;
    const Grid system = {InsetBox(layout.systemGroup, g.pad), g.systemColumns, systemRows,
                         g.spacing};
    layout.minimize = GridCell(system, 0, 0);
    layout.close = GridCell(system, g.systemColumns - 1, systemRows - 1);
    LayOutStrip(&layout, lamps);
    return layout;
}

static int Fits(const char* text, const ConsoleLabel& label, int fontHeight, MeasureText measure,
                void* context) {
    return fontHeight + 2 <= label.height &&
           measure(text, fontHeight, context) + kTextPad <= label.width;
}

int FitConsoleLabels(ConsoleLabel* labels, int count, int fontHeight, MeasureText measure,
                     void* context) {
    int size = std::max(fontHeight, 1);
    for (;; --size) {
        int clipped = 0;
        for (int i = 0; i < count; ++i) {
            labels[i].useShort = !Fits(labels[i].longText, labels[i], size, measure, context);
            if (labels[i].useShort)
                clipped += !Fits(labels[i].shortText, labels[i], size, measure, context);
        }
        if (!clipped || size <= kMinFont) return size;
    }
}
