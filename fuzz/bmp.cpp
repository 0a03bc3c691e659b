// A bitmap file as it may come from anywhere. Every header that is taken gets exactly the pixels it
// asks for, so that a write beyond shows.
#include "ui/bmp.h"

#include <cstdlib>
#include <vector>

constexpr int64_t kQuickPixels = 1 << 16; // larger ones are checked by their header alone

static void Try(std::span<const uint8_t> bytes, int (*read)(std::span<const uint8_t>, BmpHeader*)) {
    BmpHeader header;
    if (!read(bytes, &header)) return;
    const int64_t count = int64_t{header.width} * header.height;
    if (header.width < 1 || header.height < 1 || count > kBmpMaxPixels) abort();
    if (count > kQuickPixels) return;
    std::vector<uint32_t> pixels(static_cast<size_t>(count), 0xFFFFFFFF);
    if (!DecodeBmp(bytes, header, pixels.data())) return;
    for (const uint32_t pixel : pixels)
        if (pixel > 0xFFFFFF) abort(); // one that was left out
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    Try({data, size}, ReadBmpFile);
    Try({data, size}, ReadBmpResource);
    return 0;
}
