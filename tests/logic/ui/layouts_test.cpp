// The built-in layouts, and the boxes of the window in which they are chosen.
#include "tests/support/boxes.h"
#include "ui/layouts.h"

#include <gtest/gtest.h>

// What makes the first start look well: the open windows of a layout lie clear of each other on the
// screen that it is for.
TEST(Layouts, BuiltInWindowsAreOnTheirScreenAndDoNotOverlap) {
    constexpr struct {
        int width, height;
    } kScreens[kLayoutCount] = {{640, 480}, {640, 480},  {800, 600},
                                {800, 600}, {1024, 768}, {1024, 768}};
    for (int layout = 0; layout < kLayoutCount; ++layout) {
        std::vector<Box> open;
        for (int place = 0; place < kLayoutWindows; ++place) {
            const LayoutEntry e = BuiltInLayoutEntry(layout, place);
            if (e.Open) open.push_back({e.X, e.Y, e.Width, e.Height});
            EXPECT_TRUE(e.Open || kLayoutWindowIds[place] != kConsoleWindowId);
        }
        EXPECT_TRUE(Tidy(open, {0, 0, kScreens[layout].width, kScreens[layout].height}, 0))
            << "layout " << layout;
    }
}

TEST(Layouts, TheScreensWidthChooses) {
    constexpr struct {
        int pixels, layout;
    } kCases[] = {{0, 0}, {640, 0}, {799, 0}, {800, 2}, {1023, 2}, {1024, 4}, {1280, 4}, {3840, 4}};
    for (const auto& c : kCases)
        EXPECT_EQ(LayoutOfScreenWidth(c.pixels), c.layout) << c.pixels;
}

TEST(Layouts, TheWindowStaysTidyAtAnySize) {
    for (int width = 0; width <= 700; width += 13)
        for (int height = 0; height <= 700; height += 19) {
            const LayoutsWindowBoxes boxes = LayOutLayoutsWindow(width, height);
            std::vector<Box> all(boxes.buttons, boxes.buttons + kLayoutsButtons);
            all.push_back(boxes.brand);
            all.push_back(boxes.picture);
            ASSERT_TRUE(Tidy(all, {0, 0, width, height}, 0)) << width << " x " << height;
        }
    const LayoutsWindowBoxes usual = LayOutLayoutsWindow(392, 392);
    for (const Box& button : usual.buttons) { // equal, but for the rounding's pixel
        EXPECT_EQ(button.left, 7);
        EXPECT_EQ(button.width, usual.buttons[0].width);
        EXPECT_NEAR(button.height, usual.buttons[0].height, 1);
    }
    EXPECT_EQ(LayOutLayoutsWindow(104, 300).brand.width, 0) << "too narrow for both";
}

TEST(Layouts, ThePictureKeepsProportionsAndTakesAnyStoredNumbers) {
    const Box area = {150, 50, 200, 400}, screen = SmallScreen(area, 1024, 768);
    EXPECT_TRUE(screen.left == 150 && screen.width == 200 && screen.height == 150);
    const Box low = SmallScreen({0, 0, 200, 75}, 1024, 768);
    EXPECT_TRUE(low.width == 100 && low.height == 75);
    const Box half = SmallWindow(screen, 1024, 768, {512, 384, 512, 384, 1});
    EXPECT_TRUE(half.left == 250 && half.top == 125 && half.width == 100 && half.height == 75);
    const int32_t kNumbers[] = {INT32_MIN, -300, 0, 1, 700, 5000, INT32_MAX};
    for (const int32_t at : kNumbers)
        for (const int32_t size : kNumbers)
            EXPECT_TRUE(Inside(SmallWindow(screen, 1024, 768, {at, size, size, at, 1}), screen))
                << at << " " << size;
}
