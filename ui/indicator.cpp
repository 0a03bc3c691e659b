// See indicator.h.
#include "ui/indicator.h"

#include <algorithm>

int32_t SteppedProgress(const IndicatorProgress& progress, int32_t delta) {
    const int64_t next = static_cast<int64_t>(progress.position) + delta;
    const int64_t last = std::max(progress.minimum, progress.maximum);
    return static_cast<int32_t>(std::clamp<int64_t>(next, progress.minimum, last));
}

int32_t ProgressWidth(const IndicatorProgress& progress, int32_t width) {
    const int64_t range = static_cast<int64_t>(progress.maximum) - progress.minimum;
    if (range <= 0 || width <= 0) return 0;
    const int64_t done = static_cast<int64_t>(progress.position) - progress.minimum;
    const float share =
        std::clamp(static_cast<float>(done) / static_cast<float>(range), 0.0F, 1.0F);
    // Near 2^31 the product in single precision may round up past the width.
    return static_cast<int32_t>(
        std::min<int64_t>(static_cast<int64_t>(share * static_cast<float>(width)), width));
}
