// The oscilloscope's traces against GDI: the same points as a polyline into a picture of GDI's give
// the same pixels, in every format, with more columns than points and with fewer.
#include "ui/canvas_win.h"
#include "waves/scope.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

static std::vector<POINT> PointsOf(const std::vector<uint8_t>& bytes,
                                   const SoundFormatRecord& format, ScopeChannel channel,
                                   float gain, int width, int height) {
    const int count = kSoundBufferBytes / format.blockAlign, wide = format.bits == 16;
    const auto sample = [&](int i) -> double {
        return wide ? reinterpret_cast<const int16_t*>(bytes.data())[i]
                    : static_cast<int8_t>(bytes[i]);
    };
    std::vector<POINT> points(count);
    for (int i = 0; i < count; ++i) {
        const double left = sample(i * format.channels);
        const double right = sample((i + 1) * format.channels - 1);
        const double v[] = {left, right, (left + right) / 2};
        points[i] = {i * width / count,
                     height / 2 - std::lround(gain * v[channel] * height / (wide ? 65536 : 256))};
    }
    return points;
}

TEST(ScopeTrace, HasThePixelsOfGdisPolyline) {
    std::mt19937 random(7);
    Canvas canvas = {};
    for (int round = 0; round < 600; ++round) {
        const SoundFormatRecord format = FormatOfCode(kFormatCodes[random() % kFormatCount]);
        const auto channel = static_cast<ScopeChannel>(random() % 3);
        const int width = 1 + random() % (round % 10 ? 400 : 5000), height = 2 + random() % 150;
        const float gain = static_cast<float>(random() % 101) / 20 / (1 + random() % 50);
        std::vector<uint8_t> bytes(kSoundBufferBytes);
        const int still = random() % 50; // at the end: points that stay where they are
        for (size_t i = 0; i + still < bytes.size(); ++i)
            bytes[i] = static_cast<uint8_t>(random());
        ASSERT_TRUE(SizeCanvas(&canvas, width, height));
        PatBlt(canvas.dc, 0, 0, width, height, BLACKNESS);
        SelectObject(canvas.dc, GetStockObject(WHITE_PEN));
        const auto points = PointsOf(bytes, format, channel, gain, width, height);
        Polyline(canvas.dc, points.data(), static_cast<int>(points.size()));
        GdiFlush();
        std::vector<ScopeColumn> columns(width);
        TraceColumns(bytes.data(), format, channel, gain, width, height, columns.data());
        for (int x = 0; x < width; ++x)
            for (int y = 0; y < height; ++y)
                ASSERT_EQ((canvas.pixels[y * width + x] & 0xFFFFFF) != 0,
                          y >= columns[x].first && y < columns[x].end)
                    << x << "," << y << " of " << width << "x" << height << " round " << round;
    }
    FreeCanvas(&canvas);
}
