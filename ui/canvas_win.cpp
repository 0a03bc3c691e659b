// Pictures kept between frames. See canvas_win.h.
#include "ui/canvas_win.h"

void FreeCanvas(Canvas* canvas) {
    if (canvas->dc && canvas->oldBitmap) SelectObject(canvas->dc, canvas->oldBitmap);
    if (canvas->bitmap) DeleteObject(canvas->bitmap);
    if (canvas->dc) DeleteDC(canvas->dc);
    *canvas = {};
}

int SizeCanvas(Canvas* canvas, int width, int height) {
    if (width < 1 || height < 1) return 0;
    if (canvas->dc && canvas->width == width && canvas->height == height) return 1;
    FreeCanvas(canvas);
    BITMAPINFO info = {};
    BITMAPINFOHEADER& header = info.bmiHeader;
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = -height; // rows from the top
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biCompression = BI_RGB;
    void* pixels = nullptr;
    canvas->dc = CreateCompatibleDC(nullptr);
    if (canvas->dc)
        canvas->bitmap = CreateDIBSection(canvas->dc, &info, DIB_RGB_COLORS, &pixels, nullptr, 0);
    if (!canvas->bitmap) {
        FreeCanvas(canvas);
        return 0;
    }
    canvas->oldBitmap = SelectObject(canvas->dc, canvas->bitmap);
    canvas->pixels = static_cast<uint32_t*>(pixels);
    canvas->width = width;
    canvas->height = height;
    return 1;
}

void ShowCanvas(const Canvas& canvas, HDC dc, int x, int y) {
    if (canvas.dc) BitBlt(dc, x, y, canvas.width, canvas.height, canvas.dc, 0, 0, SRCCOPY);
}

int AreaInSight(HWND window, const RECT& area) {
    if (!IsWindowVisible(window) || IsIconic(GetAncestor(window, GA_ROOT))) return 0;
    HDC dc = GetDC(window);
    if (!dc) return 0;
    IntersectClipRect(dc, area.left, area.top, area.right, area.bottom);
    RECT box;
    const int kind = GetClipBox(dc, &box);
    ReleaseDC(window, dc);
    return kind != NULLREGION;
}
