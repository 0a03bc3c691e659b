// The forms in which discs are carried from and to other programs, as bytes and records. Files are
// opened elsewhere (exchange_win.h). Every reader takes hostile bytes.
#pragma once
#include "cdinfo/record.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

enum ExchangeForm {
    kTextForm,      // "*.TXT", export only
    kDelimitedForm, // "*.CSV", export only
    kCdpForm,       // "*.CDP"
    kIniForm,       // CDPlayer.ini
    kCddbForm,      // CDDB disc files: one, or a folder of them
    kCueForm        // CUE sheets' titles
};

// What one disc adds to a text or delimited file. separator: ',' or '\t'.
std::string TextBlock(const CDInfoRecord& record);
std::string DelimitedLines(const CDInfoRecord& record, char separator);
