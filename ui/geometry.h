// Laying out rows, columns and grids of boxes: whole pixels, even gaps, and the rounding spread so
// that neighbours meet exactly and the last box ends where the area ends.
#pragma once

struct Box {
    int left, top, width, height; // pixels; width and height are never negative
};

// The area without `margin` pixels on every side; collapses to nothing in the middle when too
// small.
Box InsetBox(Box area, int margin);

// Cuts `count` boxes with `gap` pixels between them. Where the gaps alone would fill the area they
// shrink to nothing. count below 1 writes nothing.
void SplitRow(Box area, int count, int gap, Box* boxes);
void SplitColumn(Box area, int count, int gap, Box* boxes);

// The same with shares in proportion to `weights` (negative ones count as 0; all 0 as equal).
void SplitRowBy(Box area, const int* weights, int count, int gap, Box* boxes);
void SplitColumnBy(Box area, const int* weights, int count, int gap, Box* boxes);

// The cell (column, row) of a grid, `columnSpan` by `rowSpan` cells large. Cells outside the grid
// give an empty box.
struct Grid {
    Box area;
    int columns, rows;
    int gap;
};
Box GridCell(const Grid& grid, int column, int row, int columnSpan = 1, int rowSpan = 1);

// Takes a strip off the left side of *area, followed by `gap` pixels; what the area lacks, the
// strip lacks.
Box TakeLeft(Box* area, int width, int gap);
