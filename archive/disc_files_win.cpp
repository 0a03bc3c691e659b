// Reading CDDB disc files and CUE sheets: one, or all of a folder and the folders below it. See
// forms_win.h.
#include "archive/cddb.h"
#include "archive/cue_sheet.h"
#include "archive/forms_win.h"
#include "cdinfo/file_layer.h"
#include "discdrive/wav.h"

#include <algorithm>
#include <memory>

constexpr size_t kMaxFolderFiles = 200000; // as many names fit into our memory easily
constexpr size_t kMaxFolderDepth = 16;

// ---- folders

struct FolderWalk {
    std::vector<std::wstring> files;
    const wchar_t* ending; // of the names that count; null: any
    int isWhole;           // 0: there was more than can be read
};

static int HasEnding(const wchar_t* name, const wchar_t* ending) {
    const int length = lstrlenW(name);
    const int skip = length - lstrlenW(ending);
    return skip >= 0 && lstrcmpiW(name + skip, ending) == 0;
}

static void WalkFolder(const std::wstring& folder, size_t depth, FolderWalk* walk) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((folder + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        walk->isWhole = 0;
        return;
    }
    std::vector<std::wstring> below;
    do {
        const std::wstring name = found.cFileName;
        const int isEmpty = !found.nFileSizeHigh && !found.nFileSizeLow;
        // Links could lead round in a circle.
        if (name == L"." || name == L".." ||
            (found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
            continue;
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY)
            below.push_back(folder + L"\\" + name);
        else if (!isEmpty && (!walk->ending || HasEnding(name.c_str(), walk->ending)))
            walk->files.push_back(folder + L"\\" + name);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    if (walk->files.size() > kMaxFolderFiles) {
        walk->files.resize(kMaxFolderFiles);
        walk->isWhole = 0;
        return;
    }
    if (depth >= kMaxFolderDepth && !below.empty()) walk->isWhole = 0;
    for (size_t i = 0; i < below.size() && depth < kMaxFolderDepth; ++i)
        WalkFolder(below[i], depth + 1, walk);
}

enum FileOutcome {
    kFileRead,
    kFileNone, // not of this form
    kFileBad,
};
using FileReader = FileOutcome (*)(ReadJob* job, const std::wstring& path);

// A folder may hold anything else; what looks like a disc's file and is none makes the result 0,
// after all others were read.
static int ReadFiles(ReadJob* job, const wchar_t* ending, FileReader reader) {
    const DWORD attributes = GetFileAttributesW(job->path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return 0;
    if (!(attributes & FILE_ATTRIBUTE_DIRECTORY)) return reader(job, job->path) == kFileRead;
    FolderWalk walk = {{}, ending, 1};
    WalkFolder(job->path, 0, &walk);
    int good = walk.isWhole;
    size_t left = walk.files.size();
    for (const std::wstring& file : walk.files) {
        // One for each file to come: how many discs they hold is not known.
        job->total = job->done + left--;
        good &= reader(job, file) != kFileBad;
        if (!StepJob(job)) return 0;
    }
    return good && job->done;
}

// ---- CDDB

static FileOutcome ReadCddbFile(ReadJob* job, const std::wstring& path) {
    const std::string head = ReadFileHead(path);
    if (!IsCddbFile(head)) return head.empty() ? kFileBad : kFileNone;
    std::string text;
    if (!ReadFileText(path, kMaxFileSize, &text)) return kFileBad;
    std::string_view rest = text;
    auto record = std::make_unique<CDInfoRecord>();
    FileOutcome outcome = kFileRead;
    for (auto entry = NextCddbEntry(&rest); !entry.empty(); entry = NextCddbEntry(&rest)) {
        *record = {};
        if (!ReadCddbEntry(entry, CddbCodec(), record.get()))
            outcome = kFileBad;
        else if (!GiveDisc(job, *record))
            break;
    }
    return outcome;
}

int ReadCddbFiles(ReadJob* job) {
    return ReadFiles(job, nullptr, ReadCddbFile);
}

int HoldsCddbDisc(const std::wstring& path, uint32_t identity) {
    std::string text;
    if (!IsCddbFile(ReadFileHead(path)) || !ReadFileText(path, kMaxFileSize, &text)) return 0;
    std::string_view rest = text;
    auto record = std::make_unique<CDInfoRecord>();
    return ReadCddbEntry(NextCddbEntry(&rest), CddbCodec(), record.get()) && rest.empty() &&
           record->identity == identity;
}

// ---- CUE

static std::wstring WidenName(const std::string& name, int utf8) {
    const int bytes = static_cast<int>(name.size());
    std::wstring wide(name.size(), L'\0');
    wide.resize(static_cast<size_t>(std::max(
        MultiByteToWideChar(utf8 ? CP_UTF8 : CP_ACP, 0, name.data(), bytes, wide.data(), bytes),
        0)));
    return wide;
}

static CueFileLength MeasureFile(const std::wstring& path, const CueFile& file) {
    CueFileLength length;
    if (file.other) return length;
    std::string head;
    uint64_t bytes;
    if (SystemFiles().size(path.c_str(), &bytes) != kFileOk) return length;
    length.part.bytes = bytes;
    length.isKnown = 1;
    if (!file.wave) return length;
    WavData data;
    ReadFileStart(path, kWavHeadBytes, &head);
    length.isKnown =
        ReadWavHeader({reinterpret_cast<const uint8_t*>(head.data()), head.size()}, bytes, &data);
    length.part = {data.offset, data.bytes};
    return length;
}

static int ReadCueText(const std::wstring& path, std::string* text, CueSheet* sheet,
                       CueTexts* texts) {
    return ReadFileText(path, kMaxCueBytes, text) && ReadCue(*text, sheet, texts);
}

static FileOutcome ReadCueFile(ReadJob* job, const std::wstring& path) {
    std::string text;
    CueSheet sheet;
    CueTexts texts;
    if (!ReadCueText(path, &text, &sheet, &texts)) return kFileBad;
    const std::wstring folder = path.substr(0, path.find_last_of(L"\\/") + 1);
    const int utf8 = IsUtf8(text);
    std::vector<CueFileLength> lengths;
    // One of ours tells all, and its file is only a name.
    const int isOwn = sheet.files.size() == 1 && CueSheetIdentity(texts);
    if (isOwn) lengths.resize(1);
    for (size_t i = lengths.size(); i < sheet.files.size(); ++i)
        lengths.push_back(
            MeasureFile(folder + WidenName(sheet.files[i].name, utf8), sheet.files[i]));
    auto record = std::make_unique<CDInfoRecord>();
    if (!ReadCueDisc(sheet, texts, lengths, utf8, CueCodec(), record.get())) return kFileBad;
    GiveDisc(job, *record);
    return kFileRead;
}

int ReadCueFiles(ReadJob* job) {
    return ReadFiles(job, L".cue", ReadCueFile);
}

int HoldsCueDisc(const std::wstring& path, uint32_t identity) {
    std::string text;
    CueSheet sheet;
    CueTexts texts;
    return identity && ReadCueText(path, &text, &sheet, &texts) &&
           CueSheetIdentity(texts) == identity;
}
