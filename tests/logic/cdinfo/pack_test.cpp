// Packed entries: what is written, what reads back, what hostile bytes do, and what has room.
#include "cdinfo/editor.h"
#include "cdinfo/program.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/text.h"

using Record = std::unique_ptr<CDInfoRecord>;
using Bytes = std::vector<uint8_t>;

static Record MakeRecord(uint16_t tracks) {
    auto record = std::make_unique<CDInfoRecord>();
    record->trackCount = tracks;
    ApplyDefaults(record.get());
    for (uint32_t i = 0; i <= tracks; ++i)
        record->trackStarts[i] = 150 + i * 75 * 61;
    return record;
}

static Bytes Pack(const CDInfoRecord& record) {
    static uint8_t buffer[kMaxPackedEntry];
    size_t length;
    return PackRecord(record, buffer, &length) ? Bytes(buffer, buffer + length) : Bytes();
}

static Record Unpack(const Bytes& bytes) {
    auto record = std::make_unique<CDInfoRecord>();
    return UnpackEntry(bytes, record.get()) ? std::move(record) : nullptr;
}

TEST(Pack, EveryByteHasItsPlace) {
    auto record = MakeRecord(2);
    CopyText(record->title, "Ti");
    CopyText(record->trackArtists[0], "X");
    CopyText(record->trackArtists[1], "x");
    CopyText(record->trackTitles[1], "S");
    CopyText(record->trackComments[0], "c");
    record->revision = 0x0102;
    record->programCount = 1;
    record->program[0] = {MakeTmsf(2, 0, 0, 1), MakeTmsf(2, 3, 4, 5)};
    const Bytes expected = {44,  0,                               // length
                            2,   'T', 'i', 2,   0x81,             // title, tracks, program
                            2,   0,   0,   1,   2,    3,    4, 5, // one segment
                            1,   'X', 254, 255, 1,    'S',        // artists, titles
                            2,   255, 1,   'c', 255,              // level, comments
                            2,   1,   0,   0,                     // revision
                            150, 0,   0,   0,   0x75, 0x12, 0, 0, 0x54, 0x24, 0, 0};
    Bytes packed = Pack(*record);
    ASSERT_EQ(expected.size(), packed.size());
    EXPECT_EQ(packed.size(), static_cast<size_t>(packed[0] | packed[1] << 8));
    packed[0] = expected[0];
    EXPECT_EQ(expected, packed);
}

TEST(Unpack, LyingCounts) {
    auto disc = MakeRecord(3); // the entry's own count decides, also when the disc has one
    EXPECT_FALSE(UnpackEntry(Bytes{0, 0, 0, 101, 0x80}, disc.get()));
    Bytes entry = {0, 0, 0, 0, 0xFF}; // 127 segments
    for (uint8_t i = 0; i < 127; ++i)
        entry.insert(entry.end(), {i, 0, 0, 0, i, 1, 1, 1});
    const auto many = Unpack(entry);
    EXPECT_EQ(100, many->programCount);
    EXPECT_EQ(99u, many->program[99].start);
}

// Cut off at every byte: what stands before the cut is read as it was.
TEST(Unpack, CutOffAnywhere) {
    auto record = MakeRecord(4);
    CopyText(record->title, "Title");
    const Bytes entry = Pack(*record);
    for (size_t length = 0; length < entry.size(); ++length) {
        const auto read = Unpack(Bytes(entry.begin(), entry.begin() + static_cast<long>(length)));
        ASSERT_EQ(length >= 9, read != nullptr) << length;
        if (!read) continue;
        EXPECT_STREQ("Title", read->title);
        EXPECT_EQ(0u, read->trackStarts[0]); // half a table would give wrong times
    }
}

TEST(Pack, TextsThatChangeOnTheWay) {
    const struct {
        const char *artist, *artistRead, *title, *titleRead;
    } tracks[] = {{"Nina", "Nina", "track 1", "Track 1"},
                  {"NINA", "Nina", "track 1", "track 1"},
                  {" Ed ", "Ed", "TRACK 3", "Track 3"},
                  {"", "", "  ", ""}};
    auto record = MakeRecord(4);
    std::memset(record->trackComments[0], 'b', 255); // too long; what follows is not lost with it
    std::memset(record->trackComments[1], 'b', 254);
    for (int i = 0; i < 4; ++i) {
        CopyText(record->trackArtists[i], tracks[i].artist);
        CopyText(record->trackTitles[i], tracks[i].title);
    }
    const auto read = Unpack(Pack(*record));
    ASSERT_TRUE(read);
    EXPECT_STREQ("Various", read->discArtist);
    EXPECT_STREQ("", read->trackComments[0]);
    EXPECT_EQ(std::string(254, 'b'), read->trackComments[1]);
    for (int i = 0; i < 4; ++i) {
        EXPECT_STREQ(tracks[i].artistRead, read->trackArtists[i]);
        EXPECT_STREQ(tracks[i].titleRead, read->trackTitles[i]);
    }
}

TEST(Pack, ATooLargeRecordIsSeenAndCanBeCut) {
    auto disc = MakeRecord(100);
    const std::string text(254, 'y');
    for (size_t i = 0; i < 100; ++i) {
        for (const TrackField field : {kTrackTitle, kTrackArtist, kTrackComment})
            SetTrackField(disc.get(), i, field, (std::to_string(100 + i) + text).c_str(), 0);
        AddSegment(disc.get(), {});
    }
    EXPECT_FALSE(AddSegment(disc.get(), {}));
    SetDiscTitle(disc.get(), text.c_str());
    EXPECT_TRUE(FitsEntry(*disc)) << "without the comment of the disc there is room";
    SetDiscComment(disc.get(), text.c_str());
    EXPECT_FALSE(FitsEntry(*disc));
    ShrinkToFit(disc.get());
    EXPECT_TRUE(FitsEntry(*disc));
    EXPECT_STREQ(disc->trackComments[99], "");
    EXPECT_EQ(std::strlen(disc->trackComments[98]), 254u) << "no more than needed";
}

TEST(Unpack, EarlierLayoutsAndLevels) {
    const Bytes entry = {0, 0, 2, 'h', 'i', 2, 3, 0, 1, 200, 255, 254, 1, 'T', 255};
    auto record = std::make_unique<CDInfoRecord>();
    record->trackSeconds[1] = 125;
    ASSERT_TRUE(UnpackEntry(entry, record.get()));
    EXPECT_EQ(3, record->programCount);
    EXPECT_EQ(MakeTmsf(2, 2, 5, 0), record->program[1].stop);
    EXPECT_STREQ("T", record->trackTitles[0]);
    for (const uint8_t level : {0, 1, 2, 9}) {
        const auto read = Unpack({0, 0, 0, 1,   0x80, 255, 255, level, 1,    'c', 255, 7,
                                  0, 0, 0, 150, 0,    0,   0,   0x75,  0x12, 0,   0});
        EXPECT_STREQ(level >= 1 ? "c" : "", read->comment);
        EXPECT_EQ(level >= 2 ? 61 : 0, read->trackSeconds[0]);
    }
}
