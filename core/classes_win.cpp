// Default values below HKEY_CLASSES_ROOT and in the user's classes. See classes.h.
#include "core/classes.h"

#include "core/platform.h"
#include "core/settings.h"
#include "core/text.h"

#include <cstring>

constexpr const char* kUserClasses = "Software\\Classes\\";
constexpr const char* kBefore = "Tonvista.Before"; // value beside the default one: what stood there
constexpr RegRoot kPlaces[] = {kClassesRoot, kUserRoot};
constexpr uint32_t kTextMax = 2 * MAX_PATH;

namespace {
struct KeyPath {
    char text[MAX_PATH];
};
} // namespace

static KeyPath PathAt(RegRoot place, const char* key) {
    KeyPath path;
    FormatText(path.text, sizeof path.text, "%s%s", place == kUserRoot ? kUserClasses : "", key);
    return path;
}

int WriteClass(const char* key, const char* text) {
    for (const RegRoot place : kPlaces)
        if (WriteRegString(place, PathAt(place, key).text, "", text)) return 1;
    return 0;
}

void ReadClass(const char* key, char* text, uint32_t size) {
    *text = 0;
    if (!ReadRegString(kUserRoot, PathAt(kUserRoot, key).text, "", text, size))
        ReadRegString(kClassesRoot, key, "", text, size);
}

void DeleteClass(const char* key) {
    for (const RegRoot place : kPlaces)
        DeleteRegTree(place, PathAt(place, key).text);
}

// ---- entries that other programs have, too

static int Claim(RegRoot place, const char* key, const char* text, const ClassOwner& owner) {
    const KeyPath path = PathAt(place, key);
    char current[kTextMax] = "";
    const int known = ReadRegString(place, path.text, "", current, sizeof current);
    if (known && !std::strcmp(current, text)) return 1;
    if (!WriteRegString(place, path.text, "", text)) return 0;
    if (!*current)
        DeleteRegValue(place, path.text, kBefore);
    else if (!owner.IsOurs(current, owner.program))
        WriteRegString(place, path.text, kBefore, current);
    return 1;
}

int ClaimClass(const char* key, const char* text, const ClassOwner& owner) {
    for (const RegRoot place : kPlaces)
        if (Claim(place, key, text, owner)) return 1;
    return 0;
}

static int IsOursAt(RegRoot place, const char* path, const ClassOwner& owner) {
    char current[kTextMax] = "";
    return ReadRegString(place, path, "", current, sizeof current) &&
           owner.IsOurs(current, owner.program);
}

void ReplaceOwnClass(const char* key, const char* text, const ClassOwner& owner) {
    for (const RegRoot place : kPlaces) {
        const KeyPath path = PathAt(place, key);
        if (!IsOursAt(place, path.text, owner)) continue;
        if (text)
            WriteRegString(place, path.text, "", text);
        else
            DeleteRegValue(place, path.text, "");
    }
}

static void DeleteEmptyKeys(RegRoot place, const char* key) {
    KeyPath left;
    CopyText(left.text, key);
    while (DeleteEmptyRegKey(place, PathAt(place, left.text).text)) {
        char* end = std::strrchr(left.text, '\\');
        if (!end) return;
        *end = 0;
    }
}

void GiveBackClass(const char* key, const ClassOwner& owner) {
    for (const RegRoot place : kPlaces) {
        const KeyPath path = PathAt(place, key);
        char before[kTextMax] = "";
        const int remembered = ReadRegString(place, path.text, kBefore, before, sizeof before);
        if (IsOursAt(place, path.text, owner)) {
            if (remembered)
                WriteRegString(place, path.text, "", before);
            else
                DeleteRegValue(place, path.text, "");
        }
        if (remembered) DeleteRegValue(place, path.text, kBefore);
        DeleteEmptyKeys(place, key);
    }
}
