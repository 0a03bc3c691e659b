// See placement.h.
#include "core/placement.h"

#include <algorithm>

constexpr int32_t kDefaultX = 10, kDefaultY = 10, kDefaultWidth = 500, kDefaultHeight = 200;
constexpr uint32_t kDefaultBkColor = 0x404040;

WindowPlacement DefaultPlacement(uint32_t windowId) {
    return {kDefaultX, kDefaultY, kDefaultWidth, kDefaultHeight, kDefaultBkColor, windowId};
}

static int32_t ClampAxis(int32_t start, int32_t extent, int32_t low, int32_t high) {
    if (start > high) start = high;
    // In 64 bits: stored numbers may be anything.
    const int64_t end = static_cast<int64_t>(start) + extent;
    if (end >= low) return start;
    const int64_t moved = static_cast<int64_t>(low) - extent;
    return static_cast<int32_t>(std::clamp<int64_t>(moved, INT32_MIN, INT32_MAX));
}

void ClampPlacement(WindowPlacement* placement, Bounds bounds) {
    placement->X = ClampAxis(placement->X, placement->Width, bounds.left + kPlacementMargin,
                             bounds.right - kPlacementMargin);
    placement->Y = ClampAxis(placement->Y, placement->Height, bounds.top + kPlacementMargin,
                             bounds.bottom - kPlacementMargin);
}
