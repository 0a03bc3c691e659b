// The spectrum analyzer without a window: trails, segments, settings, geometry and pixels.
#include "waves/analyzer_picture.h"
#include "waves/sound.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <vector>

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

static AnalyzerSettings SettingsOf(uint32_t sides, uint32_t center, uint32_t split) {
    AnalyzerSettings settings = DefaultAnalyzerSettings(32);
    settings.LeftAndRight = sides;
    settings.Center = center;
    settings.Split = split;
    return settings;
}

TEST(Analyzer, TrailsHoldThenSnapOrFallByATenth) {
    const float values[] = {70, 10, 10, 10, 10, 10, 10, 10, 10, 150, 0, 0, 0};
    const float snaps[] = {70, 70, 70, 10, 10, 10, 10, 10, 10, 100, 100, 100, 0};
    const float falls[] = {70, 70, 70, 60, 60, 60, 60, 50, 50, 100, 100, 100, 90};
    Trail snap = {}, fall = {};
    for (int i = 0; i < 13; ++i) {
        StepTrail(&snap, values[i], 100, 3, 0);
        StepTrail(&fall, values[i], 100, 3, 1);
        EXPECT_EQ(snap.value, snaps[i]) << i;
        EXPECT_EQ(fall.value, falls[i]) << i;
    }
}

TEST(Analyzer, SegmentsAreLitStrictlyAboveTheirThresholds) {
    const float above = std::nextafter(5.0f, 6.0f);
    const struct {
        float value, scale, trail;
        unsigned lit, marked;
    } rows[] = {{0, 20, 0, 0, 0},           {1, 20, 1, 0, 0},
                {5, 20, 5, 0x3, 0},         {above, 20, above, 0x7, 0x4},
                {19, 20, 20, 0x1FF, 0x200}, {1e30f, 20, 20, 0x3FF, 0x200},
                {0, 20, 6, 0, 0x4},         {0, 20, 7, 0, 0},
                {0.006f, 0, -1, 0x1, 0},    {0.004f, 1e-9f, 0.05f, 0, 0x10}};
    for (const auto& row : rows) {
        const Trail trail = {row.trail, 0};
        const ColumnSegments segments = SegmentsOf(row.value, row.scale, &trail);
        EXPECT_EQ(segments.lit, row.lit) << row.value;
        EXPECT_EQ(segments.marked, row.marked) << row.value << ", " << row.trail;
    }
}

// From samples to segments: a full sine on an even position lights six of ten, its neighbour none.
TEST(Analyzer, AFullSineLightsSixSegmentsAndSilenceNone) {
    static SoundSums s_sums;
    std::vector<int16_t> samples(kSoundBufferBytes / 2);
    for (int i = 0; i < 1024; ++i) // 100 turns a buffer, left alone
        samples[2 * i] = static_cast<int16_t>(std::lround(32767 * std::sin(i * 100 * M_PI / 512)));
    SoundValues values = {};
    for (int i = 0; i < 2; ++i)
        ProcessSound(&s_sums, reinterpret_cast<const uint8_t*>(samples.data()), FormatOfCode(2048),
                     kFftAll, 0, &values);
    AnalyzerInput input = {};
    std::memcpy(input.left, values.bandsLeft, sizeof input.left);
    input.fullScalePower = values.powerFullScale;
    input.bins = 512;
    AnalyzerState state = {};
    const AnalyzerSettings settings = SettingsOf(1, 1, 0);
    AnalyzerFrame frame = NextAnalyzerFrame(&state, settings, input, 100);
    constexpr int kBand = 9; // 4306 Hz
    for (int i = 0; i < kBands; ++i) {
        EXPECT_EQ(frame.columns[kAnalyzerLeft][i].lit, i == kBand ? 0x3F : 0) << i;
        EXPECT_EQ(frame.columns[kAnalyzerMiddle][i].lit, i == kBand ? 0x7 : 0) << i;
        EXPECT_EQ(frame.columns[kAnalyzerRight][i].lit, 0) << i;
    }
    for (float nothing : {0.0f, 1e38f * 10}) { // no level to measure by: dark, whatever the bands
        input.fullScalePower = nothing;
        frame = NextAnalyzerFrame(&state, settings, input, 100);
        EXPECT_EQ(frame.columns[kAnalyzerLeft][kBand].lit, 0) << nothing;
        EXPECT_EQ(frame.level[0].lit, 0) << nothing;
    }
}

