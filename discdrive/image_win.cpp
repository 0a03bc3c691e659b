// See image_win.h. What the files hold is judged by the logic (cue.h, wav.h, disc.h).
#include "discdrive/image_win.h"

#include "discdrive/wav.h"

#include <algorithm>

int OpenSectorFile(SectorFile* file, const wchar_t* path) {
    CloseSectorFile(file);
    file->handle = CreateFileW(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                               OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file->handle != INVALID_HANDLE_VALUE && GetFileType(file->handle) != FILE_TYPE_DISK) {
        CloseSectorFile(file);
    }
    return file->handle != INVALID_HANDLE_VALUE;
}

void CloseSectorFile(SectorFile* file) {
    if (file->handle != INVALID_HANDLE_VALUE) CloseHandle(file->handle);
    file->handle = INVALID_HANDLE_VALUE;
}

uint64_t SectorFileBytes(const SectorFile& file) {
    LARGE_INTEGER size;
    if (!GetFileSizeEx(file.handle, &size) || size.QuadPart < 0) return 0;
    return static_cast<uint64_t>(size.QuadPart);
}

size_t ReadSectorBytes(const SectorFile& file, uint64_t offset, void* bytes, size_t count) {
    LARGE_INTEGER at;
    at.QuadPart = static_cast<LONGLONG>(offset);
    DWORD done = 0;
    if (!SetFilePointerEx(file.handle, at, nullptr, FILE_BEGIN) ||
        !ReadFile(file.handle, bytes, static_cast<DWORD>(count), &done, nullptr)) {
        return 0;
    }
    return done;
}

// Sectors of a file: behind the header of a WAV file, or the whole of any other.
static int MeasureFile(const std::wstring& path, int wave, ImageFile* measured) {
    SectorFile file;
    if (!OpenSectorFile(&file, path.c_str())) return 0;
    measured->offset = 0;
    measured->bytes = SectorFileBytes(file);
    int good = 1;
    if (wave) {
        std::vector<uint8_t> head(kWavHeadBytes);
        head.resize(ReadSectorBytes(file, 0, head.data(), head.size()));
        WavData data;
        good = ReadWavHeader(head, measured->bytes, &data);
        measured->offset = data.offset;
        measured->bytes = data.bytes;
    }
    CloseSectorFile(&file);
    return good;
}

static std::string ReadSheet(const std::wstring& path) {
    SectorFile file;
    std::string text;
    if (!OpenSectorFile(&file, path.c_str())) return text;
    const uint64_t size = SectorFileBytes(file);
    if (size <= kMaxCueBytes) {
        text.resize(static_cast<size_t>(size));
        text.resize(ReadSectorBytes(file, 0, text.data(), text.size()));
    }
    CloseSectorFile(&file);
    return text;
}

static std::wstring WidenText(std::string_view text, UINT codePage) {
    const int bytes = static_cast<int>(text.size());
    std::wstring wide(text.size(), L'\0');
    const int n = MultiByteToWideChar(codePage, 0, text.data(), bytes, wide.data(), bytes);
    wide.resize(n > 0 ? static_cast<size_t>(n) : 0);
    return wide;
}

static int OpenCue(const std::wstring& path, CueSheet* sheet, std::vector<std::wstring>* files) {
    const std::string text = ReadSheet(path);
    if (!ReadCue(text, sheet)) return 0;
    const size_t slash = path.find_last_of(L"\\/");
    const std::wstring folder = slash == path.npos ? L"" : path.substr(0, slash + 1);
    const UINT codePage = IsUtf8(text) ? CP_UTF8 : CP_ACP;
    for (const CueFile& file : sheet->files)
        files->push_back(folder + WidenText(file.name, codePage));
    return 1;
}

static int IsWavName(const std::wstring& name) {
    return name.size() > 4 && lstrcmpiW(name.c_str() + name.size() - 4, L".wav") == 0;
}

static int OpenFolder(const std::wstring& path, CueSheet* sheet, std::vector<std::wstring>* files) {
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW((path + L"\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) return 0;
    do {
        if (!(found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && IsWavName(found.cFileName))
            files->push_back(path + L"\\" + found.cFileName);
    } while (FindNextFileW(search, &found));
    FindClose(search);
    std::sort(files->begin(), files->end(), [](const std::wstring& a, const std::wstring& b) {
        return CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_LESS_THAN;
    });
    if (files->size() > kMaxFolderTracks) files->resize(kMaxFolderTracks);
    *sheet = MakeFolderSheet(files->size());
    return !files->empty();
}

std::shared_ptr<const DiscImage> OpenDiscImage(const std::wstring& path) {
    const DWORD attributes =
        path.empty() ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return nullptr;
    auto image = std::make_shared<DiscImage>();
    CueSheet sheet;
    const int opened = attributes & FILE_ATTRIBUTE_DIRECTORY
                           ? OpenFolder(path, &sheet, &image->files)
                           : OpenCue(path, &sheet, &image->files);
    if (!opened) return nullptr;
    std::vector<ImageFile> measured(image->files.size());
    for (size_t i = 0; i < measured.size(); ++i) {
        if (!MeasureFile(image->files[i], sheet.files[i].wave, &measured[i])) return nullptr;
    }
    return BuildDisc(sheet, measured, &image->disc) ? image : nullptr;
}
