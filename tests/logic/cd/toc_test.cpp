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
        {"-1", 0xFFFFFFFF, "FFFFFFFF"},
        {"2147483648", 0x7FFFFFFF, "7FFFFFFF"},
        {"-2147483649", 0x80000000, "80000000"},
        {"9999999999999999", 0x7FFFFFFF, "7FFFFFFF"},
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

TEST(Toc, LengthsLeadOutAndAnyTrackCount) {
    for (uint32_t count : {0u, 1u, 3u, 99u, 100u, 101u, UINT32_MAX}) {
        TocReading reading;
        reading.trackCount = count;
        const uint32_t tracks = std::min(count, 100u);
        for (uint32_t i = 0; i < kMaxTracks; ++i)
            reading.starts[i] = MakeMsf(i / 2, 2, i % 2 * 74); // the odd ones 74 frames later
        reading.lastLength = MakeMsf(0, 20, 74);
        CDInfoRecord record;
        ApplyToc(reading, &record);
        EXPECT_EQ(record.trackCount, tracks);
        if (!tracks) continue;
        EXPECT_EQ(record.trackStarts[0], 150u);
        EXPECT_EQ(record.trackStarts[tracks], record.trackStarts[tracks - 1] + 20 * 75 + 74);
        EXPECT_EQ(record.trackSeconds[tracks - 1], 20);
        EXPECT_EQ(record.trackSeconds[0], tracks > 1 ? 0 : 20) << "74 frames are no second";
        for (Msf& start : reading.starts)
            start = UINT32_MAX; // whatever a drive says
        reading.lastLength = UINT32_MAX;
        ApplyToc(reading, &record);
        EXPECT_EQ(record.trackCount, tracks);
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
