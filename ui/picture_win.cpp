// Loading bitmaps and drawing them from their bits. See picture_win.h.
#include "ui/picture_win.h"

#include "ui/bmp.h"
#include "ui/tiling.h"

#include <algorithm>
#include <new>

constexpr int kTileWanted = 256; // pixels each way
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
    const int across = TileRepeat(picture->width, kTileWanted);
    const int down = TileRepeat(picture->height, kTileWanted);
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
    auto* picture = new Picture{};
    picture->width = header.width;
    picture->height = header.height;
    if (!MakeSection(picture) || !DecodeBmp(bytes, header, picture->pixels)) {
        FreePicture(picture);
        return nullptr;
    }
    RepeatSmall(picture);
    return picture;
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

// ---- drawing

void StretchPicture(HDC dc, const Picture& picture, const RECT& area) {
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
