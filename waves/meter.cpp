// The volume meter's picture. See meter.h.
#include "waves/meter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

constexpr float kLeastFullScale = 0.001f;
constexpr uint32_t kColorMask = 0xFFFFFF;

namespace {
struct Bar {
    int first, last; // columns
    float level;
};
} // namespace

MeterSettings SaneMeterSettings(MeterSettings settings) {
    settings.Gainer = std::clamp(settings.Gainer, kMeterMinGain, kMeterMaxGain);
    settings.Refresh = std::clamp(settings.Refresh, kMeterMinRefresh, kMeterMaxRefresh);
    settings.LeftRight = settings.LeftRight != 0;
    settings.Center = settings.Center != 0;
    settings.FgColor &= kColorMask;
    settings.BkColor &= kColorMask;
    return settings;
}

// Written so that NaN ends as silence.
static float LevelOf(float power, float fullScale) {
    const float level = power / fullScale;
    return level > 0 ? std::min(level, 1.0f) : 0;
}

MeterLevels LevelsOf(float powerLeft, float powerRight, float fullScale, uint32_t gainPercent,
                     uint32_t bins8Bit) {
    float full = fullScale * (static_cast<float>(gainPercent) / 100);
    if (bins8Bit) full /= static_cast<float>(bins8Bit);
    if (!(full >= kLeastFullScale)) full = kLeastFullScale;
    const float left = LevelOf(powerLeft, full), right = LevelOf(powerRight, full);
    return {left, right, (left + right) * 0.5f};
}

static uint32_t PixelOf(uint32_t color) {
    return 0xFF000000 | (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

static void DrawBar(const Bar& bar, uint32_t pixel, MeterPicture* picture) {
    const int height = static_cast<int>(std::lround(bar.level * kMeterSize));
    for (int row = kMeterSize - height; row < kMeterSize; ++row) {
        uint32_t* line = picture->pixels + row * kMeterSize;
        std::fill(line + bar.first, line + bar.last + 1, pixel);
    }
}

void DrawMeter(const MeterSettings& settings, const MeterLevels& levels, MeterPicture* picture) {
    std::fill_n(picture->pixels, kMeterSize * kMeterSize, PixelOf(settings.BkColor));
    const uint32_t pixel = PixelOf(settings.FgColor);
    if (!settings.Center) { // both off shows the channels, too
        DrawBar({0, 6, levels.left}, pixel, picture);
        DrawBar({8, 14, levels.right}, pixel, picture);
    } else if (!settings.LeftRight) {
        DrawBar({0, 15, levels.center}, pixel, picture);
    } else {
        DrawBar({0, 4, levels.left}, pixel, picture);
        DrawBar({5, 10, levels.center}, pixel, picture);
        DrawBar({11, 15, levels.right}, pixel, picture);
    }
}

int SamePicture(const MeterPicture& a, const MeterPicture& b) {
    return memcmp(a.pixels, b.pixels, sizeof a.pixels) == 0;
}
