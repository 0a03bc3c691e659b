// Printed pages as metafiles: what stands in them, and where its ink is.
#pragma once
#include "archive/print_draw_win.h"
#include "ui/canvas_win.h"

#include <algorithm>
#include <string>
#include <vector>

inline int CALLBACK CollectText(HDC, HANDLETABLE*, const ENHMETARECORD* record, int, LPARAM to) {
    if (record->iType != EMR_EXTTEXTOUTW) return 1;
    const auto& text = *reinterpret_cast<const EMREXTTEXTOUTW*>(record);
    const auto* letters = reinterpret_cast<const wchar_t*>(reinterpret_cast<const char*>(record) +
                                                           text.emrtext.offString);
    std::string narrow;
    for (DWORD i = 0; i < text.emrtext.nChars; ++i)
        narrow += static_cast<char>(letters[i]);
    reinterpret_cast<std::vector<std::string>*>(to)->push_back(narrow);
    return 1;
}

inline std::vector<std::string> TextsOf(HENHMETAFILE file) {
    std::vector<std::string> texts;
    EnumEnhMetaFile(nullptr, file, CollectText, &texts, nullptr);
    return texts;
}

// Plays a metafile's texts without the clipping that they were drawn with.
inline int CALLBACK PlayUnclipped(HDC dc, HANDLETABLE* handles, const ENHMETARECORD* record,
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
inline HENHMETAFILE MakeMetafile(const PrintPage& page, const PrintFont& font,
                                 const DeviceScale& scale) {
    const HDC dc = CreateEnhMetaFileA(nullptr, nullptr, nullptr, nullptr);
    DrawPrintPage(dc, page, font, kPrintFace, scale);
    return CloseEnhMetaFile(dc);
}

// Into a white picture of that many pixels, one for one.
inline void PlayInto(Canvas* canvas, HENHMETAFILE file, int width, int height, int clipped) {
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

inline int DarkPixels(const Canvas& canvas) {
    return static_cast<int>(std::count_if(canvas.pixels,
                                          canvas.pixels + canvas.width * canvas.height,
                                          [](uint32_t pixel) { return (pixel & 0xFF) < 100; }));
}
