// Sums of track bars and of indicators' progress.
#include "ui/indicator.h"
#include "ui/trackbar.h"

#include <gtest/gtest.h>

static TrackBarModel Bar(int vertical, int32_t minimum, int32_t maximum, int32_t pos) {
    return {minimum, maximum, pos, 6, vertical};
}

TEST(TrackBar, KeysFollowTheBarsDirection) {
    const struct {
        TrackKey key;
        int32_t horizontal, vertical; // from 50 in 0 to 100
    } rows[] = {{kTrackPageUp, 62, 38}, {kTrackPageDown, 38, 62}, {kTrackEnd, 100, 100},
                {kTrackHome, 0, 0},     {kTrackLeft, 49, 49},     {kTrackRight, 51, 51},
                {kTrackUp, 51, 49},     {kTrackDown, 49, 51}};
    for (const auto& row : rows) {
        EXPECT_EQ(TrackPosAfterKey(Bar(0, 0, 100, 50), row.key), row.horizontal) << row.key;
        EXPECT_EQ(TrackPosAfterKey(Bar(1, 0, 100, 50), row.key), row.vertical) << row.key;
    }
    EXPECT_EQ(TrackPosAfterKey(Bar(0, 0, 5, 0), kTrackPageUp), 5) << "an eighth is below 1";
    EXPECT_EQ(TrackPosAfterKey(Bar(0, 0, 8, 8), kTrackPageUp), 8) << "clamped";
    EXPECT_EQ(TrackPosAfterKey(Bar(1, 3, 3, 3), kTrackPageDown), 3) << "an empty range has no step";
}

TEST(TrackBar, HostileRangesAreEmptyAndEverythingIsClamped) {
    TrackBarModel bar = Bar(0, 0, 100, 70);
    SetTrackRange(&bar, 0, 50);
    EXPECT_EQ(bar.Pos, 50);
    SetTrackRange(&bar, 60, 20);
    EXPECT_EQ(bar.Max, 60);
    EXPECT_EQ(bar.Pos, 60);
    EXPECT_EQ(ThumbStart(bar, 108), 1);
    EXPECT_EQ(TrackPosAt(bar, 50, 108), 60);
    const TrackBarModel whole = Bar(0, INT32_MIN, INT32_MAX, 0);
    EXPECT_EQ(TrackPosAfterKey(whole, kTrackPageUp), INT32_MAX / 4);
    EXPECT_GT(ThumbStart(whole, INT32_MAX), 0);
    EXPECT_EQ(TrackPosAt(whole, INT32_MAX, 10), INT32_MAX);
}

TEST(TrackBar, PixelsAndPositionsAreInverseAndTheThumbStaysInside) {
    for (int32_t pos = 0; pos <= 100; pos++) {
        const TrackBarModel bar = Bar(0, 0, 100, pos);
        EXPECT_EQ(ThumbStart(bar, 108), 1 + pos);
        EXPECT_EQ(TrackPosAt(bar, ThumbStart(bar, 250), 250), pos) << "through a longer track";
        for (int32_t extent : {9, 20, 57})
            EXPECT_LE(ThumbStart(bar, extent) + bar.ThumbSize, extent - 1) << extent << " " << pos;
    }
    EXPECT_EQ(TrackPosAt(Bar(0, 0, 100, 0), -40, 108), 0);
    EXPECT_EQ(TrackPosAt(Bar(0, 0, 100, 0), 400, 108), 100);
}

TEST(Indicator, ProgressIsCutOffAndNeverLeavesTheWindow) {
    const struct {
        IndicatorProgress progress;
        int32_t width, filled;
    } rows[] = {
        {{1, 1, 0, 3}, 100, 33}, {{1, 15, 10, 20}, 99, 49},
        {{1, 5, 5, 5}, 100, 0},  {{1, 500, 0, 3}, 100, 100},
        {{1, -7, 0, 3}, 100, 0}, {{1, INT32_MAX, INT32_MIN, INT32_MAX}, INT32_MAX, INT32_MAX}};
    for (const auto& row : rows)
        EXPECT_EQ(ProgressWidth(row.progress, row.width), row.filled) << row.progress.position;
    EXPECT_EQ(SteppedProgress({1, 8, 0, 10}, INT32_MAX), 10);
    EXPECT_EQ(SteppedProgress({1, 8, 0, 10}, -9), 0);
    EXPECT_EQ(SteppedProgress({1, 8, 4, 2}, 1), 4);
}
