// The disc in the drive: what was read from the device becomes the disc's part of the record.
#pragma once
#include <cstdint>

#include "cdinfo/record.h"

constexpr char kInsertDiscArtist[] = "Insert Audio CD"; // shown where no disc's artist can be
constexpr size_t kIdentityTextSize = 17;                // of the device's media identity

// As read, in the order of reading; what could not be read is 0.
struct TocReading {
    uint32_t mode = 0;       // CdDeviceMode
    uint32_t trackCount = 0; // as the device says, any number
    Msf starts[kMaxTracks] = {};
    Msf lastLength = 0;
    char identity[kIdentityTextSize] = {};
    uint32_t tracksAgain = 0; // the count, asked for as a track's item
    int firstIsAudio = 0;     // type of track 1
};

enum DiscKind { kDiscNone, kDiscAudio, kDiscData };

// Track count (at most 100), starts with the lead-out, track lengths, identity. The rest of the
// record stays.
void ApplyToc(const TocReading& reading, CDInfoRecord* record);
DiscKind KindOfDisc(const TocReading& reading);
// The texts that stand for an open door or a data disc; track and program count become 0.
void SetNoDiscTexts(CDInfoRecord* record, DiscKind kind);

// Decimal text to number as the C library's strtol reads it where a long has 32 bits: leading
// blanks, a sign, digits; values out of range become the nearest limit; no digits give 0.
int32_t ParseIdentity(const char* text);

// What somebody typed, onto the record of the same disc as read from the drive: texts, comments,
// program and revision. Identity and timing stay.
void TakeEdits(CDInfoRecord* record, const CDInfoRecord& edited);
