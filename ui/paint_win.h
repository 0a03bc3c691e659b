// Painting without flicker and without making GDI objects: one memory bitmap a thread, grown when a
// larger window asks for it, and fills with the stock brush that takes any colour.
#pragma once
#include "core/platform.h"

struct MemoryPaint {
    PAINTSTRUCT paint;
    HWND window;
    HDC dc;      // draw here, in client coordinates; the window's own dc when there is no bitmap
    RECT client; // the whole client area
};
// In WM_PAINT. The buffer holds whatever was painted last: fill the whole client area first.
void BeginMemoryPaint(HWND window, MemoryPaint* paint);
void EndMemoryPaint(MemoryPaint* paint);
// Frees this thread's bitmap; the framework calls it when its window goes.
void FreePaintBuffer();

void FillArea(HDC dc, const RECT& area, COLORREF color);
// Copies a bitmap to (x, y).
void DrawBitmapAt(HDC dc, HBITMAP bitmap, int x, int y, int width, int height);
