// Every edge is a signed distance in pixels, positive inside; the coverage of a pixel is that
// distance cut to half a pixel either way. So a picture costs one square root a pixel and no
// trigonometry beyond one angle. See player_pie.h.
#include "cd/player_pie.h"

#include <algorithm>
#include <cmath>

struct Blend {
    float red, green, blue;
};

static Blend FromColor(uint32_t color) {
    return {static_cast<float>(color & 0xFF), static_cast<float>(color >> 8 & 0xFF),
            static_cast<float>(color >> 16 & 0xFF)};
}

// `cover` 0 keeps *under, 1 replaces it.
static void Cover(Blend* under, const Blend& over, float cover) {
    under->red += (over.red - under->red) * cover;
    under->green += (over.green - under->green) * cover;
    under->blue += (over.blue - under->blue) * cover;
}

static uint32_t ToPixel(const Blend& color) {
    return static_cast<uint32_t>(color.red + 0.5f) << 16 |
           static_cast<uint32_t>(color.green + 0.5f) << 8 |
           static_cast<uint32_t>(color.blue + 0.5f);
}

static uint32_t ToColor(const Blend& color) {
    const uint32_t pixel = ToPixel(color);
    return (pixel >> 16 & 0xFF) | (pixel & 0xFF00) | (pixel & 0xFF) << 16;
}

static float Coverage(float distance) {
    return std::clamp(distance + 0.5f, 0.0f, 1.0f);
}

static uint32_t Mix(uint32_t color, uint32_t with, float share) {
    Blend mixed = FromColor(color);
    Cover(&mixed, FromColor(with), share);
    return ToColor(mixed);
}

PieColors PieLook(uint32_t background, uint32_t lamp) {
    return {Mix(background, 0, 0.7f), Mix(background, 0, 0.2f), lamp, Mix(background, lamp, 0.4f)};
}

void DrawPie(uint32_t* pixels, int side, int degrees, const PieColors& colors) {
    const float radius = side * 0.5f, rimWidth = std::max(1.0f, side / 40.0f);
    const float hole = radius * 0.22f;
    const float angle = std::clamp(degrees, 0, 360) * (3.14159265f / 180);
    const float endX = std::sin(angle), endY = -std::cos(angle);
    const Blend back = FromColor(colors.back), face = FromColor(colors.face);
    const Blend lit = FromColor(colors.lit), rim = FromColor(colors.rim);
    for (int row = 0; row < side; ++row)
        for (int column = 0; column < side; ++column) {
            const float x = column + 0.5f - radius, y = row + 0.5f - radius;
            const float r = std::sqrt(x * x + y * y);
            // Right of the upward ray, and short of the ray at `degrees`. Up to a half turn the
            // sector is where both hold, beyond it where either does.
            const float fromStart = x, toEnd = x * endY - y * endX;
            const float sector =
                degrees <= 180 ? std::min(fromStart, toEnd) : std::max(fromStart, toEnd);
            Blend pixel = back;
            Cover(&pixel, rim, Coverage(std::min(radius - r, r - hole)));
            const float inner = std::min(radius - rimWidth - r, r - hole - rimWidth);
            Cover(&pixel, face, Coverage(inner));
            if (degrees >= 360)
                Cover(&pixel, lit, Coverage(inner - 1));
            else if (degrees > 0)
                Cover(&pixel, lit, Coverage(std::min(inner - 1, sector)));
            *pixels++ = ToPixel(pixel);
        }
}
