// Pages drawn into metafiles and played back: the ink of real letters, unclipped, stays inside the
// boxes that were computed for it.
#include "archive/print_system_win.h"
#include "tests/support/print_pages.h"
#include "tests/windows/archive/print_kit.h"
#include "ui/canvas_win.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

// Plays a metafile's texts without the clipping that they were drawn with.
static int CALLBACK PlayUnclipped(HDC dc, HANDLETABLE* handles, const ENHMETARECORD* record,
                                  int count, LPARAM) {
    std::vector<char> copy(reinterpret_cast<const char*>(record),
                           reinterpret_cast<const char*>(record) + record->nSize);
    auto* own = reinterpret_cast<ENHMETARECORD*>(copy.data());
    if (own->iType == EMR_EXTTEXTOUTW)
        reinterpret_cast<EMREXTTEXTOUTW*>(own)->emrtext.fOptions &=
            ~static_cast<DWORD>(ETO_CLIPPED);
    PlayEnhMetaFileRecord(dc, handles, own, static_cast<UINT>(count));
    return 1;
}

// A page as a metafile. Its pixels are those of the scale.
static HENHMETAFILE MakeMetafile(const PrintPage& page, const PrintFont& font,
                                 const DeviceScale& scale) {
    const HDC dc = CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr);
    DrawPrintPage(dc, page, font, kPrintFace, scale);
    return CloseEnhMetaFile(dc);
}

// Into a white picture of that many pixels, one for one.
static void PlayInto(Canvas* canvas, HENHMETAFILE file, int width, int height, int clipped) {
    SizeCanvas(canvas, width, height);
    const RECT all = {0, 0, width, height};
    FillRect(canvas->dc, &all, static_cast<HBRUSH>(GetStockObject(WHITE_BRUSH)));
    ENHMETAHEADER header;
    GetEnhMetaFileHeader(file, sizeof header, &header);
    const SIZEL device = header.szlDevice, size = header.szlMillimeters;
    RECT frame; // in pixels of the device that the metafile was made for
    for (int i = 0; i < 4; ++i)
        (&frame.left)[i] = i % 2 ? MulDiv((&header.rclFrame.left)[i], device.cy, size.cy * 100)
                                 : MulDiv((&header.rclFrame.left)[i], device.cx, size.cx * 100);
    if (clipped)
        PlayEnhMetaFile(canvas->dc, file, &frame);
    else
        EnumEnhMetaFile(canvas->dc, file, PlayUnclipped, nullptr, &frame);
    GdiFlush();
}

static int DarkPixels(const Canvas& canvas) {
    return static_cast<int>(std::count_if(canvas.pixels,
                                          canvas.pixels + canvas.width * canvas.height,
                                          [](uint32_t pixel) { return (pixel & 0xFF) < 100; }));
}

// Pixels outside of all boxes (a pixel around them for rounding and soft edges) that are not white.
static int StrayPixels(const Canvas& canvas, const PrintPage& page, const DeviceScale& scale) {
    std::vector<uint8_t> allowed(static_cast<size_t>(canvas.width) * canvas.height);
    const auto allow = [&](const Box& box) {
        const int left = static_cast<int>(box.left * scale.x) - 1;
        const int top = static_cast<int>(box.top * scale.y) - 1;
        const int right = static_cast<int>(std::ceil((box.left + box.width) * scale.x)) + 1;
        const int bottom = static_cast<int>(std::ceil((box.top + box.height) * scale.y)) + 1;
        for (int y = std::max(0, top); y < std::min(bottom, canvas.height); ++y)
            for (int x = std::max(0, left); x < std::min(right, canvas.width); ++x)
                allowed[static_cast<size_t>(y) * canvas.width + x] = 1;
    };
    for (const PrintText& text : page.texts)
        allow(text.box);
    for (const PrintFill& fill : page.fills)
        allow(fill.box);
    int stray = 0;
    for (size_t i = 0; i < allowed.size(); ++i)
        stray += !allowed[i] && (canvas.pixels[i] & 0xFFFFFF) != 0xFFFFFF;
    return stray;
}

TEST(PrintPage, InkOfRealLettersStaysInsideUnclipped) {
    const PrintPaper papers[] = {LocalPaper(), MakePaper(10500, 14800, {300, 300, 9900, 14200}),
                                 MakePaper(6200, 2900, {150, 150, 5900, 2600})};
    PrintFont font;
    LoadPrintFont(kPrintFace, &font);
    Canvas loose = {}, held = {};
    for (const PrintPaper& paper : papers)
        for (int kind = 0; kind < kPrintKinds; ++kind)
            for (const auto texts : {kShortTexts, kLongWords, kLongLines, kOddLetters}) {
                const CDInfoRecord record = MakeDisc(12, texts, texts != kLongLines);
                const auto pages = MakePages(static_cast<PrintKind>(kind), MakeStyle(font, paper),
                                             {record, record});
                const DeviceScale scale = {0.08, 0.08, 0, 0}; // 203 dots an inch
                const int width = paper.width * 8 / 100, height = paper.height * 8 / 100;
                for (size_t i = 0; i < std::min<size_t>(2, pages.size()); ++i) {
                    SCOPED_TRACE(testing::Message() << paper.width << " " << kind << " " << texts);
                    const HENHMETAFILE file = MakeMetafile(pages[i], font, scale);
                    EXPECT_EQ(TextsOf(file).size(), pages[i].texts.size());
                    PlayInto(&loose, file, width, height, 0);
                    PlayInto(&held, file, width, height, 1);
                    EXPECT_EQ(StrayPixels(loose, pages[i], scale), 0);
                    // The clipping takes nothing away that one would see.
                    EXPECT_GE(DarkPixels(held), DarkPixels(loose) * 99 / 100);
                    EXPECT_GT(DarkPixels(held), 50);
                    DeleteEnhMetaFile(file);
                }
            }
    FreeCanvas(&loose);
    FreeCanvas(&held);
}
