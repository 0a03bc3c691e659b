// A bitmap as it is painted from: many threads at once, without a memory dc. Only ui/ appearance
// files include this.
#pragma once
#include "core/platform.h"

#include <cstdint>
#include <vector>

struct Picture {
    HBITMAP bitmap;   // section of 32 bits at its own size
    uint32_t* pixels; // its bits, rows from the top
    int width, height;
    // The bitmap several times over where it is small, so that few copies cover a window.
    std::vector<uint32_t> repeated; // empty: tile from the bitmap itself
    int tileWidth, tileHeight;
    LONG users; // guarded by whoever shares it
};

// Null when it is no bitmap, too large, broken, or memory is out.
Picture* LoadPictureFile(const char* path);
Picture* LoadPictureResource(UINT id);
void FreePicture(Picture* picture);

// A larger picture is reduced once for each size; this thread keeps the copies that it used last.
void StretchPicture(HDC dc, const Picture& picture, const RECT& area);
// To be called before a picture that this thread has stretched may go.
void FreeReducedPictures();
// One tile at its place; what lies outside the dc's clipping costs little.
void DrawPictureTile(HDC dc, const Picture& picture, int x, int y);
