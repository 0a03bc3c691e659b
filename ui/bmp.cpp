// Bitmap files. See bmp.h.
#include "ui/bmp.h"

#include "core/bytes.h"

#include <algorithm>
#include <bit>

constexpr uint32_t kFileHeader = 14, kFileMark = 0x4D42; // "BM"
constexpr uint32_t kCoreHeader = 12, kShortestHeader = 16, kInfoHeader = 40, kMasksHeader = 52;
constexpr uint32_t kOs2Header = 64, kLongestHeader = 4096;
constexpr uint32_t kRaw = 0, kRuns8 = 1, kRuns4 = 2, kMasks = 3, kAlphaMasks = 6;
constexpr int kMaxPaletteBits = 8;

static uint64_t Stride(const BmpHeader& h) {
    return (static_cast<uint64_t>(h.width) * h.bits + 31) / 32 * 4;
}

// ---- headers

static int TakesCompression(const BmpHeader& h, uint32_t headerBytes) {
    switch (h.compression) {
    case kRaw: return 1;
    case kRuns8: return h.bits == 8 && !h.topDown;
    case kRuns4: return h.bits == 4 && !h.topDown;
    case kMasks:
    case kAlphaMasks: // of OS/2, the number means something else
        return (h.bits == 16 || h.bits == 32) && headerBytes >= kInfoHeader &&
               headerBytes != kOs2Header;
    default: return 0;
    }
}

static int ReadSize(ByteReader& r, int core, BmpHeader* h) {
    const int32_t width = core ? ReadU16(r) : static_cast<int32_t>(ReadU32(r));
    const int32_t height = core ? ReadU16(r) : static_cast<int32_t>(ReadU32(r));
    const int planes = ReadU16(r);
    h->bits = ReadU16(r);
    if (r.failed || planes != 1 || width <= 0 || !height || height == INT32_MIN) return 0;
    h->topDown = height < 0;
    h->width = width;
    h->height = h->topDown ? -height : height;
    const int bits[] = {1, 2, 4, 8, 16, 24, 32};
    return int64_t{h->width} * h->height <= kBmpMaxPixels &&
           std::find(std::begin(bits), std::end(bits), h->bits) != std::end(bits);
}

static void ReadMasks(ByteReader& r, BmpHeader* h) {
    const uint32_t five[] = {0x7C00, 0x03E0, 0x001F}, eight[] = {0xFF0000, 0xFF00, 0xFF};
    for (int i = 0; i < 3; ++i)
        h->masks[i] = h->compression == kRaw ? (h->bits == 16 ? five[i] : eight[i]) : ReadU32(r);
}

static int HasAllRows(const BmpHeader& h, size_t size) {
    if (h.pixels >= size) return 0;
    if (h.compression == kRuns8 || h.compression == kRuns4) return 1; // known only by decoding
    // Some writers leave out what fills up the last row.
    const uint64_t last = (static_cast<uint64_t>(h.width) * h.bits + 7) / 8;
    return Stride(h) * static_cast<uint64_t>(h.height - 1) + last <= size - h.pixels;
}

// From the second header on; pixelsAt is 0 where they follow the palette.
static int ReadHeaders(std::span<const uint8_t> bytes, size_t start, size_t pixelsAt,
                       BmpHeader* header) {
    BmpHeader h = {};
    ByteReader r{bytes, start};
    const uint32_t headerBytes = ReadU32(r);
    const int core = headerBytes == kCoreHeader;
    if (r.failed || (!core && headerBytes < kShortestHeader) || headerBytes > kLongestHeader)
        return 0;
    if (!ReadSize(r, core, &h)) return 0;
    uint32_t used = 0;
    if (headerBytes >= 20) h.compression = ReadU32(r);
    if (headerBytes >= 36) {
        ReadBytes(r, 12); // size of the rows, resolution
        used = ReadU32(r);
    }
    if (r.failed || !TakesCompression(h, headerBytes)) return 0;
    uint64_t at = uint64_t{start} + headerBytes;
    const int masksFollow = h.compression >= kMasks && headerBytes < kMasksHeader;
    if (at > bytes.size()) return 0;
    if (h.compression >= kMasks) r.at = start + kInfoHeader; // no header with masks is shorter
    ReadMasks(r, &h);
    if (r.failed) return 0;
    if (masksFollow) at += h.compression == kMasks ? 12 : 16;
    h.colorBytes = core ? 3 : 4;
    const uint32_t most = h.bits <= kMaxPaletteBits ? 1u << h.bits : 0;
    const uint64_t stored = used ? used : most; // deep bitmaps may carry one, too
    const uint64_t following = at + stored * h.colorBytes;
    if (at > bytes.size()) return 0;
    const uint64_t pixels = pixelsAt > at ? pixelsAt : following;
    if (pixels > bytes.size()) return 0;
    h.palette = static_cast<size_t>(at);
    h.pixels = static_cast<size_t>(pixels);
    h.colors =
        static_cast<uint32_t>(std::min<uint64_t>({stored, most, (pixels - at) / h.colorBytes}));
    if (!HasAllRows(h, bytes.size())) return 0;
    *header = h;
    return 1;
}

int ReadBmpFile(std::span<const uint8_t> file, BmpHeader* header) {
    ByteReader r{file};
    const int isBitmap = ReadU16(r) == kFileMark;
    ReadBytes(r, 8); // a size that many writers leave 0, and two reserved words
    const uint32_t pixelsAt = ReadU32(r);
    if (r.failed || !isBitmap) return 0;
    return ReadHeaders(file, kFileHeader, pixelsAt, header);
}

