// The table of contents. See toc.h.
#include "cd/toc.h"

#include <algorithm>
#include <cstring>

#include "cd/engine_state.h"
#include "core/text.h"

void ApplyToc(const TocReading& reading, CDInfoRecord* record) {
    const uint32_t count = std::min<uint32_t>(reading.trackCount, kMaxTracks);
    record->trackCount = static_cast<uint16_t>(count);
    for (uint32_t i = 0; i < count; ++i)
        record->trackStarts[i] = MsfToFrames(reading.starts[i]);
    if (count)
        record->trackStarts[count] =
            record->trackStarts[count - 1] + MsfToFrames(reading.lastLength);
    DeriveTrackSeconds(record);
    DeriveTotalTime(record);
    SetIdentity(record, static_cast<uint32_t>(ParseIdentity(reading.identity)));
}

DiscKind KindOfDisc(const TocReading& reading) {
    if (reading.mode == kModeOpen) return kDiscNone;
    const int audio =
        reading.tracksAgain >= 2 || (reading.tracksAgain == 1 && reading.firstIsAudio);
    return audio ? kDiscAudio : kDiscData;
}

void SetNoDiscTexts(CDInfoRecord* record, DiscKind kind) {
    CopyText(record->title, kind == kDiscData ? kDataDiscTitle : kDoorOpenTitle);
    CopyText(record->trackArtists[0], kInsertDiscArtist);
    record->trackTitles[0][0] = 0;
    record->comment[0] = 0;
    record->trackComments[0][0] = 0;
    record->trackCount = 0;
    record->programCount = 0;
}

int32_t ParseIdentity(const char* text) {
    while (*text == ' ' || (*text >= '\t' && *text <= '\r'))
        ++text;
    const int negative = *text == '-';
    if (*text == '-' || *text == '+') ++text;
    int64_t value = 0;
    for (; *text >= '0' && *text <= '9'; ++text)
        value = std::min<int64_t>(value * 10 + (*text - '0'), int64_t{INT32_MAX} + 1);
    if (negative) return static_cast<int32_t>(-value);
    return static_cast<int32_t>(std::min<int64_t>(value, INT32_MAX));
}

void TakeEdits(CDInfoRecord* record, const CDInfoRecord& edited) {
    record->revision = edited.revision;
    CopyText(record->title, edited.title);
    CopyText(record->comment, edited.comment);
    std::memcpy(record->trackArtists, edited.trackArtists, sizeof record->trackArtists);
    std::memcpy(record->trackTitles, edited.trackTitles, sizeof record->trackTitles);
    std::memcpy(record->trackComments, edited.trackComments, sizeof record->trackComments);
    std::memcpy(record->program, edited.program, sizeof record->program);
    record->programCount = std::min<uint16_t>(edited.programCount, kMaxSegments);
    DeriveDiscArtist(record);
}
