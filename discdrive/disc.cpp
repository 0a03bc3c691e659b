// See disc.h. A disc is laid out by walking the files from the first sector to the last: each
// track's marks cut them into pieces, and gaps that no file holds are put between.
#include "discdrive/disc.h"

#include "core/tmsf.h"

#include <algorithm>

struct DiscLayout {
    const CueSheet& sheet;
    std::span<const ImageFile> files;
    Disc& disc;
    uint32_t at = kLeadInFrames; // next frame of the disc
    int file = 0;                // the file being walked,
    uint32_t frame = 0;          // the next sector in it, counted in sectors
    uint64_t byte = 0;           // and in bytes: sectors may differ in size within a file
    uint32_t sectorBytes = kAudioSectorBytes;
    int audio = 1;
};

static int AddPiece(DiscLayout& l, uint64_t count, int file, uint64_t bytes) {
    if (count == 0) return 1;
    if (count > kMaxDiscFrames - l.at) return 0;
    DiscPiece piece;
    piece.start = l.at;
    piece.count = static_cast<uint32_t>(count);
    piece.audio = l.audio;
    piece.file = file;
    piece.offset = file < 0 ? 0 : l.files[file].offset + l.byte;
    piece.bytes = bytes;
    piece.sectorBytes = l.sectorBytes;
    l.disc.pieces.push_back(piece);
    l.at += piece.count;
    return 1;
}

static int TakeSectors(DiscLayout& l, uint32_t count) {
    const uint64_t bytes = static_cast<uint64_t>(count) * l.sectorBytes;
    if (bytes > l.files[l.file].bytes - l.byte || !AddPiece(l, count, l.file, bytes)) return 0;
    l.frame += count;
    l.byte += bytes;
    return 1;
}

static void EnterFile(DiscLayout& l, int file) {
    l.file = file;
    l.frame = 0;
    l.byte = 0;
    // What stands before a track's first mark in a new file has that track's sector size.
    for (const CueTrack& track : l.sheet.tracks) {
        if (track.first.file != file) continue;
        l.sectorBytes = track.sectorBytes;
        l.audio = track.audio;
        return;
    }
}

static int TakeRestOfFile(DiscLayout& l) {
    const uint64_t left = l.files[l.file].bytes - l.byte;
    // A WAV file seldom ends with a whole sector; a file of bare sectors that doesn't is cut.
    if (left % l.sectorBytes && !l.sheet.files[l.file].wave) return 0;
    return AddPiece(l, left / l.sectorBytes + (left % l.sectorBytes != 0), l.file, left);
}

static int MoveTo(DiscLayout& l, CueMark mark) {
    while (l.file < mark.file) {
        if (!TakeRestOfFile(l)) return 0;
        EnterFile(l, l.file + 1);
    }
    return mark.file == l.file && mark.frame >= l.frame && TakeSectors(l, mark.frame - l.frame);
}

static int LayTrack(DiscLayout& l, const CueTrack& track, uint32_t gapBefore) {
    const auto& wave = l.sheet.files;
    if (!track.audio && (wave[track.first.file].wave || wave[track.start.file].wave)) return 0;
    if (!MoveTo(l, track.first) || !AddPiece(l, gapBefore, -1, 0)) return 0;
    l.sectorBytes = track.sectorBytes;
    l.audio = track.audio;
    if (!AddPiece(l, track.pregap, -1, 0) || !MoveTo(l, track.start)) return 0;
    auto& tracks = l.disc.tracks;
    if (!tracks.empty()) {
        if (l.at <= tracks.back().start) return 0;
        tracks.back().length = l.at - tracks.back().start;
    }
    tracks.push_back({l.at, 0, track.audio});
    return 1;
}

int BuildDisc(const CueSheet& sheet, std::span<const ImageFile> files, Disc* disc) {
    *disc = {};
    disc->end = kLeadInFrames;
    if (sheet.files.empty() || files.size() != sheet.files.size()) return 0;
    if (sheet.tracks.empty()) return 1;
    DiscLayout l{sheet, files, *disc};
    EnterFile(l, 0);
    uint32_t gap = 0;
    for (const CueTrack& track : sheet.tracks) {
        if (!LayTrack(l, track, gap)) return 0;
        gap = track.postgap;
    }
    const int last = static_cast<int>(files.size()) - 1;
    while (l.file < last) {
        if (!TakeRestOfFile(l)) return 0;
        EnterFile(l, l.file + 1);
    }
    if (!TakeRestOfFile(l) || !AddPiece(l, gap, -1, 0)) return 0;
    disc->end = l.at;
    disc->tracks.back().length = l.at - disc->tracks.back().start;
    return disc->tracks.back().length > 0;
}

