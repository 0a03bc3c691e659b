// The settings store over the registry. See settings.h.
#include "core/settings.h"

#include "core/platform.h"
#include "core/text.h"

#include <cstdint>
#include <cstring>

constexpr DWORD kValueNameMax = 260;
constexpr DWORD kErrorBadKey = 1010;
constexpr DWORD kKeyNameMax = 256; // the registry's limit is 255 characters

namespace {
struct ScopedKey {
    HKEY key = nullptr;
    ~ScopedKey() {
        if (key) RegCloseKey(key);
    }
};
} // namespace

static HKEY RootKey(RegRoot root) {
    switch (root) {
    case kMachineRoot: return HKEY_LOCAL_MACHINE;
    case kClassesRoot: return HKEY_CLASSES_ROOT;
    default: return HKEY_CURRENT_USER;
    }
}

static int OpenForReading(RegRoot root, const char* path, ScopedKey* key) {
    return RegOpenKeyExA(RootKey(root), path, 0, KEY_READ, &key->key) == ERROR_SUCCESS;
}

static int OpenForWriting(RegRoot root, const char* path, ScopedKey* key) {
    return RegCreateKeyExA(RootKey(root), path, 0, nullptr, 0, KEY_WRITE, nullptr, &key->key,
                           nullptr) == ERROR_SUCCESS;
}

// Numbers and structures: the stored size must be the wanted one; REG_DWORD and REG_BINARY stand
// for each other, since versions of this program have written the same value as either.
static int QueryBytes(HKEY key, const char* name, void* buffer, uint32_t size) {
    uint8_t small[64];
    DWORD stored = sizeof small, type = 0;
    if (size > sizeof small) return 0;
    if (RegQueryValueExA(key, name, nullptr, &type, small, &stored) != ERROR_SUCCESS) return 0;
    if (stored != size || (type != REG_DWORD && type != REG_BINARY)) return 0;
    std::memcpy(buffer, small, size);
    return 1;
}

// Strings: asked for their size first, so that one that does not fit leaves the buffer alone.
static int QueryText(HKEY key, const char* name, char* buffer, uint32_t size) {
    DWORD stored = 0, type = 0;
    if (RegQueryValueExA(key, name, nullptr, &type, nullptr, &stored) != ERROR_SUCCESS) return 0;
    if ((type != REG_SZ && type != REG_EXPAND_SZ) || stored > size || !size) return 0;
    char text[1024];
    char* to = size <= sizeof text ? text : static_cast<char*>(LocalAlloc(LPTR, size));
    if (!to) return 0;
    DWORD room = size;
    int good = RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(to), &room) ==
                   ERROR_SUCCESS &&
               room <= size && (type == REG_SZ || type == REG_EXPAND_SZ);
    // A string may be stored without its NUL; one that fills the buffer then does not fit.
    if (good && strnlen(to, room) == size) good = 0;
    if (good) {
        const size_t length = strnlen(to, room);
        std::memcpy(buffer, to, length);
        buffer[length] = 0;
    }
    if (to != text) LocalFree(to);
    return good;
}

int ReadRegValue(RegRoot root, const char* path, const char* name, RegType type, void* buffer,
                 uint32_t size) {
    ScopedKey key;
    if (!OpenForReading(root, path, &key)) return 0;
    if (type == kRegSz) return QueryText(key.key, name, static_cast<char*>(buffer), size);
    return QueryBytes(key.key, name, buffer, size);
}

int WriteRegValue(RegRoot root, const char* path, const char* name, RegType type, const void* data,
                  uint32_t size) {
    ScopedKey key;
    return OpenForWriting(root, path, &key) &&
           RegSetValueExA(key.key, name, 0, type, static_cast<const BYTE*>(data), size) ==
               ERROR_SUCCESS;
}

int RegValueExists(RegRoot root, const char* path, const char* name) {
    ScopedKey key;
    if (!OpenForReading(root, path, &key)) return 0;
    for (DWORD i = 0;; ++i) {
        char found[kValueNameMax];
        DWORD length = kValueNameMax;
        const LONG result =
            RegEnumValueA(key.key, i, found, &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_MORE_DATA) continue; // a longer name is none of ours
        if (result != ERROR_SUCCESS) return 0;
        if (SameText(found, name)) return 1;
    }
}

int RegKeyExists(RegRoot root, const char* path) {
    ScopedKey key;
    return OpenForReading(root, path, &key);
}

int ReadRegString(RegRoot root, const char* path, const char* name, char* buffer, uint32_t size) {
    return ReadRegValue(root, path, name, kRegSz, buffer, size);
}

