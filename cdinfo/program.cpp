// Text, length and editing of a play program. See program.h.
#include "cdinfo/program.h"

#include <algorithm>
#include <utility>

#include "core/text.h"

static size_t SegmentCountOf(const CDInfoRecord& record) {
    return std::min<size_t>(record.programCount, kMaxSegments);
}

static uint32_t TrackSecondsOf(const CDInfoRecord& record, uint32_t track) {
    const size_t count = std::min<size_t>(record.trackCount, kMaxTracks);
    return track >= 1 && track <= count ? record.trackSeconds[track - 1] : 0;
}

int IsWholeTrack(const ProgramSegment& segment) {
    return TmsfFrame(segment.start) != 0;
}

uint32_t SegmentSeconds(const CDInfoRecord& record, Tmsf start, Tmsf stop) {
    if (TmsfFrame(start) != 0) return TrackSecondsOf(record, TmsfTrack(start));
    if (TmsfTrack(start) != TmsfTrack(stop)) return 0;
    const uint32_t from = TmsfSeconds(start);
    const uint32_t to = TmsfSeconds(stop);
    return to > from ? to - from : 0;
}

uint32_t ProgramSeconds(const CDInfoRecord& record) {
    uint32_t total = 0;
    for (size_t i = 0; i < SegmentCountOf(record); ++i)
        total += SegmentSeconds(record, record.program[i].start, record.program[i].stop);
    return total;
}

static int WholeTrackText(const CDInfoRecord& record, uint32_t track, char* text, size_t size) {
    char title[kTextSize] = "";
    if (track >= 1 && track <= kMaxTracks)
        CopyText(title, record.trackTitles[track - 1]);
    else
        DefaultTrackTitle(title, track);
    const uint32_t seconds = TrackSecondsOf(record, track);
    return FormatText(text, size, "%s (%02u:%02u)", title, static_cast<unsigned>(seconds / 60),
                      static_cast<unsigned>(seconds % 60));
}

int SegmentText(const CDInfoRecord& record, const ProgramSegment& segment, char* text,
                size_t size) {
    const Tmsf a = segment.start;
    const Tmsf b = segment.stop;
    if (IsWholeTrack(segment)) return WholeTrackText(record, TmsfTrack(a), text, size);
    const uint32_t seconds = SegmentSeconds(record, a, b);
    return FormatText(text, size, "T%03u:M%03u:S%03u - T%03u:M%03u:S%03u   (%02u:%02u)",
                      static_cast<unsigned>(TmsfTrack(a)), static_cast<unsigned>(TmsfMinute(a)),
                      static_cast<unsigned>(TmsfSecond(a)), static_cast<unsigned>(TmsfTrack(b)),
                      static_cast<unsigned>(TmsfMinute(b)), static_cast<unsigned>(TmsfSecond(b)),
                      static_cast<unsigned>(seconds / 60), static_cast<unsigned>(seconds % 60));
}

StretchCheck MakeStretch(const CDInfoRecord& record, const Stretch& stretch,
                         ProgramSegment* segment) {
    if (stretch.track < 1 || stretch.track > std::min<size_t>(record.trackCount, kMaxTracks))
        return kStretchNoTrack;
    if (stretch.fromSecond > 59 || stretch.toSecond > 59) return kStretchBadSecond;
    // Minutes first, so that huge numbers cannot wrap in the sums below.
    if (stretch.toMinute > kMaxMinute) return kStretchPastTrack;
    if (stretch.fromMinute > kMaxMinute) return kStretchEmpty;
    const uint32_t from = stretch.fromMinute * 60 + stretch.fromSecond;
    const uint32_t to = stretch.toMinute * 60 + stretch.toSecond;
    if (to > record.trackSeconds[stretch.track - 1]) return kStretchPastTrack;
    if (from >= to) return kStretchEmpty;
    segment->start = MakeTmsf(stretch.track, stretch.fromMinute, stretch.fromSecond, 0);
    segment->stop = MakeTmsf(stretch.track, stretch.toMinute, stretch.toSecond, 0);
    return kStretchGood;
}

int AddSegment(CDInfoRecord* record, const ProgramSegment& segment) {
    const size_t count = SegmentCountOf(*record);
    if (count == kMaxSegments) return 0;
    record->program[count] = segment;
    record->programCount = static_cast<uint16_t>(count + 1);
    return 1;
}

int AddWholeTracks(CDInfoRecord* record, const uint32_t* tracks, size_t count) {
    int added = 0;
    for (size_t i = 0; i < count; ++i)
        added += AddSegment(record, WholeTrackSegment(*record, tracks[i]));
    return added;
}

int MoveSegments(CDInfoRecord* record, SegmentMarks* marks, int step) {
    const size_t count = SegmentCountOf(*record);
    int moved = 0;
    // Walk from the edge that the entries move to, so that each finds its place free.
    for (size_t n = 1; n < count; ++n) {
        const size_t from = step < 0 ? n : count - 1 - n;
        const size_t to = step < 0 ? from - 1 : from + 1;
        if (!(*marks)[from] || (*marks)[to]) continue;
        std::swap(record->program[from], record->program[to]);
        std::swap((*marks)[from], (*marks)[to]);
        moved = 1;
    }
    return moved;
}

int RemoveSegments(CDInfoRecord* record, const SegmentMarks& marks) {
    const size_t count = SegmentCountOf(*record);
    size_t kept = 0;
    for (size_t i = 0; i < count; ++i) {
        if (!marks[i]) record->program[kept++] = record->program[i];
    }
    std::fill(record->program + kept, record->program + count, ProgramSegment{});
    record->programCount = static_cast<uint16_t>(kept);
    return static_cast<int>(count - kept);
}

void ClearProgram(CDInfoRecord* record) {
    std::fill(std::begin(record->program), std::end(record->program), ProgramSegment{});
    record->programCount = 0;
}
