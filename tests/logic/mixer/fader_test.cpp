// A fader's sums and what follows for switches.
#include "mixer/fader.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

TEST(Fader, PercentIsTheAverageCutOffAndNeverDividedByNothing) {
    const struct {
        std::vector<uint32_t> details;
        FaderRange range;
        int percent;
    } cases[] = {
        {{32767, 32767}, {0, 65535}, 49}, // 50 reads back one lower
        {{0, 65535}, {0, 65535}, 49},     // the average of two channels
        {{65535, 65535, 65535}, {0, 65535}, 100},
        {{7, 8}, {5, 10}, 40},                            // 7.5 counts as 7
        {{0xFFFFFFFF, 0xFFFFFFFF}, {0, 0xFFFFFFFF}, 100}, // the sum needs more than 32 bits
        {{0x80000000}, {0, 0xFFFFFFFF}, 50},
        {{500}, {100, 200}, 100}, // beyond the driver's own bounds
        {{50}, {100, 200}, 0},
        {{5}, {5, 5}, 0},
        {{5}, {9, 3}, 0},
        {{}, {0, 100}, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FaderPercent(c.details.data(), static_cast<int>(c.details.size()), c.range),
                  c.percent);
    EXPECT_EQ(FaderDetails(2, 3), 6);
    EXPECT_EQ(FaderDetails(0xFFFFFFFF, 0xFFFFFFFF), 0); // would be 1 in 32 bits
    for (const float scalar : {NAN, -1.0f, -INFINITY})
        EXPECT_EQ(PercentOfScalar(scalar), 0);
    EXPECT_EQ(PercentOfScalar(INFINITY), 100);
    EXPECT_EQ(PercentOfScalar(0.578f), 58);
}

TEST(Fader, SettingEqualisesWithinTheRange) {
    const FaderRange full = {0, 0xFFFFFFFF}, small = {10, 13}, none = {4, 4};
    std::vector<uint32_t> values = {1, 99, 50};
    EXPECT_EQ(SetFader(values.data(), 3, small, 50), 1);
    EXPECT_EQ(values, std::vector<uint32_t>(3, 11));
    EXPECT_EQ(SetFader(values.data(), 3, small, 60), 0) << "the same step of the control";
    EXPECT_EQ(SetFader(values.data(), 3, none, 100), 0);
    EXPECT_EQ(values, std::vector<uint32_t>(3, 11));
    EXPECT_EQ(FaderValue(100, full), 0xFFFFFFFFu);
    EXPECT_EQ(FaderValue(250, small), 13u);
}
