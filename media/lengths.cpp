// Texts of lengths and names, and the answer of a file dialog. See lengths.h.
#include "media/lengths.h"

#include "core/text.h"

#include <algorithm>
#include <cstring>

constexpr double kLongestSeconds = 1e8; // three years

std::string TotalText(long long seconds) {
    char text[48];
    if (seconds < 60)
        FormatText(text, sizeof text, "PlayList: %d Seconds", static_cast<int>(seconds));
    else
        FormatText(text, sizeof text, "PlayList: %02lld:%02d", seconds / 60,
                   static_cast<int>(seconds % 60));
    return text;
}

int WholeSeconds(double seconds) {
    return seconds > 0 ? static_cast<int>(std::min(seconds, kLongestSeconds)) : 0;
}

std::string LengthText(double seconds) {
    if (seconds < 0) return "";
    if (!(seconds > 0)) return "-";
    const int whole = WholeSeconds(seconds);
    char text[24];
    FormatText(text, sizeof text, "%d:%02d", whole / 60, whole % 60);
    return text;
}

static size_t FileStart(const std::string& path) {
    const size_t slash = path.find_last_of("\\/:");
    return slash == std::string::npos ? 0 : slash + 1;
}

std::string FileOf(const std::string& path) {
    return path.substr(FileStart(path));
}

std::string FolderOf(const std::string& path) {
    std::string folder = path.substr(0, FileStart(path));
    if (folder.size() > 1 && folder.back() != ':') folder.pop_back();
    return folder;
}

std::string PlainTitle(const std::string& path) {
    const std::string file = FileOf(path);
    const size_t dot = file.rfind('.');
    return dot ? file.substr(0, dot) : file;
}

int EndsInPls(const std::string& name) {
    return name.size() >= 4 && SameText(name.c_str() + name.size() - 4, ".pls");
}

std::vector<std::string> ChosenFiles(const char* answer, size_t size, std::string* folder) {
    const char* const end = answer + size;
    std::vector<std::string> parts;
    for (const char* at = answer; at < end && *at;) {
        const char* const stop = std::find(at, end, '\0');
        parts.emplace_back(at, stop);
        at = stop == end ? end : stop + 1;
    }
    folder->clear();
    if (parts.empty()) return {};
    if (parts.size() == 1) {
        *folder = FolderOf(parts[0]);
        return parts;
    }
    *folder = parts[0];
    if (folder->back() == '\\') folder->pop_back();
    for (size_t i = 1; i < parts.size(); ++i)
        parts[i] = *folder + "\\" + parts[i];
    parts.erase(parts.begin());
    return parts;
}
