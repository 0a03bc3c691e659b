// One memory bitmap a thread. See paint_win.h.
#include "ui/paint_win.h"

#include <algorithm>

namespace {
struct PaintBuffer {
    HDC dc;
    HBITMAP bitmap;
    HGDIOBJ oldBitmap;
    int width, height;
    HDC imageDc; // source of bitmap copies
};
} // namespace

static thread_local PaintBuffer s_buffer;

static void FreeBitmap() {
    if (s_buffer.dc) SelectObject(s_buffer.dc, s_buffer.oldBitmap);
    if (s_buffer.bitmap) DeleteObject(s_buffer.bitmap);
    s_buffer.bitmap = nullptr;
    s_buffer.width = s_buffer.height = 0;
}

void FreePaintBuffer() {
    FreeBitmap();
    if (s_buffer.dc) DeleteDC(s_buffer.dc);
    if (s_buffer.imageDc) DeleteDC(s_buffer.imageDc);
    s_buffer = {};
}

// Grows in steps, so that a window being resized does not make a bitmap a pixel.
static int RoundUp(int size) {
    return (size + 63) & ~63;
}

static int GrowBuffer(HDC screen, int width, int height) {
    if (s_buffer.bitmap && width <= s_buffer.width && height <= s_buffer.height) return 1;
    if (!s_buffer.dc) s_buffer.dc = CreateCompatibleDC(nullptr);
    if (!s_buffer.dc) return 0;
    const int newWidth = std::max(RoundUp(width), s_buffer.width);
    const int newHeight = std::max(RoundUp(height), s_buffer.height);
    FreeBitmap();
    s_buffer.bitmap = CreateCompatibleBitmap(screen, newWidth, newHeight);
    if (!s_buffer.bitmap) return 0;
    s_buffer.oldBitmap = SelectObject(s_buffer.dc, s_buffer.bitmap);
    s_buffer.width = newWidth;
    s_buffer.height = newHeight;
    return 1;
}

void BeginMemoryPaint(HWND window, MemoryPaint* paint) {
    paint->window = window;
    paint->dc = BeginPaint(window, &paint->paint);
    GetClientRect(window, &paint->client);
    if (!GrowBuffer(paint->dc, paint->client.right, paint->client.bottom)) return;
    paint->dc = s_buffer.dc;
    SaveDC(paint->dc);
    IntersectClipRect(paint->dc, 0, 0, paint->client.right, paint->client.bottom);
}

void EndMemoryPaint(MemoryPaint* paint) {
    if (paint->dc == s_buffer.dc) {
        RestoreDC(paint->dc, -1);
        const RECT& area = paint->paint.rcPaint;
        BitBlt(paint->paint.hdc, area.left, area.top, area.right - area.left,
               area.bottom - area.top, paint->dc, area.left, area.top, SRCCOPY);
    }
    EndPaint(paint->window, &paint->paint);
}

void FillArea(HDC dc, const RECT& area, COLORREF color) {
    SetDCBrushColor(dc, color);
    FillRect(dc, &area, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void DrawBitmapAt(HDC dc, HBITMAP bitmap, int x, int y, int width, int height) {
    if (!s_buffer.imageDc) s_buffer.imageDc = CreateCompatibleDC(nullptr);
    if (!s_buffer.imageDc) return;
    HGDIOBJ old = SelectObject(s_buffer.imageDc, bitmap);
    if (!old) return; // the bitmap is in use elsewhere or no bitmap at all
    BitBlt(dc, x, y, width, height, s_buffer.imageDc, 0, 0, SRCCOPY);
    SelectObject(s_buffer.imageDc, old);
}
