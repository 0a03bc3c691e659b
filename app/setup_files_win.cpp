// The program's files: where they may stand, how they come there and how they go. See setup_win.h.
#include "app/setup_win.h"
#include "core/text.h"

#include <shlobj.h>

#include <vector>

constexpr const char* kNewSuffix = ".setup-new"; // a copy until all of them are there
constexpr const char* kOldSuffix = ".setup-old"; // what it replaces, until all are in place

namespace {
struct FilePair {
    char from[kPathSize], to[kPathSize];
};
struct Path {
    char text[kPathSize];
};
} // namespace

static int Exists(const char* path) {
    return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
}

static Path WithSuffix(const char* path, const char* suffix) {
    Path result;
    FormatText(result.text, sizeof result.text, "%s%s", path, suffix);
    return result;
}

int OwnProgram(char (&path)[kPathSize]) {
    const DWORD length = GetModuleFileNameA(nullptr, path, sizeof path);
    if (length && length < sizeof path) return 1;
    path[0] = 0;
    return 0;
}

void DefaultFolder(char (&folder)[kPathSize]) {
    char local[MAX_PATH] = "";
    if (FAILED(SHGetFolderPathA(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr,
                                SHGFP_TYPE_CURRENT, local)) ||
        !JoinPath(local, "Programs\\Tonvista", folder))
        CopyText(folder, "C:\\Tonvista");
}

