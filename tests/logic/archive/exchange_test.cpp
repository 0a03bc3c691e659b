// Text and delimited form, and what happens to discs that are there already.
#include "tests/logic/archive/records.h"

#include <gtest/gtest.h>

TEST(TextForms, GoldenDisc) {
    auto disc = MakeDisc(0x00C0FFEE, 2, "The \"Best\"");
    CopyText(disc->comment, "a, b\tc");
    CopyText(disc->trackArtists[1], "Else");
    CopyText(disc->trackTitles[1], "");
    CopyText(disc->trackComments[1], "live");
    CompleteRecord(disc.get());
    EXPECT_EQ(TextBlock(*disc), "#~#\r\n"
                                "CDTitle:The \"Best\"\r\n"
                                "CDComment:a, b\tc\r\n"
                                "Track Count:2\r\n"
                                "Track001:Somebody;;Track 1;;\r\n"
                                "Track002:Else;;;;live\r\n");
    EXPECT_EQ(DelimitedLines(*disc, ','),
              "\"00c0ffee\",\"000\",\"The \"\"Best\"\"\",\"Various\",\"a, b\tc\",\"6:40\"\r\n"
              "\"00c0ffee\",\"001\",\"Track 1\",\"Somebody\",\"\",\"3:20\"\r\n"
              "\"00c0ffee\",\"002\",\"\",\"Else\",\"live\",\"3:20\"\r\n");
    disc->trackCount = 0;
    EXPECT_EQ(
        DelimitedLines(*disc, '\t'),
        "\"00c0ffee\"\t\"000\"\t\"The \"\"Best\"\"\"\t\"Various\"\t\"a, b\tc\"\t\"0:00\"\r\n");
    EXPECT_TRUE(TextBlock(*disc).ends_with("\r\nTrack Count:0\r\n"));
}

// ---- discs that are there already

static RecordPointer TypedDisc() {
    auto stored = MakeDisc(5, 3, "Typed", "Typist");
    CopyText(stored->comment, "mine");
    CopyText(stored->trackTitles[1], "Second");
    CopyText(stored->trackComments[2], "loud");
    stored->programCount = 1;
    stored->program[0] = {MakeTmsf(2, 0, 10, 0), MakeTmsf(2, 0, 20, 0)};
    stored->revision = 4;
    return stored;
}

TEST(Carry, ImportKeepsWhatTheFormCantCarry) {
    const auto stored = TypedDisc();
    auto read = MakeDisc(5, 3, "New title", "New artist");
    std::memset(read->trackStarts, 0, sizeof read->trackStarts); // as CDPlayer.ini has none
    CompleteRecord(read.get());
    auto asCdp = std::make_unique<CDInfoRecord>(*read);
    const std::string before = PackedDisc(*asCdp);
    KeepUncarried(kCdpForm, *stored, asCdp.get());
    EXPECT_EQ(PackedDisc(*asCdp), before) << "a CDP file carries all";

    // All as it is stored, but the texts that the file has.
    KeepUncarried(kIniForm, *stored, read.get());
    auto wanted = TypedDisc();
    CopyText(wanted->title, "New title");
    for (int i = 0; i < 3; ++i)
        CopyText(wanted->trackArtists[i], "New artist");
    DeriveDiscArtist(wanted.get());
    EXPECT_EQ(PackedDisc(*read), PackedDisc(*wanted));
    EXPECT_EQ(read->totalMinutes, 10);

    auto shorter = MakeDisc(5, 2, "Two tracks");
    KeepUncarried(kCueForm, *stored, shorter.get());
    EXPECT_STREQ(shorter->trackTitles[1], "Track 2") << "of another disc of that number";
}

TEST(Carry, TakeoverReplacesNothingTyped) {
    auto stored = TypedDisc(), wanted = TypedDisc();
    auto other = MakeDisc(5, 3, "Old title", "Old artist");
    CopyText(other->trackTitles[0], "Old first");
    CopyText(other->trackTitles[1], "Old second");
    AddUnknown(*other, stored.get());
    CopyText(wanted->trackTitles[0], "Old first");
    EXPECT_EQ(PackedDisc(*stored), PackedDisc(*wanted));

    auto unknown = MakeDisc(5, 3, kUnknownTitle, kDefaultArtist);
    AddUnknown(*other, unknown.get());
    EXPECT_EQ(PackedDisc(*other), PackedDisc(*unknown));
}
