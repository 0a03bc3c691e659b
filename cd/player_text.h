// What the CD player window shows and decides: texts, paging, tooltips, the segment repeater and
// the pie, as functions of the disc record and of the numbers that the engine gave.
#pragma once
#include <cstddef>
#include <cstdint>

#include "cdinfo/record.h"

// ---- texts
// "[%d] %02d:%02d / %02d:%02d": track, elapsed and length; both in seconds.
void TrackTimeText(char* text, size_t size, uint32_t track, uint32_t elapsed, uint32_t length);
// "%02d:%02d" of seconds.
void MinuteText(char* text, size_t size, uint32_t seconds);
// "%c: %02d:%02d", or "%c:" when nothing is in the drive (total 0).
void DriveTimeText(char* text, size_t size, char drive, uint32_t total);

// The record index (from 0) of the track that plays. The track number may not fit the record: the
// engine tells them in two answers. Any numbers give an index within the record's arrays.
size_t PlayingIndex(uint16_t currentTrack, uint16_t trackCount);

// The three titles of the display. Pointers into the record or to constant texts.
struct PlayerTitles {
    const char* disc;
    const char* artist;
    const char* track;
};
PlayerTitles TitlesShown(const CDInfoRecord& record, int busy, uint16_t currentTrack);

// Titles of the tracks before and after the current one, round the ends of the disc; null when
// nothing plays, where the buttons' own tooltips hold.
const char* BackTip(const CDInfoRecord& record, int busy, uint16_t currentTrack);
const char* ForwardTip(const CDInfoRecord& record, int busy, uint16_t currentTrack);

// A menu reads "&" as a mark for the next letter; doubled it is shown. Control characters, a tab
// above all, would move the text: they become blanks.
void MenuText(char* text, size_t size, const char* title);

// ---- the page of track buttons: button k (from 1) stands for track offset + k
// The offset that a refresh keeps, or 0 when the page would lie too far beyond the disc's end.
uint16_t KeptPage(uint16_t offset, uint16_t trackCount);
int TrackButtonEnabled(int button, uint16_t offset, uint16_t trackCount);
int PreviousPageEnabled(uint16_t offset);
int NextPageEnabled(uint16_t offset, uint16_t trackCount);
// The button (1 to 20) of the track, or 0 when it lies on another page.
int ButtonOfTrack(uint16_t track, uint16_t offset);

// ---- segment repeater
constexpr Tmsf kNoSegmentStart = 0xFFFFFFFF;
// Where a press or a release of the repeater stands on the disc.
Tmsf SegmentPoint(uint16_t track, uint32_t elapsed);
// Fills the segment from start to end: 1 when it is one to play, 0 without a start, for a stretch
// of no length and for one that reaches into another track.
int RecordedSegment(Tmsf start, Tmsf end, ProgramSegment* segment);

// ---- pie: how far the disc or program has played
// Degrees clockwise from the top, 0 to 360.
int PieDegrees(uint32_t elapsed, uint32_t total);
