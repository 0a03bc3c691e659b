// CDPlayer.ini through the platform's profile functions. A section is read and written as a whole:
// every call reads the file anew, and a disc has a hundred keys. See forms_win.h.
#include "archive/forms_win.h"

#include <memory>

constexpr DWORD kMaxNames = 4u << 20; // characters of all sections' names
constexpr DWORD kMaxSection = 64 * 1024;

std::string IniPath(const std::wstring& path) {
    char text[MAX_PATH * 2] = "";
    if (!path.empty()) {
        WideCharToMultiByte(CP_ACP, 0, path.c_str(), -1, text, sizeof text, nullptr, nullptr);
        return text;
    }
    // In full, since the same file is also looked at by other functions.
    GetWindowsDirectoryA(text, MAX_PATH);
    return std::string(text) + "\\CDPlayer.ini";
}

// The profile functions tell nothing apart from "no such section".
static int IsReadable(const std::string& path, int* isThere) {
    const HANDLE file = CreateFileA(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    const DWORD error = GetLastError();
    *isThere = file != INVALID_HANDLE_VALUE ||
               (error != ERROR_FILE_NOT_FOUND && error != ERROR_PATH_NOT_FOUND);
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    return file != INVALID_HANDLE_VALUE;
}

int ReadIniNames(const std::string& path, std::vector<std::string>* names) {
    names->clear();
    int isThere;
    if (!IsReadable(path, &isThere)) return !isThere;
    std::vector<char> buffer;
    DWORD length, size = 32 * 1024;
    do {
        size *= 2;
        buffer.assign(size, 0);
        length = GetPrivateProfileSectionNamesA(buffer.data(), size, path.c_str());
    } while (length >= size - 2 && size < kMaxNames);
    for (const char* at = buffer.data(); at < buffer.data() + length && *at;
         at += names->back().size() + 1)
        names->push_back(at);
    return length < size - 2;
}

IniLines ReadIniSection(const std::string& path, const char* name) {
    std::vector<char> buffer(kMaxSection);
    const DWORD length = GetPrivateProfileSectionA(name, buffer.data(), kMaxSection, path.c_str());
    return ParseIniSection({buffer.data(), length});
}

int WriteIniSection(const std::string& path, const CDInfoRecord& record) {
    const std::string name = IniName(record.identity);
    const IniLines lines = WriteIniDisc(record, ReadIniSection(path, name.c_str()));
    if (lines.empty()) return 1;
    return WritePrivateProfileSectionA(name.c_str(), FormatIniSection(lines).c_str(),
                                       path.c_str()) != 0;
}

int ReadIniFile(ReadJob* job) {
    const std::string path = IniPath(job->path);
    std::vector<std::string> names;
    if (!ReadIniNames(path, &names) || names.empty()) return 0;
    job->total = names.size();
    auto record = std::make_unique<CDInfoRecord>();
    for (const std::string& name : names) {
        uint32_t identity;
        if (!ParseIniName(name, &identity) || !identity) {
            --job->total;
            continue;
        }
        *record = {};
        SetIdentity(record.get(), identity);
        ReadIniDisc(ReadIniSection(path, name.c_str()), record.get());
        if (!GiveDisc(job, *record)) return 0;
    }
    return 1;
}
