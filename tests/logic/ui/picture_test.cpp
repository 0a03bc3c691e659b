// Bitmap files of all kinds, and where tiles lie.
#include "core/bytes.h"
#include "ui/bmp.h"
#include "ui/tiling.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {
struct Bmp {
    uint32_t headerBytes = 40;
    int32_t width = 3, height = 2;
    uint16_t bits = 24;
    uint32_t compression = 0;
    std::vector<uint32_t> masks = {};
    std::vector<uint32_t> palette = {};
    std::vector<uint8_t> rows = {}; // as stored
    uint32_t gap = 0;               // between palette and rows
};
constexpr uint32_t kRed = 0xFF0000, kGreen = 0x00FF00, kBlue = 0x0000FF, kWhite = 0xFFFFFF;
// What all of the files show.
const std::vector<uint32_t> kShown = {kRed, kGreen, kBlue, kWhite, 0, kRed};
} // namespace

static std::vector<uint8_t> FileOf(const Bmp& bmp) {
    std::vector<uint8_t> bytes(4096);
    ByteWriter w{bytes};
    const int core = bmp.headerBytes == 12;
    const size_t colorBytes = core ? 3 : 4;
    const size_t pixels = 14 + bmp.headerBytes + (bmp.headerBytes < 52 ? 4 * bmp.masks.size() : 0) +
                          colorBytes * bmp.palette.size() + bmp.gap;
    WriteBytes(w, "BM", 2);
    for (const uint32_t word : {0u, 0u, static_cast<uint32_t>(pixels), bmp.headerBytes})
        WriteU32(w, word);
    WriteLittle(w, static_cast<uint32_t>(bmp.width), core ? 2 : 4);
    WriteLittle(w, static_cast<uint32_t>(bmp.height), core ? 2 : 4);
    WriteU16(w, 1);
    WriteU16(w, bmp.bits);
    if (!core) {
        for (const uint32_t word :
             {bmp.compression, 0u, 0u, 0u, static_cast<uint32_t>(bmp.palette.size()), 0u})
            WriteU32(w, word);
        for (const uint32_t mask : bmp.masks)
            WriteU32(w, mask);
        if (bmp.headerBytes > 52) w.at = 14 + bmp.headerBytes;
    }
    for (const uint32_t color : bmp.palette)
        WriteLittle(w, color, colorBytes);
    w.at += bmp.gap;
    WriteBytes(w, bmp.rows.data(), bmp.rows.size());
    bytes.resize(w.at);
    return bytes;
}

// Empty when it is refused.
static std::vector<uint32_t> Decode(const std::vector<uint8_t>& file) {
    BmpHeader header;
    if (!ReadBmpFile(file, &header)) return {};
    std::vector<uint32_t> pixels(static_cast<size_t>(header.width) * header.height, 0x12345678);
    return DecodeBmp(file, header, pixels.data()) ? pixels : std::vector<uint32_t>{};
}

static std::vector<uint32_t> Decode(const Bmp& bmp) {
    return Decode(FileOf(bmp));
}

static const std::vector<uint32_t> kColors = {0, kWhite, kRed, kGreen, kBlue};

TEST(BmpFile, EveryKindShowsItsPicture) {
    const std::vector<uint8_t> deep = {255, 255, 255, 0, 0,   0, 0,   0, 255, 0, 0, 0,
                                       0,   0,   255, 0, 255, 0, 255, 0, 0,   0, 0, 0};
    std::vector<uint8_t> unfilled = deep;
    unfilled.resize(deep.size() - 3); // without what fills up the last row
    const std::vector<uint8_t> fives = {0xFF, 0x7F, 0,    0,    0,    0x7C, 0, 0,
                                        0,    0x7C, 0xE0, 0x03, 0x1F, 0,    0, 0};
    const std::vector<uint8_t> sixes = {0xFF, 0xFF, 0,    0,    0,    0xF8, 0, 0,
                                        0,    0xF8, 0xE0, 0x07, 0x1F, 0,    0, 0};
    const std::vector<uint8_t> wide = {255, 255, 255, 9, 0, 0,   0, 9, 255, 0, 0,   9,
                                       255, 0,   0,   9, 0, 255, 0, 9, 0,   0, 255, 9};
    const std::vector<uint32_t> six = {0xF800, 0x07E0, 0x1F}, swapped = {0xFF, 0xFF00, 0xFF0000};
    const Bmp cases[] = {
        {.rows = deep},
        {.rows = unfilled},
        {.rows = deep, .gap = 11},
        {.headerBytes = 12, .rows = deep},
        {.headerBytes = 124, .rows = deep},
        {.height = -2,
         .rows = {0, 0, 255, 0, 255, 0, 255, 0, 0, 7, 7, 7, 255, 255, 255, 0, 0, 0, 0, 0, 255}},
        {.bits = 16, .rows = fives},
        {.bits = 16, .compression = 3, .masks = six, .rows = sixes},
        {.headerBytes = 108, .bits = 32, .compression = 3, .masks = swapped, .rows = wide},
        {.bits = 8, .palette = kColors, .rows = {1, 0, 2, 9, 2, 3, 4, 9}},
        {.headerBytes = 12,
         .bits = 4,
         .palette =
             [] {
                 std::vector<uint32_t> all = kColors;
                 all.resize(16);
                 return all;
             }(),
         .rows = {0x10, 0x20, 0, 0, 0x23, 0x40, 0, 0}},
        {.headerBytes = 64,
         .bits = 4,
         .palette = kColors,
         .rows = {0x10, 0x20, 0, 0, 0x23, 0x40, 0, 0}},
        {.bits = 8,
         .compression = 1,
         .palette = kColors,
         .rows = {0, 3, 1, 0, 2, 0, 0, 0, 1, 2, 1, 3, 9, 4, 0, 1}}, // the last run is too long
        {.bits = 8,
         .compression = 1,
         .palette = kColors, // a jump over what stays of colour 0
         .rows = {1, 1, 0, 2, 1, 0, 1, 2, 0, 0, 0, 3, 2, 3, 4, 0, 0, 0}},
        {.bits = 4,
         .compression = 2,
         .palette = kColors,
         .rows = {2, 0x10, 1, 0x20, 0, 0, 0, 3, 0x23, 0x40, 0, 1}},
    };
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(Decode(cases[i]), kShown) << "case " << i;
    EXPECT_EQ(
        Decode(Bmp{.width = 10,
                   .height = 1,
                   .bits = 1,
                   .palette = {kRed, kBlue},
                   .rows = {0b10110000, 0b01000000, 0, 0}}),
        (std::vector<uint32_t>{kBlue, kRed, kBlue, kBlue, kRed, kRed, kRed, kRed, kRed, kBlue}));
}

