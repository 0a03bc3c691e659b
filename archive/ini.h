// A disc as Windows' own CD player keeps it: one section of CDPlayer.ini, or a registry key whose
// string values are the same. What is read and written is lines; the platform's profile functions
// and the registry bring them.
#pragma once
#include "cdinfo/record.h"

#include <string>
#include <string_view>
#include <vector>

struct IniLine {
    std::string key, value;
    int hasValue = 1; // 0: a line without "=", kept as it stands
};
using IniLines = std::vector<IniLine>;

// Cuts what the platform gives as a section ("key=value", each ended by a NUL, a second NUL at the
// end) into lines. Blanks around key and value go, and one pair of quotes around a value.
IniLines ParseIniSection(std::string_view block);

// The value of the first line with that key (case ignored), or the fallback.
std::string_view IniValue(const IniLines& lines, const char* key, std::string_view fallback);

// "%X" of an identity: 1 to 8 hexadecimal digits. 0 for sections that are no disc's.
int ParseIniName(std::string_view name, uint32_t* identity);
std::string IniName(uint32_t identity);

// Fills the record, which the caller zeroed but for the identity text: that is where the identity
// comes from when it is not empty. Never fails; a section that says nothing gives a disc without
// tracks. All 100 slots of texts are filled.
void ReadIniDisc(const IniLines& lines, CDInfoRecord* record);

// The section of a disc: lines that were there before and are not ours stay. Empty for identity 0,
// of which nothing is written.
IniLines WriteIniDisc(const CDInfoRecord& record, const IniLines& before);
// As the platform takes a section: the reverse of ParseIniSection, with quotes where a value would
// lose its own or its blanks.
std::string FormatIniSection(const IniLines& lines);
