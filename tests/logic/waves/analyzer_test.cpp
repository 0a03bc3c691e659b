// The spectrum analyzer without a window: trails, segments, settings, geometry and pixels.
#include "tests/support/boxes.h"
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
    AnalyzerInput input = {{}, {}, values.powerFullScale, 512};
    std::memcpy(input.left, values.bandsLeft, sizeof input.left);
    AnalyzerState state = {};
    const AnalyzerSettings settings = SettingsOf(1, 1, 0);
    AnalyzerFrame frame = NextAnalyzerFrame(&state, settings, input, 100);
    for (int i = 0; i < kBands; ++i) {
        EXPECT_EQ(frame.columns[kAnalyzerLeft][i].lit, i == 9 ? 0x3F : 0) << i; // at 4306 Hz
        EXPECT_EQ(frame.columns[kAnalyzerMiddle][i].lit, i == 9 ? 0x7 : 0) << i;
        EXPECT_EQ(frame.columns[kAnalyzerRight][i].lit, 0) << i;
    }
    for (float nothing : {0.0f, kInfinity}) { // no level to measure by: dark, whatever the bands
        input.fullScalePower = nothing;
        frame = NextAnalyzerFrame(&state, settings, input, 100);
        EXPECT_TRUE(frame.columns[kAnalyzerLeft][9].lit == 0 && frame.level[0].lit == 0);
    }
}

TEST(Analyzer, LevelBarAndItsPeaks) {
    AnalyzerInput input = {{40}, {1e30f}, 512 / 0.2f * 160, 512}; // a reference of 160
    AnalyzerSettings settings = SettingsOf(0, 1, 0);
    settings.Trails = 1;
    AnalyzerState state = {};
    AnalyzerFrame frame = NextAnalyzerFrame(&state, settings, input, 100);
    EXPECT_EQ(frame.level[0].lit, 0x3) << "a quarter; its third threshold is exactly that";
    EXPECT_EQ(frame.level[1].lit, 0x3FF);
    settings.Gradient = 0;
    input.left[0] = 16;
    frame = NextAnalyzerFrame(&state, settings, input, 100);
    EXPECT_EQ(frame.levelLength[0], 10);
    EXPECT_EQ(frame.levelPeak[0], 25);
    EXPECT_EQ(frame.levelLength[1], 100) << "clipped";
}

TEST(Analyzer, RampAndSettingsWithinLimits) {
    uint32_t ramp[kAnalyzerSegments];
    AnalyzerRamp(0xA00013, 0xFFF000, ramp);
    EXPECT_EQ(ramp[0], 0xA00013u);
    EXPECT_EQ(ramp[1], 0xAB1E10u) << "rounded down: blue up by 95/8, red down by 19/8";
    EXPECT_TRUE(ramp[8] == 0xFFF000 && ramp[9] == 0xFFF000);
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

static bool TidyLayout(const AnalyzerLayout& layout, const Box& client) {
    const Box* controls = layout.controls;
    std::vector<Box> outer(controls, controls + kAnalyzerButtons + 1), columns, segments;
    std::vector<Box> inner(controls + kAnalyzerButtons + 1, controls + kAnalyzerControls);
    outer.push_back(layout.panel);
    inner.push_back(layout.level);
    for (const AnalyzerPane& pane : layout.panes)
        if (pane.bandWidth) inner.insert(inner.end(), {pane.frame, pane.caption, pane.axis});
    for (const auto& channel : layout.columns)
        columns.insert(columns.end(), channel, channel + kBands);
    for (int k = 0; k < kAnalyzerSegments; ++k) {
        segments.push_back(SegmentBox(layout.columns[kAnalyzerMiddle][7], k));
        segments.push_back(LevelSegment(layout.level, 0, k));
        segments.push_back(LevelSegment(layout.level, 1, k));
    }
    return Tidy(outer, client, 0) && Tidy(inner, layout.panel, 0) &&
           Tidy(columns, layout.panel, 0) && Tidy(segments, layout.panel, 0);
}

TEST(AnalyzerLayout, NothingOverlapsAtAnySize) {
    for (int width : {0, 1, 3, 17, 40, 97, 104, 131, 232, 259, 293, 419, 531, 735, 1001, 1593})
        for (int height : {0, 1, 5, 19, 33, 61, 97, 118, 164, 191, 257, 403, 1101})
            for (unsigned mode = 0; mode < 8; ++mode) {
                AnalyzerSettings settings = SettingsOf(mode & 1, mode >> 1 & 1, mode >> 2);
                MendAnalyzerSettings(&settings);
                EXPECT_TRUE(
                    TidyLayout(LayOutAnalyzer(width, height, settings), {0, 0, width, height}))
                    << width << "x" << height << " in mode " << mode;
            }
}

// What is drawn frame by frame is what a fresh drawing gives, and lies within the bounds told.
TEST(AnalyzerPicture, ChangesAloneGiveTheWholePicture) {
    std::mt19937 random(1);
    for (unsigned mode = 0; mode < 4; ++mode) {
        AnalyzerSettings settings = SettingsOf(1, 1, mode & 1);
        settings.Gradient = mode >> 1;
        settings.Trails = 1;
        settings.TrailsCount = 3;
        const AnalyzerLayout layout = LayOutAnalyzer(432, 164, settings);
        const AnalyzerLook look = LookOfAnalyzer(settings, 0x101010);
        const Box panel = layout.panel;
        std::vector<uint32_t> kept(static_cast<size_t>(panel.width * panel.height)), fresh = kept;
        const AnalyzerPixels into = {kept.data(), panel.width, panel.height};
        const AnalyzerPixels whole = {fresh.data(), panel.width, panel.height};
        AnalyzerFrame before = {};
        AnalyzerState state = {};
        AnalyzerInput input = {{}, {}, 512 / 0.2f * 160, 512};
        DrawAnalyzerGround(into, layout, look);
        DrawAnalyzerFrame(into, layout, look, before, nullptr);
        DrawAnalyzerGround(whole, layout, look);
        for (int i = 0; i < 40; ++i) {
            for (int band = 0; band < kBands && i % 6 == 0; ++band) // between, trails move alone
                input.left[band] = input.right[15 - band] = static_cast<float>(random() % 12);
            const AnalyzerFrame frame =
                NextAnalyzerFrame(&state, settings, input, LevelRoom(layout.level));
            const std::vector<uint32_t> last = kept;
            const Box told = DrawAnalyzerFrame(into, layout, look, frame, &before);
            DrawAnalyzerFrame(whole, layout, look, frame, nullptr);
            ASSERT_TRUE(kept == fresh) << "mode " << mode << ", frame " << i;
            for (int y = 0; y < panel.height; ++y)
                for (int x = 0, at = y * panel.width; x < panel.width; ++x, ++at)
                    ASSERT_TRUE(kept[at] == last[at] ||
                                Inside({panel.left + x, panel.top + y, 1, 1}, told));
            before = frame;
        }
        EXPECT_EQ(DrawAnalyzerFrame(into, layout, look, before, &before).width, 0);
    }
}