TEST(Analyzer, LevelBarAndItsPeaks) {
    AnalyzerInput input = {};
    input.bins = 512;
    input.fullScalePower = 512 / 0.2f * 160; // a reference of 160
    input.left[3] = 40;
    input.right[5] = 1e30f;
    AnalyzerSettings settings = SettingsOf(0, 1, 0);
    settings.Trails = 1;
    AnalyzerState state = {};
    AnalyzerFrame frame = NextAnalyzerFrame(&state, settings, input, 100);
    EXPECT_EQ(frame.level[0].lit, 0x3) << "a quarter; its third threshold is exactly that";
    EXPECT_EQ(frame.level[1].lit, 0x3FF);
    settings.Gradient = 0;
    input.left[3] = 16;
    frame = NextAnalyzerFrame(&state, settings, input, 100);
    EXPECT_EQ(frame.levelLength[0], 10);
    EXPECT_EQ(frame.levelPeak[0], 25);
    EXPECT_EQ(frame.levelLength[1], 100) << "clipped";
}

TEST(Analyzer, RampAndSettingsWithinLimits) {
    uint32_t ramp[kAnalyzerSegments];
    AnalyzerRamp(0xA00010, 0xFFF000, ramp);
    EXPECT_EQ(ramp[0], 0xA00010u);
    EXPECT_EQ(ramp[1], 0xAB1E0Eu) << "rounded down: blue up by 95/8, red down by 16/8";
    EXPECT_EQ(ramp[7], 0xF3D202u);
    EXPECT_EQ(ramp[8], 0xFFF000u);
    EXPECT_EQ(ramp[9], 0xFFF000u);
    EXPECT_EQ(DefaultAnalyzerSettings(8).HighColor, 0x00FF00u);
    const struct {
        float gain, mended;
        uint32_t hold, mendedHold;
    } rows[] = {{kNaN, 0.2f, 0, 1},
                {kInfinity, 0.2f, 51, 50},
                {-kInfinity, 0.005f, ~0u, 50},
                {0, 0.005f, 20, 20},
                {0.1f, 0.1f, 1, 1}};
    for (const auto& row : rows) {
        AnalyzerSettings settings = SettingsOf(0, 0, 77);
        settings.Gainer = row.gain;
        settings.TrailsCount = row.hold;
        settings.LowColor = 0xFF123456;
        MendAnalyzerSettings(&settings);
        EXPECT_EQ(settings.Gainer, row.mended);
        EXPECT_EQ(settings.TrailsCount, row.mendedHold);
        EXPECT_EQ(settings.LowColor, 0x123456u);
        EXPECT_TRUE(settings.Center == 1 && settings.Split == 1);
    }
}

// ---- geometry and pixels

static bool Inside(const Box& inner, const Box& outer) {
    return inner.left >= outer.left && inner.top >= outer.top &&
           inner.left + inner.width <= outer.left + outer.width &&
           inner.top + inner.height <= outer.top + outer.height;
}

static bool Apart(const Box& a, const Box& b) {
    return a.left + a.width <= b.left || b.left + b.width <= a.left || a.top + a.height <= b.top ||
           b.top + b.height <= a.top;
}

// Everything that has a size lies in `outer` and apart from everything else.
static void ExpectTidy(const std::vector<Box>& boxes, const Box& outer, const std::string& where) {
    std::vector<Box> seen;
    for (const Box& box : boxes) {
        ASSERT_TRUE(box.width >= 0 && box.height >= 0) << where;
        if (!box.width || !box.height) continue;
        ASSERT_TRUE(Inside(box, outer)) << where << ": " << box.left << "," << box.top;
        for (const Box& other : seen)
            ASSERT_TRUE(Apart(box, other)) << where << ": " << box.left << "," << box.top;
        seen.push_back(box);
    }
}

