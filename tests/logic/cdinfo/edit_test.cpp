// Editing a disc's texts: limits, and what the record becomes.
#include "cdinfo/editor.h"
#include "cdinfo/program.h"
#include "core/text.h"

#include <gtest/gtest.h>

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
        {kTrackTitle, "Rain", "Rain"},
        {kTrackTitle, "  Rain  ", "Rain"},
        {kTrackTitle, "", ""},
        {kTrackArtist, longText, longText.substr(0, 63)},
        {kTrackArtist, "\xC4rzte", "\xC4rzte"},
        {kTrackComment, longText, longText.substr(0, 254)},
    };
    for (const auto& c : cases) {
        CDInfoRecord disc = MakeDisc(3);
        EXPECT_TRUE(SetTrackField(&disc, 1, c.field, c.typed.c_str(), 0)) << c.typed;
        EXPECT_EQ(TrackFieldText(disc, 1, c.field), c.kept);
        EXPECT_EQ(TrackFieldText(StoreAndReload(disc), 1, c.field), c.kept) << c.typed;
        EXPECT_FALSE(SetTrackField(&disc, 1, c.field, c.typed.c_str(), 0)) << "typed again";
        EXPECT_FALSE(SetTrackField(&disc, 3, c.field, "no such track", 0));
    }
    CDInfoRecord disc = MakeDisc(1);
    EXPECT_TRUE(SetDiscTitle(&disc, longText.c_str()));
    EXPECT_TRUE(SetDiscComment(&disc, longText.c_str()));
    const CDInfoRecord again = StoreAndReload(disc);
    EXPECT_EQ(again.title, longText.substr(0, 63));
    EXPECT_EQ(again.comment, longText.substr(0, 254));
}

// A comment of full length comes from elsewhere; opening and leaving its cell is no edit.
TEST(Edit, ALongerCommentStaysUnlessEdited) {
    CDInfoRecord disc = MakeDisc(2);
    const std::string full(255, 'c');
    CopyText(disc.comment, full.c_str());
    CopyText(disc.trackComments[0], full.c_str());
    EXPECT_FALSE(SetTrackField(&disc, 0, kTrackComment, full.c_str(), 0));
    EXPECT_FALSE(SetDiscComment(&disc, full.c_str()));
    EXPECT_EQ(disc.comment, full);
}

TEST(Edit, OnlyAChangeRaisesTheRevision) {
    const struct {
        const char* name;
        void (*edit)(CDInfoRecord*);
        int changed;
    } cases[] = {
        {"nothing", [](CDInfoRecord*) {}, 0},
        {"title", [](CDInfoRecord* r) { SetDiscTitle(r, "New"); }, 1},
        {"case", [](CDInfoRecord* r) { SetTrackField(r, 1, kTrackTitle, "TRACK 2", 0); }, 1},
        {"artist", [](CDInfoRecord* r) { SetTrackField(r, 2, kTrackArtist, "Ann", 0); }, 1},
        {"beyond the tracks", [](CDInfoRecord* r) { CopyText(r->trackTitles[3], "x"); }, 0},
        {"entry more", [](CDInfoRecord* r) { AddSegment(r, r->program[0]); }, 1},
        {"emptied", [](CDInfoRecord* r) { ClearProgram(r); }, 0}, // it was that of all tracks
    };
    for (const auto& c : cases) {
        CDInfoRecord record = MakeDisc(3);
        record.revision = 0xFFFF;
        record.device = 9;
        CDInfoRecord edited = record;
        c.edit(&edited);
        EXPECT_EQ(TakeEdited(&record, edited), c.changed) << c.name;
        EXPECT_EQ(record.revision, c.changed ? 0 : 0xFFFF) << c.name;
        EXPECT_EQ(record.device, 9u);
        EXPECT_GE(record.programCount, 3) << c.name;
        EXPECT_STREQ(record.discArtist, std::string(c.name) == "artist" ? "Various" : "Artist");
    }
}

TEST(Edit, ATooLargeRecordIsSeenAndCanBeCut) {
    CDInfoRecord disc = MakeDisc(100);
    ClearProgram(&disc);
    const std::string text(254, 'y');
    for (size_t i = 0; i < 100; ++i) {
        SetTrackField(&disc, i, kTrackTitle, text.c_str(), 0);
        SetTrackField(&disc, i, kTrackArtist, (std::to_string(i) + text).c_str(), 0);
        SetTrackField(&disc, i, kTrackComment, text.c_str(), 0);
        AddSegment(&disc, {});
    }
    SetDiscTitle(&disc, text.c_str());
    EXPECT_TRUE(FitsEntry(disc)) << "without the comment of the disc there is room";
    SetDiscComment(&disc, text.c_str());
    EXPECT_FALSE(FitsEntry(disc));
    ShrinkToFit(&disc);
    EXPECT_TRUE(FitsEntry(disc));
    EXPECT_STREQ(disc.trackComments[99], "");
    EXPECT_EQ(disc.trackComments[98], text) << "no more than needed";
    EXPECT_EQ(disc.programCount, 100);
}
