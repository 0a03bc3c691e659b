// Boxes in rows, columns and grids. See geometry.h.
#include "ui/geometry.h"

#include <algorithm>
#include <cstdint>

// A stretch along one axis.
namespace {
struct Span {
    int start, length;
};
} // namespace

// Edge i of n equal parts: computed from the whole, so that rounding errors never add up.
static int PartEdge(int64_t length, int64_t part, int64_t whole) {
    return static_cast<int>(length * part / whole);
}

static int UsableGap(int length, int count, int gap) {
    if (gap < 0) return 0;
    return static_cast<int64_t>(gap) * (count - 1) < length ? gap : 0;
}

static Span EvenSpan(Span area, int count, int gap, int index) {
    const int between = UsableGap(area.length, count, gap);
    const int room = area.length - between * (count - 1);
    const int start = PartEdge(room, index, count);
    return {area.start + start + between * index, PartEdge(room, index + 1, count) - start};
}

Box InsetBox(Box area, int margin) {
    const int x = std::clamp(margin, 0, area.width / 2);
    const int y = std::clamp(margin, 0, area.height / 2);
    return {area.left + x, area.top + y, area.width - 2 * x, area.height - 2 * y};
}

static Box FromSpans(Span x, Span y) {
    return {x.start, y.start, x.length, y.length};
}
static Span Across(Box box) {
    return {box.left, std::max(box.width, 0)};
}
static Span Down(Box box) {
    return {box.top, std::max(box.height, 0)};
}

void SplitRow(Box area, int count, int gap, Box* boxes) {
    for (int i = 0; i < count; i++)
        boxes[i] = FromSpans(EvenSpan(Across(area), count, gap, i), Down(area));
}

void SplitColumn(Box area, int count, int gap, Box* boxes) {
    for (int i = 0; i < count; i++)
        boxes[i] = FromSpans(Across(area), EvenSpan(Down(area), count, gap, i));
}

static int64_t WeightSum(const int* weights, int count) {
    int64_t sum = 0;
    for (int i = 0; i < count; i++)
        sum += std::max(weights[i], 0);
    return sum;
}

static Span WeightedSpan(Span area, const int* weights, int count, int gap, int index) {
    const int64_t whole = WeightSum(weights, count);
    if (!whole) return EvenSpan(area, count, gap, index);
    const int between = UsableGap(area.length, count, gap);
    const int room = area.length - between * (count - 1);
    const int start = PartEdge(room, WeightSum(weights, index), whole);
    return {area.start + start + between * index,
            PartEdge(room, WeightSum(weights, index + 1), whole) - start};
}

void SplitRowBy(Box area, const int* weights, int count, int gap, Box* boxes) {
    for (int i = 0; i < count; i++)
        boxes[i] = FromSpans(WeightedSpan(Across(area), weights, count, gap, i), Down(area));
}

void SplitColumnBy(Box area, const int* weights, int count, int gap, Box* boxes) {
    for (int i = 0; i < count; i++)
        boxes[i] = FromSpans(Across(area), WeightedSpan(Down(area), weights, count, gap, i));
}

static Span JoinSpans(Span first, Span last) {
    return {first.start, last.start + last.length - first.start};
}

static int InGrid(int first, int span, int count) {
    return first >= 0 && span >= 1 && first < count && span <= count - first;
}

Box GridCell(const Grid& grid, int column, int row, int columnSpan, int rowSpan) {
    if (!InGrid(column, columnSpan, grid.columns) || !InGrid(row, rowSpan, grid.rows))
        return {grid.area.left, grid.area.top, 0, 0};
    const Span x = Across(grid.area), y = Down(grid.area);
    return FromSpans(JoinSpans(EvenSpan(x, grid.columns, grid.gap, column),
                               EvenSpan(x, grid.columns, grid.gap, column + columnSpan - 1)),
                     JoinSpans(EvenSpan(y, grid.rows, grid.gap, row),
                               EvenSpan(y, grid.rows, grid.gap, row + rowSpan - 1)));
}

Box TakeLeft(Box* area, int width, int gap) {
    const int taken = std::clamp(width, 0, area->width);
    const Box strip = {area->left, area->top, taken, area->height};
    const int gone = std::clamp(taken + std::max(gap, 0), 0, area->width);
    area->left += gone;
    area->width -= gone;
    return strip;
}
