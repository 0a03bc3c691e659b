// Bitmap files of all kinds, where tiles lie, and the numbers of the look.
#include "core/bytes.h"
#include "ui/bmp.h"
#include "ui/look.h"
#include "ui/tiling.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using Bytes = std::vector<uint8_t>;
using Pixels = std::vector<uint32_t>;

namespace {
struct Bmp {
    uint32_t headerBytes = 40;
    int32_t width = 3, height = 2;
    uint16_t bits = 24;
    uint32_t compression = 0;
    Pixels masks = {}, palette = {};
    Bytes rows = {}; // as stored
    bool noOffset = false;
};
const Pixels kShown = {0xFF0000, 0xFF00, 0xFF, 0xFFFFFF, 0, 0xFF0000};
const Pixels kColors = {0, 0xFFFFFF, 0xFF0000, 0xFF00, 0xFF};
const Bytes kDeep = {255, 255, 255, 0, 0,   0, 0,   0, 255, 0, 0, 0,
                     0,   0,   255, 0, 255, 0, 255, 0, 0,   0, 0, 0};
} // namespace

static Bytes FileOf(const Bmp& bmp) {
    Bytes bytes(4096);
    ByteWriter w{bytes};
    const size_t core = bmp.headerBytes == 12, color = core ? 3 : 4;
    const size_t masks = bmp.headerBytes < 52 ? 4 * bmp.masks.size() : 0;
    const size_t rows = 14 + bmp.headerBytes + masks + color * bmp.palette.size();
    const auto words = [&](const Pixels& all, size_t width) {
        for (const uint32_t word : all)
            WriteLittle(w, word, width);
    };
    WriteBytes(w, "BM", 2);
    words({0, 0, bmp.noOffset ? 0 : static_cast<uint32_t>(rows), bmp.headerBytes}, 4);
    words({static_cast<uint32_t>(bmp.width), static_cast<uint32_t>(bmp.height)}, core ? 2 : 4);
    words({1, bmp.bits}, 2);
    if (!core) words({bmp.compression, 0, 0, 0, static_cast<uint32_t>(bmp.palette.size()), 0}, 4);
    words(bmp.masks, 4);
    w.at = rows - color * bmp.palette.size();
    words(bmp.palette, color);
    WriteBytes(w, bmp.rows.data(), bmp.rows.size());
    bytes.resize(w.at);
    return bytes;
}

// Empty when it is refused.
static Pixels Decode(const Bytes& file) {
    BmpHeader header;
    if (!ReadBmpFile(file, &header)) return {};
    Pixels pixels(static_cast<size_t>(header.width) * header.height, 0x12345678);
    return DecodeBmp(file, header, pixels.data()) ? pixels : Pixels{};
}

TEST(BmpFile, EveryKindShowsItsPicture) {
    const Bytes fives = {0xFF, 0x7F, 0, 0, 0, 0x7C, 0, 0, 0, 0x7C, 0xE0, 0x03, 0x1F, 0, 0, 0};
    const Bytes sixes = {0xFF, 0xFF, 0, 0, 0, 0xF8, 0, 0, 0, 0xF8, 0xE0, 0x07, 0x1F, 0, 0, 0};
    const Bytes wide = {255, 255, 255, 9, 0, 0,   0, 9, 255, 0, 0,   9,
                        255, 0,   0,   9, 0, 255, 0, 9, 0,   0, 255, 9};
    const Bytes nibbles = {0x10, 0x20, 0, 0, 0x23, 0x40, 0, 0};
    const Bytes fromTop = {0, 0,   255, 0,   255, 0, 255, 0, 0, 7,  7,
                           7, 255, 255, 255, 0,   0, 0,   0, 0, 255};
    Pixels sixteen = kColors;
    sixteen.resize(16);
    const Bmp cases[] = {
        {.rows = kDeep},
        {.headerBytes = 124, .rows = kDeep},
        {.height = -2, .rows = fromTop}, // also without what fills up the last row
        {.bits = 16, .rows = fives},
        {.bits = 16, .compression = 3, .masks = {0xF800, 0x07E0, 0x1F}, .rows = sixes},
        {.bits = 16,
         .compression = 3,
         .masks = {0xF800, 0x07E0, 0x1F},
         .palette = kColors,
         .rows = sixes,
         .noOffset = true}, // behind the masks and a palette that nobody needs
        {.headerBytes = 108,
         .bits = 32,
         .compression = 3,
         .masks = {255, 0xFF00, 0xFF0000},
         .rows = wide},
        {.bits = 8, .palette = kColors, .rows = {1, 0, 2, 9, 2, 3, 4, 9}},
        {.headerBytes = 12, .bits = 4, .palette = sixteen, .rows = nibbles},
        {.headerBytes = 64, .bits = 4, .palette = kColors, .rows = nibbles},
        {.bits = 8,
         .compression = 1,
         .palette = kColors, // a jump over what stays of colour 0; the last run is too long
         .rows = {1, 1, 0, 2, 1, 0, 1, 2, 0, 0, 0, 3, 2, 3, 4, 0, 9, 9, 0, 1}},
        {.bits = 4,
         .compression = 2,
         .palette = kColors,
         .rows = {2, 0x10, 1, 0x20, 0, 0, 0, 3, 0x23, 0x40, 0, 1}},
    };
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(Decode(FileOf(cases[i])), kShown) << "case " << i;
    EXPECT_EQ(Decode(FileOf({.width = 9,
                             .height = 1,
                             .bits = 1,
                             .palette = {3, 4},
                             .rows = {0b10110000, 0x80, 0, 0}})),
              (Pixels{4, 3, 4, 4, 3, 3, 3, 3, 4}));
}

