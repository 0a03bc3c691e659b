// Where the tiles of a bitmap lie. Numbers only, in screen pixels unless told.
#pragma once
#include <cstdint>

enum BitmapAlign : uint32_t { kAlignObject, kAlignParent, kAlignGroup, kAlignScreen };

struct TilePoint {
    int x, y;
};
// Upper left corners of what a bitmap may be aligned to.
struct TileCorners {
    TilePoint window; // the one that is painted
    TilePoint parent; // the window itself when it has none
    TilePoint group;  // of the rectangle around all open component windows
};

// Where the first tile begins, relative to the painted window: never right of it or below it, and
// less than a tile away, so that the corner is covered wherever on the desktop the window stands.
// An alignment of no known kind counts as kAlignObject; width and height are at least 1.
TilePoint TileStart(uint32_t align, const TileCorners& corners, int width, int height);

// How many whole bitmaps make a tile of at least `wanted` pixels: tiny ones would need thousands.
// Never more than `most`, but one in any case.
int TileRepeat(int extent, int wanted, int most);

// The pixel that each of `count` places shows of `extent` ones when they are spread over them.
void SpreadPixels(int extent, int count, int* pixels);

// Calls draw(x, y) column by column for every tile that shows in [left, right) x [top, bottom).
template <typename Draw>
void ForEachTile(TilePoint start, int width, int height, int left, int top, int right, int bottom,
                 const Draw& draw) {
    const auto first = [](int64_t from, int64_t to, int extent) {
        return to > from ? from + (to - from) / extent * extent : from;
    };
    for (int64_t x = first(start.x, left, width); x < right; x += width)
        for (int64_t y = first(start.y, top, height); y < bottom; y += height)
            draw(static_cast<int>(x), static_cast<int>(y));
}
