// Settings, scale, trails and frames of the spectrum analyzer. See analyzer.h.
#include "waves/analyzer.h"

#include <algorithm>
#include <cmath>
#include <limits>

static constexpr float kGainSteps = 200.0f; // slider positions that would make up a gain of 1
static constexpr float kDefaultGain = 0.2f;
static constexpr uint32_t kDefaultHold = 20;
static constexpr float kLeastScale = 0.1f; // of drawing: in silence a column is not all noise

// ---- settings

AnalyzerSettings DefaultAnalyzerSettings(int bitsPerPixel) {
    AnalyzerSettings settings = {};
    settings.Center = 1;
    settings.Gradient = 1;
    settings.Gainer = kDefaultGain;
    settings.TrailsCount = kDefaultHold;
    settings.LowColor = bitsPerPixel > 8 ? 0xA00000 : 0x002800;
    settings.HighColor = bitsPerPixel > 8 ? 0xFFF000 : 0x00FF00;
    return settings;
}

void MendAnalyzerSettings(AnalyzerSettings* settings) {
    for (uint32_t* flag : {&settings->LeftAndRight, &settings->Center, &settings->Split,
                           &settings->Trails, &settings->Gradient, &settings->Falloff})
        *flag = *flag != 0;
    if (!settings->LeftAndRight) settings->Center = 1;
    const float gain = settings->Gainer;
    settings->Gainer =
        std::isnan(gain) ? kDefaultGain
                         : std::clamp(gain, GainAtPosition(1), GainAtPosition(kAnalyzerGainSteps));
    settings->TrailsCount = std::clamp(settings->TrailsCount, 1u, uint32_t{kAnalyzerMaxHold});
    settings->LowColor &= 0xFFFFFF;
    settings->HighColor &= 0xFFFFFF;
}

int GainPosition(float gain) {
    return std::clamp(static_cast<int>(std::lround(gain * kGainSteps)), 1, kAnalyzerGainSteps);
}

float GainAtPosition(int position) {
    return static_cast<float>(std::clamp(position, 1, kAnalyzerGainSteps)) / kGainSteps;
}

// One of the two stays on.
static void SwitchUnlessLast(uint32_t* flag, uint32_t other) {
    if (!*flag || other) *flag = !*flag;
}

int SwitchAnalyzer(AnalyzerSettings* settings, int command) {
    switch (command) {
    case kAnalyzerSides: SwitchUnlessLast(&settings->LeftAndRight, settings->Center); return 1;
    case kAnalyzerCenter: SwitchUnlessLast(&settings->Center, settings->LeftAndRight); return 1;
    case kAnalyzerSplit: settings->Split = 1; return 1;
    case kAnalyzerCombined: settings->Split = 0; return 1;
    case kAnalyzerTrails: settings->Trails = !settings->Trails; return 1;
    case kAnalyzerGradient: settings->Gradient = !settings->Gradient; return 1;
    default: return 0;
    }
}

int AnalyzerSwitchIsOn(const AnalyzerSettings& settings, int command) {
    switch (command) {
    case kAnalyzerSides: return settings.LeftAndRight != 0;
    case kAnalyzerCenter: return settings.Center != 0;
    case kAnalyzerSplit: return settings.Split != 0;
    case kAnalyzerCombined: return !settings.Split;
    case kAnalyzerTrails: return settings.Trails != 0;
    case kAnalyzerGradient: return settings.Gradient != 0;
    default: return 0;
    }
}

// An eighth part of the way, rounded down, also where the way leads down.
static uint32_t RampByte(uint32_t low, uint32_t high, int shift, int step) {
    const int from = static_cast<int>(low >> shift & 0xFF);
    const int to = static_cast<int>(high >> shift & 0xFF);
    const int way = (to - from) * step;
    return static_cast<uint32_t>((from + (way >> 3)) & 0xFF) << shift;
}

void AnalyzerRamp(uint32_t low, uint32_t high, uint32_t ramp[kAnalyzerSegments]) {
    ramp[0] = low;
    for (int k = 1; k < kAnalyzerSegments - 1; ++k)
        ramp[k] =
            RampByte(low, high, 0, k) | RampByte(low, high, 8, k) | RampByte(low, high, 16, k);
    ramp[kAnalyzerSegments - 1] = high;
}

