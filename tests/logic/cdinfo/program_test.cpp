// The play program: lengths, texts, stretches as typed, adding, moving and removing entries.
#include "cdinfo/program.h"
#include "core/text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

// A disc of four tracks: 3:20, 0:45, 71:05, and one that is longer than a position can tell.
static CDInfoRecord MakeDisc() {
    CDInfoRecord record;
    ApplyDefaults(&record);
    record.trackCount = 4;
    record.trackSeconds[0] = 200;
    record.trackSeconds[1] = 45;
    record.trackSeconds[2] = 71 * 60 + 5;
    record.trackSeconds[3] = 300 * 60;
    record.trackSeconds[4] = 999; // of no track
    CopyText(record.trackTitles[2], "Long One");
    return record;
}

// Entries told apart by their second.
static void Fill(CDInfoRecord* record, const std::vector<uint32_t>& seconds) {
    ClearProgram(record);
    for (uint32_t second : seconds)
        ASSERT_TRUE(AddSegment(record, {MakeTmsf(1, 0, second, 0), MakeTmsf(1, 1, second, 0)}));
}

static std::vector<uint32_t> SecondsOf(const CDInfoRecord& record) {
    std::vector<uint32_t> seconds;
    for (size_t i = 0; i < record.programCount; ++i)
        seconds.push_back(TmsfSecond(record.program[i].start));
    return seconds;
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
        {MakeTmsf(5, 0, 0, 1), MakeTmsf(5, 1, 0, 0), 0, "Track 5 (00:00)"},
        {MakeTmsf(1, 0, 50, 0), MakeTmsf(1, 2, 10, 74), 80,
         "T001:M000:S050 - T001:M002:S010   (01:20)"},
        {MakeTmsf(1, 2, 0, 0), MakeTmsf(2, 0, 30, 0), 0,
         "T001:M002:S000 - T002:M000:S030   (00:00)"},
        {0, 0xFFFFFFFF, 0, "T000:M000:S000 - T255:M255:S255   (00:00)"},
        {MakeTmsf(1, 0, 0, 0), MakeTmsf(1, 255, 255, 0), 15555,
         "T001:M000:S000 - T001:M255:S255   (259:15)"},
    };
    for (const auto& c : cases) {
        char text[kSegmentTextSize];
        SegmentText(disc, {c.start, c.stop}, text, sizeof text);
        EXPECT_STREQ(text, c.text);
        EXPECT_EQ(SegmentSeconds(disc, c.start, c.stop), c.seconds) << c.text;
    }
    CDInfoRecord program = disc;
    Fill(&program, {0, 1});
    program.program[1] = WholeTrackSegment(program, 3);
    program.programCount = 60000; // a record that lies
    EXPECT_EQ(ProgramSeconds(program), 60u + 4265);
}

TEST(Program, StretchesAsTyped) {
    const CDInfoRecord disc = MakeDisc();
    const struct {
        Stretch typed;
        StretchCheck check;
    } cases[] = {
        {{1, 0, 0, 3, 20}, kStretchGood},
        {{1, 3, 20, 3, 20}, kStretchEmpty},
        {{1, 3, 0, 2, 59}, kStretchEmpty},
        {{1, 0, 0, 3, 21}, kStretchPastTrack},
        {{1, 0, 0, 2, 60}, kStretchBadSecond},
        {{5, 0, 0, 0, 10}, kStretchNoTrack},
        {{4, 0, 0, 255, 59}, kStretchGood},
        {{4, 0, 0, 256, 0}, kStretchPastTrack},
        {{4, 256, 0, 255, 0}, kStretchEmpty},
        {{1, 0, 0, 71582788, 56}, kStretchPastTrack}, // times 60 it wraps to half a minute
        {{1, 71582788, 16, 3, 0}, kStretchEmpty},
    };
    for (const auto& c : cases) {
        const Stretch& t = c.typed;
        ProgramSegment segment = {7, 7};
        EXPECT_EQ(MakeStretch(disc, t, &segment), c.check)
            << t.track << " " << t.fromMinute << ":" << t.fromSecond << " " << t.toMinute;
        if (c.check == kStretchGood) {
            EXPECT_EQ(segment.start, MakeTmsf(t.track, t.fromMinute, t.fromSecond, 0));
            EXPECT_EQ(segment.stop, MakeTmsf(t.track, t.toMinute, t.toSecond, 0));
        } else {
            EXPECT_EQ(segment.start, 7u);
        }
    }
}

TEST(Program, MarkedEntriesMoveAsTheyStand) {
    const struct {
        const char* marks; // x: marked
        int step;
        std::vector<uint32_t> entries;
        const char* after;
    } cases[] = {
        {".xx..", -1, {1, 2, 0, 3, 4}, "xx..."}, {".xx..", 1, {0, 3, 1, 2, 4}, "..xx."},
        {"x.x..", -1, {0, 2, 1, 3, 4}, "xx..."}, {"xx...", -1, {0, 1, 2, 3, 4}, "xx..."},
        {"..x.x", 1, {0, 1, 3, 2, 4}, "...xx"},  {"x...x", 1, {1, 0, 2, 3, 4}, ".x..x"},
    };
    for (const auto& c : cases) {
        CDInfoRecord disc = MakeDisc();
        Fill(&disc, {0, 1, 2, 3, 4});
        SegmentMarks marks = {};
        for (size_t i = 0; i < 5; ++i)
            marks[i] = c.marks[i] == 'x';
        const int moved = MoveSegments(&disc, &marks, c.step);
        std::string after;
        for (size_t i = 0; i < 5; ++i)
            after += marks[i] ? 'x' : '.';
        EXPECT_EQ(after, c.after) << c.marks;
        EXPECT_EQ(SecondsOf(disc), c.entries) << c.marks << c.step;
        EXPECT_EQ(moved, after != c.marks);
    }
}

TEST(Program, HoldsAHundredEntriesAndLetsThemGo) {
    CDInfoRecord disc = MakeDisc();
    const uint32_t tracks[] = {3, 1, 2};
    for (int i = 0; i < 33; ++i)
        EXPECT_EQ(AddWholeTracks(&disc, tracks, 3), 3);
    EXPECT_EQ(AddWholeTracks(&disc, tracks, 3), 1);
    EXPECT_EQ(AddSegment(&disc, {}), 0);
    EXPECT_EQ(disc.program[99].stop, MakeTmsf(3, 71, 5, 0));
    SegmentMarks marks = {};
    marks.fill(1);
    marks[1] = marks[99] = 0;
    EXPECT_EQ(RemoveSegments(&disc, marks), 98);
    EXPECT_EQ(disc.programCount, 2);
    EXPECT_EQ(TmsfTrack(disc.program[0].start), 1u);
    EXPECT_EQ(TmsfTrack(disc.program[1].start), 3u);
}
