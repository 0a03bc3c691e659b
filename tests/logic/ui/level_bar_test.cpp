// Bars that show a level of a device and set it.
#include "ui/level_bar.h"

#include <gtest/gtest.h>

// A value that the bar itself has brought about does not move it, however coarse the device; any
// other does, also one lower than what was merely read, and what a device does not obey.
TEST(LevelBar, FollowsTheDeviceButNotItsRounding) {
    LevelBar bar;
    EXPECT_EQ(FollowLevel(&bar, 0), 100) << "nothing was asked for yet";
    EXPECT_EQ(FollowLevel(&bar, 59), 41);
    EXPECT_EQ(FollowLevel(&bar, 58), 42);
    for (const int pos : {42, 101, 65535, -1}) // a release where it stands, and no positions
        EXPECT_EQ(AskByLevel(&bar, pos), kLevelNone);
    const struct {
        int pos, before, after, read, shown;
    } cases[] = {{0, 58, 99, 99, 0},   {50, 99, 49, 49, 50}, {43, 49, 33, 33, 43},
                 {60, 33, 33, 33, 60}, {60, 33, 33, 34, 66}, {20, 0, 0, 0, 100},
                 {30, 60, 69, 400, 0}, {31, 69, 69, -7, 100}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.pos << " read as " << c.read);
        const int asked = c.pos == bar.pos ? kLevelNone : 100 - c.pos;
        EXPECT_EQ(AskByLevel(&bar, c.pos), asked);
        SettleLevel(&bar, c.before, c.after);
        EXPECT_EQ(FollowLevel(&bar, c.read), c.shown);
    }
}
