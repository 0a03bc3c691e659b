// The CD player's geometry: at every size all controls lie inside the margins, none over another,
// and the letters chosen for them fit.
#include "cd/player_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

struct Size {
    int width, height;
};

// Client sizes: the built-in layouts' (less a frame of 4 at each side), the default placement's,
// larger ones, small ones.
static const Size kSizes[] = {{608, 138},  {608, 113}, {654, 126}, {645, 124},  {734, 160},
                              {734, 164},  {492, 192}, {544, 126}, {1192, 292}, {1592, 200},
                              {1592, 500}, {292, 92},  {292, 292}, {493, 113},  {494, 113},
                              {400, 92},   {1592, 92}};

static int Right(const Box& box) {
    return box.left + box.width;
}
static int Bottom(const Box& box) {
    return box.top + box.height;
}

// Also when they merely touch: a pixel of background stands between any two.
static bool Overlap(const Box& a, const Box& b) {
    return a.left <= Right(b) && b.left <= Right(a) && a.top <= Bottom(b) && b.top <= Bottom(a);
}

static std::string At(const Size& size, int id) {
    return std::to_string(size.width) + "x" + std::to_string(size.height) + " id " +
           std::to_string(id);
}

static std::vector<Box> AllBoxes(const PlayerLayout& layout) {
    std::vector<Box> boxes(std::begin(layout.boxes), std::end(layout.boxes));
    boxes.push_back(layout.pie);
    return boxes;
}

// Widths in thousandths of the em height (less than of the cell height, so they ask for more room),
// as a bold Arial has them.
static PlayerTextWidths ArialWidths() {
    PlayerTextWidths widths = {};
    const struct {
        int first, last, width;
    } rows[] = {
        {kPlayerArtist, kPlayerTrackTitle, 10600},   {kPlayerTrackTime, kPlayerTrackTime, 8900},
        {kPlayerPlay, kPlayerEject, 3000},           {kPlayerTrack1, kPlayerTrack1 + 19, 1670},
        {kPlayerRepeat, kPlayerProgram, 4340},       {kPlayerInfo, kPlayerInfo, 3350},
        {kPlayerNextPage, kPlayerPreviousPage, 590}, {kPlayerCaption, kPlayerCaption, 4200},
        {kPlayerPower, kPlayerPower, 3060},          {kPlayerDiscTime, kPlayerDiscTime, 2560},
        {kPlayerDriveTime, kPlayerDriveTime, 4400},  {kPlayerRepeater, kPlayerTrackLock, 870}};
    for (const auto& row : rows)
        for (int id = row.first; id <= row.last; ++id)
            widths.width[id - kPlayerFirst] = row.width;
    return widths;
}

// And the whole client area is used: some box touches each margin.
TEST(PlayerLayout, EverythingInsideAndApart) {
    for (const Size& size : kSizes) {
        const PlayerLayout layout = LayOutPlayer(size.width, size.height);
        const auto boxes = AllBoxes(layout);
        int left = size.width, top = size.height, right = 0, bottom = 0;
        for (size_t i = 0; i < boxes.size(); ++i) {
            const Box& a = boxes[i];
            const std::string at = At(size, static_cast<int>(i) + kPlayerFirst);
            left = std::min(left, a.left);
            top = std::min(top, a.top);
            right = std::max(right, Right(a));
            bottom = std::max(bottom, Bottom(a));
            EXPECT_GE(a.width, 9) << at;
            EXPECT_GE(a.height, 7) << at;
            for (size_t j = i + 1; j < boxes.size(); ++j)
                EXPECT_FALSE(Overlap(a, boxes[j])) << at << " and " << j + kPlayerFirst;
        }
        EXPECT_EQ(left, kPlayerMargin) << At(size, 0);
        EXPECT_EQ(top, kPlayerMargin) << At(size, 0);
        EXPECT_EQ(right, size.width - kPlayerMargin) << At(size, 0);
        EXPECT_EQ(bottom, size.height - kPlayerMargin) << At(size, 0);
        EXPECT_EQ(layout.pie.width, layout.pie.height);
    }
}

TEST(PlayerLayout, LettersFitTheirBoxesAndAreReadable) {
    const PlayerTextWidths widths = ArialWidths();
    for (const Size& size : kSizes) {
        const PlayerLayout layout = LayOutPlayer(size.width, size.height);
        int fonts[kPlayerFonts], usual[kPlayerFonts];
        PlayerFontSizes(layout, widths, 1, fonts);
        for (int i = 0; i < kPlayerControls; ++i) {
            const PlayerFont font = PlayerFontOf(kPlayerFirst + i);
            const Box& box = layout.boxes[i];
            if (i + kPlayerFirst == kPlayerSlider) continue;
            if (fonts[font] == kPlayerMinLetter) continue; // the floor of legibility goes first
            EXPECT_LE(fonts[font], box.height) << At(size, i + kPlayerFirst);
            if (font == kFontTitles && fonts[font] <= kPlayerMinTitle) continue;
            EXPECT_LE(widths.width[i] * fonts[font] / 1000, box.width - 2)
                << At(size, i + kPlayerFirst);
        }
        PlayerFontSizes(layout, widths, 0, usual);
        EXPECT_GE(usual[kFontTitles], std::min(kPlayerMinTitle, layout.boxes[0].height));
        if (&size >= kSizes + 7) continue; // of the built-in layouts
        EXPECT_GE(*std::min_element(usual, usual + kPlayerFonts), 10) << At(size, 0);
        EXPECT_GE(usual[kFontTimes], 14) << At(size, 0);
    }
}