uint32_t TrackAt(const Disc& disc, uint32_t frame) {
    const auto after =
        std::upper_bound(disc.tracks.begin(), disc.tracks.end(), frame,
                         [](uint32_t f, const DiscTrack& track) { return f < track.start; });
    const auto number = static_cast<uint32_t>(after - disc.tracks.begin());
    return number || disc.tracks.empty() ? number : 1;
}

uint32_t DiscIdentity(const Disc& disc) {
    uint32_t sum = 0;
    for (const DiscTrack& track : disc.tracks) {
        const uint32_t seconds = track.start / kFramesPerSecond;
        sum += (seconds / 60) << 16 | (seconds % 60) << 8 | track.start % kFramesPerSecond;
    }
    if (!disc.tracks.empty() && disc.tracks.size() < 3) sum += disc.end - disc.tracks[0].start;
    return sum;
}

static uint32_t FramesToMs(uint32_t frames) {
    return static_cast<uint32_t>(static_cast<uint64_t>(frames) * 1000 / kFramesPerSecond);
}

uint32_t TellPosition(const Disc& disc, TimeFormat format, uint32_t frame) {
    if (format == kTimeMs) return FramesToMs(frame);
    const uint32_t track = TrackAt(disc, frame);
    if (format == kTimeMsf || !track) return FramesToMsf(frame);
    const uint32_t start = disc.tracks[track - 1].start;
    const Msf in = FramesToMsf(frame > start ? frame - start : 0);
    return MakeTmsf(track, MsfMinute(in), MsfSecond(in), MsfFrame(in));
}

uint32_t TellLength(TimeFormat format, uint32_t frames) {
    return format == kTimeMs ? FramesToMs(frames) : FramesToMsf(frames);
}

int ReadPosition(const Disc& disc, TimeFormat format, uint32_t value, uint32_t* frame) {
    if (disc.tracks.empty()) return 0;
    if (format == kTimeMs) {
        // To the nearest frame, so that a told position read back is the same frame.
        const uint64_t nearest = (static_cast<uint64_t>(value) * kFramesPerSecond + 500) / 1000;
        *frame = static_cast<uint32_t>(std::min<uint64_t>(nearest, kMaxDiscFrames + 1));
    } else if (format == kTimeMsf) {
        *frame = MsfToFrames(value);
    } else {
        const uint32_t track = TmsfTrack(value);
        if (track < 1 || track > disc.tracks.size()) return 0;
        *frame =
            disc.tracks[track - 1].start + TmsfSeconds(value) * kFramesPerSecond + TmsfFrame(value);
    }
    return *frame >= kLeadInFrames && *frame <= disc.end;
}

DiscPiece NextStretch(const Disc& disc, uint32_t from, uint32_t to) {
    auto it = std::upper_bound(disc.pieces.begin(), disc.pieces.end(), from,
                               [](uint32_t f, const DiscPiece& p) { return f < p.start; });
    if (it != disc.pieces.begin()) --it;
    for (; it != disc.pieces.end() && it->start < to; ++it) {
        const uint32_t begin = std::max(from, it->start);
        const uint32_t end = std::min(to, it->start + it->count);
        if (!it->audio || begin >= end) continue;
        DiscPiece part = *it;
        const uint64_t skip = std::min<uint64_t>(
            part.bytes, static_cast<uint64_t>(begin - part.start) * part.sectorBytes);
        part.start = begin;
        part.count = end - begin;
        part.offset += skip;
        part.bytes = std::min<uint64_t>(part.bytes - skip,
                                        static_cast<uint64_t>(part.count) * part.sectorBytes);
        return part;
    }
    DiscPiece none;
    none.start = to;
    return none;
}

uint32_t FrameAfter(const Disc& disc, uint32_t from, uint32_t to, uint32_t played) {
    for (;;) {
        const DiscPiece part = NextStretch(disc, from, to);
        if (!part.count) return to;
        if (played < part.count) return part.start + played;
        played -= part.count;
        from = part.start + part.count;
    }
}
