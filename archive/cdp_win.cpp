// Reading CDP files of either form. See forms_win.h.
#include "archive/cdp.h"
#include "archive/forms_win.h"
#include "cdinfo/file_layer.h"
#include "cdinfo/store.h"
#include "core/strings_win.h"
#include "resources/ids.h"

#include <memory>

// ---- the old form

static void TellFault(HWND owner, const std::wstring& path, CdpFault fault) {
    char text[kStringMax];
    char title[MAX_PATH * 2] = "";
    LoadText(static_cast<UINT>(IDS_CDP_FAULTS + fault - kCdpNotOpened), text);
    WideCharToMultiByte(CP_ACP, 0, path.c_str(), -1, title, sizeof title, nullptr, nullptr);
    MessageBoxA(owner, text, title, MB_OK | MB_ICONERROR);
}

// 0 with kCdpGood when an entry could not be unpacked, of which nobody is told, or when the reading
// was stopped.
static int ReadEntries(ReadJob* job, CdpReader* reader, CdpFault* fault) {
    auto record = std::make_unique<CDInfoRecord>();
    CdpEntry entry;
    while (ReadCdpEntry(reader, &entry, fault)) {
        *record = {};
        if (!UnpackEntry(entry.packed, record.get())) return 0;
        SetIdentity(record.get(), entry.identity);
        if (!GiveDisc(job, *record)) return 0;
    }
    return *fault == kCdpGood;
}

static int ReadOldFile(ReadJob* job) {
    std::string bytes;
    CdpFault fault = kCdpNotOpened;
    int read = 0;
    if (ReadFileText(job->path, 0, kMaxFileSize, &bytes)) {
        CdpReader reader;
        fault = OpenCdp({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()}, &reader);
        job->total = reader.count;
        if (fault == kCdpGood) read = ReadEntries(job, &reader, &fault);
    }
    bytes = {};
    if (fault != kCdpGood) TellFault(job->owner, job->path, fault);
    return read;
}

// ---- the database's form

static int OnEntry(const void* data, size_t, uint32_t, void* context) {
    GiveDisc(static_cast<ReadJob*>(context), *static_cast<const CDInfoRecord*>(data));
    return 1;
}

int ReadCdpFile(ReadJob* job) {
    job->total = CountEntries(job->path.c_str());
    // By the first bytes, so that a damaged one is not taken for the old form.
    if (!job->total && !ReadFileHead(job->path).starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"))
        return ReadOldFile(job);
    return EnumerateEntries(job->owner, job->path.c_str(), OnEntry, job, 0, 0);
}