int WriteRegString(RegRoot root, const char* path, const char* name, const char* text) {
    return WriteRegValue(root, path, name, kRegSz, text,
                         static_cast<uint32_t>(std::strlen(text) + 1));
}

uint32_t ReadRegDword(RegRoot root, const char* path, const char* name) {
    ScopedKey key;
    uint32_t value = 0;
    // Creating asks for the right to write; where that is refused, an existing key still reads.
    if (RegCreateKeyExA(RootKey(root), path, 0, nullptr, 0, KEY_READ, nullptr, &key.key, nullptr) !=
        ERROR_SUCCESS) {
        key.key = nullptr;
        if (!OpenForReading(root, path, &key)) return 0;
    }
    QueryBytes(key.key, name, &value, sizeof value);
    return value;
}

int WriteRegDword(RegRoot root, const char* path, const char* name, RegType type, uint32_t value) {
    return WriteRegValue(root, path, name, type, &value, sizeof value);
}

int DeleteRegValue(RegRoot root, const char* path, const char* name) {
    ScopedKey key;
    return RegOpenKeyExA(RootKey(root), path, 0, KEY_WRITE, &key.key) == ERROR_SUCCESS &&
           RegDeleteValueA(key.key, name) == ERROR_SUCCESS;
}

static LONG DeleteTree(HKEY parent, const char* path) {
    HKEY key = nullptr;
    LONG result = RegOpenKeyExA(parent, path, 0, KEY_READ | KEY_WRITE, &key);
    if (result != ERROR_SUCCESS) return result;
    while (result == ERROR_SUCCESS) {
        char name[kKeyNameMax];
        DWORD length = kKeyNameMax;
        // Always the first one: deleting shifts the others down.
        result = RegEnumKeyExA(key, 0, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (result == ERROR_SUCCESS) result = DeleteTree(key, name);
    }
    RegCloseKey(key);
    return result == ERROR_NO_MORE_ITEMS ? RegDeleteKeyA(parent, path) : result;
}

uint32_t DeleteRegTree(RegRoot root, const char* path) {
    if (!path || !*path) return kErrorBadKey;
    return static_cast<uint32_t>(DeleteTree(RootKey(root), path));
}

int DeleteEmptyRegKey(RegRoot root, const char* path) {
    DWORD keys = 1, values = 1;
    {
        ScopedKey key;
        if (!OpenForReading(root, path, &key) ||
            RegQueryInfoKeyA(key.key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values,
                             nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS)
            return 0;
    }
    return !keys && !values && RegDeleteKeyA(RootKey(root), path) == ERROR_SUCCESS;
}

static void SectionPath(uint32_t windowId, char (&path)[64]) {
    FormatText(path, sizeof path, "%s\\UIWindow%u", kSettingsRoot, windowId);
}

int ReadWindowSetting(uint32_t windowId, const char* name, RegType type, uint32_t size,
                      void* buffer) {
    char path[64];
    SectionPath(windowId, path);
    return ReadRegValue(kUserRoot, path, name, type, buffer, size);
}

int WriteWindowSetting(uint32_t windowId, const char* name, RegType type, uint32_t size,
                       const void* data) {
    char path[64];
    SectionPath(windowId, path);
    return WriteRegValue(kUserRoot, path, name, type, data, size);
}

int SeedWindowSetting(uint32_t windowId, const char* name, RegType type, uint32_t size,
                      const void* data) {
    char path[64];
    SectionPath(windowId, path);
    if (RegValueExists(kUserRoot, path, name)) return 1;
    return WriteRegValue(kUserRoot, path, name, type, data, size);
}

uint32_t ReadWindowDword(uint32_t windowId, const char* name, uint32_t fallback) {
    ReadWindowSetting(windowId, name, kRegDword, sizeof fallback, &fallback);
    return fallback;
}

int WriteWindowDword(uint32_t windowId, const char* name, uint32_t value) {
    return WriteWindowSetting(windowId, name, kRegDword, sizeof value, &value);
}

static const char* const kLastOk = "LastOK";

uint32_t ReadLastOk() {
    uint32_t value = 0;
    if (ReadRegValue(kUserRoot, kSettingsRoot, kLastOk, kRegDword, &value, sizeof value))
        return value;
    ReadRegValue(kMachineRoot, kSettingsRoot, kLastOk, kRegDword, &value, sizeof value);
    return value;
}

void WriteLastOk(uint32_t value) {
    if (WriteRegDword(kMachineRoot, kSettingsRoot, kLastOk, kRegDword, value))
        DeleteRegValue(kUserRoot, kSettingsRoot, kLastOk);
    else
        WriteRegDword(kUserRoot, kSettingsRoot, kLastOk, kRegDword, value);
}
