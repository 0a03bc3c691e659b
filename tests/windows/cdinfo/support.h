// What the tests of the store share: a folder of their own, records, files as bytes.
#pragma once
#include "core/platform.h"

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "cdinfo/compound_win.h"
#include "cdinfo/store.h"
#include "cdinfo/store_parts_win.h"
#include "core/text.h"

using Bytes = std::vector<uint8_t>;

// Until something comes true in another thread; false when it does not.
template <class Condition> bool Wait(Condition condition) {
    for (const DWORD start = GetTickCount(); !condition(); Sleep(5))
        if (GetTickCount() - start > 5000) return false;
    return true;
}

inline std::wstring Scratch(const wchar_t* name) {
    wchar_t folder[MAX_PATH];
    GetTempPathW(MAX_PATH, folder);
    return std::wstring(folder) + L"tonvista-" + std::to_wstring(GetCurrentProcessId()) + L"-" +
           name;
}

// The programs of the tests stand in one folder and run at the same time: each has its own default
// database.
inline const std::wstring s_ownDatabase = Scratch(L"default.cdp");
inline const int s_isOwnSet = (SetDefaultDatabase(s_ownDatabase.c_str()), 1);

inline int FileExists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

inline Bytes Slurp(const std::wstring& path) {
    Bytes bytes;
    SystemFiles().read(path.c_str(), &bytes);
    return bytes;
}

inline void Spill(const std::wstring& path, std::span<const uint8_t> bytes) {
    SystemFiles().write(path.c_str(), bytes);
}

// The database and all that may stand beside it.
inline void Forget(const std::wstring& path) {
    for (const wchar_t* suffix : {L"", kNewSuffix, kOldSuffix, L".bad", L".bad2", L".bad3"})
        DeleteFileW((path + suffix).c_str());
}

inline std::unique_ptr<CDInfoRecord> MakeRecord(uint32_t identity, const char* title = "",
                                                uint16_t tracks = 3) {
    auto record = std::make_unique<CDInfoRecord>();
    record->trackCount = tracks;
    ApplyDefaults(record.get());
    SetIdentity(record.get(), identity);
    CopyText(record->title, title);
    for (uint32_t i = 0; i <= tracks; ++i)
        record->trackStarts[i] = 150 + i * 75 * 200;
    DeriveTrackSeconds(record.get());
    DeriveTotalTime(record.get());
    return record;
}

// The title stored under an entry, or "-".
inline std::string TitleOf(const std::wstring& path, uint32_t entry) {
    auto record = std::make_unique<CDInfoRecord>();
    return ReadEntry(path.c_str(), entry, record.get()) ? record->title : "-";
}

inline int Add(const std::wstring& path, uint32_t identity, const char* title,
               uint16_t tracks = 3) {
    return AddOrReplace(path.c_str(), *MakeRecord(identity, title, tracks), 0, nullptr);
}

// Writes a pair over the last of the index, whose place that is.
inline void SetIndexPair(const std::wstring& path, uint32_t place, const IndexPair& pair) {
    CompoundFile file;
    Bytes image;
    if (OpenCompound(Slurp(path), &file) &&
        RewriteStream(file, L"Mappings", place * sizeof pair, PackIndex({&pair, 1})))
        CloseCompound(&file, &image);
    Spill(path, image);
}
