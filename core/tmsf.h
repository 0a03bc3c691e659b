// Positions on an audio disc, packed as MCI packs them, and CD frames (75 a second).
//   MSF:  minutes in bits 0-7, seconds 8-15, frames 16-23.
//   TMSF: track in bits 0-7, minutes 8-15, seconds 16-23, frames 24-31.
#pragma once
#include <cstdint>

using Tmsf = uint32_t;
using Msf = uint32_t;

constexpr uint32_t kFramesPerSecond = 75;
constexpr uint32_t kLeadInFrames = 150; // track 1 of a usual disc starts at 00:02:00

constexpr Tmsf MakeTmsf(uint32_t track, uint32_t minute, uint32_t second, uint32_t frame) {
    return (track & 0xFF) | (minute & 0xFF) << 8 | (second & 0xFF) << 16 | (frame & 0xFF) << 24;
}
constexpr uint32_t TmsfTrack(Tmsf t) {
    return t & 0xFF;
}
constexpr uint32_t TmsfMinute(Tmsf t) {
    return t >> 8 & 0xFF;
}
constexpr uint32_t TmsfSecond(Tmsf t) {
    return t >> 16 & 0xFF;
}
constexpr uint32_t TmsfFrame(Tmsf t) {
    return t >> 24 & 0xFF;
}

constexpr Msf MakeMsf(uint32_t minute, uint32_t second, uint32_t frame) {
    return (minute & 0xFF) | (second & 0xFF) << 8 | (frame & 0xFF) << 16;
}
constexpr uint32_t MsfMinute(Msf m) {
    return m & 0xFF;
}
constexpr uint32_t MsfSecond(Msf m) {
    return m >> 8 & 0xFF;
}
constexpr uint32_t MsfFrame(Msf m) {
    return m >> 16 & 0xFF;
}

// Frames of an MSF value and back. Minutes above 255 do not fit and wrap, as they do in MCI.
constexpr uint32_t MsfToFrames(Msf m) {
    return (MsfMinute(m) * 60 + MsfSecond(m)) * kFramesPerSecond + MsfFrame(m);
}
constexpr Msf FramesToMsf(uint32_t frames) {
    return MakeMsf(frames / (60 * kFramesPerSecond), frames / kFramesPerSecond % 60,
                   frames % kFramesPerSecond);
}

// Seconds within the track; the frames are dropped.
constexpr uint32_t TmsfSeconds(Tmsf t) {
    return TmsfMinute(t) * 60 + TmsfSecond(t);
}
