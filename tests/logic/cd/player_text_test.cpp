// What the CD player window shows: the playing track's place in the record, and the pie.
#include "cd/player_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "cd/player_pie.h"

TEST(PlayerText, AnyTrackNumberGivesAnIndexOfTheRecord) {
    const struct {
        uint16_t current, count;
        size_t index;
    } rows[] = {{1, 12, 0},       {12, 12, 11},     {13, 12, 11},   {0, 12, 11},
                {1, 0, 0},        {0, 0, 0},        {101, 0, 0},    {100, 100, 99},
                {65535, 100, 99}, {100, 65535, 99}, {101, 65535, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(PlayingIndex(row.current, row.count), row.index)
            << row.current << " of " << row.count;
}

// The share of lit pixels follows the degrees, and they start right of the top.
TEST(PlayerPie, LitPartGrowsClockwise) {
    constexpr int kSide = 61;
    const PieColors colors = {0x111111, 0x222222, 0x0000FF, 0x333333}; // lit: red
    std::vector<uint32_t> pixels(kSide * kSide);
    const auto lit = [&](int x, int y) { return pixels[y * kSide + x] == 0xFF0000; };
    const auto count = [&] { return std::count(pixels.begin(), pixels.end(), 0xFF0000u); };
    DrawPie(pixels.data(), kSide, 360, colors);
    const double whole = static_cast<double>(count());
    ASSERT_GT(whole, kSide * kSide / 2);
    EXPECT_EQ(PieDegrees(10, 0), 0);
    EXPECT_EQ(PieDegrees(5, 4), 360);
    EXPECT_EQ(PieDegrees(0xFFFFFFFE, 0xFFFFFFFF), 359);
    EXPECT_EQ(pixels[0], 0x111111u) << "the corner is background";
    for (int degrees : {0, 1, 90, 180, 181, 270, 359}) {
        DrawPie(pixels.data(), kSide, degrees, colors);
        EXPECT_NEAR(count() / whole, degrees / 360.0, 0.04) << degrees;
        const int middle = kSide / 2, off = 14;
        EXPECT_EQ(lit(middle + off, middle - off), degrees > 45) << degrees;
        EXPECT_EQ(lit(middle - off, middle + off), degrees > 225) << degrees;
    }
}
