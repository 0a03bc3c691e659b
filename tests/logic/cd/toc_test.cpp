// What a drive tells becomes a record, whatever it tells; and the choice of a drive.
#include "cd/drives.h"
#include "cd/engine_state.h"
#include "cd/toc.h"

#include <gtest/gtest.h>

#include <cstring>

TEST(Toc, IdentityIsReadAsStrtolReadsIt) {
    const struct {
        const char* text;
        uint32_t identity;
        const char* shown;
    } cases[] = {
        {"", 0, "00000000"},
        {"3840", 3840, "00000F00"},
        {"  \t+12x9", 12, "0000000C"},
        {"x12", 0, "00000000"},
        {"- 5", 0, "00000000"},
        {"-1", 0xFFFFFFFF, "FFFFFFFF"},
        {"2147483647", 0x7FFFFFFF, "7FFFFFFF"},
        {"2147483648", 0x7FFFFFFF, "7FFFFFFF"},
        {"-2147483648", 0x80000000, "80000000"},
        {"-2147483649", 0x80000000, "80000000"},
        {"9999999999999999", 0x7FFFFFFF, "7FFFFFFF"},
        {"-999999999999999", 0x80000000, "80000000"},
    };
    for (const auto& c : cases) {
        TocReading reading;
        std::strncpy(reading.identity, c.text, sizeof reading.identity - 1);
        CDInfoRecord record;
        ApplyToc(reading, &record);
        EXPECT_EQ(record.identity, c.identity) << c.text;
        EXPECT_STREQ(record.identityText, c.shown) << c.text;
    }
}

TEST(Toc, StartsLengthsAndLeadOut) {
    TocReading reading;
    reading.trackCount = 3;
    reading.starts[0] = MakeMsf(0, 2, 0);
    reading.starts[1] = MakeMsf(3, 2, 74);
    reading.starts[2] = MakeMsf(3, 3, 73); // 74 frames after track 2: not yet a second
    reading.lastLength = MakeMsf(0, 20, 74);
    CDInfoRecord record;
    ApplyToc(reading, &record);
    EXPECT_EQ(record.trackCount, 3);
    EXPECT_EQ(record.trackStarts[0], 150u);
    EXPECT_EQ(record.trackStarts[3], record.trackStarts[2] + 20 * 75 + 74);
    EXPECT_EQ(record.trackSeconds[0], 180);
    EXPECT_EQ(record.trackSeconds[1], 0);
    EXPECT_EQ(record.trackSeconds[2], 20);
}

TEST(Toc, AnyTrackCountAndAnyTimesStayWithinTheRecord) {
    for (uint32_t count : {0u, 1u, 99u, 100u, 101u, 0xFFFFu, UINT32_MAX}) {
        TocReading reading;
        reading.trackCount = count;
        for (uint32_t i = 0; i < kMaxTracks; ++i)
            reading.starts[i] = i % 3 ? UINT32_MAX : MakeMsf(i, 0, 0); // descending at times
        reading.lastLength = UINT32_MAX;
        std::memset(reading.identity, '9', sizeof reading.identity - 1);
        CDInfoRecord record;
        ApplyToc(reading, &record);
        EXPECT_EQ(record.trackCount, std::min<uint32_t>(count, 100)) << count;
    }
}

TEST(Toc, KindOfDiscAndItsTexts) {
    const struct {
        uint32_t mode, tracks;
        int audio;
        DiscKind kind;
        const char* title;
    } cases[] = {
        {kModeOpen, 5, 1, kDiscNone, "Drive Door is Open"},
        {kModeStop, 0, 0, kDiscData, "Data CD in Drive"},
        {kModeStop, 1, 0, kDiscData, "Data CD in Drive"},
        {kModeStop, 1, 1, kDiscAudio, nullptr},
        {kModePlay, 2, 0, kDiscAudio, nullptr}, // mixed
    };
    for (const auto& c : cases) {
        TocReading reading;
        reading.mode = c.mode;
        reading.tracksAgain = c.tracks;
        reading.firstIsAudio = c.audio;
        EXPECT_EQ(KindOfDisc(reading), c.kind) << c.mode << ' ' << c.tracks;
        if (!c.title) continue;
        CDInfoRecord record;
        record.trackCount = record.programCount = 7;
        record.comment[0] = record.trackComments[0][0] = record.trackTitles[0][0] = 'x';
        SetNoDiscTexts(&record, c.kind);
        EXPECT_STREQ(record.title, c.title);
        EXPECT_STREQ(record.trackArtists[0], "Insert Audio CD");
        EXPECT_STREQ(record.trackTitles[0], "");
        EXPECT_STREQ(record.comment, "");
        EXPECT_STREQ(record.trackComments[0], "");
        EXPECT_EQ(record.trackCount + record.programCount, 0);
    }
}

TEST(Drives, WantedOrFirstOrD) {
    const struct {
        uint32_t drives;
        char wanted, expected;
    } cases[] = {
        {1u << 4, 'E', 'E'}, {1u << 4, 'e', 'E'},  {1u << 4, 'D', 'E'},          {0, 'C', 'D'},
        {1u << 4, 0, 'E'},   {1u << 25, '-', 'Z'}, {1u << 2 | 1u << 3, -1, 'C'},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ChooseDrive(c.drives, c.wanted), c.expected) << c.wanted;
    EXPECT_EQ(DriveLetterOf(0x144), 0) << "not cut to a letter";
}
