// CDDB disc files (the text form of xmcd): a head of comments with the track starts, then fields
// "NAME=value", of which several with one name are one value. docs/exchange.md has the details.
#pragma once
#include "archive/exchange.h"

#include <string>
#include <string_view>

// Splits a file that may hold many discs, one behind the other, each begun by "#FILENAME=": gives
// the first disc's text and takes it off *rest. Empty at the end.
std::string_view NextCddbEntry(std::string_view* rest);

// 1 when a text that begins like this (16 bytes suffice) may be such a file.
int IsCddbFile(std::string_view head);

// Fills the record (zeroed by the caller). 0 when it is no such file, tells no track starts, or
// they make no sense; identity 0 is no disc either.
int ReadCddbEntry(std::string_view entry, const TextCodec& codec, CDInfoRecord* record);
std::string WriteCddbEntry(const CDInfoRecord& record, const TextCodec& codec);

// The number by which such files are named, "%08x".
uint32_t CddbDiscId(const CDInfoRecord& record);
