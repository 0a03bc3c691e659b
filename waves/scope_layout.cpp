// Geometry of the oscilloscope window. See scope_layout.h.
#include "waves/scope_layout.h"

#include <algorithm>

static constexpr int kMargin = 7;      // pixels round everything
static constexpr int kTightMargin = 3; // where the window is too small for edges round groups
static constexpr int kGap = 3;         // between neighbours
static constexpr int kGroupGap = 8;    // room for the edges of both groups
static constexpr int kMinDisplay = 36; // lower than that, buttons give way
static constexpr int kMinSlider = 30;  // a shorter slider can't be aimed with
static constexpr int kMinCell = 56;    // width of a button whose label can be read
static constexpr int kMinRow = 14;     // its height
static constexpr int kMaxRow = 30;
static constexpr int kSideCells = 4; // columns of buttons beside a low display
static constexpr int kButtonEdge = 2;
static constexpr int kTextAir = 2;   // between text and edge at either side
static constexpr int kPaneInset = 2; // from pane to outline, and from there to what it holds
static constexpr int kLegendAir = 3; // at either side of a legend

const int kScopeControlIds[kScopeControls] = {kScopeMode,     kScopeFormat,   kScopeForceMono,
                                              kScopeVertical, kScopeGradient, kScopeLegends,
                                              kScopeSettings, kScopePower,    kScopeGain};
static constexpr int kIndicators = 2, kCells = 8, kGainIndex = 8;

int ScopeControlIndex(int id) {
    const int* end = kScopeControlIds + kScopeControls;
    const int* at = std::find(kScopeControlIds, end, id);
    return at == end ? -1 : static_cast<int>(at - kScopeControlIds);
}

// ---- the window

// Indicators in the first column, buttons in the others; with two columns, in the first row.
static void PlaceCells(ScopeLayout* layout, const Box& area, int columns, int rows) {
    const Grid grid = {area, columns, rows, kGap};
    for (int i = 0; i < kCells; ++i) {
        int column = i % columns, row = i / columns;
        if (columns == 4) { // stereo over its format, the toggles in a square beside them
            static constexpr int kPlaces[kCells][2] = {{0, 0}, {0, 1}, {1, 0}, {2, 0},
                                                       {1, 1}, {2, 1}, {3, 0}, {3, 1}};
            column = kPlaces[i][0];
            row = kPlaces[i][1];
        }
        layout->boxes[i] = GridCell(grid, column, row);
    }
    if (columns == 4)
        layout->panel = GridCell(grid, 0, 0, 1, 2);
    else
        layout->panel = GridCell(grid, 0, 0, 2, 1);
    layout->groups[kScopeButtonGroup] = area;
}

// Display and slider.
static void PlaceDisplay(ScopeLayout* layout, Box area, int edges) {
    if (edges) layout->groups[kScopeDisplayGroup] = area;
    if (area.height >= kMinSlider && area.width >= 3 * kMinSlider) {
        const int bar = std::clamp(area.width / 24, 12, 20);
        layout->boxes[kGainIndex] = {area.left + area.width - bar, area.top, bar, area.height};
        area.width -= bar + kGap;
    }
    layout->display = area;
}

static int RowHeight(int height) {
    return std::clamp(height / 7, kMinRow, kMaxRow);
}

// Below the display, in the fewest rows that the width allows; 0 when they don't fit.
static int PlaceBelow(ScopeLayout* layout, const Box& area) {
    for (int columns = kCells; columns >= 2; columns /= 2) {
        const int rows = kCells / columns;
        if (area.width < columns * kMinCell + (columns - 1) * kGap) continue;
        const int height = rows * RowHeight(area.height) + (rows - 1) * kGap;
        const int display = area.height - height - kGroupGap;
        if (display < kMinDisplay) return 0;
        PlaceDisplay(layout, {area.left, area.top, area.width, display}, 1);
        PlaceCells(layout, {area.left, area.top + area.height - height, area.width, height},
                   columns, rows);
        return 1;
    }
    return 0;
}

