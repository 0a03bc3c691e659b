// Editing of a disc's texts. See editor.h.
#include "cdinfo/editor.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "core/text.h"

struct FieldBuffer {
    char* text;
    size_t size;
};

static size_t TrackCountOf(const CDInfoRecord& record) {
    return std::min<size_t>(record.trackCount, kMaxTracks);
}

static FieldBuffer BufferOf(CDInfoRecord* record, size_t track, TrackField field) {
    switch (field) {
    case kTrackArtist: return {record->trackArtists[track], kTextSize};
    case kTrackTitle: return {record->trackTitles[track], kTextSize};
    default: return {record->trackComments[track], kCommentSize};
    }
}

size_t TrackFieldLimit(TrackField field) {
    return field == kTrackComment ? kMaxStoredComment : kTextSize - 1;
}

const char* TrackFieldText(const CDInfoRecord& record, size_t track, TrackField field) {
    if (track >= TrackCountOf(record)) return "";
    switch (field) {
    case kTrackArtist: return record.trackArtists[track];
    case kTrackTitle: return record.trackTitles[track];
    default: return record.trackComments[track];
    }
}

// A text that is handed in as it stands is no edit, even where it is longer than may be typed or
// has blanks around it.
static int SetField(char* to, size_t limit, const char* text) {
    if (!std::strcmp(to, text)) return 0;
    char kept[kCommentSize];
    CopyText(kept, limit + 1, text);
    TrimText(kept, sizeof kept);
    if (!std::strcmp(to, kept)) return 0;
    CopyText(to, limit + 1, kept);
    return 1;
}

int SetAllArtists(CDInfoRecord* record, const char* artist) {
    char kept[kTextSize]; // the text may be one of those that change
    CopyText(kept, artist);
    int changed = 0;
    for (size_t i = 0; i < TrackCountOf(*record); ++i)
        changed |= SetField(record->trackArtists[i], kTextSize - 1, kept);
    return changed;
}

int SetTrackField(CDInfoRecord* record, size_t track, TrackField field, const char* text,
                  int sameArtist) {
    if (track >= TrackCountOf(*record)) return 0;
    if (field == kTrackArtist && sameArtist) return SetAllArtists(record, text);
    return SetField(BufferOf(record, track, field).text, TrackFieldLimit(field), text);
}

int SetDiscTitle(CDInfoRecord* record, const char* title) {
    return SetField(record->title, kDiscTitleLimit, title);
}

int SetDiscComment(CDInfoRecord* record, const char* comment) {
    return SetField(record->comment, kDiscCommentLimit, comment);
}

int StepCell(TrackCell* cell, CellStep step, size_t trackCount) {
    const int rowStep = step == kCellDown || step == kCellUp;
    const long long places = rowStep ? kTrackFields : 1;
    const long long sign = step == kCellNext || step == kCellDown ? 1 : -1;
    const long long from = static_cast<long long>(cell->track) * kTrackFields + cell->field;
    const long long to = from + sign * places;
    if (to < 0 || to >= static_cast<long long>(trackCount) * kTrackFields) return 0;
    cell->track = static_cast<size_t>(to / kTrackFields);
    cell->field = static_cast<TrackField>(to % kTrackFields);
    return 1;
}

int IsEdited(const CDInfoRecord& before, const CDInfoRecord& after) {
    if (std::strcmp(before.title, after.title) || std::strcmp(before.comment, after.comment))
        return 1;
    for (size_t i = 0; i < TrackCountOf(after); ++i) {
        if (std::strcmp(before.trackArtists[i], after.trackArtists[i]) ||
            std::strcmp(before.trackTitles[i], after.trackTitles[i]) ||
            std::strcmp(before.trackComments[i], after.trackComments[i]))
            return 1;
    }
    if (before.programCount != after.programCount) return 1;
    const size_t count = std::min<size_t>(after.programCount, kMaxSegments);
    return std::memcmp(before.program, after.program, count * sizeof before.program[0]) != 0;
}

int FitsEntry(const CDInfoRecord& record) {
    struct Entry {
        uint8_t bytes[kMaxPackedEntry];
    };
    const auto entry = std::make_unique<Entry>();
    size_t length = 0;
    return PackRecord(record, entry->bytes, &length);
}

void ShrinkToFit(CDInfoRecord* record) {
    for (size_t i = TrackCountOf(*record); i > 0 && !FitsEntry(*record); --i)
        record->trackComments[i - 1][0] = 0;
}

int TakeEdited(CDInfoRecord* record, const CDInfoRecord& edited) {
    const auto taken = std::make_unique<CDInfoRecord>(edited);
    // Before the comparison: emptying a program of all tracks changes nothing in the end.
    if (record->programCount && !taken->programCount) DefaultProgram(taken.get());
    if (!IsEdited(*record, *taken)) return 0;
    DeriveDiscArtist(taken.get());
    ++taken->revision;
    *record = *taken;
    return 1;
}

static void MergeText(const char* before, const char* after, char* now, size_t size) {
    if (std::strcmp(before, after)) CopyText(now, size, after);
}

static int IsSameProgram(const CDInfoRecord& a, const CDInfoRecord& b) {
    return a.programCount == b.programCount && !std::memcmp(a.program, b.program, sizeof a.program);
}

void MergeEdit(const CDInfoRecord& before, const CDInfoRecord& after, CDInfoRecord* now) {
    if (now->trackCount != before.trackCount || after.trackCount != before.trackCount) {
        *now = after; // tracks that can't be told apart
        return;
    }
    MergeText(before.title, after.title, now->title, kTextSize);
    MergeText(before.comment, after.comment, now->comment, kCommentSize);
    for (size_t i = 0; i < TrackCountOf(after); ++i) {
        MergeText(before.trackArtists[i], after.trackArtists[i], now->trackArtists[i], kTextSize);
        MergeText(before.trackTitles[i], after.trackTitles[i], now->trackTitles[i], kTextSize);
        MergeText(before.trackComments[i], after.trackComments[i], now->trackComments[i],
                  kCommentSize);
    }
    if (!IsSameProgram(before, after)) {
        std::memcpy(now->program, after.program, sizeof now->program);
        now->programCount = after.programCount;
    }
    now->revision = static_cast<uint16_t>(now->revision + after.revision - before.revision);
    DeriveDiscArtist(now);
}
