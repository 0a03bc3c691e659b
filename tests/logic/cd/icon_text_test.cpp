// The CD icon's tooltip by options, times and states.
#include "cd/icon_text.h"

#include <gtest/gtest.h>

#include <string>

static std::string Tip(uint32_t options, const CdIconFacts& facts, size_t size = 128) {
    char text[128] = "unset";
    CdIconText(text, size, options, facts);
    return text;
}

TEST(CdIconText, FollowsOptionsAndState) {
    const CdIconFacts idle = {0, "Disc", "Band", "Song", 61, 3725};
    const CdIconFacts busy = {1, "Disc", "Singer", "Song", 61, 3599};
    const CdIconFacts bare = {1, "Disc", "Singer", "", 0, 3600};
    const struct {
        uint32_t options;
        const CdIconFacts& facts;
        const char* expected;
    } cases[] = {
        {0, idle, ""},
        {2, idle, "Band"},
        {1 | 4 | 8, idle, "Disc"}, // nothing of a track while none plays
        {31, idle, "Disc, by Band 1:02:05"},
        {16, idle, "1:02:05"},
        {31, busy, "Song, by Singer, on Disc 01:01 / 59:59"},
        {1 | 2, busy, "Singer, on Disc"},
        {1 | 4, busy, "Song, on Disc"},
        {8, busy, "01:01"},
        {8 | 16, busy, "01:01 / 59:59"},
        {31, bare, ", by Singer, on Disc 00:00 / 1:00:00"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Tip(c.options, c.facts), c.expected) << c.options;
    EXPECT_EQ(Tip(31, busy, 10), "Song, by ") << "cut";
    EXPECT_EQ(Tip(31, busy, 1), "");
}
