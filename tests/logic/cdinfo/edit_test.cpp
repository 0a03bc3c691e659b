// Editing a disc's texts: limits, and what the record becomes.
#include "cdinfo/editor.h"
#include "cdinfo/program.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

static CDInfoRecord MakeDisc(uint16_t tracks) {
    CDInfoRecord record;
    ApplyDefaults(&record);
    record.trackCount = tracks;
    for (uint16_t i = 0; i < tracks; ++i) {
        record.trackSeconds[i] = 100;
        record.trackStarts[i + 1] = record.trackStarts[i] + 100 * kFramesPerSecond;
    }
    DefaultProgram(&record);
    return record;
}

// What the texts are after the database has had the record.
static CDInfoRecord StoreAndReload(const CDInfoRecord& record) {
    static uint8_t entry[kMaxPackedEntry];
    size_t length = 0;
    EXPECT_TRUE(PackRecord(record, entry, &length));
    CDInfoRecord again;
    EXPECT_TRUE(UnpackEntry({entry, length}, &again));
    return again;
}

TEST(Edit, WhatIsTypedSurvivesTheDatabase) {
    const std::string longText(300, 'x');
    const struct {
        TrackField field;
        std::string typed, kept;
    } cases[] = {
        {kTrackTitle, "  Rain  ", "Rain"},
        {kTrackArtist, longText, longText.substr(0, 63)},
        {kTrackArtist, "\xC4rzte", "\xC4rzte"},
        {kTrackComment, longText, longText.substr(0, 254)},
    };
    for (const auto& c : cases) {
        CDInfoRecord disc = MakeDisc(3);
        EXPECT_TRUE(SetTrackField(&disc, 1, c.field, c.typed.c_str(), 0)) << c.typed;
        EXPECT_EQ(TrackFieldText(StoreAndReload(disc), 1, c.field), c.kept) << c.typed;
    }
}

TEST(Edit, ATooLargeRecordIsSeenAndCanBeCut) {
    CDInfoRecord disc = MakeDisc(100);
    ClearProgram(&disc);
    const std::string text(254, 'y');
    for (size_t i = 0; i < 100; ++i) {
        for (const TrackField field : {kTrackTitle, kTrackArtist, kTrackComment})
            SetTrackField(&disc, i, field, (std::to_string(100 + i) + text).c_str(), 0);
        AddSegment(&disc, {});
    }
    EXPECT_FALSE(AddSegment(&disc, {}));
    SetDiscTitle(&disc, text.c_str());
    EXPECT_TRUE(FitsEntry(disc)) << "without the comment of the disc there is room";
    SetDiscComment(&disc, text.c_str());
    EXPECT_FALSE(FitsEntry(disc));
    ShrinkToFit(&disc);
    EXPECT_TRUE(FitsEntry(disc));
    EXPECT_STREQ(disc.trackComments[99], "");
    EXPECT_EQ(std::strlen(disc.trackComments[98]), 254u) << "no more than needed";
}
