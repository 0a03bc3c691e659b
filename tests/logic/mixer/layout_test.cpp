// The mixer window's decisions: at every size and with any number of sources nothing lies over
// anything else and names can be read; bars follow the device; names are cut where they must be.
#include "mixer/mixer_layout.h"
#include "mixer/mixer_show.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

struct Size {
    int width, height;
};

// Client sizes: the built-in layouts' (less a frame of 4 at each side), the smallest that is meant
// to look right, ordinary ones, and the widest.
static const Size kSizes[] = {{608, 114}, {654, 96},  {645, 94},   {734, 107},  {734, 113},
                              {292, 92},  {392, 192}, {292, 292},  {443, 150},  {1592, 92},
                              {594, 120}, {593, 120}, {1592, 192}, {1592, 1100}};

// Widths in thousandths of the cell height, about as a bold Arial has them.
static MixerTextWidths Widths(int nameWidth) {
    static constexpr int kFixed[kMixerFixed] = {3400, 3000, 5700, 2600,  4900, 1900, 3600,
                                                3000, 5900, 3000, 3300,  0,    0,    0,
                                                3300, 3000, 2500, 18500, 12500};
    MixerTextWidths widths = {};
    std::copy(std::begin(kFixed), std::end(kFixed), widths.fixed);
    for (int& name : widths.names)
        name = nameWidth;
    return widths;
}

static std::vector<Box> ShownBoxes(const MixerLayout& layout, int columns) {
    std::vector<Box> boxes;
    for (int i = 0; i < kMixerFixed; ++i) {
        const bool message = MixerFontOf(MixerFixedId(i)) == kMixerFontMessage;
        if (!message || columns == 0) boxes.push_back(layout.fixed[i]);
    }
    for (int i = 0; i < columns; ++i) {
        boxes.push_back(layout.buttons[i]);
        boxes.push_back(layout.sliders[i]);
    }
    return boxes;
}

static bool Overlap(const Box& a, const Box& b) {
    return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
           b.top < a.top + a.height;
}

TEST(MixerLayout, EverythingInsideAndApart) {
    for (const Size& size : kSizes)
        for (const int columns : {0, 1, 2, 5, 7, 13, 24}) {
            const auto boxes =
                ShownBoxes(LayOutMixer(size.width, size.height, Widths(4500), columns), columns);
            for (size_t i = 0; i < boxes.size(); ++i) {
                const Box& a = boxes[i];
                const std::string at = std::to_string(size.width) + "x" +
                                       std::to_string(size.height) + " columns " +
                                       std::to_string(columns) + " box " + std::to_string(i);
                const bool tight = columns * 2500 > size.width * size.height; // 13 in the smallest
                EXPECT_TRUE(tight || (a.width >= 16 && a.height >= 12)) << at;
                EXPECT_TRUE(a.left >= kMixerMargin && a.top >= kMixerMargin) << at;
                EXPECT_TRUE(a.left + a.width <= size.width - kMixerMargin &&
                            a.top + a.height <= size.height - kMixerMargin)
                    << at;
                for (size_t j = i + 1; j < boxes.size(); ++j)
                    EXPECT_FALSE(Overlap(a, boxes[j])) << at << " and " << j;
            }
        }
}

TEST(MixerLayout, NoBoxTurnsInsideOutHoweverSmall) {
    for (int width = -5; width < 200; width += 7)
        for (int height = -5; height < 100; height += 7)
            for (const Box& box : ShownBoxes(LayOutMixer(width, height, Widths(4500), 30), 24))
                EXPECT_TRUE(box.width >= 0 && box.height >= 0) << width << "x" << height;
}

// Eight names as long as "Microphone" in the windows of the built-in layouts, and 24 in one twice
// as large, are shown whole, in letters of at least 9 pixels; sliders keep a usable length. One
// long name does not make the others small.
TEST(MixerLayout, NamesAreReadable) {
    const auto check = [](Size size, int columns) {
        const MixerTextWidths widths = Widths(5000);
        const MixerLayout layout = LayOutMixer(size.width, size.height, widths, columns);
        int letters[kMixerFonts];
        MixerLetterSizes(layout, widths, columns, 0, letters);
        EXPECT_GE(letters[kMixerFontNames], kMixerMinName);
        EXPECT_LE(letters[kMixerFontNames] * 5, MixerNameRoom(layout.buttons[0].width))
            << size.width << "x" << size.height;
        EXPECT_GE(layout.sliders[columns - 1].height, 28) << size.width << "x" << size.height;
        EXPECT_GE(letters[kMixerFontButtons], 10) << size.width << "x" << size.height;
    };
    for (int i = 0; i < 5; ++i)
        check(kSizes[i], 8);
    check({392, 192}, 5);
    check({1200, 192}, 24);
    MixerTextWidths widths = Widths(4000);
    widths.names[2] = 14000;
    const MixerLayout layout = LayOutMixer(734, 107, widths, 6);
    int letters[kMixerFonts];
    MixerLetterSizes(layout, widths, 6, 0, letters);
    EXPECT_GE(letters[kMixerFontNames], 12);
    EXPECT_EQ(letters[kMixerFontLongNames], kMixerMinName);
}

// A device that counts in other steps gives back one less than was asked for: the bar stays. Any
// other value moves it, also one lower than what was merely read.
TEST(MixerShow, BarsFollowTheDeviceButNotItsRounding) {
    MixerBar bar = {kMixerBarStart, kMixerNotAsked};
    EXPECT_EQ(FollowMixerBar(&bar, 59), 41);
    EXPECT_EQ(AskByMixerBar(&bar, 41), kMixerNotAsked) << "a release where nothing was moved";
    EXPECT_EQ(AskByMixerBar(&bar, 0), 100) << "the top is full";
    EXPECT_EQ(FollowMixerBar(&bar, 100), 0);
    EXPECT_EQ(FollowMixerBar(&bar, 99), 0);
    EXPECT_EQ(FollowMixerBar(&bar, 98), 2);
    EXPECT_EQ(FollowMixerBar(&bar, 97), 3);
    EXPECT_EQ(FollowMixerBar(&bar, 400), 0);
    EXPECT_EQ(FollowMixerBar(&bar, -7), 100);
    EXPECT_EQ(AskByMixerBar(&bar, 101), kMixerNotAsked);
    EXPECT_EQ(AskByMixerBar(&bar, -1), kMixerNotAsked);
}

TEST(MixerShow, NamesEndInDotsAsTheLastResort) {
    static const struct {
        const char* name;
        int room; // letters are 10 wide
        const char* fitted;
    } kNames[] = {{"Line In", 70, "Line In"},
                  {"Microphone", 99, "Microp..."},
                  {"Line In", 69, "Line I"},
                  {"Synth Left", 90, "Synth..."},
                  {"Microphone", 60, "Microp"},
                  {"Microphone", 3, "M"},
                  {"", 0, ""},
                  {"0123456789012345678901234567890", 1000, "0123456789012345678901234567890"}};
    for (const auto& n : kNames) {
        char fitted[32];
        FitMixerName(
            n.name, n.room, [](const char*, int length, void*) { return length * 10; }, nullptr,
            fitted, sizeof fitted);
        EXPECT_STREQ(fitted, n.fitted) << n.room;
    }
}