// By what the file system says: a path has many spellings.
int SameFile(const char* a, const char* b) {
    if (SameText(a, b)) return 1;
    BY_HANDLE_FILE_INFORMATION info[2] = {};
    int known = 1;
    for (int i = 0; i < 2; ++i) {
        const HANDLE file =
            CreateFileA(i ? b : a, 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                        nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        if (file == INVALID_HANDLE_VALUE) return 0;
        known = known && GetFileInformationByHandle(file, &info[i]);
        CloseHandle(file);
    }
    return known && info[0].dwVolumeSerialNumber == info[1].dwVolumeSerialNumber &&
           info[0].nFileIndexHigh == info[1].nFileIndexHigh &&
           info[0].nFileIndexLow == info[1].nFileIndexLow;
}

// ---- a folder

int IsWritable(const char* folder) {
    char trial[kPathSize];
    if (!JoinPath(folder, "Tonvista.setup-trial", trial)) return 0;
    const HANDLE file = CreateFileA(trial, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE) return 0;
    DWORD written = 0;
    const int good = WriteFile(file, "x", 1, &written, nullptr) && written == 1;
    CloseHandle(file);
    return good;
}

int PrepareFolder(const char* folder) {
    SHCreateDirectoryExA(nullptr, folder, nullptr);
    return IsWritable(folder);
}

// ---- copying

// Calls Do with the path of each file of a program in `folder` that is there.
template <typename Action> static void ForEachLibrary(const char* folder, Action Do) {
    Path path;
    for (const char* name : kLibraryFiles)
        if (JoinPath(folder, name, path.text) && Exists(path.text)) Do(path.text, name);
}

template <typename Action> static void ForEachManualFile(const char* folder, Action Do) {
    Path manual, pattern, path;
    WIN32_FIND_DATAA found;
    if (!JoinPath(folder, kManualFolder, manual.text) || !JoinPath(manual.text, "*", pattern.text))
        return;
    const HANDLE search = FindFirstFileA(pattern.text, &found);
    if (search == INVALID_HANDLE_VALUE) return;
    do
        if (IsManualFile(found.cFileName) && JoinPath(manual.text, found.cFileName, path.text))
            Do(path.text, found.cFileName);
    while (FindNextFileA(search, &found));
    FindClose(search);
}

static void AddPair(std::vector<FilePair>* pairs, const char* from, const char* folder,
                    const char* name) {
    FilePair pair;
    CopyText(pair.from, from);
    if (JoinPath(folder, name, pair.to)) pairs->push_back(pair);
}

static std::vector<FilePair> FilesToCopy(const char* folder) {
    std::vector<FilePair> pairs;
    Path own, source, manual;
    if (!OwnProgram(own.text) || !JoinPath(folder, kManualFolder, manual.text)) return pairs;
    FolderOfPath(own.text, source.text);
    AddPair(&pairs, own.text, folder, kProgramFile); // whatever it is called here
    ForEachLibrary(source.text, [&](const char* path, const char* name) {
        AddPair(&pairs, path, folder, name);
    });
    ForEachManualFile(source.text, [&](const char* path, const char* name) {
        AddPair(&pairs, path, manual.text, name);
    });
    CreateDirectoryA(manual.text, nullptr);
    return pairs;
}

static int CopyAside(const std::vector<FilePair>& pairs, const SetupProgress& progress) {
    int done = 0;
    for (const FilePair& pair : pairs) {
        const Path fresh = WithSuffix(pair.to, kNewSuffix);
        if (!CopyFileA(pair.from, fresh.text, FALSE)) return 0;
        SetFileAttributesA(fresh.text, FILE_ATTRIBUTE_NORMAL); // from a read-only medium
        if (progress.Show)
            progress.Show(progress.owner, ++done, static_cast<int>(pairs.size()) + 1);
    }
    return 1;
}

// A file in use can't be replaced, but it can be renamed.
static int PutInPlace(const FilePair& pair) {
    const Path fresh = WithSuffix(pair.to, kNewSuffix), old = WithSuffix(pair.to, kOldSuffix);
    SetFileAttributesA(pair.to, FILE_ATTRIBUTE_NORMAL);
    if (Exists(pair.to) && !MoveFileExA(pair.to, old.text, MOVEFILE_REPLACE_EXISTING)) return 0;
    return MoveFileA(fresh.text, pair.to) != 0;
}

static void PutBack(const FilePair& pair) {
    const Path old = WithSuffix(pair.to, kOldSuffix);
    if (Exists(old.text)) MoveFileExA(old.text, pair.to, MOVEFILE_REPLACE_EXISTING);
}

static void DeleteSoon(const char* path) {
    SetFileAttributesA(path, FILE_ATTRIBUTE_NORMAL);
    if (Exists(path) && !DeleteFileA(path))
        MoveFileExA(path, nullptr, MOVEFILE_DELAY_UNTIL_REBOOT); // where the user may
}

int CopyProgram(const char* folder, const SetupProgress& progress) {
    const std::vector<FilePair> pairs = FilesToCopy(folder);
    for (const FilePair& pair : pairs) // left by one that was broken off
        DeleteSoon(WithSuffix(pair.to, kOldSuffix).text);
    int good = !pairs.empty() && CopyAside(pairs, progress);
    size_t begun = 0;
    while (good && begun < pairs.size())
        good = PutInPlace(pairs[begun++]);
    while (!good && begun)
        PutBack(pairs[--begun]);
    for (const FilePair& pair : pairs) {
        DeleteFileA(WithSuffix(pair.to, kNewSuffix).text);
        if (good) DeleteSoon(WithSuffix(pair.to, kOldSuffix).text);
    }
    return good;
}

void CarryDatabase(const char* from, const char* folder) {
    Path source, target;
    if (JoinPath(from, kDatabaseFile, source.text) && JoinPath(folder, kDatabaseFile, target.text))
        CopyFileA(source.text, target.text, TRUE);
}

// ---- what is there, and its end

uint32_t ProgramKilobytes(const char* folder) {
    uint64_t bytes = 0;
    const auto add = [&](const char* path, const char*) {
        WIN32_FILE_ATTRIBUTE_DATA data;
        if (GetFileAttributesExA(path, GetFileExInfoStandard, &data))
            bytes += static_cast<uint64_t>(data.nFileSizeHigh) << 32 | data.nFileSizeLow;
    };
    Path program;
    if (JoinPath(folder, kProgramFile, program.text)) add(program.text, nullptr);
    ForEachLibrary(folder, add);
    ForEachManualFile(folder, add);
    return static_cast<uint32_t>(bytes / 1024);
}

int DeleteProgram(const char* folder) {
    Path own = {}, program, manual;
    std::vector<Path> doomed; // first listed: a folder that shrinks meanwhile is not read
    const auto add = [&](const char* path, const char*) {
        for (const char* suffix : {"", kOldSuffix, kNewSuffix})
            doomed.push_back(WithSuffix(path, suffix));
    };
    OwnProgram(own.text);
    ForEachLibrary(folder, add);
    ForEachManualFile(folder, add);
    if (JoinPath(folder, kProgramFile, program.text)) add(program.text, nullptr);
    int good = 1;
    for (const Path& path : doomed) {
        if (!Exists(path.text) || SameFile(path.text, own.text)) continue;
        DeleteSoon(path.text);
        good &= !Exists(path.text);
    }
    if (JoinPath(folder, kManualFolder, manual.text)) RemoveDirectoryA(manual.text);
    RemoveDirectoryA(folder);
    return good;
}

int DeleteDatabase(const char* folder) {
    Path pattern, path;
    WIN32_FIND_DATAA found;
    std::vector<Path> doomed;
    if (!JoinPath(folder, kDatabaseFile, pattern.text)) return 0;
    AppendText(pattern.text, sizeof pattern.text, "*");
    const HANDLE search = FindFirstFileA(pattern.text, &found);
    if (search == INVALID_HANDLE_VALUE) return 1;
    do
        if (IsDatabaseFile(found.cFileName) && JoinPath(folder, found.cFileName, path.text))
            doomed.push_back(path);
    while (FindNextFileA(search, &found));
    FindClose(search);
    int good = 1;
    for (const Path& file : doomed) {
        DeleteSoon(file.text);
        good &= !Exists(file.text);
    }
    return good;
}
