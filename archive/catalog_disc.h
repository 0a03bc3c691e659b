// One disc of the catalog in a single allocation: a head and behind it, as long as they are needed,
// the numbers of its texts (text_pool.h), track starts, program and track lengths. Some 300 bytes
// where a record takes 40,000.
#pragma once
#include "archive/text_pool.h"
#include "cdinfo/record.h"

#include <cstdint>
#include <cstdlib>
#include <memory>

struct Disc {
    uint32_t identity;
    uint16_t revision, tracks, segments;
    uint16_t totalMinutes, totalSeconds;
    uint16_t unused;
};

struct FreeDisc {
    void operator()(Disc* disc) const { std::free(disc); }
};
using DiscPointer = std::unique_ptr<Disc, FreeDisc>;

// Numbers of texts as they stand behind the head: the disc's, then those of each track.
enum DiscText { kDiscTitle, kDiscComment, kDiscArtist, kDiscTexts };
enum TrackText { kTextArtist, kTextTitle, kTextComment, kTrackTexts };

inline const uint32_t* TextsOf(const Disc& disc) {
    return reinterpret_cast<const uint32_t*>(&disc + 1);
}
inline uint32_t* TextsOf(Disc& disc) {
    return reinterpret_cast<uint32_t*>(&disc + 1);
}
inline size_t TextCount(const Disc& disc) {
    return kDiscTexts + size_t{kTrackTexts} * disc.tracks;
}
// track: 1..N
inline uint32_t TrackTextOf(const Disc& disc, size_t track, TrackText text) {
    return TextsOf(disc)[kDiscTexts + kTrackTexts * (track - 1) + text];
}
uint16_t SecondsOf(const Disc& disc, size_t track);
inline uint32_t TotalSecondsOf(const Disc& disc) {
    return uint32_t{60} * disc.totalMinutes + disc.totalSeconds;
}

DiscPointer MakeDisc(const CDInfoRecord& record, TextPool* pool);
// The record that it was made from, without what lies beyond its counts, and without device data.
void ExpandDisc(const Disc& disc, const TextPool& pool, CDInfoRecord* record);
size_t DiscBytes(const Disc& disc);
