// Old-style CDP files on disk. See old_style.h.
#include "core/platform.h"
#include "cdinfo/old_style.h"

#include <memory>

#include "cdinfo/file_layer.h"
#include "core/strings_win.h"
#include "resources/ids.h"

static void TellFault(HWND owner, const wchar_t* path, CdpFault fault) {
    char text[kStringMax];
    char title[MAX_PATH * 2] = "";
    LoadText(static_cast<UINT>(IDS_CDP_FAULTS + fault - kCdpNotOpened), text);
    WideCharToMultiByte(CP_ACP, 0, path, -1, title, sizeof title, nullptr, nullptr);
    MessageBoxA(owner, text, title, MB_OK | MB_ICONERROR);
}

// 0 with kCdpGood when an entry could not be unpacked, or when the callback ended it.
static int ReadEntries(CdpReader* reader, StoreCallback callback, void* context, int raw,
                       CdpFault* fault) {
    auto record = std::make_unique<CDInfoRecord>();
    CdpEntry entry;
    while (ReadCdpEntry(reader, &entry, fault)) {
        const void* data = entry.packed.data();
        if (!raw) {
            *record = {};
            if (!UnpackEntry(entry.packed, record.get())) return 0;
            SetIdentity(record.get(), entry.identity);
            data = record.get();
        }
        if (!callback(data, entry.packed.size(), entry.identity, context)) return 0;
    }
    return *fault == kCdpGood;
}

static CdpFault ReadBytesOf(const wchar_t* path, std::vector<uint8_t>* bytes) {
    int isOpen;
    if (ReadUnshared(path, bytes, &isOpen) == kFileOk) return kCdpGood;
    return isOpen ? kCdpShort : kCdpNotOpened;
}

int ReadOldStyleFile(StoreWindow owner, const wchar_t* path, StoreCallback callback, void* context,
                     int raw) {
    const std::wstring standard = path ? std::wstring() : DefaultDatabasePath();
    std::vector<uint8_t> bytes;
    CdpReader reader;
    int good = 0;
    CdpFault fault = ReadBytesOf(path ? path : standard.c_str(), &bytes);
    if (fault == kCdpGood) fault = OpenCdp(bytes, &reader);
    if (fault == kCdpGood) good = ReadEntries(&reader, callback, context, raw, &fault);
    bytes = {}; // the box may stand there for long
    if (fault != kCdpGood && path) TellFault(owner, path, fault);
    return good;
}
