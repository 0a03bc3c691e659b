// What the media player decides, and its geometry at every size.
#include "media/player.h"
#include "media/lengths.h"
#include "media/player_layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// A caption that has room for so many characters.
static std::string Caption(const Playlist& list, int playing, size_t room) {
    const auto Fits = [](void* context, const std::string& text) -> int {
        return text.size() <= *static_cast<size_t*>(context);
    };
    return MediaCaption(list, playing, Fits, &room);
}

TEST(MediaPlayer, CaptionsByWhatFits) {
    const Playlist list = {"C:\\lists\\x.m3u", 1, {"one", "D:\\music\\two.mp3"}};
    const std::string full = "C:\\lists\\x.m3u :: D:\\music\\two.mp3";
    const std::string half = "x.m3u :: D:\\music\\two.mp3";
    EXPECT_EQ(Caption(list, 1, full.size()), full);
    EXPECT_EQ(Caption(list, 1, full.size() - 1), half);
    EXPECT_EQ(Caption(list, 1, half.size()), half);
    EXPECT_EQ(Caption(list, 1, half.size() - 1), "x.m3u :: two.mp3");
    EXPECT_EQ(Caption(list, 0, 14), "C:\\lists\\x.m3u");
    EXPECT_EQ(Caption(list, 0, 13), "x.m3u");
    EXPECT_EQ(Caption({"", 1, list.entries}, 0, 99), "D:\\music\\two.mp3");
    EXPECT_EQ(Caption({"", 1, list.entries}, 1, 8), "two.mp3");
    EXPECT_EQ(Caption({list.name, 2, list.entries}, 1, 99), "No File Loaded");
    EXPECT_EQ(Caption({list.name, 0, {""}}, 0, 99), "No File Loaded");
    EXPECT_EQ(FileTitle("C:song.wav") + FileTitle("/a/b.wav") + FileTitle("C:\\"),
              "song.wavb.wavC:\\");
    EXPECT_EQ(MediaMenuText(8, "C:\\R&B\tsongs\\Tom & Jerry\t.wav"), "9  Tom && Jerry .wav");
}

TEST(MediaPlayer, TimesOfAnyNumber) {
    const struct {
        double duration, position;
        const char* text;
        int maximum, slider, atEnd;
    } rows[] = {{61.9, 59.99, "00:59 / 01:01", 61, 59, 0},
                {61.9, 61.9, "01:01 / 01:01", 61, 61, 1},
                {0.4, 0.4, "00:00 / 00:00", 1, 1, 1},
                {0, 0, "00:00 / 00:00", 1, 1, 0},
                {1e6, 9e5, "15000:00 / 16666:40", 65535, 65535, 0},
                {NAN, -1, "00:00 / 00:00", 1, 1, 0},
                {INFINITY, NAN, "00:00 / 1666666:40", 65535, 1, 0}};
    for (const auto& row : rows) {
        char text[64];
        MediaTimeText(text, sizeof text, WholeSeconds(row.position), WholeSeconds(row.duration));
        const SeekSlider slider = SeekSliderAt(row.duration, row.position);
        EXPECT_STREQ(text, row.text);
        EXPECT_EQ(slider.maximum, row.maximum) << row.text;
        EXPECT_EQ(slider.position, row.slider) << row.text;
        EXPECT_EQ(IsAtEnd(row.duration, row.position), row.atEnd) << row.text;
    }
}

static Playlist ListOf(size_t count, uint32_t position) {
    return {"", position, std::vector<std::string>(count, "a.wav")};
}

