// See clipboard_win.h.
#include "archive/clipboard_win.h"

#include <cstring>

UINT ClipboardDiscFormat() {
    static const UINT format = RegisterClipboardFormatA(kClipboardFormat);
    return format;
}

int ClipboardHasDiscs() {
    return ClipboardDiscFormat() && IsClipboardFormatAvailable(ClipboardDiscFormat());
}

// Another program may have it open for a moment.
static int OpenPatiently(HWND owner) {
    for (int tries = 0; tries < 5; ++tries) {
        if (OpenClipboard(owner)) return 1;
        Sleep(10);
    }
    return 0;
}

int PutDiscsOnClipboard(HWND owner, const std::vector<uint8_t>& block) {
    const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, block.size());
    void* bytes = memory ? GlobalLock(memory) : nullptr;
    if (!bytes) {
        GlobalFree(memory);
        return 0;
    }
    memcpy(bytes, block.data(), block.size());
    GlobalUnlock(memory);
    int put = 0;
    if (OpenPatiently(owner)) {
        put = EmptyClipboard() && SetClipboardData(ClipboardDiscFormat(), memory);
        CloseClipboard();
    }
    if (!put) GlobalFree(memory); // else the system's
    return put;
}

int TakeDiscsFromClipboard(HWND owner, std::vector<uint8_t>* block) {
    block->clear();
    if (!ClipboardHasDiscs() || !OpenPatiently(owner)) return 0;
    const HGLOBAL memory = GetClipboardData(ClipboardDiscFormat());
    if (const void* bytes = memory ? GlobalLock(memory) : nullptr) {
        const auto from = static_cast<const uint8_t*>(bytes);
        DiscBlockReader reader;
        if (OpenDiscBlock({from, GlobalSize(memory)}, &reader))
            block->assign(from, reader.entries.data() + reader.entries.size());
        GlobalUnlock(memory);
    }
    CloseClipboard();
    return !block->empty();
}
