// Opening disc images: a CUE sheet, or a folder of WAV files taken in name order.
#pragma once
#include "core/platform.h"
#include "discdrive/disc.h"

#include <memory>

struct DiscImage {
    Disc disc;
    std::vector<std::wstring> files; // by number, as the disc's pieces name them
};

// Null when there is no such image, or when it is broken: that is an empty drive. May take as
// long as the medium that the files lie on.
std::shared_ptr<const DiscImage> OpenDiscImage(const std::wstring& path);

// An open file, read by place. Anything but a file on a disk (a device, a pipe) does not open.
struct SectorFile {
    HANDLE handle = INVALID_HANDLE_VALUE;
};
int OpenSectorFile(SectorFile* file, const wchar_t* path);
void CloseSectorFile(SectorFile* file);
uint64_t SectorFileBytes(const SectorFile& file);
// The bytes read, fewer than `count` at the file's end or after an error.
size_t ReadSectorBytes(const SectorFile& file, uint64_t offset, void* bytes, size_t count);
