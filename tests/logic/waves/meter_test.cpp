// The volume meter's picture: which pixels are lit for which power, stored gain and layout.
#include "waves/meter.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

// Heights of the columns in hexadecimal ('g' for 16), from the bottom up to the first other pixel.
static std::string Heights(const MeterPicture& picture, uint32_t bar) {
    std::string heights;
    for (int x = 0; x < kMeterSize; ++x) {
        int height = 0;
        while (height < 16 && picture.pixels[(15 - height) * kMeterSize + x] == bar)
            ++height;
        heights += "0123456789abcdefg"[height];
    }
    return heights;
}

TEST(Meter, DrawsPowerByGainFormatAndLayoutWhateverComesIn) {
    const struct {
        uint32_t gain, leftRight, center;
        float left, right, full;
        uint32_t bins8Bit;
        const char* wanted;
    } cases[] = {
        {100, 7, 1, 500, 2000, 1000, 0, "88888ccccccggggg"}, // above full scale
        {100, 0, 0, 500, 1000, 1000, 0, "88888880ggggggg0"},
        {100, 0, 1, 500, 1000, 1000, 0, "cccccccccccccccc"},
        {0, 1, 0, 1, 5, 1000, 0, "2222222088888880"},     // 1 %: 1.6 rows of 10
        {100, 1, 0, 30, 32, 1000, 0, "0000000011111110"}, // 0.48 and 0.51 of a row
        {100, 1, 0, 1, 0.5f, 1024, 512, "8888888044444440"},
        {40, 1, 0, 5, 0.0005f, 0, 0, "ggggggg088888880"}, // the least full scale, 0.001
        {40, 1, 1, kNan, -1, 1000, 0, "0000000000000000"},
        {40, 1, 0, kInf, 1, kNan, 0, "ggggggg0ggggggg0"},
    };
    for (const auto& c : cases) {
        const MeterSettings settings =
            SaneMeterSettings({c.gain, 0xFFFFFFFF, c.leftRight, c.center, 0xFF0A0B0C, 0x12010203});
        MeterPicture picture;
        DrawMeter(settings, LevelsOf(c.left, c.right, c.full, settings.Gainer, c.bins8Bit),
                  &picture);
        EXPECT_EQ(Heights(picture, 0xFF0C0B0A), c.wanted) << "left " << c.left;
        EXPECT_TRUE(picture.pixels[0] == 0xFF030201 || c.wanted[0] == 'g');
        EXPECT_EQ(settings.Refresh, 100u);
    }
}
