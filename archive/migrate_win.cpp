// The takeovers of the first start. A disc that is in the database already keeps every text that
// somebody typed, and gets what it lacks: whoever has used this program for a while and then meets
// an older one's texts has corrected his own since. Each takeover is marked when all of it is
// stored; until then it is tried again at the next start. A source that isn't there is marked, too:
// what comes later comes by an import.
#include "archive/forms_win.h"
#include "cdinfo/progress_win.h"
#include "cdinfo/store.h"
#include "core/settings.h"
#include "resources/ids.h"

#include <memory>
#include <vector>

constexpr char kRegistryDiscs[] = "Software\\Tonvue\\CDTitles"; // a subkey "%08X" a disc
constexpr char kRegistryMark[] = "CDTitlesMigrated";
constexpr char kIniMark[] = "IniMigrated";
constexpr char kNoDisc[] = "NoCD"; // not 0: no disc of anybody's
constexpr DWORD kMaxValue = 64 * 1024;

struct Takeover {
    UINT textId;
    std::vector<std::string> names; // of sections or subkeys
    std::string source;
    IniLines (*ReadLines)(const std::string& source, const char* name);
};

// ---- the registry

static int ReadSubkeys(std::vector<std::string>* names) {
    HKEY key;
    const LONG error = RegOpenKeyExA(HKEY_CURRENT_USER, kRegistryDiscs, 0, KEY_READ, &key);
    if (error != ERROR_SUCCESS) return error == ERROR_FILE_NOT_FOUND;
    char name[256];
    LONG result;
    for (DWORD i = 0;; ++i) {
        DWORD length = sizeof name;
        result = RegEnumKeyExA(key, i, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (result != ERROR_SUCCESS) break;
        names->push_back(name);
    }
    RegCloseKey(key);
    return result == ERROR_NO_MORE_ITEMS;
}

static std::string ValueText(DWORD type, const std::vector<char>& data, DWORD size) {
    if (type == REG_SZ || type == REG_EXPAND_SZ) return {data.data(), strnlen(data.data(), size)};
    DWORD number = 0;
    if ((type != REG_DWORD && type != REG_BINARY) || size != sizeof number) return {};
    memcpy(&number, data.data(), sizeof number);
    return std::to_string(number);
}

// The values of a subkey as lines of a section.
static IniLines ReadValues(const std::string& source, const char* name) {
    IniLines lines;
    HKEY key;
    const std::string path = source + "\\" + name;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS)
        return lines;
    std::vector<char> data(kMaxValue);
    char value[256];
    LONG result = ERROR_SUCCESS;
    for (DWORD i = 0; result == ERROR_SUCCESS || result == ERROR_MORE_DATA; ++i) {
        DWORD length = sizeof value, type = 0, size = kMaxValue;
        result = RegEnumValueA(key, i, value, &length, nullptr, &type,
                               reinterpret_cast<BYTE*>(data.data()), &size);
        if (result == ERROR_SUCCESS) lines.push_back({value, ValueText(type, data, size), 1});
    }
    RegCloseKey(key);
    return lines;
}

// ---- both

static int IsNoDisc(const IniLines& lines) {
    const auto value = IniValue(lines, kNoDisc, "0");
    return value.find_first_not_of("0 ") != std::string_view::npos;
}

// 0 when the disc was there to be taken and could not be.
static int TakeOver(StoreBatch* batch, const Takeover& from, const std::string& name) {
    uint32_t identity;
    if (!ParseIniName(name, &identity) || !identity) return 1;
    const IniLines lines = from.ReadLines(from.source, name.c_str());
    if (IsNoDisc(lines)) return 1;
    auto record = std::make_unique<CDInfoRecord>();
    auto stored = std::make_unique<CDInfoRecord>();
    SetIdentity(record.get(), identity);
    ReadIniDisc(lines, record.get());
    if (!BatchRead(batch, identity, stored.get())) return BatchAdd(batch, *record);
    AddUnknown(*record, stored.get());
    return BatchAdd(batch, *stored);
}

static int TakeAll(const Takeover& from) {
    if (from.names.empty()) return 1;
    StoreBatch* batch = BeginStoreBatch(nullptr);
    if (!batch) return 0;
    const HWND progress = ShowProgress(nullptr, from.textId, from.names.size(), 1);
    int good = 1;
    for (const std::string& name : from.names) {
        good &= TakeOver(batch, from, name);
        StepProgress(progress);
    }
    good &= CommitStoreBatch(batch);
    CloseProgress(progress);
    return good;
}

static void Finish(const char* mark, const Takeover& from) {
    if (TakeAll(from)) WriteRegDword(kUserRoot, kSettingsRoot, mark, kRegDword, 1);
}

void MigrateRegistryDiscs() {
    if (ReadRegDword(kUserRoot, kSettingsRoot, kRegistryMark)) return;
    Takeover from = {IDS_MIGRATE_REGISTRY, {}, kRegistryDiscs, ReadValues};
    if (ReadSubkeys(&from.names)) Finish(kRegistryMark, from);
}

void MigrateIniDiscs() {
    if (ReadRegDword(kUserRoot, kSettingsRoot, kIniMark)) return;
    Takeover from = {IDS_MIGRATE_INI, {}, IniPath(L""), ReadIniSection};
    if (ReadIniNames(from.source, &from.names)) Finish(kIniMark, from);
}
