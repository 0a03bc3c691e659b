// What the forms of other programs share, and how their discs meet those of the database. See
// exchange.h.
#include "archive/exchange.h"

#include "cdinfo/program.h"
#include "core/text.h"
#include "discdrive/disc.h"

#include <algorithm>
#include <cstring>

static size_t TrackCountOf(const CDInfoRecord& record) {
    return std::min<size_t>(record.trackCount, kMaxTracks);
}

// ---- texts

void TakeText(std::string_view text, int utf8, const TextCodec& codec, char* to, size_t size) {
    std::string own = codec.FromFile ? codec.FromFile(text, utf8) : std::string(text);
    for (char& c : own) {
        if (static_cast<uint8_t>(c) < ' ' || c == 0x7F) c = ' ';
    }
    own.erase(0, std::min(own.find_first_not_of(' '), own.size()));
    CopyText(to, size, own.c_str());
    TrimText(to, size);
}

std::string GiveText(const char* text, const TextCodec& codec) {
    std::string given = codec.ToFile ? codec.ToFile(text) : std::string(text);
    for (char& c : given) {
        if (static_cast<uint8_t>(c) < ' ') c = ' ';
    }
    return given;
}

// ---- identity and timing

uint32_t ClassicIdentity(const CDInfoRecord& record) {
    Disc disc;
    const size_t count = TrackCountOf(record);
    for (size_t i = 0; i < count; ++i)
        disc.tracks.push_back({record.trackStarts[i], 0, 1});
    disc.end = record.trackStarts[count];
    return std::min<uint32_t>(DiscIdentity(disc), INT32_MAX);
}

int HasTiming(const CDInfoRecord& record, uint32_t first) {
    const size_t count = TrackCountOf(record);
    if (!count || record.trackStarts[0] < first) return 0;
    for (size_t i = 1; i < count; ++i) {
        if (record.trackStarts[i] <= record.trackStarts[i - 1]) return 0;
    }
    return record.trackStarts[count] >= record.trackStarts[count - 1] &&
           record.trackStarts[count] <= kMaxDiscFrames;
}

// Entries for whole tracks tell their length, which a form without timing did not know.
static void RenewWholeTracks(CDInfoRecord* record) {
    for (size_t i = 0; i < std::min<size_t>(record->programCount, kMaxSegments); ++i) {
        ProgramSegment& segment = record->program[i];
        if (IsWholeTrack(segment)) segment = WholeTrackSegment(*record, TmsfTrack(segment.start));
    }
}

void CompleteRecord(CDInfoRecord* record) {
    DeriveTrackSeconds(record);
    DeriveTotalTime(record);
    DeriveDiscArtist(record);
    if (record->programCount)
        RenewWholeTracks(record);
    else
        DefaultProgram(record);
}

// ---- discs that are there already

static int IsEveryTrack(const CDInfoRecord& record) {
    if (record.programCount != TrackCountOf(record)) return 0;
    for (size_t i = 0; i < record.programCount; ++i) {
        const ProgramSegment& segment = record.program[i];
        if (!IsWholeTrack(segment) || TmsfTrack(segment.start) != i + 1) return 0;
    }
    return 1;
}

static int SaysNothing(const char* text, const char* usual) {
    return !text[0] || SameText(text, usual);
}

template <size_t N> static void Fill(char (&to)[N], const char (&from)[N], const char* usual) {
    if (SaysNothing(to, usual) && !SaysNothing(from, usual)) CopyText(to, from);
}

void FillDefaults(const CDInfoRecord& other, CDInfoRecord* record) {
    Fill(record->title, other.title, kUnknownTitle);
    Fill(record->comment, other.comment, "");
    if (other.trackCount != record->trackCount) return;
    for (size_t i = 0; i < TrackCountOf(*record); ++i) {
        char usual[kTextSize];
        DefaultTrackTitle(usual, static_cast<uint32_t>(i + 1));
        Fill(record->trackArtists[i], other.trackArtists[i], kDefaultArtist);
        Fill(record->trackTitles[i], other.trackTitles[i], usual);
        Fill(record->trackComments[i], other.trackComments[i], "");
    }
    DeriveDiscArtist(record);
}

static void TakeProgram(const CDInfoRecord& from, CDInfoRecord* to) {
    std::memcpy(to->program, from.program, sizeof to->program);
    to->programCount = from.programCount;
}

// CDPlayer.ini is written with the disc's artist alone: where that one stands for all tracks,
// theirs were not carried.
static void KeepArtists(const CDInfoRecord& stored, CDInfoRecord* record) {
    if (!IsSingleArtist(*record) || !SameText(record->trackArtists[0], stored.discArtist)) return;
    std::memcpy(record->trackArtists, stored.trackArtists, sizeof record->trackArtists);
    DeriveDiscArtist(record);
}

// The stored lead-out is the more exact one when the others are the same: a disc's length in whole
// seconds is all that most files tell.
static void KeepTiming(const CDInfoRecord& stored, CDInfoRecord* record) {
    const size_t count = TrackCountOf(*record);
    if (!HasTiming(stored, 0)) return;
    const int isKnown = HasTiming(*record, 0);
    const int isSame =
        !std::memcmp(stored.trackStarts, record->trackStarts, count * sizeof(uint32_t));
    if (isKnown && !isSame) return;
    std::memcpy(record->trackStarts, stored.trackStarts, sizeof record->trackStarts);
    CompleteRecord(record);
}

void KeepUncarried(ExchangeForm form, const CDInfoRecord& stored, CDInfoRecord* record) {
    if (form == kCdpForm) return;
    record->revision = std::max(record->revision, stored.revision);
    if (form == kIniForm && stored.trackCount == record->trackCount) KeepArtists(stored, record);
    FillDefaults(stored, record);
    if (stored.trackCount != record->trackCount) return;
    KeepTiming(stored, record);
    if (!record->programCount || IsEveryTrack(*record)) TakeProgram(stored, record);
}

void AddUnknown(const CDInfoRecord& other, CDInfoRecord* stored) {
    FillDefaults(other, stored);
    if (other.trackCount != stored->trackCount) return;
    if (!HasTiming(*stored, 0)) KeepTiming(other, stored);
    if (IsEveryTrack(*stored) && other.programCount) {
        TakeProgram(other, stored);
        RenewWholeTracks(stored);
    }
}
