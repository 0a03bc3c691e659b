// Geometry of the console: nothing overlaps, nothing leaves the client; and the stretching of the
// group that would go too far.
#include "ui/console_group.h"
#include "ui/console_layout.h"

#include <gtest/gtest.h>

#include <vector>

struct Size {
    int width, height;
};
struct Counts {
    int buttons, lamps;
};
static constexpr Counts kCounts[] = {{1, 1}, {0, 0}, {9, 3}, {16, 16}};

static bool Empty(const Box& b) {
    return b.width <= 0 || b.height <= 0;
}

static bool Meet(const Box& a, const Box& b) {
    return !Empty(a) && !Empty(b) && a.left < b.left + b.width && b.left < a.left + a.width &&
           a.top < b.top + b.height && b.top < a.top + a.height;
}

static bool Inside(const Box& outer, const Box& b) {
    return Empty(b) || (b.left >= outer.left && b.top >= outer.top &&
                        b.left + b.width <= outer.left + outer.width &&
                        b.top + b.height <= outer.top + outer.height);
}

static void ExpectSound(const ConsoleLayout& l, Size client, Counts counts) {
    const Box whole = {0, 0, client.width, client.height};
    std::vector<Box> boxes = {l.brand, l.minimize, l.close, l.volume};
    boxes.insert(boxes.end(), l.buttons, l.buttons + counts.buttons);
    boxes.insert(boxes.end(), l.lamps, l.lamps + counts.lamps);
    boxes.insert(boxes.end(), l.lampDots, l.lampDots + counts.lamps);
    for (size_t i = 0; i < boxes.size(); ++i) {
        EXPECT_TRUE(boxes[i].width >= 0 && boxes[i].height >= 0);
        EXPECT_TRUE(Inside(whole, boxes[i])) << "box " << i;
        for (size_t k = 0; k < i; ++k)
            EXPECT_FALSE(Meet(boxes[i], boxes[k])) << "boxes " << i << " and " << k;
    }
}

// Every size from nothing to large, every number of controls: also the sizes that a hand drags to.
TEST(ConsoleLayout, NothingOverlapsOrLeavesTheClientAtAnySize) {
    for (const Counts counts : kCounts)
        for (int width = 0; width <= 800; width += 17)
            for (int height = 0; height <= 420; height += 7) {
                SCOPED_TRACE(testing::Message() << width << "x" << height << " buttons "
                                                << counts.buttons << " lamps " << counts.lamps);
                ConsoleLayout l =
                    LayOutConsole(width, height, counts.buttons, counts.lamps, height % 40);
                ExpectSound(l, {width, height}, counts);
                const int widths[kMaxComponents] = {40, 90, 7, 300, 0, 12};
                TightenStrip(&l, 70, widths, counts.lamps);
                ExpectSound(l, {width, height}, counts);
                if (HasFailure()) return;
            }
}

// A window wholly right of the reference can't reach its right edge.
TEST(WindowGroup, StretchingLeavesAWindowThatWouldVanish) {
    const Edges beside = {600, 200, 700, 260};
    const Edges after = StretchEdges(beside, {40, 50, 500, 240}, kRightSide, 20, 20);
    EXPECT_TRUE(after.left == 600 && after.right == 700);
}
