// Loading bitmaps and drawing them from their bits. See picture_win.h.
#include "ui/picture_win.h"

#include "ui/bmp.h"
#include "ui/tiling.h"

#include <algorithm>
#include <memory>
#include <new>

constexpr int kTileWanted = 256;           // pixels each way
constexpr int kMostRepeated = 1024 * 1024; // pixels: a long thin bitmap would ask for gigabytes
constexpr int kReducedCopies = 8;          // of a thread
constexpr size_t kMostReduced = 2 * 1024 * 1024; // pixels of them all
constexpr DWORD kLargestFile = kBmpMaxPixels * 4 + 65536;

using ReadHeader = int (*)(std::span<const uint8_t> bytes, BmpHeader* header);

// ---- loading

static BITMAPINFO InfoOf(int width, int height) {
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height; // rows from the top
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

static int MakeSection(Picture* picture) {
    const BITMAPINFO info = InfoOf(picture->width, picture->height);
    void* bits = nullptr;
    picture->bitmap = CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
    picture->pixels = static_cast<uint32_t*>(bits);
    return picture->bitmap && bits;
}

static void RepeatSmall(Picture* picture) {
    const int across =
        TileRepeat(picture->width, kTileWanted, kMostRepeated / picture->width / picture->height);
    const int down = TileRepeat(picture->height, kTileWanted,
                                kMostRepeated / across / picture->width / picture->height);
    picture->tileWidth = picture->width * across;
    picture->tileHeight = picture->height * down;
    if (across * down == 1) return;
    picture->repeated.reserve(static_cast<size_t>(picture->tileWidth) * picture->tileHeight);
    for (int y = 0; y < picture->tileHeight; ++y) {
        const uint32_t* row =
            picture->pixels + static_cast<size_t>(y % picture->height) * picture->width;
        for (int i = 0; i < across; ++i)
            picture->repeated.insert(picture->repeated.end(), row, row + picture->width);
    }
}

static Picture* MakePicture(std::span<const uint8_t> bytes, ReadHeader read) {
    BmpHeader header;
    if (!read(bytes, &header)) return nullptr;
    std::unique_ptr<Picture, void (*)(Picture*)> picture(new Picture{}, FreePicture);
    picture->width = header.width;
    picture->height = header.height;
    if (!MakeSection(picture.get()) || !DecodeBmp(bytes, header, picture->pixels)) return nullptr;
    RepeatSmall(picture.get());
    return picture.release();
}

// Disk files only: a device's name would wait for the device.
static HANDLE OpenPicture(const char* path) {
    const HANDLE file = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE,
                                    nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr);
    if (file == INVALID_HANDLE_VALUE) return nullptr;
    if (GetFileType(file) == FILE_TYPE_DISK) return file;
    CloseHandle(file);
    return nullptr;
}

static std::vector<uint8_t> ReadWhole(HANDLE file) {
    LARGE_INTEGER size = {};
    if (!GetFileSizeEx(file, &size) || size.QuadPart > kLargestFile) return {};
    std::vector<uint8_t> bytes(static_cast<size_t>(size.QuadPart));
    DWORD got = 0;
    const auto wanted = static_cast<DWORD>(bytes.size());
    if (!wanted || !ReadFile(file, bytes.data(), wanted, &got, nullptr)) return {};
    bytes.resize(got);
    return bytes;
}

Picture* LoadPictureFile(const char* path) {
    if (!path[0]) return nullptr;
    const HANDLE file = OpenPicture(path);
    if (!file) return nullptr;
    Picture* picture = nullptr;
    try {
        picture = MakePicture(ReadWhole(file), ReadBmpFile);
    } catch (const std::bad_alloc&) { // the largest pictures ask for a good part of the memory
    }
    CloseHandle(file);
    return picture;
}

