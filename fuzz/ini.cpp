// Sections of CDPlayer.ini: any lines give a record within its bounds, and what is written of it
// reads back with the same texts.
#include "archive/ini.h"

#include <cstdlib>
#include <cstring>
#include <memory>

static std::unique_ptr<CDInfoRecord> Read(const IniLines& lines) {
    auto record = std::make_unique<CDInfoRecord>();
    SetIdentity(record.get(), 0xC0FFEE);
    ReadIniDisc(lines, record.get());
    if (record->trackCount > kMaxTracks || record->programCount > kMaxSegments) abort();
    if (!std::memchr(record->title, 0, kTextSize)) abort();
    return record;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view block(reinterpret_cast<const char*>(data), size);
    uint32_t identity;
    ParseIniName(block, &identity);
    const IniLines lines = ParseIniSection(block);
    const auto record = Read(lines);
    const std::string section = FormatIniSection(WriteIniDisc(*record, {}));
    const auto again = Read(ParseIniSection(section));
    if (again->trackCount != record->trackCount) abort();
    // Line ends in a text are blanks afterwards.
    for (const char* at = record->title; *at; ++at) {
        if (*at == '\r' || *at == '\n') return 0;
    }
    if (std::strcmp(again->title, record->title)) abort();
    FormatIniSection(WriteIniDisc(*record, lines));
    return 0;
}
