// A picture that a window keeps between frames: 32 bits a pixel, drawn with GDI or pixel by pixel,
// copied to the window in one go. Made anew only when its size changes.
#pragma once
#include "core/platform.h"

#include <cstdint>

struct Canvas {
    HDC dc; // draw here; null while there is no picture
    HBITMAP bitmap;
    HGDIOBJ oldBitmap;
    uint32_t* pixels; // 0x00RRGGBB, rows from the top, width pixels each. GdiFlush before reading
    int width, height;
};

// 1 when a picture of this size stands (made anew and black when the size is another one).
int SizeCanvas(Canvas* canvas, int width, int height);
void FreeCanvas(Canvas* canvas);
// Copies the picture to (x, y) of the dc.
void ShowCanvas(const Canvas& canvas, HDC dc, int x, int y);

// 0 when nothing drawn into `area` (client coordinates) could be seen: the window or one above it
// in the tree is hidden, minimised, or wholly covered as far as the clip box tells.
int AreaInSight(HWND window, const RECT& area);