TEST(MediaPlayer, NextEntryInOrderAtRandomAndAround) {
    const struct {
        size_t count;
        uint32_t position;
        int repeat, random;
        uint32_t number;
        int next;
    } ends[] = {{3, 0, 0, 0, 0, 1},         {3, 2, 0, 0, 0, -1},         {3, 2, 1, 0, 0, 0},
                {1, 0, 0, 0, 0, -1},        {1, 0, 1, 1, 32767, 0},      {0, 0, 1, 1, 0, -1},
                {3, 2, 0, 1, 0, -1},        {3, 0, 0, 1, 10922, 0},      {3, 0, 0, 1, 10923, 1},
                {3, 0, 0, 1, 32766, 2},     {3, 0, 0, 1, 32767, 0},      {3, 9, 1, 0, 0, 0},
                {512, 5, 1, 1, 32766, 511}, {3, 0xFFFFFFFF, 0, 0, 0, -1}};
    for (const auto& e : ends)
        EXPECT_EQ(EntryAfterEnd(ListOf(e.count, e.position), e.repeat, e.random, e.number), e.next)
            << &e - ends;
    EXPECT_EQ(EntryBeside(ListOf(3, 0), -1, 0, 0), 2);
    EXPECT_EQ(EntryBeside(ListOf(3, 2), 1, 0, 0), 0);
    EXPECT_EQ(EntryBeside(ListOf(3, 2), 1, 1, 20000), 1);
    EXPECT_EQ(EntryBeside(ListOf(3, 1), -1, 1, 32766), 0) << "back has an order always";
    EXPECT_EQ(EntryBeside(ListOf(0, 0), 1, 0, 0), -1);
    uint32_t seed = 1, bits = 0;
    for (int i = 0; i < 1000; ++i)
        bits |= NextRandom(&seed);
    EXPECT_EQ(bits, kRandomMax);
}

TEST(MediaPlayer, EditedLists) {
    const Playlist before = {"C:\\a\\x.m3u", 2, {"one", "two", "two", "C:\\three"}};
    const struct {
        std::vector<std::string> entries;
        uint32_t position;
    } edits[] = {{{"two", "zero", "one", "two"}, 3},
                 {{"one", "one", "two", "three"}, 2},
                 {{"new"}, 0},
                 {{}, 0}};
    for (const auto& edit : edits)
        EXPECT_EQ(PositionAfterEdit(before, {"", 0, edit.entries}), edit.position);
}

static bool Overlap(const Box& a, const Box& b) {
    return a.width && b.width && a.left <= b.left + b.width && b.left <= a.left + a.width &&
           a.top <= b.top + b.height && b.top <= a.top + a.height;
}

static int Missing(const MediaLayout& layout, std::initializer_list<int> ids) {
    return static_cast<int>(std::count_if(
        ids.begin(), ids.end(), [&](int id) { return !layout.boxes[id - kMediaFirst].width; }));
}

// And the letters that are chosen fit, by widths that a bold Arial has in thousandths.
TEST(MediaPlayer, LayoutAtEverySize) {
    const MediaTextWidths widths = {
        {0, 5400, 3400, 3700, 3000, 5300, 2000, 2400, 1900, 2900, 2200, 0, 2600, 2400, 1800, 3400}};
    for (int width = 7; width <= 1700; width += width < 340 ? 7 : 61)
        for (int height = 6; height <= 500; height += height < 150 ? 3 : 50) {
            const std::string at = std::to_string(width) + "x" + std::to_string(height);
            const MediaLayout layout = LayOutMedia(width, height);
            int sizes[kMediaFonts];
            MediaFontSizes(layout, widths, 1, sizes);
            for (int i = 0; i < kMediaControls; ++i) {
                const Box& box = layout.boxes[i];
                if (!box.width) continue;
                EXPECT_TRUE(box.left >= 3 && box.top >= 3 && box.left + box.width <= width - 3 &&
                            box.top + box.height <= height - 3)
                    << at << " " << i;
                for (int j = 0; j < i; ++j)
                    EXPECT_FALSE(Overlap(box, layout.boxes[j])) << at << " " << i << " " << j;
                const int size = sizes[MediaFontOf(kMediaFirst + i)];
                EXPECT_TRUE(width < 60 || box.width >= 40) << at << " " << i;
                if (kMediaFirst + i == kMediaSeek || size == kMediaMinLetter) continue;
                EXPECT_LE(size, box.height) << at << " " << i;
                EXPECT_LE(i ? widths.width[i] * size / 1000 : 0, box.width) << at << " " << i;
            }
            const int transport = Missing(layout, {kMediaPlay, kMediaPrevious, kMediaNext,
                                                   kMediaPause, kMediaStop, kMediaPower});
            const int lists = Missing(layout, {kMediaOpen, kMediaSave, kMediaEditor, kMediaHistory,
                                               kMediaRepeat, kMediaRandom});
            EXPECT_TRUE(width < 160 || height < 122 || !(transport + lists)) << at;
            EXPECT_TRUE(width < 300 || height < 60 || !transport) << at;
            EXPECT_TRUE(width < 140 || height < 30 || !Missing(layout, {kMediaCaption, kMediaTime}))
                << at;
        }
}
