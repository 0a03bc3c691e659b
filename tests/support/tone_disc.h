// Disc images made by a test: each track a tone of its own with a little noise in it, so that any
// 16 samples occur once on the disc and a capture can be matched to the image exactly.
#pragma once
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

struct ToneTrack {
    double hertz;
    int frames; // CD frames, 75 a second
    bool data = false;
};

constexpr int kSamplesPerFrame = 588; // stereo pairs

struct ToneDisc {
    std::string cue;              // path of the CUE sheet
    std::vector<int16_t> samples; // left, right, ...; data tracks are silent here
    std::vector<int> starts;      // first frame of each track, counted from the image's begin
};

inline void WriteWholeFile(const std::string& path, const void* data, size_t size) {
    if (FILE* file = std::fopen(path.c_str(), "wb")) {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
}

// Writes FOLDER\NAME.cue and NAME.bin.
inline ToneDisc MakeToneDisc(const std::string& folder, const std::string& name,
                             const std::vector<ToneTrack>& tracks) {
    ToneDisc disc;
    std::string sheet = "FILE \"" + name + ".bin\" BINARY\r\n";
    uint32_t noise = 12345;
    int at = 0, number = 0;
    for (const ToneTrack& track : tracks) {
        char line[128];
        std::snprintf(line, sizeof line,
                      "  TRACK %02d %s\r\n    TITLE \"Tone %d\"\r\n    INDEX 01 %02d:%02d:%02d\r\n",
                      ++number, track.data ? "MODE1/2352" : "AUDIO", static_cast<int>(track.hertz),
                      at / 4500, at / 75 % 60, at % 75);
        sheet += line;
        disc.starts.push_back(at);
        for (int i = 0; i < track.frames * kSamplesPerFrame; ++i) {
            noise = noise * 1664525 + 1013904223;
            const double angle = 2 * 3.14159265358979 * track.hertz * i / 44100;
            const int level = static_cast<int>(12000 * std::sin(angle)) +
                              static_cast<int>(noise >> 16 & 127) - 64;
            disc.samples.push_back(static_cast<int16_t>(level));
            disc.samples.push_back(static_cast<int16_t>(-level));
        }
        at += track.frames;
    }
    disc.cue = folder + "\\" + name + ".cue";
    WriteWholeFile(folder + "\\" + name + ".bin", disc.samples.data(), disc.samples.size() * 2);
    WriteWholeFile(disc.cue, sheet.data(), sheet.size());
    return disc;
}
