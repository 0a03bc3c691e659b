// Discs on the clipboard, as the format "CDP_Info": a versioned, length-checked form of packed
// entries. What other programs may have left there under that name is refused as a whole.
#pragma once
#include "cdinfo/record.h"

#include <cstdint>
#include <span>
#include <vector>

constexpr const char* kClipboardFormat = "CDP_Info";

// Appends a disc to a block that was empty or made by this function; 0 when it can't be packed.
int AppendToClipboardBlock(const CDInfoRecord& record, std::vector<uint8_t>* block);
// All discs of a block, or 0 and none for anything that is not whole and sound. The block may be
// longer than what was written (memory comes in steps).
int ReadClipboardBlock(std::span<const uint8_t> block, std::vector<CDInfoRecord>* records);
