// A bitmap file whose every pixel tells where it is.
#pragma once
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

constexpr int kMarkedWidth = 7, kMarkedHeight = 5;

// Of the pixel in that column and row, as a COLORREF.
inline uint32_t MarkedColor(int column, int row) {
    return static_cast<uint32_t>(20 + 30 * column) | static_cast<uint32_t>(20 + 40 * row) << 8 |
           200u << 16;
}

// 24 bits, rows from the bottom; cut after `bytes` where they are fewer.
inline bool WriteMarkedBitmap(const std::string& path, size_t bytes = SIZE_MAX) {
    constexpr int kStride = (kMarkedWidth * 3 + 3) / 4 * 4;
    std::vector<uint8_t> file = {'B', 'M', 0, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40};
    file.resize(54 + kStride * kMarkedHeight);
    file[18] = kMarkedWidth;
    file[22] = kMarkedHeight;
    file[26] = 1;
    file[28] = 24;
    for (int y = 0; y < kMarkedHeight; ++y)
        for (int x = 0; x < kMarkedWidth; ++x)
            for (int i = 0; i < 3; ++i)
                file[54 + (kMarkedHeight - 1 - y) * kStride + 3 * x + i] =
                    static_cast<uint8_t>(MarkedColor(x, y) >> (16 - 8 * i));
    if (bytes < file.size()) file.resize(bytes);
    FILE* out = std::fopen(path.c_str(), "wb");
    if (!out) return false;
    const bool written = std::fwrite(file.data(), 1, file.size(), out) == file.size();
    return std::fclose(out) == 0 && written;
}
