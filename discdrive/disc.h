// A disc: its table of contents, where each sector's bytes lie, and the arithmetic of positions.
// A frame is a sector, 1/75 s; frames are counted as on a real disc, whose first sector is frame
// 150 (00:02:00), so that they can be told as MSF without a sum.
#pragma once
#include "discdrive/cue.h"

#include <span>

constexpr uint32_t kMaxDiscFrames = 255 * 60 * 75; // minutes have 8 bits
constexpr size_t kMaxFolderTracks = 255;           // as have track numbers

struct DiscTrack {
    uint32_t start = 0, length = 0; // frames
    int audio = 1;
};

// A stretch of consecutive sectors.
struct DiscPiece {
    uint32_t start = 0, count = 0; // frames
    int audio = 1;
    int file = -1;       // -1: silence, in no file
    uint64_t offset = 0; // of its first byte in the file
    uint64_t bytes = 0;  // in the file; a WAV file's last sector may be cut: silence follows
    uint32_t sectorBytes = kAudioSectorBytes;
};

struct Disc {
    std::vector<DiscTrack> tracks;
    std::vector<DiscPiece> pieces; // ascending, without holes
    uint32_t end = 0;              // the lead-out's frame
};

// The part of a file that holds sectors.
struct ImageFile {
    uint64_t offset = 0, bytes = 0;
};

// One entry of `files` for each of the sheet's. 0 when they don't fit together: an index beyond
// its file, tracks that overlap or are empty, bare sectors cut off, a data track in a WAV file, a
// disc longer than kMaxDiscFrames.
int BuildDisc(const CueSheet& sheet, std::span<const ImageFile> files, Disc* disc);

// The number of the track that a frame belongs to, from 1; what stands before the first track
// counts as its own. 0 on a disc without tracks.
uint32_t TrackAt(const Disc& disc, uint32_t frame);

// The classic identity: every track's start packed as minutes * 65536 + seconds * 256 + frames,
// added up, plus the length in frames when there are fewer than three tracks.
uint32_t DiscIdentity(const Disc& disc);

// Time formats, by their MCI numbers.
enum TimeFormat : uint32_t { kTimeMs = 0, kTimeMsf = 2, kTimeTmsf = 10 };

uint32_t TellPosition(const Disc& disc, TimeFormat format, uint32_t frame);
// A length has no track: it is told as MSF where positions are TMSF.
uint32_t TellLength(TimeFormat format, uint32_t frames);
// 1, or 0 when the value names no place between the disc's first sector and its end.
int ReadPosition(const Disc& disc, TimeFormat format, uint32_t value, uint32_t* frame);

// ---- what a player needs
// The next stretch to be played at or after `from` and before `to`, data left out; count 0: none.
DiscPiece NextStretch(const Disc& disc, uint32_t from, uint32_t to);
// Where the player stands after `played` frames of the stretches from `from` to `to`.
uint32_t FrameAfter(const Disc& disc, uint32_t from, uint32_t to, uint32_t played);
