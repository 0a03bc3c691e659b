// What the system knows about one audio disc: texts, timing and play program in one record of
// fixed size, and the byte string that stands for it in the database (the packed entry).
//
// Texts are NUL-terminated single-byte characters; an array's size counts the NUL. Tracks are
// numbered from 0 in the arrays and from 1 in positions, titles and functions' `track` arguments.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/tmsf.h"

constexpr size_t kMaxTracks = 100;
constexpr size_t kMaxSegments = 100;
constexpr size_t kMaxPackedEntry = 39671; // bytes, header included
constexpr size_t kTextSize = 64;          // titles and artists: 63 characters and the NUL
constexpr size_t kCommentSize = 256;
// One character less than a comment's buffer holds: a comment of 255 is stored as an empty one.
constexpr size_t kMaxStoredComment = 254;

// The same texts as string resources 128, 129, 130 and 134; logic cannot load those.
constexpr char kUnknownTitle[] = "Unknown CD Title";
constexpr char kDefaultArtist[] = "Artist";
constexpr char kTrackTitleFormat[] = "Track %d"; // 1-based track number
constexpr char kVariousArtists[] = "Various";
// Titles that the engine shows while no audio disc is in the drive; such records are not stored.
constexpr char kDataDiscTitle[] = "Data CD in Drive";
constexpr char kDoorOpenTitle[] = "Drive Door is Open";

struct ProgramSegment {
    Tmsf start = 0; // positions within the track
    Tmsf stop = 0;
};

struct CDInfoRecord {
    uint32_t identity = 0;      // media identity as the CD audio device reports it; 0: none
    char identityText[16] = {}; // "%08X" of it
    uint16_t revision = 0;      // raised at each edit
    uint16_t trackCount = 0;    // 0..100
    uint16_t trackSeconds[kMaxTracks] = {};
    uint32_t trackStarts[kMaxTracks + 1] = {}; // CD frames; [trackCount] is the lead-out
    ProgramSegment program[kMaxSegments] = {};
    uint16_t programCount = 0; // 0..100
    char title[kTextSize] = {};
    char comment[kCommentSize] = {};
    char trackArtists[kMaxTracks][kTextSize] = {};
    char trackTitles[kMaxTracks][kTextSize] = {};
    char trackComments[kMaxTracks][kCommentSize] = {};
    char discArtist[kTextSize] = {}; // derived: the common artist, or "Various"
    uint16_t totalMinutes = 0;       // derived: playing time
    uint16_t totalSeconds = 0;
    uint32_t device = 0; // MCI device id of the open drive; in memory only, never stored
};

// ---- packed entry

// Zero-fills the buffer, writes the packed entry and its length: 1. A record with more than 100
// tracks or segments, or one that would not fit, gives 0, a zero-filled buffer and *length 0.
int PackRecord(const CDInfoRecord& record, uint8_t (&buffer)[kMaxPackedEntry], size_t* length);

// Reads any bytes into a record that the caller zeroed, or filled with the identity and the track
// data of the disc in the drive (a track count and track starts that are there already are kept).
// 0 when the bytes end before the track count or the count exceeds 100; the record may be partly
// changed then. An entry that is cut off gives 1 and what could be read: texts, comments, revision
// and starts that are not whole keep what the record held.
int UnpackEntry(std::span<const uint8_t> entry, CDInfoRecord* record);

// ---- defaults and derived fields

// Texts, program (none) and revision of an unknown disc, in all 100 track slots. Identity, track
// count, timing and the device stay.
void ApplyDefaults(CDInfoRecord* record);

// Identity and its text form.
void SetIdentity(CDInfoRecord* record, uint32_t identity);

// 1 when the record has fewer than two tracks or every artist equals track 1's (case counts).
int IsSingleArtist(const CDInfoRecord& record);
void DeriveDiscArtist(CDInfoRecord* record);

// Track seconds from the track starts (0 where the starts descend), and the total from them.
void DeriveTrackSeconds(CDInfoRecord* record);
void DeriveTotalTime(CDInfoRecord* record);

// The segment that plays track `track` (1-based) from its first sound to its length in seconds.
ProgramSegment WholeTrackSegment(const CDInfoRecord& record, uint32_t track);

// One whole-track segment per track, in track order.
void DefaultProgram(CDInfoRecord* record);

// 1 when the title is one of the texts that stand for "no audio disc", in any case.
int IsPlaceholderTitle(const char* title);

// 1 when a record carries nothing worth storing: a placeholder title, neither title nor an artist
// of track 1, or no tracks.
int IsNothingToStore(const CDInfoRecord& record);

// Removes leading blanks by shifting and trailing blanks by cutting. `size` is the buffer's.
void TrimText(char* text, size_t size);

// "Track %d" of the 1-based number into a title's buffer.
void DefaultTrackTitle(char (&title)[kTextSize], uint32_t track);
