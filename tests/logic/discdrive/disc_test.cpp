// From a sheet and the lengths of its files to a disc: where tracks start, where bytes lie, what
// is refused; and the arithmetic of positions.
#include "core/tmsf.h"
#include "discdrive/disc.h"

#include <gtest/gtest.h>

#include <cstring>

constexpr uint64_t kSector = kAudioSectorBytes;

static int Build(const std::string& text, const std::vector<ImageFile>& files, Disc* disc) {
    CueSheet sheet;
    EXPECT_TRUE(ReadCue(text, &sheet)) << text;
    return BuildDisc(sheet, files, disc);
}

// Where the sound of a frame comes from: file and offset of its sector.
static std::pair<int, uint64_t> Source(const Disc& disc, uint32_t frame) {
    const DiscPiece part = NextStretch(disc, frame, frame + 1);
    return {part.count ? part.file : -2, part.offset};
}

TEST(Disc, LaysOutGapsSectorSizesAndFiles) {
    Disc d;
    // Data of 2048 bytes, then audio in the same file; its gap (index 00) is audio already. The
    // third track begins in a second file, behind two seconds that no file holds.
    ASSERT_TRUE(Build("FILE a.bin BINARY\nTRACK 01 MODE1/2048\nINDEX 01 00:00:00\n"
                      "TRACK 02 AUDIO\nINDEX 00 00:01:00\nINDEX 01 00:02:00\nPOSTGAP 00:01:00\n"
                      "FILE b.wav WAVE\nTRACK 03 AUDIO\nPREGAP 00:02:00\nINDEX 01 00:00:00\n",
                      {{0, 75 * 2048 + 225 * kSector}, {44, 10 * kSector + 100}}, &d));
    ASSERT_EQ(d.tracks.size(), 3u);
    const DiscTrack tracks[] = {{150, 150, 0}, {300, 150 + 75 + 150, 1}, {675, 11, 1}};
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(memcmp(&d.tracks[i], &tracks[i], sizeof tracks[i]), 0) << "track " << i + 1;
    EXPECT_EQ(d.end, 686u);
    EXPECT_EQ(Source(d, 150).first, -2) << "data is not played";
    EXPECT_EQ(Source(d, 226), std::make_pair(0, 75 * 2048 + kSector)) << "the gap's second sector";
    EXPECT_EQ(Source(d, 300), std::make_pair(0, 75 * 2048 + 75 * kSector));
    EXPECT_EQ(Source(d, 449), std::make_pair(0, 75 * 2048 + 224 * kSector)) << "the last one";
    EXPECT_EQ(Source(d, 450).first, -1) << "the gap after track 2";
    EXPECT_EQ(Source(d, 674).first, -1) << "the gap before track 3";
    EXPECT_EQ(Source(d, 675), std::make_pair(1, uint64_t{44}));
    EXPECT_EQ(NextStretch(d, 685, 686).bytes, 100u) << "a WAV file's last sector is filled up";
}

TEST(Disc, RefusesSheetsThatDoNotFitTheirFiles) {
    const std::string two = "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00\n"
                            "TRACK 02 AUDIO\nINDEX 01 ";
    const struct {
        const char* why;
        std::string text;
        std::vector<ImageFile> files;
    } cases[] = {
        {"cut within a sector", two + "00:01:00", {{0, 150 * kSector - 1}}},
        {"cut before an index", two + "00:01:00", {{0, 74 * kSector}}},
        {"nothing left for the last track", two + "00:01:00", {{0, 75 * kSector}}},
        {"tracks at one place", two + "00:00:00", {{0, 75 * kSector}}},
        {"tracks that overlap",
         two + "00:01:00\nTRACK 03 AUDIO\nINDEX 01 00:00:50",
         {{0, 999 * kSector}}},
        {"data in a WAV file",
         "FILE a.wav WAVE\nTRACK 01 MODE1/2352\nINDEX 01 00:00:00",
         {{44, kSector}}},
        {"an empty file", "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00", {{0, 0}}},
        {"longer than minutes can tell",
         "FILE a.bin BINARY\nTRACK 01 AUDIO\nINDEX 01 00:00:00",
         {{0, (kMaxDiscFrames + 1) * kSector}}},
        {"longer than sizes can tell",
         "FILE a.wav WAVE\nTRACK 01 AUDIO\nINDEX 01 00:00:00",
         {{44, ~uint64_t{0} - 44}}},
    };
    for (const auto& c : cases) {
        Disc d;
        EXPECT_FALSE(Build(c.text, c.files, &d)) << c.why;
    }
}

static Disc FolderDisc(size_t tracks, uint64_t frames) {
    Disc d;
    const std::vector<ImageFile> files(tracks, {44, frames * kSector});
    EXPECT_TRUE(BuildDisc(MakeFolderSheet(tracks), files, &d));
    return d;
}

TEST(Disc, PositionsAreToldAndReadInEachFormat) {
    const Disc d = FolderDisc(101, 4577); // 01:01:02 each
    EXPECT_EQ(TellPosition(d, kTimeTmsf, 150 + 4577 + 76), MakeTmsf(2, 0, 1, 1));
    EXPECT_EQ(TellPosition(d, kTimeTmsf, d.end), MakeTmsf(101, 1, 1, 2));
    EXPECT_EQ(TellPosition(d, kTimeMsf, 4500 + 76), MakeMsf(1, 1, 1));
    EXPECT_EQ(TellLength(kTimeTmsf, 4577), MakeMsf(1, 1, 2));
    for (const TimeFormat format : {kTimeMs, kTimeMsf, kTimeTmsf}) {
        for (uint32_t frame = 150; frame <= d.end; frame += 37) {
            uint32_t back = 0;
            ASSERT_TRUE(ReadPosition(d, format, TellPosition(d, format, frame), &back));
            ASSERT_EQ(back, frame) << format;
        }
    }
    uint32_t frame;
    for (const Tmsf bad : {MakeTmsf(0, 0, 0, 0), MakeTmsf(102, 0, 0, 0), MakeTmsf(101, 1, 1, 3)})
        EXPECT_FALSE(ReadPosition(d, kTimeTmsf, bad, &frame)) << bad;
    EXPECT_FALSE(ReadPosition(d, kTimeMsf, MakeMsf(0, 1, 74), &frame)) << "the lead-in";
    EXPECT_FALSE(ReadPosition(d, kTimeMs, UINT32_MAX, &frame));
    EXPECT_FALSE(ReadPosition(Disc{}, kTimeMsf, MakeMsf(0, 2, 0), &frame));
}
