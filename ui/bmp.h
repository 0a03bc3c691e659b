// Bitmap files (BMP) from anywhere: 1, 2, 4, 8, 16, 24 and 32 bits a pixel, run lengths, bit masks,
// rows from either end, headers of Windows and OS/2. Nothing that a file says is believed before
// its bytes are there.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

// A picture of more pixels is refused: at four bytes each this is what a 32-bit process can spare.
constexpr int64_t kBmpMaxPixels = 32 * 1024 * 1024;

struct BmpHeader {
    int32_t width, height; // both positive
    bool topDown;
    int bits;             // of a pixel
    uint32_t compression; // as in the file: 0 none, 1 and 2 run lengths, 3 and 6 masks
    uint32_t masks[3];    // red, green, blue, of 16 and 32 bits
    size_t palette;       // offset of its first entry
    uint32_t colors;      // entries that are there
    uint32_t colorBytes;  // of each: 3 or 4
    size_t pixels;        // offset of the first row or run
};

// Of a whole file; 0 for what is no bitmap, is larger than allowed, or has not all of its rows.
int ReadBmpFile(std::span<const uint8_t> file, BmpHeader* header);
// Of a bitmap resource, which begins with the second header.
int ReadBmpResource(std::span<const uint8_t> resource, BmpHeader* header);
// width x height pixels, 0x00RRGGBB, rows from the top; the bytes and header as read above. 0 when
// run lengths break off.
int DecodeBmp(std::span<const uint8_t> bytes, const BmpHeader& header, uint32_t* pixels);
