// The preview: one page of a document as a picture, drawn as the printer would draw it.
#pragma once
#include "archive/print_document.h"
#include "ui/canvas_win.h"

struct PrintPreview {
    Canvas picture; // of the control's size
};
// Draws the page into a picture for the control; once a page, not once a paint.
void DrawPreview(PrintPreview* preview, HWND control, const PrintDocument& document, size_t page,
                 const char* face);
void FreePreview(PrintPreview* preview);
