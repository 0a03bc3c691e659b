// A disc's play program: entries (segments) that stand for whole tracks or for stretches of one.
//
// An entry whose start has a frames byte other than zero stands for the whole track, however long
// the record says that the track is; any other entry plays from its start to its stop. Entries come
// from files, so their tracks, minutes and seconds may be anything.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>

#include "cdinfo/record.h"

// Longest text of an entry with its NUL: a title and a time.
constexpr size_t kSegmentTextSize = 96;
// A position's minutes are one byte.
constexpr uint32_t kMaxMinute = 255;

int IsWholeTrack(const ProgramSegment& segment);

// Playing time from start to stop. A whole-track start gives its track's length (0 for a track that
// the disc does not have); a stretch that spans tracks, or ends before it starts, counts 0.
uint32_t SegmentSeconds(const CDInfoRecord& record, Tmsf start, Tmsf stop);

// Sum over the program.
uint32_t ProgramSeconds(const CDInfoRecord& record);

// "TITLE (mm:ss)" for a whole track, "T001:M000:S010 - T001:M000:S050   (00:40)" for a stretch.
// Returns the text's length. kSegmentTextSize always suffices.
int SegmentText(const CDInfoRecord& record, const ProgramSegment& segment, char* text, size_t size);

// ---- editing

// A stretch of one track as somebody typed it.
struct Stretch {
    uint32_t track = 0; // 1-based
    uint32_t fromMinute = 0;
    uint32_t fromSecond = 0;
    uint32_t toMinute = 0;
    uint32_t toSecond = 0;
};

enum StretchCheck {
    kStretchGood,
    kStretchNoTrack,   // the disc has no such track
    kStretchBadSecond, // seconds above 59
    kStretchPastTrack, // the end lies behind the track's
    kStretchEmpty,     // the end does not lie behind the start
};

// Only a good stretch fills *segment.
StretchCheck MakeStretch(const CDInfoRecord& record, const Stretch& stretch,
                         ProgramSegment* segment);

// 0 when the program is full.
int AddSegment(CDInfoRecord* record, const ProgramSegment& segment);

// Adds the tracks (1-based) as whole ones as long as there is room; returns how many.
int AddWholeTracks(CDInfoRecord* record, const uint32_t* tracks, size_t count);

// Which entries are chosen, by index.
using SegmentMarks = std::array<uint8_t, kMaxSegments>;

// Moves the marked entries one place up (step -1) or down (+1); the marks go with them. Entries
// that stand at the edge stay, so a block never changes its inner order. 1 when anything moved.
int MoveSegments(CDInfoRecord* record, SegmentMarks* marks, int step);

// Returns how many were removed.
int RemoveSegments(CDInfoRecord* record, const SegmentMarks& marks);

void ClearProgram(CDInfoRecord* record);
