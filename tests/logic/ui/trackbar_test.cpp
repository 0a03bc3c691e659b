// Sums of track bars.
#include "ui/trackbar.h"

#include <gtest/gtest.h>

static TrackBarModel Bar(int vertical, int32_t minimum, int32_t maximum, int32_t pos) {
    return {minimum, maximum, pos, 6, vertical};
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
}
