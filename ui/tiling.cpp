// Where tiles begin. See tiling.h.
#include "ui/tiling.h"

#include <algorithm>

// Left of the reference the remainder has to go on as on its right, or a seam would show there.
static int Offset(int from, int reference, int extent) {
    const int64_t rest = (int64_t{from} - reference) % extent;
    return static_cast<int>(rest < 0 ? rest + extent : rest);
}

TilePoint TileStart(uint32_t align, const TileCorners& corners, int width, int height) {
    TilePoint reference = corners.window;
    if (align == kAlignParent) reference = corners.parent;
    if (align == kAlignGroup) reference = corners.group;
    if (align == kAlignScreen) reference = {0, 0};
    return {-Offset(corners.window.x, reference.x, width),
            -Offset(corners.window.y, reference.y, height)};
}

int TileRepeat(int extent, int wanted, int most) {
    const int64_t enough = (int64_t{wanted} + extent - 1) / extent;
    return static_cast<int>(std::clamp<int64_t>(enough, 1, std::max(most, 1)));
}

void SpreadPixels(int extent, int count, int* pixels) {
    for (int i = 0; i < count; ++i)
        pixels[i] = static_cast<int>((2 * int64_t{i} + 1) * extent / (2 * int64_t{count}));
}
