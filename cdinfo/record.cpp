// Defaults and derived fields of a disc record. See record.h.
#include "cdinfo/record.h"

#include <algorithm>
#include <cstring>

#include "core/text.h"

static size_t TrackCountOf(const CDInfoRecord& record) {
    return std::min<size_t>(record.trackCount, kMaxTracks);
}

void DefaultTrackTitle(char (&title)[kTextSize], uint32_t track) {
    FormatText(title, kTextSize, kTrackTitleFormat, static_cast<int>(track));
}

void ApplyDefaults(CDInfoRecord* record) {
    CopyText(record->title, kUnknownTitle);
    record->comment[0] = 0;
    record->revision = 0;
    record->programCount = 0;
    CopyText(record->discArtist, kDefaultArtist);
    for (size_t i = 0; i < kMaxTracks; ++i) {
        DefaultTrackTitle(record->trackTitles[i], static_cast<uint32_t>(i + 1));
        CopyText(record->trackArtists[i], kDefaultArtist);
        record->trackComments[i][0] = 0;
    }
}

void SetIdentity(CDInfoRecord* record, uint32_t identity) {
    record->identity = identity;
    FormatText(record->identityText, sizeof record->identityText, "%08X",
               static_cast<unsigned>(identity));
}

int IsSingleArtist(const CDInfoRecord& record) {
    for (size_t i = 1; i < TrackCountOf(record); ++i) {
        if (std::strncmp(record.trackArtists[i], record.trackArtists[0], kTextSize)) return 0;
    }
    return 1;
}

void DeriveDiscArtist(CDInfoRecord* record) {
    CopyText(record->discArtist,
             IsSingleArtist(*record) ? record->trackArtists[0] : kVariousArtists);
}

void DeriveTrackSeconds(CDInfoRecord* record) {
    for (size_t i = 0; i < TrackCountOf(*record); ++i) {
        const uint32_t from = record->trackStarts[i];
        const uint32_t to = record->trackStarts[i + 1];
        const uint32_t seconds = to > from ? (to - from) / kFramesPerSecond : 0;
        record->trackSeconds[i] = static_cast<uint16_t>(std::min<uint32_t>(seconds, UINT16_MAX));
    }
}

void DeriveTotalTime(CDInfoRecord* record) {
    uint32_t total = 0;
    for (size_t i = 0; i < TrackCountOf(*record); ++i)
        total += record->trackSeconds[i];
    record->totalMinutes = static_cast<uint16_t>(std::min<uint32_t>(total / 60, UINT16_MAX));
    record->totalSeconds = static_cast<uint16_t>(total % 60);
}

ProgramSegment WholeTrackSegment(const CDInfoRecord& record, uint32_t track) {
    const uint32_t seconds = track >= 1 && track <= kMaxTracks ? record.trackSeconds[track - 1] : 0;
    // Frame 1, not 0: a program whose first position packs to no time at all reads as "from the
    // start".
    return {MakeTmsf(track, 0, 0, 1), MakeTmsf(track, seconds / 60, seconds % 60, 0)};
}

void DefaultProgram(CDInfoRecord* record) {
    record->programCount = static_cast<uint16_t>(TrackCountOf(*record));
    for (uint32_t track = 1; track <= record->programCount; ++track)
        record->program[track - 1] = WholeTrackSegment(*record, track);
}

int IsPlaceholderTitle(const char* title) {
    return SameText(title, kDataDiscTitle) || SameText(title, kDoorOpenTitle);
}

int IsNothingToStore(const CDInfoRecord& record) {
    return IsPlaceholderTitle(record.title) || record.trackCount == 0 ||
           (!record.title[0] && !record.trackArtists[0][0]);
}

void TrimText(char* text, size_t size) {
    if (!size) return;
    text[size - 1] = 0;
    size_t length = std::strlen(text);
    size_t blanks = 0;
    while (text[blanks] == ' ')
        ++blanks;
    length -= blanks;
    std::memmove(text, text + blanks, length);
    while (length && text[length - 1] == ' ')
        --length;
    text[length] = 0;
}