// ---- scale and trails

static float Usable(double value) {
    return value > 0 && value <= std::numeric_limits<float>::max() ? static_cast<float>(value) : 0;
}

float LevelReference(float gain, uint32_t bins, float fullScalePower) {
    return bins ? Usable(double{gain} / bins * fullScalePower) : 0;
}

float DisplayScale(uint32_t bins, float reference) {
    return bins ? static_cast<float>(bins * 0.0625 * (double{reference} / bins)) : 0;
}

void StepTrail(Trail* trail, float value, float scale, uint32_t hold, int falloff) {
    if (trail->value < value) *trail = {std::min(value, scale), 0};
    if (++trail->frames <= hold) return;
    trail->frames = 0;
    trail->value = falloff ? trail->value - scale / kAnalyzerSegments : std::min(value, scale);
}

ColumnSegments SegmentsOf(double value, float scale, const Trail* trail) {
    ColumnSegments segments = {};
    const double height = std::max(scale, kLeastScale), step = height / kAnalyzerSegments;
    for (int k = 0; k < kAnalyzerSegments; ++k) {
        const double threshold = (k + 0.5) * height / kAnalyzerSegments;
        const auto bit = static_cast<uint16_t>(1 << k);
        if (value > threshold) segments.lit |= bit;
        if (trail && trail->value > threshold && trail->value < threshold + step)
            segments.marked |= bit;
    }
    return segments;
}

// ---- frames

static void FrameColumns(AnalyzerState* state, const AnalyzerSettings& settings,
                         const AnalyzerInput& input, float scale, AnalyzerFrame* frame) {
    for (int i = 0; i < kBands; ++i) {
        const float left = input.left[i], right = input.right[i];
        const float values[kAnalyzerChannels] = {left, right, (left + right) * 0.5f};
        for (int channel = 0; channel < kAnalyzerChannels; ++channel) {
            Trail* trail = settings.Trails ? &state->trails[channel][i] : nullptr;
            if (trail)
                StepTrail(trail, values[channel], scale, settings.TrailsCount,
                          static_cast<int>(settings.Falloff));
            frame->columns[channel][i] = SegmentsOf(values[channel], scale, trail);
        }
    }
}

static int16_t LevelPixels(float fraction, int room) {
    return static_cast<int16_t>(std::clamp(fraction, 0.0f, 1.0f) * static_cast<float>(room));
}

static void FrameLevel(Trail* peak, const AnalyzerSettings& settings, int side, double fraction,
                       int room, AnalyzerFrame* frame) {
    const auto level = static_cast<float>(std::min(fraction, 2.0)); // more than full is full
    if (settings.Trails)
        StepTrail(peak, level, 1.0f, settings.TrailsCount, static_cast<int>(settings.Falloff));
    if (settings.Gradient) {
        frame->level[side] = SegmentsOf(level, 1.0f, settings.Trails ? peak : nullptr);
    } else {
        frame->levelLength[side] = LevelPixels(level, room);
        frame->levelPeak[side] = settings.Trails ? LevelPixels(peak->value, room) : int16_t{0};
    }
}

AnalyzerFrame NextAnalyzerFrame(AnalyzerState* state, const AnalyzerSettings& settings,
                                const AnalyzerInput& input, int levelRoom) {
    AnalyzerFrame frame = {};
    const float reference = LevelReference(settings.Gainer, input.bins, input.fullScalePower);
    if (!(reference > 0)) return frame;
    const float scale = DisplayScale(input.bins, reference);
    FrameColumns(state, settings, input, scale, &frame);
    double sums[2] = {};
    for (int i = 0; i < kBands; ++i) {
        sums[0] += input.left[i];
        sums[1] += input.right[i];
    }
    for (int side = 0; side < 2; ++side)
        FrameLevel(&state->peaks[side], settings, side, sums[side] / reference, levelRoom, &frame);
    return frame;
}
