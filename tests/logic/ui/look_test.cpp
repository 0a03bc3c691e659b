// Layout boxes, label sizes and colours.
#include "ui/geometry.h"
#include "ui/look.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

// Boxes of a row meet at exactly `gap`, start and end with the area, and differ by a pixel at most.
static void ExpectEvenRow(Box area, int count, int gap) {
    std::vector<Box> boxes(static_cast<size_t>(count));
    SplitRow(area, count, gap, boxes.data());
    EXPECT_EQ(boxes.front().left, area.left);
    EXPECT_EQ(boxes.back().left + boxes.back().width, area.left + area.width);
    int least = boxes[0].width, most = boxes[0].width;
    for (size_t i = 0; i < boxes.size(); i++) {
        if (i) {
            EXPECT_EQ(boxes[i].left, boxes[i - 1].left + boxes[i - 1].width + gap);
        }
        EXPECT_EQ(boxes[i].top, area.top);
        EXPECT_EQ(boxes[i].height, area.height);
        least = std::min(least, boxes[i].width);
        most = std::max(most, boxes[i].width);
    }
    EXPECT_LE(most - least, 1) << area.width << "/" << count;
}

TEST(Geometry, RowsHaveEvenGapsAndNoRest) {
    for (int width : {100, 101, 103, 397, 1280})
        for (int count : {1, 2, 3, 5, 7, 20})
            ExpectEvenRow({7, 9, width, 31}, count, 2);
}

TEST(Geometry, WeightsShareAndDegenerateOnesAreEven) {
    const int weights[] = {1, 0, 3}, nothing[] = {0, -5, 0};
    Box boxes[3];
    SplitRowBy({10, 0, 104, 20}, weights, 3, 2, boxes);
    EXPECT_EQ(boxes[0].width, 25);
    EXPECT_EQ(boxes[1].width, 0);
    EXPECT_EQ(boxes[2].left, 10 + 25 + 2 + 2);
    EXPECT_EQ(boxes[2].width, 75);
    SplitColumnBy({0, 0, 20, 94}, nothing, 3, 2, boxes);
    EXPECT_EQ(boxes[0].height, 30);
    EXPECT_EQ(boxes[2].top, 64);
}

TEST(Geometry, GridCellsSpanWholeColumnsAndRows) {
    const Grid grid = {{7, 7, 203, 102}, 4, 5, 1};
    const Box wide = GridCell(grid, 1, 2, 3, 1), last = GridCell(grid, 3, 4);
    EXPECT_EQ(wide.left, GridCell(grid, 1, 0).left);
    EXPECT_EQ(wide.left + wide.width, 7 + 203);
    EXPECT_EQ(wide.height, GridCell(grid, 0, 2).height);
    EXPECT_EQ(last.top + last.height, 7 + 102);
    EXPECT_EQ(GridCell(grid, 3, 0, 2, 1).width, 0) << "beyond the grid";
    EXPECT_EQ(GridCell({{0, 0, 10, 10}, 0, 0, 0}, 0, 0).width, 0);
}

TEST(Geometry, NothingIsEverNegative) {
    Box boxes[9];
    SplitRow({0, 0, 5, 5}, 9, 10, boxes);
    for (const Box& box : boxes)
        EXPECT_GE(box.width, 0);
    EXPECT_EQ(boxes[8].left + boxes[8].width, 5);
    EXPECT_EQ(InsetBox({0, 0, 9, 4}, 7).width, 1);
    EXPECT_EQ(InsetBox({0, 0, 9, 4}, 7).height, 0);
}

TEST(Look, LabelHeights) {
    struct Case {
        int width, height, plain, large;
    };
    const Case cases[] = {{100, 30, 10, 15}, {400, 30, 28, 42}, {19, 30, 2, 3}, {300, 30, 30, 45},
                          {70, 30, 6, 9},    {400, 2, 1, 2},    {400, 0, 1, 2}, {0, 0, 1, 2},
                          {-90, 30, 2, 3},   {60, 5, 3, 5}};
    for (const auto& c : cases) {
        EXPECT_EQ(LabelFontHeight(c.width, c.height, 0), c.plain) << c.width << "x" << c.height;
        EXPECT_EQ(LabelFontHeight(c.width, c.height, 1), c.large) << c.width << "x" << c.height;
    }
}

TEST(Look, ColorsDependOnTheDepth) {
    const ColorSet few = DefaultColors(8), many = DefaultColors(24);
    EXPECT_EQ(few.IndtrDrkClr, 0x00FF00u);
    EXPECT_EQ(few.BtnLtClr, 0x00FF00u);
    EXPECT_EQ(many.IndtrDrkClr, 0xFF8000u);
    EXPECT_EQ(many.BtnLtClr, 0x800000u);
    EXPECT_EQ(many.CmpntBkClr, 0x404040u);
    EXPECT_EQ(DefaultColors(16).IndtrDrkClr, 0xFF8000u);
}
