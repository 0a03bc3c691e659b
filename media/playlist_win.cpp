// Playlists to and from files, and songs of folders. See playlist_win.h.
#include "media/playlist_win.h"

#include "core/platform.h"
#include "core/text.h"

#include <algorithm>

namespace {
struct [[nodiscard]] FileHandle {
    explicit FileHandle(HANDLE opened) : handle(opened) {}
    ~FileHandle() {
        if (handle != INVALID_HANDLE_VALUE) CloseHandle(handle);
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    // A device or pipe could let us wait for ever.
    bool IsOnDisk() const {
        return handle != INVALID_HANDLE_VALUE && GetFileType(handle) == FILE_TYPE_DISK;
    }

    const HANDLE handle;
};
} // namespace

constexpr const char* kSection = "playlist";
constexpr const char* kCountKey = "NumberOfEntries";
constexpr const char* kDefaultList = "Default.pls";
// The profile functions read a file whole, at each call. A list of 10,000 entries has 2 MiB.
constexpr LONGLONG kProfileBytesMax = 4 << 20;
constexpr size_t kSectionSpareBytes = 16; // the NULs behind it
// Windows writes up to 64 KiB of a section at once.
constexpr size_t kSectionWriteBytes = 60000;
// Full lists of the longest lines with CR LF, and up to three bytes a character.
constexpr DWORD kM3uBytesMax = kPlaylistMax * (kMediaPathMax + 2) * 3 + 3;

// The profile functions look for a name without a folder in the Windows directory.
static int AbsolutePath(const std::string& path, std::string* full) {
    char text[MAX_PATH];
    const DWORD length = GetFullPathNameA(path.c_str(), sizeof text, text, nullptr);
    if (!length || length >= sizeof text) return 0;
    *full = text;
    return 1;
}

// ---- reading

static std::string FromWide(const wchar_t* text, int length) {
    const int size = WideCharToMultiByte(CP_ACP, 0, text, length, nullptr, 0, nullptr, nullptr);
    std::string ansi(size > 0 ? size : 0, '\0');
    WideCharToMultiByte(CP_ACP, 0, text, length, ansi.data(), size, nullptr, nullptr);
    return ansi;
}

// Text behind a byte-order mark in the ANSI code page, as the profile functions also give it.
static std::string WithoutMark(const std::string& bytes) {
    if (bytes.starts_with("\xEF\xBB\xBF")) {
        const char* text = bytes.data() + 3;
        const int length = static_cast<int>(bytes.size() - 3);
        std::wstring wide(length, L'\0'); // never more units than bytes
        return FromWide(wide.data(),
                        MultiByteToWideChar(CP_UTF8, 0, text, length, wide.data(), length));
    }
    if (bytes.starts_with("\xFF\xFE")) {
        std::wstring wide(bytes.size() / 2 - 1, L'\0');
        std::copy_n(bytes.data() + 2, wide.size() * 2, reinterpret_cast<char*>(wide.data()));
        return FromWide(wide.data(), static_cast<int>(wide.size()));
    }
    return bytes;
}

// As much of the file as an M3U can be made of, and the size of the whole.
static int ReadStart(const std::string& path, std::string* bytes, LONGLONG* fileBytes) {
    const FileHandle file(CreateFileA(path.c_str(), GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER size;
    if (!file.IsOnDisk() || !GetFileSizeEx(file.handle, &size)) return 0;
    *fileBytes = size.QuadPart;
    bytes->resize(std::min<LONGLONG>(size.QuadPart, kM3uBytesMax));
    DWORD got = 0;
    if (!ReadFile(file.handle, bytes->data(), static_cast<DWORD>(bytes->size()), &got, nullptr))
        return 0;
    bytes->resize(got);
    return 1;
}

// Once and whole: asking key by key would take 10^9 questions where the count says so. In the code
// page a section is never longer than its file.
static std::string ReadSection(const std::string& path, LONGLONG fileBytes) {
    std::string section(static_cast<size_t>(fileBytes) + kSectionSpareBytes, '\0');
    section.resize(GetPrivateProfileSectionA(kSection, section.data(),
                                             static_cast<DWORD>(section.size()), path.c_str()));
    return section;
}

int ReadPlaylist(const std::string& path, Playlist* list) {
    std::string full, bytes;
    LONGLONG fileBytes;
    if (!AbsolutePath(path, &full) || !ReadStart(full, &bytes, &fileBytes)) return 0;
    const int count =
        fileBytes > kProfileBytesMax
            ? 0
            : static_cast<int>(GetPrivateProfileIntA(kSection, kCountKey, 0, full.c_str()));
    list->name = full;
    list->position = 0;
    if (count < 1) {
        const std::string text = WithoutMark(bytes);
        ParseM3u(text.data(), text.size(), list);
    } else {
        const std::string section = ReadSection(full, fileBytes);
        ParsePls(section.data(), section.size(), count, list);
    }
    return 1;
}

// ---- writing

static std::string FileKey(size_t entry) {
    char key[16];
    FormatText(key, sizeof key, "File%d", static_cast<int>(entry) + 1);
    return key;
}

// What fits at once, the rest key by key.
static int WritePls(const Playlist& list, const std::string& path) {
    std::string section = std::string(kCountKey) + "=" + std::to_string(list.entries.size());
    section += '\0';
    size_t i = 0;
    for (; i < list.entries.size() && section.size() < kSectionWriteBytes; ++i)
        section += FileKey(i) + "=" + list.entries[i].c_str() + '\0';
    if (!WritePrivateProfileSectionA(kSection, section.c_str(), path.c_str())) return 0;
    for (; i < list.entries.size(); ++i) {
        if (!WritePrivateProfileStringA(kSection, FileKey(i).c_str(), list.entries[i].c_str(),
                                        path.c_str()))
            return 0;
    }
    return 1;
}

static int WriteM3u(const Playlist& list, const std::string& path) {
    const std::string text = FormatM3u(list);
    const FileHandle file(CreateFileA(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                      OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    if (file.handle == INVALID_HANDLE_VALUE ||
        !WriteFile(file.handle, text.data(), static_cast<DWORD>(text.size()), &written, nullptr))
        return 0;
    // Where the file could not be deleted, its old end would be left.
    return SetEndOfFile(file.handle) && written == text.size();
}

int WritePlaylist(const Playlist& list, const std::string& path) {
    std::string full;
    if (!AbsolutePath(path, &full)) return 0;
    DeleteFileA(full.c_str());
    CharUpperA(full.data());
    return IsPlsPath(full) ? WritePls(list, full) : WriteM3u(list, full);
}

int OpenPlaylistFor(const std::string& path, Playlist* list) {
    if (IsPlaylistPath(path)) return ReadPlaylist(path, list);
    if (path.empty() || path.size() > kMediaPathMax) return 0;
    if (!AbsolutePath(kDefaultList, &list->name)) list->name = kDefaultList;
    list->position = 0;
    list->entries = {path};
    WritePlaylist(*list, list->name); // from a CD or a locked folder the song plays all the same
    return 1;
}

// ---- folders

int AddFolder(const std::string& folder, Playlist* list, int index, int (*Progress)(void*),
              void* context) {
    std::string path = folder;
    if (path.ends_with('\\')) path.pop_back();
    if (path.empty()) return 0;
    path += '\\';
    WIN32_FIND_DATAA found;
    const HANDLE search = FindFirstFileA((path + "*.*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return 0;
    int added = 0;
    do {
        if (Progress && !Progress(context)) break;
        const std::string name = found.cFileName;
        const std::string entry = path + name;
        // A path that is too long would be cut, and name another file.
        if (name == "." || name == ".." || !IsSongPath(entry) || entry.size() > kMediaPathMax)
            continue;
        if (!InsertEntry(list, entry, index < 0 ? index : index + added)) break;
        ++added;
    } while (FindNextFileA(search, &found));
    FindClose(search);
    return added;
}
