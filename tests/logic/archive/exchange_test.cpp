// Forms of one's own: text, delimited, old-style CDP; and what happens to discs that are there.
#include "archive/cdp.h"
#include "core/bytes.h"
#include "tests/logic/archive/records.h"

#include <gtest/gtest.h>

#include <vector>

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

// ---- old-style CDP

struct OldFile {
    std::vector<uint8_t> bytes;
    OldFile& Number(uint32_t value) {
        for (int i = 0; i < 4; ++i)
            bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
        return *this;
    }
    OldFile& Entry(uint32_t identity, uint32_t checksum, std::vector<uint8_t> data) {
        Number(static_cast<uint32_t>(data.size())).Number(identity).Number(checksum);
        bytes.insert(bytes.end(), data.begin(), data.end());
        return *this;
    }
};

static OldFile Head(uint32_t version, uint32_t count) {
    return OldFile().Number(0x564E4F54).Number(version).Number(count);
}

TEST(OldCdp, FaultsAndWhatStandsBeforeThem) {
    const std::vector<uint8_t> six = {1, 2, 4, 8, 0x55, 0x66};
    const uint32_t sixSum = 0x08040201; // the word alone
    const struct {
        const char* why;
        OldFile file;
        CdpFault fault;
        uint32_t read;
    } cases[] = {
        {"empty", OldFile(), kCdpShort, 0},
        {"another file", OldFile().Number(0x564E4F55).Number(9).Number(0), kCdpBadMagic, 0},
        {"version 2", Head(2, 0), kCdpTooNew, 0},
        {"eight bytes", OldFile().Number(0x564E4F54).Number(1), kCdpShort, 0},
        {"65537", Head(1, 65537), kCdpBadCount, 0},
        {"65536 announced", Head(1, 65536), kCdpShort, 0},
        {"none", Head(0, 0), kCdpGood, 0},
        {"six bytes", Head(1, 1).Entry(7, sixSum, six), kCdpGood, 1},
        {"two bytes, the others count as 0", Head(1, 1).Entry(7, 0x0201, {1, 2}), kCdpGood, 1},
        {"no bytes", Head(1, 1).Entry(7, 0, {}), kCdpGood, 1},
        {"all words", Head(1, 1).Entry(7, 0x0E0E0A0A, {8, 2, 8, 2, 2, 8, 6, 12, 9}), kCdpGood, 1},
        {"version 0 with a sum", Head(0, 2).Entry(7, 0, six).Entry(8, 1, six), kCdpBadChecksum, 1},
        {"wrong sum", Head(1, 2).Entry(7, sixSum, six).Entry(8, 0, six), kCdpBadChecksum, 1},
        {"39672 bytes", Head(1, 1).Number(39672).Number(7).Number(0), kCdpBadSize, 0},
        {"39671 bytes that are not there", Head(1, 1).Number(39671).Number(7).Number(0), kCdpShort,
         0},
        {"cut in the second", Head(0, 2).Entry(7, 0, six).Number(6), kCdpShort, 1},
        {"more than announced", Head(0, 1).Entry(7, 0, six).Entry(8, 0, six), kCdpGood, 1},
    };
    for (const auto& c : cases) {
        CdpReader reader;
        CdpEntry entry;
        CdpFault fault = OpenCdp(c.file.bytes, &reader);
        uint32_t read = 0;
        if (fault == kCdpGood) {
            while (ReadCdpEntry(&reader, &entry, &fault))
                EXPECT_EQ(entry.identity, 7 + read++) << c.why;
        }
        EXPECT_EQ(fault, c.fault) << c.why;
        EXPECT_EQ(read, c.read) << c.why;
    }
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
    KeepUncarried(kIniForm, *stored, read.get());
    EXPECT_STREQ(read->title, "New title");
    EXPECT_STREQ(read->trackArtists[0], "New artist");
    EXPECT_STREQ(read->trackTitles[1], "Second") << "the file has only the default there";
    EXPECT_EQ(read->totalMinutes, 10);
    EXPECT_EQ(read->revision, 4);
    EXPECT_STREQ(read->comment, "mine");
    EXPECT_STREQ(read->trackComments[2], "loud");
    EXPECT_EQ(read->program[0].start, MakeTmsf(2, 0, 10, 0));

    KeepUncarried(kCdpForm, *stored, asCdp.get());
    EXPECT_STREQ(asCdp->trackTitles[1], "Track 2") << "a CDP file carries all";
    EXPECT_STREQ(asCdp->comment, "");

    auto shorter = MakeDisc(5, 2, "Two tracks");
    KeepUncarried(kCueForm, *stored, shorter.get());
    EXPECT_STREQ(shorter->trackTitles[1], "Track 2") << "of another disc of that number";
}

TEST(Carry, TakeoverReplacesNothingTyped) {
    auto stored = TypedDisc();
    auto other = MakeDisc(5, 3, "Old title", "Old artist");
    CopyText(other->trackTitles[0], "Old first");
    CopyText(other->trackTitles[1], "Old second");
    AddUnknown(*other, stored.get());
    EXPECT_STREQ(stored->title, "Typed");
    EXPECT_STREQ(stored->trackTitles[0], "Old first");
    EXPECT_STREQ(stored->trackTitles[1], "Second");
    EXPECT_EQ(stored->programCount, 1);

    auto unknown = MakeDisc(5, 3, kUnknownTitle, kDefaultArtist);
    AddUnknown(*other, unknown.get());
    EXPECT_EQ(PackedDisc(*other), PackedDisc(*unknown));
}