int ReadBmpResource(std::span<const uint8_t> resource, BmpHeader* header) {
    return ReadHeaders(resource, 0, 0, header);
}

// ---- pixels

namespace {
struct Palette {
    uint32_t colors[1 << kMaxPaletteBits]; // what the file does not have is black
};
} // namespace

static void ReadPalette(std::span<const uint8_t> bytes, const BmpHeader& h, Palette* palette) {
    *palette = {};
    for (uint32_t i = 0; i < h.colors; ++i) {
        const uint8_t* entry = &bytes[h.palette + size_t{i} * h.colorBytes];
        palette->colors[i] = entry[0] | entry[1] << 8 | entry[2] << 16;
    }
}

static uint32_t* RowOf(const BmpHeader& h, uint32_t* pixels, int32_t row) {
    return pixels + size_t{static_cast<uint32_t>(h.topDown ? row : h.height - 1 - row)} *
                        static_cast<uint32_t>(h.width);
}

static void DecodeIndexed(const uint8_t* row, const BmpHeader& h, const Palette& palette,
                          uint32_t* out) {
    const int mask = (1 << h.bits) - 1;
    for (int32_t x = 0; x < h.width; ++x) {
        const size_t bit = static_cast<size_t>(x) * h.bits;
        out[x] = palette.colors[row[bit / 8] >> (8 - h.bits - bit % 8) & mask];
    }
}

// A channel of any width, brought to eight bits.
static uint32_t Channel(uint32_t pixel, uint32_t mask) {
    if (!mask) return 0;
    const int shift = std::countr_zero(mask);
    return static_cast<uint32_t>(uint64_t{(pixel & mask) >> shift} * 255 / (mask >> shift));
}

static void DecodeDeep(const uint8_t* row, const BmpHeader& h, uint32_t* out) {
    const int bytes = h.bits / 8;
    const bool plain =
        h.bits >= 24 && h.masks[0] == 0xFF0000 && h.masks[1] == 0xFF00 && h.masks[2] == 0xFF;
    for (int32_t x = 0; x < h.width; ++x, row += bytes) {
        uint32_t pixel = row[0] | row[1] << 8;
        if (bytes >= 3) pixel |= static_cast<uint32_t>(row[2]) << 16;
        if (bytes == 4) pixel |= static_cast<uint32_t>(row[3]) << 24;
        out[x] = plain ? pixel & 0xFFFFFF
                       : Channel(pixel, h.masks[0]) << 16 | Channel(pixel, h.masks[1]) << 8 |
                             Channel(pixel, h.masks[2]);
    }
}

// ---- run lengths

namespace {
struct RunPainter {
    const BmpHeader& h;
    const Palette& palette;
    uint32_t* pixels;
    int64_t x = 0, y = 0; // y from the bottom
};
} // namespace

static void PutPixel(RunPainter& p, unsigned index) {
    if (p.x < p.h.width && p.y < p.h.height)
        RowOf(p.h, p.pixels, static_cast<int32_t>(p.y))[p.x] = p.palette.colors[index];
    ++p.x;
}

// `count` pixels as they stand, filled up to whole words.
static void PutLiterals(RunPainter& p, ByteReader& r, unsigned count) {
    const unsigned perByte = p.h.compression == kRuns4 ? 2 : 1;
    const unsigned bytes = (count + perByte - 1) / perByte;
    const auto part = ReadBytes(r, bytes);
    if (bytes % 2 && BytesLeft(r)) ReadU8(r);
    if (part.empty()) return;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned byte = part[i / perByte];
        PutPixel(p, perByte == 1 ? byte : i % 2 ? byte & 15 : byte >> 4);
    }
}

static void PutRun(RunPainter& p, unsigned count, unsigned value) {
    for (unsigned i = 0; i < count; ++i)
        PutPixel(p, p.h.compression == kRuns8 ? value : i % 2 ? value & 15 : value >> 4);
}

// What runs leave out is of the first colour. 1 when the picture ended as it should.
static int DecodeRuns(std::span<const uint8_t> bytes, RunPainter& p) {
    std::fill_n(p.pixels, size_t{static_cast<uint32_t>(p.h.width)} * p.h.height,
                p.palette.colors[0]);
    ByteReader r{bytes, p.h.pixels};
    while (p.y < p.h.height) {
        const unsigned count = ReadU8(r), value = ReadU8(r);
        // The mark of the end is missing in some files; then the last row has to be there.
        if (r.failed) return p.y == p.h.height - 1 && p.x >= p.h.width;
        if (count) {
            PutRun(p, count, value);
        } else if (value == 0) {
            p.x = 0;
            ++p.y;
        } else if (value == 1) {
            return 1;
        } else if (value == 2) {
            p.x += ReadU8(r);
            p.y += ReadU8(r);
        } else {
            PutLiterals(p, r, value);
        }
        if (r.failed) return 0;
    }
    return 1;
}

int DecodeBmp(std::span<const uint8_t> bytes, const BmpHeader& header, uint32_t* pixels) {
    Palette palette;
    ReadPalette(bytes, header, &palette);
    if (header.compression == kRuns8 || header.compression == kRuns4) {
        RunPainter painter{header, palette, pixels};
        return DecodeRuns(bytes, painter);
    }
    const auto stride = static_cast<size_t>(Stride(header));
    for (int32_t row = 0; row < header.height; ++row) {
        const uint8_t* from = bytes.data() + header.pixels + stride * static_cast<size_t>(row);
        uint32_t* const out = RowOf(header, pixels, row);
        if (header.bits <= kMaxPaletteBits)
            DecodeIndexed(from, header, palette, out);
        else
            DecodeDeep(from, header, out);
    }
    return 1;
}