Picture* LoadPictureResource(UINT id) {
    const HMODULE module = GetModuleHandleA(nullptr);
    const HRSRC found =
        FindResourceA(module, MAKEINTRESOURCEA(id), reinterpret_cast<LPCSTR>(RT_BITMAP));
    const HGLOBAL loaded = found ? LoadResource(module, found) : nullptr;
    if (!loaded) return nullptr;
    try {
        return MakePicture(
            {static_cast<const uint8_t*>(LockResource(loaded)), SizeofResource(module, found)},
            ReadBmpResource);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void FreePicture(Picture* picture) {
    if (!picture) return;
    if (picture->bitmap) DeleteObject(picture->bitmap);
    delete picture;
}

// ---- pictures larger than what they are stretched over

namespace {
struct ReducedPicture {
    const Picture* of;
    int width, height;
    unsigned used; // the clock then
    std::vector<uint32_t> pixels;
};
} // namespace

static thread_local struct {
    ReducedPicture copies[kReducedCopies];
    unsigned clock;
} s_reduced;

void FreeReducedPictures() {
    for (ReducedPicture& copy : s_reduced.copies)
        copy = {};
}

// An empty place, with room for so many pixels beside the other copies.
static ReducedPicture& PlaceForReduced(size_t wanted) {
    for (;;) {
        size_t held = 0;
        ReducedPicture* oldest = nullptr;
        ReducedPicture* empty = nullptr;
        for (ReducedPicture& copy : s_reduced.copies) {
            held += copy.pixels.size();
            if (!copy.of)
                empty = &copy;
            else if (!oldest || copy.used < oldest->used)
                oldest = &copy;
        }
        if (empty && (!oldest || held + wanted <= kMostReduced)) return *empty;
        *oldest = {};
    }
}

static void Reduce(const Picture& picture, ReducedPicture* copy) {
    std::vector<int> columns(copy->width), rows(copy->height);
    SpreadPixels(picture.width, copy->width, columns.data());
    SpreadPixels(picture.height, copy->height, rows.data());
    copy->pixels.resize(static_cast<size_t>(copy->width) * copy->height);
    uint32_t* to = copy->pixels.data();
    for (const int row : rows) {
        const uint32_t* from = picture.pixels + static_cast<size_t>(row) * picture.width;
        for (const int column : columns)
            *to++ = from[column];
    }
}

// Null when the picture is no larger, or too little memory is there for a copy.
static const ReducedPicture* ReducedTo(const Picture& picture, int width, int height) {
    const int64_t wanted = int64_t{width} * height;
    if (wanted >= int64_t{picture.width} * picture.height || wanted > int64_t{kMostReduced})
        return nullptr;
    for (ReducedPicture& copy : s_reduced.copies) {
        if (copy.of != &picture || copy.width != width || copy.height != height) continue;
        copy.used = ++s_reduced.clock;
        return &copy;
    }
    ReducedPicture& copy = PlaceForReduced(static_cast<size_t>(wanted));
    try {
        copy = {&picture, width, height, ++s_reduced.clock, {}};
        Reduce(picture, &copy);
        return &copy;
    } catch (const std::bad_alloc&) {
        copy = {};
        return nullptr;
    }
}

// ---- drawing

void StretchPicture(HDC dc, const Picture& picture, const RECT& area) {
    if (const auto* copy = ReducedTo(picture, area.right - area.left, area.bottom - area.top)) {
        const BITMAPINFO reduced = InfoOf(copy->width, copy->height);
        SetDIBitsToDevice(dc, area.left, area.top, static_cast<DWORD>(copy->width),
                          static_cast<DWORD>(copy->height), 0, 0, 0,
                          static_cast<UINT>(copy->height), copy->pixels.data(), &reduced,
                          DIB_RGB_COLORS);
        return;
    }
    const BITMAPINFO info = InfoOf(picture.width, picture.height);
    const int before = SetStretchBltMode(dc, COLORONCOLOR);
    StretchDIBits(dc, area.left, area.top, area.right - area.left, area.bottom - area.top, 0, 0,
                  picture.width, picture.height, picture.pixels, &info, DIB_RGB_COLORS, SRCCOPY);
    if (before) SetStretchBltMode(dc, before);
}

void DrawPictureTile(HDC dc, const Picture& picture, int x, int y) {
    const BITMAPINFO info = InfoOf(picture.tileWidth, picture.tileHeight);
    const uint32_t* pixels = picture.repeated.empty() ? picture.pixels : picture.repeated.data();
    SetDIBitsToDevice(dc, x, y, static_cast<DWORD>(picture.tileWidth),
                      static_cast<DWORD>(picture.tileHeight), 0, 0, 0,
                      static_cast<UINT>(picture.tileHeight), pixels, &info, DIB_RGB_COLORS);
}
