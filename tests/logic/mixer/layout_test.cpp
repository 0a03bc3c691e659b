// The mixer window's decisions: at every size and with any number of sources nothing lies over
// anything else and names can be read; names are cut where they must be.
#include "mixer/mixer_layout.h"
#include "mixer/mixer_show.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// In thousandths of the cell height, about as a bold Arial has them.
static MixerTextWidths Widths(int nameWidth) {
    MixerTextWidths widths = {
        {3400, 3000, 5700, 2600, 4900, 1900, 3600, 3000, 5900, 3000, 3300, 0, 0, 0, 3300, 3000},
        {}};
    for (int& name : widths.names)
        name = nameWidth;
    return widths;
}

static bool Overlap(const Box& a, const Box& b) {
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

// Client sizes: built-in layouts' (less a frame of 4 at each side), wide ones, the smallest that is
// meant to look right, and too small ones.
TEST(MixerLayout, EverythingInsideAndApart) {
    static constexpr int kSizes[][2] = {{608, 114}, {654, 96},  {392, 192},   {292, 292},
                                        {443, 150}, {1592, 92}, {1592, 1100}, {292, 92},
                                        {90, 40},   {9, 300},   {-1, -1}};
    for (const auto [width, height] : kSizes)
        for (const int columns : {0, 1, 7, 13, 24}) {
            const MixerLayout layout = LayOutMixer(width, height, Widths(4500), columns);
            std::vector<Box> boxes(layout.fixed, layout.fixed + kMixerFixed - (columns ? 2 : 0));
            boxes.insert(boxes.end(), layout.buttons, layout.buttons + columns);
            boxes.insert(boxes.end(), layout.sliders, layout.sliders + columns);
            const int least = width < 292 || columns * 2500 > width * height ? 0 : 12;
            for (size_t i = 0; i < boxes.size(); ++i) {
                const Box& a = boxes[i];
                SCOPED_TRACE(testing::Message()
                             << width << "x" << height << ", " << columns << " columns, box " << i);
                EXPECT_TRUE(a.width >= least && a.height >= least);
                if (width < 292) continue;
                EXPECT_TRUE(a.left >= kMixerMargin && a.top >= kMixerMargin &&
                            a.left + a.width <= width - kMixerMargin &&
                            a.top + a.height <= height - kMixerMargin);
                for (size_t j = i + 1; j < boxes.size(); ++j)
                    EXPECT_FALSE(Overlap(a, boxes[j])) << j;
            }
        }
}

// Names as long as "Microphone" are shown whole, over sliders of usable length; a long one among
// them does not make the others small.
TEST(MixerLayout, NamesAreReadable) {
    static constexpr int kCases[][3] = {
        {608, 114, 8}, {654, 96, 8}, {392, 192, 5}, {1200, 192, 24}};
    for (const auto [width, height, columns] : kCases) {
        MixerTextWidths widths = Widths(5000);
        widths.names[2] = 14000;
        const MixerLayout layout = LayOutMixer(width, height, widths, columns);
        int letters[kMixerFonts];
        MixerLetterSizes(layout, widths, columns, 0, letters);
        EXPECT_LE(letters[kMixerFontNames] * 5, MixerNameRoom(layout.buttons[0].width)) << width;
        EXPECT_GE(letters[kMixerFontNames], kMixerMinName + (width > 700)) << width;
        EXPECT_GE(layout.sliders[columns - 1].height, 28) << width;
        EXPECT_GE(letters[kMixerFontButtons], 10) << width;
    }
}

TEST(MixerShow, NamesEndInDotsAsTheLastResort) {
    const auto fit = [](int room) {
        char text[11]; // letters are 10 wide
        FitMixerName(
            "Microphone", room, [](const char*, int n, void*) { return n * 10; }, nullptr, text,
            sizeof text);
        return std::string(text);
    };
    EXPECT_EQ(fit(100) + " " + fit(99) + " " + fit(60) + " " + fit(3),
              "Microphone Microp... Microp M");
}
