// The index of the database: which entry holds the information of which disc.
#pragma once
#include <cstdint>
#include <span>
#include <vector>

struct IndexPair {
    uint32_t disc = 0;  // identity of a disc in the drive
    uint32_t entry = 0; // names the stream that holds its texts
    bool operator==(const IndexPair&) const = default;
};

constexpr size_t kIndexPairSize = 8;

constexpr size_t kEntryNameSize = 9; // "%08X" and the NUL
constexpr char kIndexName[] = "Mappings";

// Bytes behind the last whole pair are dropped.
std::vector<IndexPair> ParseIndex(std::span<const uint8_t> bytes);
std::vector<uint8_t> PackIndex(std::span<const IndexPair> pairs);

// The first pair of that disc, or null.
const IndexPair* FindPair(std::span<const IndexPair> pairs, uint32_t disc);

void EntryName(uint32_t entry, char (&name)[kEntryNameSize]);
// 1 when a stream's name is an entry's: eight hexadecimal digits and a NUL.
int ParseEntryName(const char16_t* name, uint32_t* entry);

// Puts identities into an order without a trend. Names that ascend make the platform's directory
// a list instead of a tree, in which finding a stream costs a walk over all before it.
void ScatterOrder(std::vector<uint32_t>* identities);
