// Names and paths of installation. See setup.h.
#include "app/setup.h"

#include "cdinfo/safe_file.h"
#include "core/bytes.h"
#include "core/text.h"

#include <cstring>
#include <initializer_list>

constexpr size_t kLongestBelow = 64; // characters of the longest name below the program's folder
constexpr const char* kFolderName = "Tonvista";

const char* const kLibraryFiles[kLibraryCount] = {"TONVDisc.dll", "TONVExtr.dll", "TONVIcon.dll"};

// The build stops when a page is missing here.
static const char* const kManualFiles[] = {
    "appearance.html",   "archive.html",      "cd-icon.html",      "cd-info.html",
    "cd-player.html",    "command-line.html", "console.html",      "disc-drive.html",
    "hotkeys.html",      "index.html",        "installation.html", "layouts.html",
    "media-player.html", "mixer.html",        "oscilloscope.html", "printing.html",
    "questions.html",    "spectrum.html",     "style.css",         "volume-meter.html"};

int IsManualFile(const char* name) {
    for (const char* file : kManualFiles)
        if (SameText(name, file)) return 1;
    return 0;
}

// The rest of `text` behind `begin`, or null.
static const char* Behind(const char* text, const char* begin) {
    char head[32];
    const size_t length = std::strlen(begin);
    CopyText(head, length + 1 < sizeof head ? length + 1 : sizeof head, text);
    return SameText(head, begin) ? text + length : nullptr;
}

static const char* Behind(const char* text, const wchar_t* begin) {
    char narrow[32] = "";
    for (size_t i = 0; i + 1 < sizeof narrow && begin[i]; ++i)
        narrow[i] = static_cast<char>(begin[i]);
    return Behind(text, narrow);
}

int IsDatabaseFile(const char* name) {
    const char* suffix = Behind(name, kDatabaseFile);
    if (!suffix || !*suffix) return suffix != nullptr;
    for (const wchar_t* whole : {kNewSuffix, kOldSuffix}) {
        const char* rest = Behind(suffix, whole);
        if (rest && !*rest) return 1;
    }
    const char* number = Behind(suffix, kBadSuffix);
    return number && !number[std::strspn(number, "0123456789")];
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

int IsFullPath(const char* path) {
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
