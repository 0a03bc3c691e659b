// The preview's picture. Letters of a few pixels are hard to read, and their widths are those of
// paper: so the page is drawn larger and made smaller, which gives them shades.
#include "archive/print_preview_win.h"

#include "archive/print_draw_win.h"
#include "ui/paint_win.h"

#include <algorithm>

constexpr int kLarger = 3;
constexpr int kMostPixels = 3000; // of the large picture's sides: 36 MB at most
constexpr int kAround = 8, kShadow = 3;

// The sheet in the middle of the control.
static RECT PlaceSheet(int width, int height, const PrintPaper& paper) {
    const double wide = std::max(1, width - 2 * kAround), high = std::max(1, height - 2 * kAround);
    const double scale = std::min(wide / paper.width, high / paper.height);
    // Inside the control however small that is: its pixels are written one by one.
    const int sheetWide = std::max(1, std::min(width, static_cast<int>(paper.width * scale)));
    const int sheetHigh = std::max(1, std::min(height, static_cast<int>(paper.height * scale)));
    const int left = (width - sheetWide) / 2, top = (height - sheetHigh) / 2;
    return {left, top, left + sheetWide, top + sheetHigh};
}

// Each pixel the mean of `larger` times as many either way. Stretching by the system takes one of
// them on some platforms, and lines vanish.
static void Reduce(const Canvas& large, int larger, const Canvas& picture, int left, int top) {
    const uint32_t count = static_cast<uint32_t>(larger) * larger;
    for (int y = 0; y < large.height / larger; ++y)
        for (int x = 0; x < large.width / larger; ++x) {
            uint32_t sums[3] = {};
            for (int i = 0; i < larger * larger; ++i) {
                const int row = y * larger + i / larger, column = x * larger + i % larger;
                const uint32_t pixel = large.pixels[row * large.width + column];
                for (int part = 0; part < 3; ++part)
                    sums[part] += pixel >> part * 8 & 0xFF;
            }
            uint32_t mean = 0;
            for (int part = 0; part < 3; ++part)
                mean |= sums[part] / count << part * 8;
            picture.pixels[(top + y) * picture.width + left + x] = mean;
        }
}

static void DrawSheet(const Canvas& picture, const RECT& place, const PrintDocument& document,
                      size_t page, const char* face) {
    const PrintPaper& paper = document.style.paper;
    const int wide = place.right - place.left, high = place.bottom - place.top;
    const int larger = std::max(1, std::min(kLarger, kMostPixels / std::max(wide, high)));
    Canvas large = {};
    FillArea(picture.dc, place, RGB(255, 255, 255));
    if (!SizeCanvas(&large, wide * larger, high * larger)) return;
    FillArea(large.dc, {0, 0, large.width, large.height}, RGB(255, 255, 255));
    const DeviceScale scale = {static_cast<double>(large.width) / paper.width,
                               static_cast<double>(large.height) / paper.height, 0, 0};
    DrawPrintPage(large.dc, DocumentPage(document, page), document.style.font, face, scale);
    GdiFlush();
    Reduce(large, larger, picture, place.left, place.top);
    FreeCanvas(&large);
}

void DrawPreview(PrintPreview* preview, HWND control, const PrintDocument& document, size_t page,
                 const char* face) {
    RECT client;
    GetClientRect(control, &client);
    if (!SizeCanvas(&preview->picture, client.right, client.bottom)) return;
    const HDC dc = preview->picture.dc;
    FillArea(dc, client, GetSysColor(COLOR_APPWORKSPACE));
    const RECT place = PlaceSheet(client.right, client.bottom, document.style.paper);
    RECT shadow = place;
    OffsetRect(&shadow, kShadow, kShadow);
    FillArea(dc, shadow, GetSysColor(COLOR_3DDKSHADOW));
    DrawSheet(preview->picture, place, document, page, face);
    InvalidateRect(control, nullptr, FALSE);
}

void FreePreview(PrintPreview* preview) {
    FreeCanvas(&preview->picture);
}
