// Trace words, the range of a seek, and the shell's notation of an icon.
#include "media/engine.h"
#include "media/types.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <string>

TEST(MediaEngine, TraceWords) {
    const struct {
        MediaOperation operation;
        int step;
        const char* word;
    } words[] = {{kTraceLoad, 3, "LoadFile3"},
                 {kTraceLoad, 0, "LoadFile Success"},
                 {kTracePlay, 2, "BeginPlay2"},
                 {kTraceStop, 0, "StopPlay Success"},
                 {kTracePause, 1, "TogglePause1"},
                 {kTracePause, 0, "TogglePayse Success"},
                 {kTraceSeek, 0, "SeekToSecond Success"},
                 {kTracePosition, 4, "GCPI4"}};
    for (const auto& w : words) {
        char word[kTraceMax];
        MediaTraceWord(w.operation, w.step, word);
        EXPECT_STREQ(word, w.word);
    }
}

TEST(MediaEngine, SeekGoesToAPlaceInTheFileOrNowhere) {
    double target = -1;
    EXPECT_FALSE(SeekTarget(NAN, 10, &target) || SeekTarget(INFINITY, 10, &target) ||
                 SeekTarget(-0.1, 10, &target));
    EXPECT_EQ(target, -1);
    for (const auto& [second, duration, wanted] :
         {std::array{0.0, 10.0, 0.0}, {9.5, 10, 9.5}, {11, 10, 10}, {7, 0, 7}, {7, NAN, 7}}) {
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
                  {"c:\\a.ico", "c:\\a.ico", 0},
                  {"\"c:\\a", "c:\\a", 0},
                  {"", "", 0},
                  {",", "", 0},
                  {"c:\\very long name.dll,1", "c:\\very long n", 1}};
    for (const auto& p : places) {
        char file[15];
        int index = 99;
        SplitIconPlace(p.place, file, sizeof file, &index);
        EXPECT_STREQ(file, p.file);
        EXPECT_EQ(index, p.index) << p.place;
    }
    EXPECT_TRUE(IsOwnClass("TONVUE.mp3") && IsOwnClass("Tonvue2"));
    EXPECT_FALSE(IsOwnClass("") || IsOwnClass("Tonvu") || IsOwnClass("My.Tonvue"));
}
