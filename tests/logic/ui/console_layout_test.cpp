// Geometry of the console: nothing overlaps, nothing leaves the client, labels have room.
#include "ui/console_layout.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

constexpr int kFrame = 8; // client = window - frame, on a classic desktop

struct Size {
    int width, height;
};
static constexpr Size kBuiltIn[] = {{616, 110}, {662, 101}, {653, 117},
                                    {742, 114}, {220, 100}, {500, 200}};
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

// A text as wide as a bold label of that height.
static int Measure(const char* text, int fontHeight, void*) {
    return static_cast<int>(std::strlen(text)) * fontHeight * 6 / 10;
}

TEST(ConsoleLayout, LabelsFitAndStayReadableAtTheBuiltInSizes) {
    for (const Size size : kBuiltIn) {
        SCOPED_TRACE(testing::Message() << size.width << "x" << size.height);
        const int width = size.width - kFrame, height = size.height - kFrame;
        const ConsoleLayout l = LayOutConsole(width, height, 9, 3, 12);
        EXPECT_TRUE(l.strip.left == kConsoleMargin && l.strip.top == kConsoleMargin &&
                    l.group.top + l.group.height == height - kConsoleMargin &&
                    l.volume.left + l.volume.width == width - kConsoleMargin)
            << "even margins";
        std::vector<ConsoleLabel> labels;
        for (int i = 0; i < 9; ++i)
            labels.push_back(
                {"Spectrum Analyzer", "Spec", l.buttons[i].width, l.buttons[i].height, 0});
        labels.push_back({"Minimize", "Min", l.minimize.width, l.minimize.height, 0});
        labels.push_back({"Waves Engine", "Waves", l.lamps[1].width, l.lamps[1].height, 0});
        const int font = FitConsoleLabels(labels.data(), static_cast<int>(labels.size()),
                                          l.reference.width / 10, Measure, nullptr);
        EXPECT_GE(font, 10);
        for (const ConsoleLabel& label : labels) {
            const char* text = label.useShort ? label.shortText : label.longText;
            EXPECT_LE(Measure(text, font, nullptr), label.width) << text;
            EXPECT_LE(font, label.height) << text;
        }
    }
}
