// The range of a seek, and the shell's notation of an icon.
#include "media/engine.h"
#include "media/types.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>

TEST(MediaEngine, SeekGoesToAPlaceInTheFileOrNowhere) {
    double target = -1;
    EXPECT_FALSE(SeekTarget(INFINITY, 10, &target) || SeekTarget(-0.1, 10, &target));
    for (const auto& [second, duration, wanted] :
         {std::array{9.5, 10.0, 9.5}, {11, 10, 10}, {7, 0, 7}, {7, NAN, 7}}) {
        EXPECT_TRUE(SeekTarget(second, duration, &target));
        EXPECT_EQ(target, wanted) << second << " of " << duration;
    }
}

TEST(MediaTypes, IconPlaces) {
    const struct {
        const char *place, *file;
        int index;
    } places[] = {{"c:\\a.dll,3", "c:\\a.dll", 3},
                  {"\"c:\\a,b.dll\",-7", "c:\\a,b.dll", -7},
                  {"\"c:\\a", "c:\\a", 0},
                  {"", "", 0},
                  {"c:\\very long name.dll,1", "c:\\very long n", 1}};
    for (const auto& p : places) {
        char file[15];
        int index = 99;
        SplitIconPlace(p.place, file, sizeof file, &index);
        EXPECT_STREQ(file, p.file);
        EXPECT_EQ(index, p.index) << p.place;
    }
}
