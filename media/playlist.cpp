// Lines and keys to entries, names by their substrings. See playlist.h.
#include "media/playlist.h"

#include "core/text.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string_view>

namespace {
struct FileKey {
    int64_t number;
    std::string_view value;
};
} // namespace

constexpr std::string_view kBlanks = " \t";
constexpr size_t kFileKeyDigitsMax = 10;

void ClearEntries(Playlist* list) {
    list->entries.clear();
}

static int IsFull(const Playlist& list) {
    return list.entries.size() >= kPlaylistMax;
}

int InsertEntry(Playlist* list, const std::string& path, int index) {
    if (IsFull(*list)) return 0;
    auto& entries = list->entries;
    const bool inside = index >= 0 && static_cast<size_t>(index) < entries.size();
    entries.insert(inside ? entries.begin() + index : entries.end(), path.substr(0, kMediaPathMax));
    return 1;
}

static void Append(Playlist* list, std::string_view text) {
    InsertEntry(list, std::string(text), -1);
}

// ---- M3U

// Texts end at a NUL wherever paths go; what lies behind it could never be seen or opened.
static std::string_view UpToNul(std::string_view text) {
    return text.substr(0, text.find('\0'));
}

void ParseM3u(const char* bytes, size_t size, Playlist* list) {
    ClearEntries(list);
    std::string_view rest(bytes, size);
    while (!rest.empty() && !IsFull(*list)) {
        const size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(end == rest.npos ? rest.size() : end + 1);
        if (end != rest.npos && line.ends_with('\r')) line.remove_suffix(1);
        line = UpToNul(line);
        if (line.empty()) return;
        // By pieces of the line without its end: one of exactly the limit leaves no empty piece.
        for (; !line.empty(); line.remove_prefix(std::min<size_t>(kMediaPathMax, line.size())))
            Append(list, line.substr(0, kMediaPathMax));
    }
}

std::string FormatM3u(const Playlist& list) {
    std::string text;
    for (const std::string& entry : list.entries)
        text += entry + "\r\n";
    return text;
}

// ---- PLS

static std::string_view Trimmed(std::string_view text) {
    const size_t begin = text.find_first_not_of(kBlanks);
    if (begin == text.npos) return {};
    return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

static std::string_view Unquoted(std::string_view text) {
    if (text.size() < 2 || text.front() != text.back()) return text;
    if (text.front() != '"' && text.front() != '\'') return text;
    return text.substr(1, text.size() - 2);
}

// The number of a key that "File%d" could have made; 0 for all others, such as "File01".
static int64_t FileKeyNumber(std::string_view key) {
    constexpr std::string_view kPrefix = "File";
    if (key.size() <= kPrefix.size() || key.size() > kPrefix.size() + kFileKeyDigitsMax) return 0;
    if (!SameText(std::string(key.substr(0, kPrefix.size())).c_str(), kPrefix.data())) return 0;
    key.remove_prefix(kPrefix.size());
    if (key.front() == '0') return 0;
    int64_t number = 0;
    for (const char c : key) {
        if (c < '0' || c > '9') return 0;
        number = number * 10 + (c - '0');
    }
    return number;
}

void ParsePls(const char* section, size_t size, int count, Playlist* list) {
    ClearEntries(list);
    std::vector<FileKey> keys;
    for (std::string_view rest(section, size); !rest.empty();) {
        const std::string_view line = UpToNul(rest);
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        const size_t equals = line.find('=');
        if (equals == line.npos) continue;
        const int64_t number = FileKeyNumber(Trimmed(line.substr(0, equals)));
        if (number >= 1 && number <= count)
            keys.push_back({number, Unquoted(Trimmed(line.substr(equals + 1)))});
    }
    std::stable_sort(keys.begin(), keys.end(),
                     [](const FileKey& a, const FileKey& b) { return a.number < b.number; });
    int64_t last = 0;
    for (const FileKey& key : keys) {
        if (key.number != last && !key.value.empty()) Append(list, key.value);
        last = key.number;
    }
}

// ---- names

static int Contains(const std::string& text, std::string_view upperCase) {
    const auto same = [](char a, char b) {
        return (a >= 'a' && a <= 'z' ? a - 'a' + 'A' : a) == b;
    };
    return std::search(text.begin(), text.end(), upperCase.begin(), upperCase.end(), same) !=
           text.end();
}

int IsPlsPath(const std::string& path) {
    return Contains(path, ".PLS");
}
int IsPlaylistPath(const std::string& path) {
    return IsPlsPath(path) || Contains(path, ".M3U");
}
int IsSongPath(const std::string& path) {
    return Contains(path, ".MP3") || Contains(path, ".WAV");
}

static int IsSlash(char c) {
    return c == '\\' || c == '/';
}

static int StandsAlone(const std::string& entry) {
    if (entry.empty() || IsSlash(entry[0])) return 1;
    if (entry.size() > 1 && entry[1] == ':' && std::isalpha(static_cast<unsigned char>(entry[0])))
        return 1;
    return entry.find("://") != entry.npos;
}

std::string ResolveEntry(const Playlist& list, const std::string& entry) {
    if (StandsAlone(entry)) return entry;
    const size_t slash = list.name.find_last_of("\\/");
    return slash == list.name.npos ? entry : list.name.substr(0, slash + 1) + entry;
}
