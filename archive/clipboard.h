// Discs as one block of memory: a versioned, length-checked form of packed entries. It is what
// stands on the clipboard as "CDP_Info", where other programs may have left anything under that
// name, and how many discs go from one thread to another (a record of its own for each would not
// fit into memory).
#pragma once
#include "cdinfo/record.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

constexpr const char* kClipboardFormat = "CDP_Info";

// Appends a disc to a block that was empty or made by this function; 0 when it can't be packed or
// the block would become too large. What an entry of the database can't hold is lost here, too.
int AppendToDiscBlock(const CDInfoRecord& record, std::vector<uint8_t>* block);

// Walks through a block.
struct DiscBlockReader {
    std::span<const uint8_t> entries; // those to come
    size_t left = 0;
};
// Looks at the whole block first: 1 when it is whole and sound and holds at least one disc, else 0
// and none. It may be longer than what was written (clipboard memory comes in steps). The bytes
// must outlive the reader.
int OpenDiscBlock(std::span<const uint8_t> block, DiscBlockReader* reader);
// The next disc, or 0 at the end.
int NextInDiscBlock(DiscBlockReader* reader, CDInfoRecord* record);
