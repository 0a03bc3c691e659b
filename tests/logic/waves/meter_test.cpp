// The volume meter's picture: which pixels are lit for which power, gain and layout.
#include "waves/meter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

TEST(Meter, LevelsFollowGainAndFormatAndNeverLeaveTheScale) {
    const struct {
        float left, right, full;
        uint32_t gain, bins;
        float wantedLeft, wantedRight, wantedCenter;
    } cases[] = {
        {100, 50, 1000, 40, 0, 0.25f, 0.125f, 0.1875f},
        {1, 0.5f, 1024, 100, 512, 0.5f, 0.25f, 0.375f}, // 8 bit: 1024 / 512
        {5000, 600, 1000, 50, 0, 1, 1, 1},              // above full scale
        {5, 0.0005f, 0, 40, 0, 1, 0.5f, 0.75f},         // the least full scale, 0.001
        {0, 0, 1000, 40, 0, 0, 0, 0},
        {kNan, -1, 1000, 40, 0, 0, 0, 0},
        {kInf, 1, kNan, 40, 0, 1, 1, 1},
        {1, kInf, kInf, 40, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.left);
        const MeterLevels levels = LevelsOf(c.left, c.right, c.full, c.gain, c.bins);
        EXPECT_FLOAT_EQ(levels.left, c.wantedLeft);
        EXPECT_FLOAT_EQ(levels.right, c.wantedRight);
        EXPECT_FLOAT_EQ(levels.center, c.wantedCenter);
    }
}

// The picture as text: heights of the columns in hexadecimal ('g' for 16), checked to be solid.
static std::string Heights(const MeterPicture& picture, uint32_t foreground, uint32_t background) {
    std::string heights;
    for (int x = 0; x < kMeterSize; ++x) {
        int height = 0;
        for (int y = 0; y < kMeterSize; ++y) {
            const uint32_t pixel = picture.pixels[y * kMeterSize + x];
            if (pixel != foreground && (pixel != background || height)) return "?";
            height += pixel == foreground;
        }
        heights += "0123456789abcdefg"[height];
    }
    return heights;
}

TEST(Meter, BarsStandWhereTheLayoutSaysInTheChosenColours) {
    const struct {
        uint32_t leftRight, center;
        MeterLevels levels;
        const char* wanted;
    } cases[] = {
        {1, 1, {0.5f, 1, 0.75f}, "88888ccccccggggg"},
        {1, 0, {0.5f, 1, 0.75f}, "88888880ggggggg0"},
        {0, 0, {0.5f, 1, 0.75f}, "88888880ggggggg0"},
        {0, 1, {0.5f, 1, 0.75f}, "cccccccccccccccc"},
        {1, 0, {0.03f, 0.032f, 0}, "0000000011111110"},   // 0.48 and 0.51 of a row
        {1, 1, {0.96f, 0.97f, 0.1f}, "fffff222222ggggg"}, // 15.36, 1.6, 15.52
        {0, 1, {0, 0, 0}, "0000000000000000"},
    };
    for (const auto& c : cases) {
        MeterSettings settings;
        settings.LeftRight = c.leftRight;
        settings.Center = c.center;
        settings.FgColor = 0x0A0B0C;
        settings.BkColor = 0x010203;
        MeterPicture picture;
        DrawMeter(settings, c.levels, &picture);
        EXPECT_EQ(Heights(picture, 0xFF0C0B0A, 0xFF030201), c.wanted);
    }
}

TEST(Meter, StoredSettingsAreBroughtIntoTheirLimits) {
    MeterSettings stored = {0, 0, 7, 0, 0xFF00FF00, 0x12345678};
    MeterSettings sane = SaneMeterSettings(stored);
    EXPECT_EQ(sane.Gainer, 1u);
    EXPECT_EQ(sane.Refresh, 1u);
    EXPECT_EQ(sane.LeftRight, 1u);
    EXPECT_EQ(sane.FgColor, 0x00FF00u);
    EXPECT_EQ(sane.BkColor, 0x345678u);
    stored.Gainer = 500;
    stored.Refresh = 0xFFFFFFFF;
    sane = SaneMeterSettings(stored);
    EXPECT_EQ(sane.Gainer, 200u);
    EXPECT_EQ(sane.Refresh, 100u);
}
