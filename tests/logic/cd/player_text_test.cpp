// What the CD player window shows: the playing track's place in the record, and the pie's part.
#include "cd/player_pie.h"
#include "cd/player_text.h"

#include <gtest/gtest.h>

TEST(PlayerText, AnyTrackNumberGivesAnIndexOfTheRecord) {
    const struct {
        uint16_t current, count;
        size_t index;
    } rows[] = {{1, 12, 0},  {12, 12, 11},     {13, 12, 11},     {0, 12, 11},
                {101, 0, 0}, {65535, 100, 99}, {100, 65535, 99}, {101, 65535, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(PlayingIndex(row.current, row.count), row.index)
            << row.current << " of " << row.count;
}

TEST(PlayerPie, TheWholeOnlyAtTheEnd) {
    EXPECT_EQ(PieDegrees(10, 0), 0);
    EXPECT_EQ(PieDegrees(5, 4), 360);
    EXPECT_EQ(PieDegrees(0xFFFFFFFE, 0xFFFFFFFF), 359);
}