TEST(AnalyzerLayout, NothingOverlapsAtAnySize) {
    for (int width : {0, 1, 3, 17, 40, 97, 104, 131, 232, 259, 293, 419, 531, 735, 1001, 1593})
        for (int height : {0, 1, 5, 19, 33, 61, 97, 118, 164, 191, 257, 403, 1101})
            for (unsigned mode = 1; mode < 8; ++mode) {
                AnalyzerSettings settings = SettingsOf(mode & 1, mode >> 1 & 1, mode >> 2);
                MendAnalyzerSettings(&settings);
                const AnalyzerLayout layout = LayOutAnalyzer(width, height, settings);
                const std::string where = std::to_string(width) + "x" + std::to_string(height) +
                                          " in mode " + std::to_string(mode);
                std::vector<Box> buttons(layout.controls, layout.controls + kAnalyzerButtons + 1);
                buttons.push_back(layout.panel);
                ExpectTidy(buttons, {0, 0, width, height}, where);
                std::vector<Box> parts(layout.controls + kAnalyzerButtons + 1,
                                       layout.controls + kAnalyzerControls);
                parts.push_back(layout.level);
                std::vector<Box> columns;
                for (int i = 0; i < layout.paneCount; ++i) {
                    const AnalyzerPane& pane = layout.panes[i];
                    parts.insert(parts.end(), {pane.frame, pane.caption, pane.axis});
                }
                ExpectTidy(parts, layout.panel, where);
                for (const auto& channel : layout.columns)
                    columns.insert(columns.end(), channel, channel + kBands);
                ExpectTidy(columns, layout.panel, where);
                std::vector<Box> segments;
                for (int k = 0; k < kAnalyzerSegments; ++k) {
                    segments.push_back(SegmentBox(layout.columns[kAnalyzerMiddle][7], k));
                    segments.push_back(LevelSegment(layout.level, 0, k));
                    segments.push_back(LevelSegment(layout.level, 1, k));
                }
                ExpectTidy(segments, layout.panel, where);
            }
}

TEST(AnalyzerLayout, SegmentsOfUsualColumnsAreAlike) {
    const Box column = LayOutAnalyzer(292, 192, SettingsOf(0, 1, 0)).columns[kAnalyzerMiddle][5];
    const int height = column.height / kAnalyzerSegments - 1;
    for (int k = 0; k < kAnalyzerSegments; ++k) {
        const Box segment = SegmentBox(column, k);
        EXPECT_EQ(segment.height, height);
        EXPECT_EQ(segment.top + segment.height, column.top + column.height - k * (height + 1));
    }
}

// What is drawn frame by frame is what a fresh drawing gives, and lies within the bounds told.
TEST(AnalyzerPicture, ChangesAloneGiveTheWholePicture) {
    std::mt19937 random(1);
    for (unsigned mode = 0; mode < 4; ++mode) {
        AnalyzerSettings settings = SettingsOf(1, 1, mode & 1);
        settings.Gradient = mode >> 1;
        settings.Trails = 1;
        const AnalyzerLayout layout = LayOutAnalyzer(432, 164, settings);
        const AnalyzerLook look = LookOfAnalyzer(settings, 0x101010);
        const int width = layout.panel.width, height = layout.panel.height;
        std::vector<uint32_t> kept(static_cast<size_t>(width * height)), fresh = kept;
        AnalyzerPixels into = {kept.data(), width, height}, whole = {fresh.data(), width, height};
        AnalyzerFrame before = {};
        AnalyzerState state = {};
        DrawAnalyzerGround(into, layout, look);
        DrawAnalyzerFrame(into, layout, look, before, nullptr);
        for (int i = 0; i < 40; ++i) {
            AnalyzerInput input = {};
            input.bins = 512;
            input.fullScalePower = 512 / 0.2f * 160;
            for (int band = 0; band < kBands; ++band) {
                input.left[band] = static_cast<float>(random() % 12);
                input.right[band] = static_cast<float>(random() % 12);
            }
            const AnalyzerFrame frame =
                NextAnalyzerFrame(&state, settings, input, LevelRoom(layout.level));
            const std::vector<uint32_t> last = kept;
            const Box told = DrawAnalyzerFrame(into, layout, look, frame, &before);
            DrawAnalyzerGround(whole, layout, look);
            DrawAnalyzerFrame(whole, layout, look, frame, nullptr);
            ASSERT_TRUE(kept == fresh) << "mode " << mode << ", frame " << i;
            for (int at = 0; at < width * height; ++at)
                ASSERT_TRUE(kept[at] == last[at] || Inside({layout.panel.left + at % width,
                                                            layout.panel.top + at / width, 1, 1},
                                                           told));
            before = frame;
        }
        const Box none = DrawAnalyzerFrame(into, layout, look, before, &before);
        EXPECT_EQ(none.width, 0) << "nothing changed";
    }
}
