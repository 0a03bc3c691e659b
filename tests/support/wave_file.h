// WAV files of given samples. They are as large as they say.
#pragma once
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "waves/format.h"

inline void WriteFileBytes(const std::string& path, const void* bytes, size_t size) {
    FILE* file = std::fopen(path.c_str(), "wb");
    if (!file) return;
    std::fwrite(bytes, 1, size, file);
    std::fclose(file);
}

inline void WriteWaveFile(const std::string& path, const SoundFormatRecord& format,
                          const std::vector<uint8_t>& sound) {
    struct {
        char riff[4];
        uint32_t rest;
        char wave[8];
        uint32_t formatSize;
        char format[16];
        char data[4];
        uint32_t size;
    } head = {{'R', 'I', 'F', 'F'},
              static_cast<uint32_t>(sound.size() + 36),
              {'W', 'A', 'V', 'E', 'f', 'm', 't', ' '},
              16,
              {},
              {'d', 'a', 't', 'a'},
              static_cast<uint32_t>(sound.size())};
    static_assert(sizeof head == 44);
    std::memcpy(head.format, &format, sizeof head.format);
    std::vector<uint8_t> bytes(sizeof head);
    std::memcpy(bytes.data(), &head, sizeof head);
    bytes.insert(bytes.end(), sound.begin(), sound.end());
    WriteFileBytes(path, bytes.data(), bytes.size());
}
