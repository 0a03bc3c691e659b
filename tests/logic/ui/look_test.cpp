// Layout boxes, label sizes and colours.
#include "ui/geometry.h"
#include "ui/look.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

// Boxes of a row meet at exactly `used`, start and end with the area, and differ by a pixel at
// most.
static void ExpectEvenRow(Box area, int count, int gap, int used) {
    std::vector<Box> boxes(static_cast<size_t>(count));
    SplitRow(area, count, gap, boxes.data());
    int next = area.left, least = boxes[0].width, most = boxes[0].width;
    for (const Box& box : boxes) {
        EXPECT_EQ(box.left, next);
        next = box.left + box.width + used;
        least = std::min(least, box.width);
        most = std::max(most, box.width);
    }
    EXPECT_EQ(next - used, area.left + area.width) << area.width << "/" << count;
    EXPECT_LE(most - least, 1) << area.width << "/" << count;
    EXPECT_GE(least, 0);
}

TEST(Geometry, RowsHaveEvenGapsAndNoRest) {
    for (int width : {100, 101, 103, 397, 1280})
        for (int count : {1, 2, 3, 5, 7, 20})
            ExpectEvenRow({7, 9, width, 31}, count, 2, 2);
    ExpectEvenRow({0, 0, 5, 5}, 9, 10, 0); // gaps that would fill the area shrink
}

TEST(Look, LabelHeights) {
    const struct {
        int width, height, plain, large;
    } rows[] = {{100, 30, 10, 15}, {400, 30, 28, 42}, {19, 30, 2, 3}, {300, 30, 30, 45},
                {70, 30, 6, 9},    {400, 2, 1, 2},    {0, 0, 1, 2},   {-90, 30, 2, 3}};
    for (const auto& row : rows) {
        EXPECT_EQ(LabelFontHeight(row.width, row.height, 0), row.plain) << row.width;
        EXPECT_EQ(LabelFontHeight(row.width, row.height, 1), row.large) << row.width;
    }
}
