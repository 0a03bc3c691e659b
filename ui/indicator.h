// Progress of an indicator in pixels.
#pragma once
#include <cstdint>

struct IndicatorProgress {
    int on;
    int32_t position, minimum, maximum;
};

// position + delta within the range; a range whose maximum lies below its minimum stays at the
// minimum.
int32_t SteppedProgress(const IndicatorProgress& progress, int32_t delta);

// Pixels filled of `width`: 0 for an empty range, never outside 0 to width.
int32_t ProgressWidth(const IndicatorProgress& progress, int32_t width);
