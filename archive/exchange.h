// The forms in which discs are carried from and to other programs, as bytes and records. Files are
// opened elsewhere (exchange_win.h). Every reader takes hostile bytes.
#pragma once
#include "cdinfo/record.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

enum ExchangeForm {
    kTextForm,      // "*.TXT", export only
    kDelimitedForm, // "*.CSV", export only
    kCdpForm,       // "*.CDP"
    kIniForm,       // CDPlayer.ini
    kCddbForm,      // CDDB disc files: one, or a folder of them
    kCueForm        // CUE sheets' titles
};

// ---- text and delimited: what one disc adds to the file. separator: ',' or '\t'.
std::string TextBlock(const CDInfoRecord& record);
std::string DelimitedLines(const CDInfoRecord& record, char separator);

// ---- what the forms of other programs share

// Between a file's encoding and the records' one. Null functions: texts pass as they stand.
struct TextCodec {
    std::string (*FromFile)(std::string_view text, int utf8) = nullptr; // utf8 0: single bytes
    std::string (*ToFile)(std::string_view text) = nullptr;             // to UTF-8
};
// Reads into a text of a record: decoded, control characters as blanks, trimmed, cut.
void TakeText(std::string_view text, int utf8, const TextCodec& codec, char* to, size_t size);
std::string GiveText(const char* text, const TextCodec& codec);

// The drive's classic sum over the record's track starts (with the lead-out of discs of fewer than
// three tracks), as the CD engine reads it: at most 2147483647.
uint32_t ClassicIdentity(const CDInfoRecord& record);

// 1 when the starts ascend from `first` on and the lead-out does not lie before the last.
int HasTiming(const CDInfoRecord& record, uint32_t first);
// Track seconds, total, disc artist, and a program of all tracks where there is none.
void CompleteRecord(CDInfoRecord* record);

// ---- discs that are there already

// Wherever the record has a default text and the other one something else, takes that.
void FillDefaults(const CDInfoRecord& other, CDInfoRecord* record);
// What the stored record knew and the form can't carry goes into the one that was read: program,
// comments, lengths, revision; and its texts where the file has none. Nothing for kCdpForm, which
// carries all.
void KeepUncarried(ExchangeForm form, const CDInfoRecord& stored, CDInfoRecord* record);
// The stored record with what only the other one knows: nothing that somebody typed is replaced.
void AddUnknown(const CDInfoRecord& other, CDInfoRecord* stored);
