// The play program: stretches as typed, and entries that are moved.
#include "cdinfo/program.h"

#include <gtest/gtest.h>

#include <string>

// A disc of four tracks: 3:20, 0:45, 71:05, and one that is longer than a position can tell.
static CDInfoRecord MakeDisc() {
    CDInfoRecord record;
    ApplyDefaults(&record);
    record.trackCount = 4;
    record.trackSeconds[0] = 200;
    record.trackSeconds[1] = 45;
    record.trackSeconds[2] = 71 * 60 + 5;
    record.trackSeconds[3] = 300 * 60;
    return record;
}

TEST(Program, StretchesAsTyped) {
    const CDInfoRecord disc = MakeDisc();
    const struct {
        Stretch typed;
        StretchCheck check;
    } cases[] = {
        {{1, 0, 0, 3, 20}, kStretchGood},
        {{1, 3, 20, 3, 20}, kStretchEmpty},
        {{1, 0, 0, 3, 21}, kStretchPastTrack},
        {{5, 0, 0, 0, 10}, kStretchNoTrack},
        {{4, 0, 0, 256, 0}, kStretchPastTrack},
        {{1, 0, 0, 71582788, 56}, kStretchPastTrack}, // times 60 it wraps to half a minute
    };
    for (const auto& c : cases) {
        const Stretch& t = c.typed;
        ProgramSegment segment = {};
        EXPECT_EQ(MakeStretch(disc, t, &segment), c.check) << &c - cases;
        EXPECT_EQ(segment.stop,
                  c.check == kStretchGood ? MakeTmsf(t.track, t.toMinute, t.toSecond, 0) : 0u);
    }
}

// Small letters are entries, told apart by their second; capitals are marked ones.
TEST(Program, MarkedEntriesMoveAsTheyStand) {
    const struct {
        const char* before;
        int step;
        const char* after;
    } cases[] = {{"aBCde", -1, "BCade"},
                 {"aBCde", 1, "adBCe"},
                 {"ABcde", -1, "ABcde"},
                 {"AbcdE", 1, "bAcdE"}};
    for (const auto& c : cases) {
        CDInfoRecord disc = MakeDisc();
        SegmentMarks marks = {};
        for (uint32_t i = 0; i < 5; ++i) {
            AddSegment(&disc, {MakeTmsf(1, 0, i, 0), MakeTmsf(1, 1, i, 0)});
            marks[i] = c.before[i] < 'a';
        }
        MoveSegments(&disc, &marks, c.step);
        std::string after;
        for (size_t i = 0; i < 5; ++i)
            after += static_cast<char>((marks[i] ? 'A' : 'a') + TmsfSecond(disc.program[i].start));
        EXPECT_EQ(after, c.after) << c.before << c.step;
    }
}