// Beside a low display.
static int PlaceBeside(ScopeLayout* layout, const Box& area) {
    constexpr int kRows = kCells / kSideCells;
    const int least = kSideCells * kMinCell + (kSideCells - 1) * kGap;
    if (area.height < kRows * kMinRow + kGap || area.width < 2 * least) return 0;
    const int width = std::max(least, area.width * 2 / 5);
    const int display = area.width - width - kGroupGap;
    PlaceDisplay(layout, {area.left, area.top, display, area.height}, 1);
    PlaceCells(layout, {area.left + area.width - width, area.top, width, area.height}, kSideCells,
               kRows);
    return 1;
}

ScopeLayout LayOutScope(int width, int height) {
    ScopeLayout layout = {};
    const Box client = {0, 0, std::max(width, 0), std::max(height, 0)};
    const Box area = InsetBox(client, kMargin);
    if (PlaceBelow(&layout, area) || PlaceBeside(&layout, area)) return layout;
    const int roomy = area.height >= kMinSlider && area.width >= kMinCell;
    PlaceDisplay(&layout, roomy ? area : InsetBox(client, kTightMargin), roomy);
    return layout;
}

// ---- letters

static int FontSize(const ScopeLayout& layout, const ScopeTextWidths& widths, int large, int from,
                    int to, int edge) {
    int size = kMaxRow;
    for (int i = from; i < to; ++i) {
        const Box& box = layout.boxes[i];
        size = std::min(size, box.height - (large ? edge : 3 * edge));
        if (widths.width[i])
            size = std::min(size, (box.width - 2 * (edge + kTextAir)) * 1000 / widths.width[i]);
    }
    // Small letters keep their size; larger ones leave air round them unless asked not to.
    constexpr int kSmall = 14;
    if (!large) size = std::min(size, std::max(kSmall, size * 4 / 5));
    return std::max(size, kScopeMinLetter);
}

void ScopeFontSizes(const ScopeLayout& layout, const ScopeTextWidths& widths, int large,
                    int* buttons, int* indicators) {
    *buttons = FontSize(layout, widths, large, kIndicators, kCells, kButtonEdge);
    *indicators = std::min(FontSize(layout, widths, large, 0, kIndicators, 0), *buttons);
}

int ScopeLegendHeight(const Box& display, int panes, int vertical) {
    const int rows = panes == 2 && vertical ? 2 : 1;
    const int inside = display.height / rows - 4 * kPaneInset;
    return std::clamp(std::min(inside, 8 + inside / 24), kScopeMinLetter, 18);
}

// ---- panes

// One pane: the outline 2 pixels inside it, what it holds 2 pixels inside that.
static ScopePane PaneIn(const Box& area, int legendWidth) {
    ScopePane pane = {};
    pane.frame = InsetBox(area, kPaneInset);
    pane.trace = InsetBox(pane.frame, kPaneInset);
    pane.divider = -1;
    const int width = legendWidth + 2 * kLegendAir;
    if (!legendWidth || pane.trace.width < 2 * width) return pane; // no room for both
    pane.legend = {pane.trace.left, pane.trace.top, width, pane.trace.height};
    pane.divider = pane.trace.left + width;
    TakeLeft(&pane.trace, width, 1);
    return pane;
}

void LayOutPanes(const Box& display, int panes, int vertical, int legendWidth, ScopePane* out) {
    if (panes == 1) {
        out[0] = PaneIn(display, legendWidth);
        return;
    }
    // The second one begins one pixel after the middle.
    Box first = display, second = display;
    int& start = vertical ? second.top : second.left;
    int& length = vertical ? second.height : second.width;
    const int half = length / 2, skipped = std::min(half + 1, length);
    (vertical ? first.height : first.width) = half;
    start += skipped;
    length -= skipped;
    out[0] = PaneIn(first, legendWidth);
    out[1] = PaneIn(second, legendWidth);
}
