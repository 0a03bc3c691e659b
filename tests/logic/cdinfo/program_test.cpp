// The play program: lengths, texts, stretches as typed, adding, moving and removing entries.
#include "cdinfo/program.h"
#include "core/text.h"

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
    CopyText(record.trackTitles[2], "Long One");
    return record;
}

TEST(Program, LengthsAndTextsOfEntries) {
    const CDInfoRecord disc = MakeDisc();
    const struct {
        Tmsf start, stop;
        uint32_t seconds;
        const char* text;
    } cases[] = {
        {MakeTmsf(1, 0, 0, 1), MakeTmsf(1, 3, 20, 0), 200, "Track 1 (03:20)"},
        {MakeTmsf(3, 0, 0, 1), MakeTmsf(1, 0, 0, 0), 4265, "Long One (71:05)"}, // stop ignored
        {MakeTmsf(1, 0, 50, 0), MakeTmsf(1, 2, 10, 74), 80,
         "T001:M000:S050 - T001:M002:S010   (01:20)"},
        {0, 0xFFFFFFFF, 0, "T000:M000:S000 - T255:M255:S255   (00:00)"},
    };
    for (const auto& c : cases) {
        char text[kSegmentTextSize];
        SegmentText(disc, {c.start, c.stop}, text, sizeof text);
        EXPECT_STREQ(text, c.text);
        EXPECT_EQ(SegmentSeconds(disc, c.start, c.stop), c.seconds) << c.text;
    }
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

TEST(Program, MarkedEntriesMoveAsTheyStand) {
    const struct {
        const char* marks; // x: marked
        int step;
        uint32_t entries[5];
        const char* after;
    } cases[] = {
        {".xx..", -1, {1, 2, 0, 3, 4}, "xx..."},
        {".xx..", 1, {0, 3, 1, 2, 4}, "..xx."},
        {"xx...", -1, {0, 1, 2, 3, 4}, "xx..."},
        {"x...x", 1, {1, 0, 2, 3, 4}, ".x..x"},
    };
    for (const auto& c : cases) {
        CDInfoRecord disc = MakeDisc();
        SegmentMarks marks = {};
        for (uint32_t i = 0; i < 5; ++i) { // told apart by their second
            AddSegment(&disc, {MakeTmsf(1, 0, i, 0), MakeTmsf(1, 1, i, 0)});
            marks[i] = c.marks[i] == 'x';
        }
        MoveSegments(&disc, &marks, c.step);
        std::string after;
        for (size_t i = 0; i < 5; ++i) {
            after += marks[i] ? 'x' : '.';
            EXPECT_EQ(TmsfSecond(disc.program[i].start), c.entries[i]) << c.marks << c.step;
        }
        EXPECT_EQ(after, c.after) << c.marks;
    }
}
