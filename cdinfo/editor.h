// Editing a disc's record: texts with their limits, one artist for all tracks, the walk from cell
// to cell of the track list, and what becomes of the record at the end. The program's entries are
// edited by program.h.
#pragma once
#include <cstddef>

#include "cdinfo/record.h"

// The texts of a track, in the order in which they stand in a row.
enum TrackField { kTrackArtist, kTrackTitle, kTrackComment };
constexpr int kTrackFields = 3;

// Characters that may be typed. A comment has one less than fits, or it would be stored as empty;
// a longer one that is there already stays as long as it is not edited.
size_t TrackFieldLimit(TrackField field);
constexpr size_t kDiscTitleLimit = kTextSize - 1;
constexpr size_t kDiscCommentLimit = kMaxStoredComment;

// `track` counts from 0. "" for a track that the record does not have.
const char* TrackFieldText(const CDInfoRecord& record, size_t track, TrackField field);

// Stores a text, cut at its limit and trimmed as reading it back would. With sameArtist an artist
// goes to all tracks. 1 when the record changed.
int SetTrackField(CDInfoRecord* record, size_t track, TrackField field, const char* text,
                  int sameArtist);
int SetAllArtists(CDInfoRecord* record, const char* artist);
int SetDiscTitle(CDInfoRecord* record, const char* title);
int SetDiscComment(CDInfoRecord* record, const char* comment);

// ---- cells of the track list

struct TrackCell {
    size_t track = 0; // from 0
    TrackField field = kTrackTitle;
};
enum CellStep { kCellNext, kCellPrevious, kCellDown, kCellUp };

// Next and previous go on in the neighbouring row at a row's end. 0 when the list ends there; the
// cell stays then.
int StepCell(TrackCell* cell, CellStep step, size_t trackCount);

// ---- the end

// 1 when texts or program differ. Tracks and entries beyond the counts do not matter.
int IsEdited(const CDInfoRecord& before, const CDInfoRecord& after);

// 1 when the record fits into a database entry.
int FitsEntry(const CDInfoRecord& record);

// Drops the last tracks' comments until the record fits: what is left to do when nobody can be
// asked any more.
void ShrinkToFit(CDInfoRecord* record);

// Takes an edited copy over. A program that was emptied becomes the one that reading the record
// back would give (every track), artist of the disc and revision (which wraps) follow. 0 when
// nothing was edited: *record is untouched.
int TakeEdited(CDInfoRecord* record, const CDInfoRecord& edited);
// What an edit changed between two forms of a disc's record, onto what somebody else has made of
// the disc meanwhile: fields that only one of them touched stand as he left them.
void MergeEdit(const CDInfoRecord& before, const CDInfoRecord& after, CDInfoRecord* now);
