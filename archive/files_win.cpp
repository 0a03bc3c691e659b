// Files and code pages for import and export. See forms_win.h.
#include "archive/forms_win.h"

#include <algorithm>
#include <new>

constexpr UINT kWestern = 1252;

std::wstring WidenPath(const char* path) {
    std::wstring wide(strlen(path), L'\0');
    const int count = static_cast<int>(wide.size());
    wide.resize(std::max(MultiByteToWideChar(CP_ACP, 0, path, count, wide.data(), count), 0));
    return wide;
}

static size_t ReadInto(HANDLE file, char* to, size_t count) {
    size_t done = 0;
    while (done < count) {
        DWORD got = 0;
        const DWORD part = static_cast<DWORD>(std::min<size_t>(count - done, 1 << 20));
        if (!ReadFile(file, to + done, part, &got, nullptr) || !got) break;
        done += got;
    }
    return done;
}

static int ReadOpened(HANDLE file, uint64_t limit, std::string* text) {
    LARGE_INTEGER size;
    if (GetFileType(file) != FILE_TYPE_DISK || !GetFileSizeEx(file, &size)) return 0;
    if (static_cast<uint64_t>(size.QuadPart) > limit) return 0;
    try {
        text->resize(static_cast<size_t>(size.QuadPart));
    } catch (const std::bad_alloc&) {
        return 0;
    }
    return ReadInto(file, text->data(), text->size()) == text->size();
}

static HANDLE OpenForReading(const std::wstring& path) {
    return CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
}

int ReadFileText(const std::wstring& path, uint64_t limit, std::string* text) {
    const HANDLE file = OpenForReading(path);
    if (file == INVALID_HANDLE_VALUE) return 0;
    const int good = ReadOpened(file, limit, text);
    CloseHandle(file);
    if (!good) text->clear();
    return good;
}

void ReadFileStart(const std::wstring& path, size_t limit, std::string* text) {
    text->clear();
    const HANDLE file = OpenForReading(path);
    if (file == INVALID_HANDLE_VALUE) return;
    text->resize(limit);
    text->resize(GetFileType(file) == FILE_TYPE_DISK ? ReadInto(file, text->data(), limit) : 0);
    CloseHandle(file);
}

static int FileIdentity(const std::wstring& path, BY_HANDLE_FILE_INFORMATION* information) {
    const HANDLE file =
        CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                    nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 0;
    const int good = GetFileInformationByHandle(file, information);
    CloseHandle(file);
    return good;
}

int IsSameFile(const std::wstring& a, const std::wstring& b) {
    BY_HANDLE_FILE_INFORMATION x, y;
    if (!FileIdentity(a, &x) || !FileIdentity(b, &y)) return lstrcmpiW(a.c_str(), b.c_str()) == 0;
    return x.dwVolumeSerialNumber == y.dwVolumeSerialNumber &&
           x.nFileIndexHigh == y.nFileIndexHigh && x.nFileIndexLow == y.nFileIndexLow;
}

// ---- code pages

static std::string Recode(std::string_view text, UINT from, UINT to) {
    if (text.empty()) return {};
    const int bytes = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int count = MultiByteToWideChar(from, 0, text.data(), bytes, wide.data(), bytes);
    const int size = WideCharToMultiByte(to, 0, wide.data(), count, nullptr, 0, nullptr, nullptr);
    std::string other(static_cast<size_t>(std::max(size, 0)), '\0');
    WideCharToMultiByte(to, 0, wide.data(), count, other.data(), size, nullptr, nullptr);
    return other;
}

static std::string FromCddb(std::string_view text, int utf8) {
    return Recode(text, utf8 ? CP_UTF8 : kWestern, CP_ACP);
}
static std::string FromCue(std::string_view text, int utf8) {
    return utf8 ? Recode(text, CP_UTF8, CP_ACP) : std::string(text);
}
static std::string ToUtf8(std::string_view text) {
    return Recode(text, CP_ACP, CP_UTF8);
}

const TextCodec& CddbCodec() {
    static const TextCodec codec = {FromCddb, ToUtf8};
    return codec;
}
const TextCodec& CueCodec() {
    static const TextCodec codec = {FromCue, ToUtf8};
    return codec;
}