TEST(BmpFile, LyingAndBrokenOnesAreRefused) {
    const std::vector<uint8_t> row(24);
    const Bmp cases[] = {
        {.width = 20000, .height = 20000, .rows = row},
        {.width = 0, .rows = row},
        {.height = INT32_MIN, .rows = row},
        {.width = INT32_MAX, .height = INT32_MAX, .rows = row},
        {.height = 3, .rows = row}, // a row is missing
        {.bits = 7, .rows = row},
        {.compression = 4, .rows = row},
        {.bits = 24, .compression = 1, .rows = row},
        {.height = -2, .bits = 8, .compression = 1, .palette = kColors, .rows = row},
        {.headerBytes = 13, .rows = row},
        {.bits = 8, .compression = 1, .palette = kColors, .rows = {3, 1, 0, 0, 2}}, // breaks off
        {.bits = 8, .compression = 1, .palette = kColors, .rows = {0, 9, 1}},
        {.rows = {}},
    };
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_TRUE(Decode(cases[i]).empty()) << "case " << i;
    // Whatever a good one is cut to, it is refused; the last three bytes only fill up.
    const std::vector<uint8_t> good = FileOf({.rows = row});
    for (size_t size = 0; size < good.size() - 3; ++size)
        EXPECT_TRUE(Decode(std::vector<uint8_t>(good.begin(), good.begin() + size)).empty())
            << size;
}

// The columns of a 7 wide bitmap that windows at these places show in their first pixels.
static std::vector<int> Columns(uint32_t align, int left, int parentLeft, int groupLeft,
                                int count) {
    const TileCorners corners = {{left, 0}, {parentLeft, 0}, {groupLeft, 0}};
    const TilePoint start = TileStart(align, corners, 7, 1);
    std::vector<int> columns(count, -1);
    ForEachTile(start, 7, 1, 0, 0, count, 1, [&](int x, int) {
        for (int i = 0; i < 7; ++i)
            if (x + i >= 0 && x + i < count) columns[x + i] = i;
    });
    return columns;
}

TEST(Tiles, BeginWhereTheAlignmentSaysAlsoLeftOfItsReference) {
    const struct {
        uint32_t align;
        int left, parent, group;
        std::vector<int> columns;
    } cases[] = {
        {kAlignObject, 1003, 3, 5, {0, 1, 2, 3, 4, 5, 6, 0}},
        {kAlignParent, 13, 3, 5, {3, 4, 5, 6, 0, 1, 2, 3}},
        {kAlignGroup, 13, 3, 5, {1, 2, 3, 4, 5, 6, 0, 1}},
        {kAlignGroup, -20, 3, -40, {6, 0, 1, 2, 3, 4, 5, 6}},
        {kAlignScreen, 13, 3, 5, {6, 0, 1, 2, 3, 4, 5, 6}},
        {kAlignScreen, -1, 0, 0, {6, 0, 1, 2, 3, 4, 5, 6}},
        {kAlignScreen, -14, 0, 0, {0, 1, 2, 3, 4, 5, 6, 0}},
        {kAlignGroup, 0, 0, 4, {3, 4, 5, 6, 0, 1, 2, 3}}, // as the console left of the group
        {kAlignParent, INT32_MIN, INT32_MAX, 0, {4, 5, 6, 0, 1, 2, 3, 4}},
        {99, 1003, 3, 5, {0, 1, 2, 3, 4, 5, 6, 0}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(Columns(c.align, c.left, c.parent, c.group, 8), c.columns)
            << c.align << " " << c.left;
    // A window and its neighbour go on with the same picture.
    for (int left = -30; left < 30; ++left) {
        const auto whole = Columns(kAlignScreen, left, 0, 0, 50);
        const auto next = Columns(kAlignScreen, left + 20, 0, 0, 30);
        EXPECT_TRUE(std::equal(next.begin(), next.end(), whole.begin() + 20)) << left;
    }
}

TEST(Tiles, ColumnByColumnAndOnlyWhereTheyShow) {
    std::string places;
    ForEachTile({-3, -2}, 10, 5, 12, 4, 28, 9,
                [&](int x, int y) { places += std::to_string(x) + "," + std::to_string(y) + " "; });
    EXPECT_EQ(places, "7,3 7,8 17,3 17,8 27,3 27,8 ");
    EXPECT_EQ(TileRepeat(3, 256) * 3, 258);
    EXPECT_EQ(TileRepeat(5000, 256), 1);
}