TEST(BmpFile, LyingAndBrokenOnesAreRefused) {
    const Bmp cases[] = {
        {.width = 20000, .height = 20000, .rows = kDeep},
        {.width = 0, .rows = kDeep},
        {.height = INT32_MIN, .rows = kDeep},
        {.width = INT32_MAX, .height = INT32_MAX, .rows = kDeep},
        {.bits = 7, .rows = kDeep},
        {.compression = 1, .rows = kDeep},
        {.height = -2, .bits = 8, .compression = 1, .palette = kColors, .rows = kDeep},
        {.headerBytes = 13, .rows = kDeep},
        {.bits = 8, .compression = 1, .palette = kColors, .rows = {3, 1, 0, 0, 2}}, // breaks off
    };
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_TRUE(Decode(FileOf(cases[i])).empty()) << "case " << i;
    Bytes cut = FileOf({.rows = kDeep});
    for (cut.resize(cut.size() - 4); !cut.empty(); cut.pop_back())
        EXPECT_TRUE(Decode(cut).empty()) << cut.size();
}

// Which column of a 7 wide bitmap each pixel from the window's left on shows.
static std::string Columns(uint32_t align, int left, int parent, int group) {
    const TilePoint start = TileStart(align, {{left, 0}, {parent, 0}, {group, 0}}, 7, 1);
    std::string columns(8, '-');
    ForEachTile(start, 7, 1, 0, 0, 8, 1, [&](int x, int) {
        for (int i = 0; i < 7; ++i)
            if (x + i >= 0 && x + i < 8) columns[x + i] = static_cast<char>('0' + i);
    });
    return columns;
}

TEST(Tiles, BeginWhereTheAlignmentSaysAlsoLeftOfItsReference) {
    EXPECT_EQ(Columns(99, 1003, 3, 5), "01234560") << "of no known kind";
    EXPECT_EQ(Columns(kAlignParent, 13, 3, 5), "34560123");
    EXPECT_EQ(Columns(kAlignGroup, 13, 3, 5), "12345601");
    EXPECT_EQ(Columns(kAlignGroup, 0, 0, 4), "34560123") << "as the console left of the group";
    EXPECT_EQ(Columns(kAlignScreen, 13, 3, 5), "60123456");
    EXPECT_EQ(Columns(kAlignScreen, -14, 0, 0), "01234560");
    EXPECT_EQ(Columns(kAlignParent, INT32_MIN, INT32_MAX, 0), "45601234");
    EXPECT_EQ(TileRepeat(7, 256, 1000), 37);
    EXPECT_EQ(TileRepeat(1, 256, 9), 9);
    EXPECT_EQ(TileRepeat(INT32_MAX, 256, 0), 1);
}

TEST(Look, DefaultsByDepthAndSizesOfLabels) {
    EXPECT_EQ(DefaultColors(8).IndtrDrkClr, 0x00FF00u);
    EXPECT_EQ(DefaultColors(8).BtnLtClr, 0x00FF00u);
    EXPECT_EQ(DefaultColors(16).IndtrDrkClr, 0xFF8000u);
    EXPECT_EQ(LabelFontHeight(100, 30, 0), 10);
    EXPECT_EQ(LabelFontHeight(100, 30, 1), 15);
    EXPECT_EQ(LabelFontHeight(400, 30, 0), 28);
    EXPECT_EQ(LabelFontHeight(5, 1, 0), 1);
}
