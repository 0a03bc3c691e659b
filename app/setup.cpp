// Names and paths of installation. See setup.h.
#include "app/setup.h"

#include "core/bytes.h"
#include "core/text.h"

#include <cstring>

constexpr size_t kLongestBelow = 64; // characters of the longest name below the program's folder
constexpr const char* kFolderName = "Tonvista";

const char* const kLibraryFiles[kLibraryCount] = {"TONVDisc.dll", "TONVExtr.dll", "TONVIcon.dll"};

static int EndsWith(const char* text, const char* end) {
    const size_t length = std::strlen(text), tail = std::strlen(end);
    return length >= tail && SameText(text + length - tail, end);
}

int IsManualFile(const char* name) {
    return EndsWith(name, ".html") || EndsWith(name, ".css");
}

static int IsRoot(const char* path) { // "C:\"
    return path[0] && path[1] == ':' && path[2] == '\\' && !path[3];
}

void FolderOfPath(const char* path, char (&folder)[kPathSize]) {
    CopyText(folder, path);
    char* end = std::strrchr(folder, '\\');
    if (!end) {
        folder[0] = 0;
        return;
    }
    end[1] = 0;
    if (!IsRoot(folder)) *end = 0;
}

int JoinPath(const char* folder, const char* name, char (&path)[kPathSize]) {
    const size_t length = std::strlen(folder);
    const char* between = length && folder[length - 1] == '\\' ? "" : "\\";
    path[0] = 0;
    if (length + std::strlen(between) + std::strlen(name) >= kPathSize) return 0;
    FormatText(path, kPathSize, "%s%s%s", folder, between, name);
    return 1;
}

// ---- a typed folder

static int IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

static int IsFullPath(const char* path) {
    if (IsLetter(path[0]) && path[1] == ':') return path[2] == '\\';
    if (path[0] != '\\' || path[1] != '\\') return 0;
    const char* share = std::strchr(path + 2, '\\');
    return share && share > path + 2 && share[1] && share[1] != '\\';
}

// Characters that no name has. The drive's colon is not looked at.
static int HasForbidden(const char* path) {
    const char* rest = path[1] == ':' ? path + 2 : path;
    for (const char* p = rest; *p; ++p)
        if (static_cast<unsigned char>(*p) < ' ' || std::strchr("<>:\"|?*", *p)) return 1;
    return 0;
}

int ReadFolder(const char* text, char (&folder)[kPathSize]) {
    folder[0] = 0;
    const char* begin = text + std::strspn(text, " \t\"");
    size_t length = std::strlen(begin);
    while (length && std::strchr(" \t\"\\/", begin[length - 1]))
        --length;
    if (length + kLongestBelow >= kPathSize) return 0;
    CopyText(folder, length + 1, begin);
    for (char* p = folder; *p; ++p)
        if (*p == '/') *p = '\\';
    if (IsLetter(folder[0]) && folder[1] == ':' && !folder[2]) {
        if (begin[length] != '\\' && begin[length] != '/') return 0; // "C:" is no place of its own
        AppendText(folder, sizeof folder, "\\");
    }
    return IsFullPath(folder) && !HasForbidden(folder);
}

void OwnFolderIn(const char* chosen, char (&folder)[kPathSize]) {
    const char* last = std::strrchr(chosen, '\\');
    if ((last && SameText(last + 1, kFolderName)) || !JoinPath(chosen, kFolderName, folder))
        CopyText(folder, chosen);
}

// ---- version

void ReadVersion(const uint8_t* resource, size_t size, char (&text)[32]) {
    constexpr size_t kFixedAt = 40; // behind three words and "VS_VERSION_INFO"
    constexpr uint32_t kSignature = 0xFEEF04BD;
    ByteReader reader = {{resource, size}};
    ReadBytes(reader, kFixedAt);
    const uint32_t signature = ReadU32(reader);
    ReadU32(reader); // the structure's own version
    const uint32_t high = ReadU32(reader), low = ReadU32(reader);
    text[0] = 0;
    if (!reader.failed && signature == kSignature)
        FormatText(text, sizeof text, "%u.%u.%u", high >> 16, high & 0xFFFF, low >> 16);
}
