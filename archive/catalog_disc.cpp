// See catalog_disc.h.
#include "archive/catalog_disc.h"

#include "core/text.h"

#include <algorithm>
#include <cstring>

namespace {
// What stands behind the texts.
struct DiscParts {
    uint32_t* starts;        // tracks + 1
    ProgramSegment* program; // segments
    uint16_t* seconds;       // tracks
};
} // namespace
static_assert(sizeof(Disc) % alignof(ProgramSegment) == 0 && alignof(ProgramSegment) == 4);

static DiscParts PartsOf(const Disc& disc) {
    DiscParts parts;
    parts.starts = const_cast<uint32_t*>(TextsOf(disc)) + TextCount(disc);
    parts.program = reinterpret_cast<ProgramSegment*>(parts.starts + disc.tracks + 1);
    parts.seconds = reinterpret_cast<uint16_t*>(parts.program + disc.segments);
    return parts;
}

size_t DiscBytes(const Disc& disc) {
    return sizeof disc + sizeof(uint32_t) * (TextCount(disc) + disc.tracks + 1u) +
           sizeof(ProgramSegment) * disc.segments + sizeof(uint16_t) * disc.tracks;
}

uint16_t SecondsOf(const Disc& disc, size_t track) {
    return PartsOf(disc).seconds[track - 1];
}

static void PoolTexts(const CDInfoRecord& record, TextPool* pool, Disc* disc) {
    uint32_t* texts = TextsOf(*disc);
    *texts++ = PoolText(pool, record.title);
    *texts++ = PoolText(pool, record.comment);
    // Derived here as well: who edits a record may not have done it.
    const int single = IsSingleArtist(record);
    *texts++ = PoolText(pool, !disc->tracks ? record.discArtist
                              : single      ? record.trackArtists[0]
                                            : kVariousArtists);
    for (size_t i = 0; i < disc->tracks; ++i) {
        // Mostly the same one again.
        *texts = single && i ? texts[-kTrackTexts] : PoolText(pool, record.trackArtists[i]);
        ++texts;
        *texts++ = PoolText(pool, record.trackTitles[i]);
        *texts++ = PoolText(pool, record.trackComments[i]);
    }
}

DiscPointer MakeDisc(const CDInfoRecord& record, TextPool* pool) {
    Disc head = {};
    head.identity = record.identity;
    head.revision = record.revision;
    head.tracks = std::min<uint16_t>(record.trackCount, kMaxTracks);
    head.segments = std::min<uint16_t>(record.programCount, kMaxSegments);
    head.totalMinutes = record.totalMinutes;
    head.totalSeconds = record.totalSeconds;
    DiscPointer disc(static_cast<Disc*>(std::malloc(DiscBytes(head))));
    if (!disc) return disc;
    *disc = head;
    PoolTexts(record, pool, disc.get());
    const DiscParts parts = PartsOf(*disc);
    std::copy_n(record.trackStarts, head.tracks + 1, parts.starts);
    std::copy_n(record.program, head.segments, parts.program);
    std::copy_n(record.trackSeconds, head.tracks, parts.seconds);
    return disc;
}

void ExpandDisc(const Disc& disc, const TextPool& pool, CDInfoRecord* record) {
    const auto text = [&](uint32_t number) { return pool.texts[number].text; };
    const uint32_t* texts = TextsOf(disc);
    *record = CDInfoRecord();
    SetIdentity(record, disc.identity);
    record->revision = disc.revision;
    record->trackCount = disc.tracks;
    record->programCount = disc.segments;
    record->totalMinutes = disc.totalMinutes;
    record->totalSeconds = disc.totalSeconds;
    CopyText(record->title, text(texts[kDiscTitle]));
    CopyText(record->comment, text(texts[kDiscComment]));
    CopyText(record->discArtist, text(texts[kDiscArtist]));
    for (size_t i = 0; i < disc.tracks; ++i) {
        CopyText(record->trackArtists[i], text(TrackTextOf(disc, i + 1, kTextArtist)));
        CopyText(record->trackTitles[i], text(TrackTextOf(disc, i + 1, kTextTitle)));
        CopyText(record->trackComments[i], text(TrackTextOf(disc, i + 1, kTextComment)));
    }
    const DiscParts parts = PartsOf(disc);
    std::copy_n(parts.starts, disc.tracks + 1, record->trackStarts);
    std::copy_n(parts.program, disc.segments, record->program);
    std::copy_n(parts.seconds, disc.tracks, record->trackSeconds);
}
