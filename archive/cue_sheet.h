// CUE sheets for their titles. What a sheet's lines are is known to discdrive/cue.h; here they
// become a disc's record, and a record a sheet.
#pragma once
#include "archive/exchange.h"
#include "discdrive/disc.h"

#include <string>
#include <vector>

// What a file beside the sheet holds; nothing known when it is missing or of a foreign kind.
struct CueFileLength {
    ImageFile part;
    int isKnown = 0;
};

// Fills the record (zeroed by the caller) from a sheet that ReadCue took with texts; `lengths` has
// one entry for each of its files. The last file's length may be unknown: then the lead-out is
// where the last track begins, so that this track has no length. 0 when the tracks' starts can't be
// told, or the disc's identity.
int ReadCueDisc(const CueSheet& sheet, const CueTexts& texts,
                std::span<const CueFileLength> lengths, int utf8, const TextCodec& codec,
                CDInfoRecord* record);

// A sheet over one file, `soundFile` (a name without path), which nobody has to have: what counts
// is what it says. A sheet has 99 tracks at most; a 100th is left out.
std::string WriteCueSheet(const CDInfoRecord& record, const std::string& soundFile,
                          const TextCodec& codec);

// The identity that a sheet of ours tells, 0 in others.
uint32_t CueSheetIdentity(const CueTexts& texts);
