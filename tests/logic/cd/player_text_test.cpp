// What the CD player window shows: texts, page rule, tooltips, segment repeater, pie.
#include "cd/player_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "cd/player_pie.h"
#include "core/text.h"

static std::unique_ptr<CDInfoRecord> Disc(uint16_t tracks) {
    auto record = std::make_unique<CDInfoRecord>();
    record->trackCount = tracks;
    ApplyDefaults(record.get());
    CopyText(record->title, "Rivers");
    return record;
}

TEST(PlayerText, AnyTrackNumberGivesAnIndexOfTheRecord) {
    const struct {
        uint16_t current, count;
        size_t index;
    } rows[] = {{1, 12, 0},       {12, 12, 11},     {13, 12, 11},   {0, 12, 11},
                {1, 0, 0},        {0, 0, 0},        {101, 0, 0},    {100, 100, 99},
                {65535, 100, 99}, {100, 65535, 99}, {101, 65535, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(PlayingIndex(row.current, row.count), row.index)
            << row.current << " of " << row.count;
}

TEST(PlayerText, TitlesWhilePlayingAndAtRest) {
    const auto record = Disc(3);
    CopyText(record->trackArtists[1], "Anna");
    CopyText(record->trackTitles[1], "Bridge");
    PlayerTitles shown = TitlesShown(*record, 1, 2);
    EXPECT_STREQ(shown.disc, "Rivers");
    EXPECT_STREQ(shown.artist, "Anna");
    EXPECT_STREQ(shown.track, "Bridge");
    shown = TitlesShown(*record, 0, 2);
    EXPECT_STREQ(shown.artist, "Various");
    EXPECT_STREQ(shown.track, "");
    CopyText(record->trackArtists[1], "Artist");
    EXPECT_STREQ(TitlesShown(*record, 0, 0).artist, "Artist");
}

TEST(PlayerText, NeighboursGoRoundTheDisc) {
    const auto record = Disc(3);
    EXPECT_STREQ(ForwardTip(*record, 1, 1), "Track 2");
    EXPECT_STREQ(ForwardTip(*record, 1, 3), "Track 1");
    EXPECT_STREQ(BackTip(*record, 1, 1), "Track 3");
    EXPECT_STREQ(BackTip(*record, 1, 3), "Track 2");
    EXPECT_EQ(BackTip(*record, 0, 3), nullptr);
    EXPECT_NE(BackTip(*Disc(0), 1, 0), nullptr);
    EXPECT_NE(ForwardTip(*Disc(100), 1, 65535), nullptr);
}

TEST(PlayerText, MenuTextDoublesItsMarksWithinTheBuffer) {
    char text[8];
    MenuText(text, sizeof text, "A & \tB");
    EXPECT_STREQ(text, "A &&  B");
    MenuText(text, sizeof text, "123456&");
    EXPECT_STREQ(text, "123456") << "half a mark would underline the next letter";
}

TEST(PlayerText, PagesOfTrackButtons) {
    const struct {
        uint16_t offset, count, kept; // the page that a refresh keeps
        int last, next;               // there: button 20 is enabled, "Next Tracks" is enabled
    } rows[] = {{0, 12, 0, 0, 0},    {0, 20, 0, 1, 0},      {0, 21, 0, 1, 1},
                {15, 30, 0, 1, 1},   {15, 31, 15, 0, 0},    {10, 30, 10, 1, 0},
                {80, 100, 80, 1, 0}, {65535, 100, 0, 1, 1}, {5, 0, 0, 0, 0}};
    for (const auto& row : rows) {
        EXPECT_EQ(KeptPage(row.offset, row.count), row.kept) << row.offset << " " << row.count;
        EXPECT_EQ(TrackButtonEnabled(20, row.kept, row.count), row.last) << row.count;
        EXPECT_EQ(NextPageEnabled(row.kept, row.count), row.next) << row.count;
    }
    EXPECT_EQ(ButtonOfTrack(25, 5), 20);
    EXPECT_EQ(ButtonOfTrack(26, 5), 0);
    EXPECT_EQ(ButtonOfTrack(5, 5), 0);
    EXPECT_EQ(ButtonOfTrack(0, 0), 0);
}

TEST(PlayerText, OnlyAStretchOfOneTrackIsASegment) {
    ProgramSegment segment;
    const Tmsf start = SegmentPoint(4, 125);
    EXPECT_EQ(start, MakeTmsf(4, 2, 5, 0));
    ASSERT_TRUE(RecordedSegment(start, SegmentPoint(4, 130), &segment));
    EXPECT_EQ(segment.start, start);
    EXPECT_EQ(segment.stop, MakeTmsf(4, 2, 10, 0));
    EXPECT_FALSE(RecordedSegment(start, SegmentPoint(5, 130), &segment));
    EXPECT_FALSE(RecordedSegment(start, start, &segment));
    EXPECT_FALSE(RecordedSegment(start, SegmentPoint(4, 59), &segment));
    EXPECT_FALSE(RecordedSegment(kNoSegmentStart, kNoSegmentStart, &segment));
}

// The share of lit pixels follows the degrees, and they start right of the top.
TEST(PlayerPie, LitPartGrowsClockwise) {
    constexpr int kSide = 61;
    const PieColors colors = {0x111111, 0x222222, 0x0000FF, 0x333333}; // lit: red
    std::vector<uint32_t> pixels(kSide * kSide);
    const auto lit = [&](int x, int y) { return pixels[y * kSide + x] == 0xFF0000; };
    const auto count = [&] { return std::count(pixels.begin(), pixels.end(), 0xFF0000u); };
    DrawPie(pixels.data(), kSide, 360, colors);
    const double whole = static_cast<double>(count());
    ASSERT_GT(whole, kSide * kSide / 2);
    EXPECT_EQ(PieDegrees(10, 0), 0);
    EXPECT_EQ(PieDegrees(5, 4), 360);
    EXPECT_EQ(PieDegrees(0xFFFFFFFE, 0xFFFFFFFF), 359);
    EXPECT_EQ(pixels[0], 0x111111u) << "the corner is background";
    for (int degrees : {0, 1, 90, 180, 181, 270, 359}) {
        DrawPie(pixels.data(), kSide, degrees, colors);
        EXPECT_NEAR(count() / whole, degrees / 360.0, 0.04) << degrees;
        const int middle = kSide / 2, off = 14;
        EXPECT_EQ(lit(middle + off, middle - off), degrees > 45) << degrees;
        EXPECT_EQ(lit(middle - off, middle + off), degrees > 225) << degrees;
    }
}
