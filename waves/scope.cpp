// The oscilloscope's sums. See scope.h.
//
// A trace has more points than columns, and its x only grows; so what it covers of a column is one
// stretch of rows, and a column is drawn once instead of many lines over one another.
#include "waves/scope.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>

static constexpr uint32_t kColorBits = 0xFFFFFF;
static constexpr float kLargestGain = 5.0f;
static constexpr int kSliderZero = 110; // position of gain 0
static constexpr int kSliderSteps = 20; // for a gain of 1

// ---- settings

ScopeSettings DefaultScopeSettings() {
    ScopeSettings settings = {};
    ResetScopeColors(&settings);
    settings.legends = 1;
    settings.gradient = 1;
    settings.gain = 0.2f;
    return settings;
}

void ResetScopeColors(ScopeSettings* settings) {
    settings->lineColor = 0xFFF000;
    settings->lowColor = 0x00FFFF;
    settings->highColor = 0x0000FF;
}

void ClampScopeSettings(ScopeSettings* settings) {
    for (uint32_t* color : {&settings->lineColor, &settings->lowColor, &settings->highColor})
        *color &= kColorBits;
    for (uint32_t* flag :
         {&settings->forceMono, &settings->vertical, &settings->legends, &settings->gradient})
        *flag = *flag != 0;
    if (!std::isfinite(settings->gain)) settings->gain = DefaultScopeSettings().gain;
    settings->gain = std::clamp(settings->gain, 0.0f, kLargestGain);
}

int SliderOfGain(float gain) {
    return kSliderZero - static_cast<int>(std::lround(gain * kSliderSteps));
}

float GainOfSlider(int position) {
    position = std::clamp(position, kGainSliderMin, kGainSliderMax);
    return static_cast<float>(kSliderZero - position) / kSliderSteps;
}

void ScopeFormatText(const SoundFormatRecord& format, char (&text)[kFormatTextSize]) {
    text[0] = 0;
    if (format.channels)
        std::snprintf(text, sizeof text, "%uKhz %dbit", format.rate / 1000, format.bits);
}

// ---- points

namespace {
// Samples of one channel: signed, at frame i.
struct Reader {
    const uint8_t* bytes;
    int stride;        // bytes of a frame
    int second;        // bytes to the other sample of a mean; 0: the sample counts twice
    int wide;          // 16 bits
    double pixelsEach; // for half a step of the sample
};
struct Point {
    int x, y;
};
} // namespace

static Reader ReaderOf(const uint8_t* bytes, const SoundFormatRecord& format, ScopeChannel channel,
                       float gain, int height) {
    const int sampleBytes = format.bits / 8, stereo = format.channels == 2;
    Reader reader = {};
    reader.bytes = bytes + (stereo && channel == kScopeRight ? sampleBytes : 0);
    reader.stride = sampleBytes * format.channels;
    reader.second = stereo && channel == kScopeMean ? sampleBytes : 0;
    reader.wide = sampleBytes == 2;
    // Exact: 24 bits of gain, 17 of a sum and the height are less than a double holds.
    reader.pixelsEach = static_cast<double>(gain) * height / (reader.wide ? 65536 : 256) / 2;
    return reader;
}

static int SampleAt(const Reader& reader, const uint8_t* at) {
    return reader.wide ? static_cast<int16_t>(at[0] | at[1] << 8) : static_cast<int8_t>(at[0]);
}

// Half pixels go away from the centre, so that a symmetric wave looks symmetric.
static int RowAt(const Reader& reader, int frame, int centre) {
    const uint8_t* at = reader.bytes + frame * reader.stride;
    const int sum = SampleAt(reader, at) + SampleAt(reader, at + reader.second);
    const double rows = sum * reader.pixelsEach;
    return centre - static_cast<int>(rows < 0 ? rows - 0.5 : rows + 0.5);
}

// ---- lines

// From row a to row b, both covered, in either order.
static void Cover(ScopeColumn* column, int a, int b) {
    column->first = std::min({column->first, a, b});
    column->end = std::max({column->end, a + 1, b + 1});
}

// A column for every pixel. Half-way between two rows GDI stays in the row it comes from on the way
// down, and has left it on the way up.
static void CoverFlat(ScopeColumn* columns, Point a, int dx, int dy, int step) {
    const int half = step < 0 ? dx : dx - 1;
    for (int k = 0; k < dx; ++k) {
        const int y = a.y + step * ((2 * k * dy + half) / (2 * dx));
        Cover(&columns[a.x + k], y, y);
    }
}

// Several rows a column. Half-way between two columns GDI stays in the left one.
static void CoverSteep(ScopeColumn* columns, Point a, int dx, int dy, int step) {
    int from = 0;
    for (int column = 0; column <= dx; ++column) {
        const int reach = ((2 * column + 1) * dy + 2 * dx) / (2 * dx);
        const int end = column == dx ? dy : std::min(reach, dy);
        if (end > from) Cover(&columns[a.x + column], a.y + step * from, a.y + step * (end - 1));
        from = end;
    }
}

// A line without its last pixel, which the next one begins with.
static void CoverLine(ScopeColumn* columns, Point a, Point b) {
    const int dx = b.x - a.x, dy = std::abs(b.y - a.y), step = b.y < a.y ? -1 : 1;
    if (dx >= dy)
        CoverFlat(columns, a, dx, dy, step);
    else if (dx)
        CoverSteep(columns, a, dx, dy, step);
    else
        Cover(&columns[a.x], a.y, b.y - step);
}

void TraceColumns(const uint8_t* bytes, const SoundFormatRecord& format, ScopeChannel channel,
                  float gain, int width, int height, ScopeColumn* columns) {
    if (width < 1) return;
    std::fill_n(columns, width, ScopeColumn{INT_MAX, INT_MIN});
    const int frames = FramesPerBuffer(format), centre = CentreRow(height);
    if (frames && height >= 2) {
        const Reader reader = ReaderOf(bytes, format, channel, gain, height);
        Point last = {0, RowAt(reader, 0, centre)};
        for (int i = 1; i < frames; ++i) {
            const Point next = {i * width / frames, RowAt(reader, i, centre)};
            CoverLine(columns, last, next);
            last = next;
        }
    }
    for (int x = 0; x < width; ++x) {
        const int first = std::max(columns[x].first, 0), end = std::min(columns[x].end, height);
        columns[x] = first < end ? ScopeColumn{first, end} : ScopeColumn{0, 0};
    }
}

// ---- colours

static int Channel(uint32_t color, int shift) {
    return static_cast<int>(color >> shift & 0xFF);
}

static uint32_t PixelOf(uint32_t color) {
    return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
}

// Palette entry 1 to 254, from low to high.
static uint32_t PaletteColor(const ScopeSettings& settings, int entry) {
    uint32_t color = 0;
    for (int shift = 0; shift <= 16; shift += 8) {
        const int low = Channel(settings.lowColor, shift);
        const int high = Channel(settings.highColor, shift);
        color |= static_cast<uint32_t>(low + (high - low) * (entry - 1) / 255) << shift;
    }
    return color;
}

void ScopeRowColors(const ScopeSettings& settings, int height, uint32_t* colors) {
    const int centre = CentreRow(height);
    for (int y = 0; y < height; ++y) {
        const int distance = std::abs(y - centre);
        const int entry = centre ? 1 + (253 * distance + centre / 2) / centre : 1;
        colors[y] = PixelOf(settings.gradient ? PaletteColor(settings, entry) : settings.lowColor);
    }
    if (!settings.gradient && height > 0) colors[centre] = PixelOf(settings.lineColor);
}
