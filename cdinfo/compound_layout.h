// Numbers of a compound file's layout, for what checks one and what writes one. A file is a header
// and numbered sectors. The FAT has one word a sector: the next one of its chain, or a mark. The
// FAT's own sectors are listed in the header and, when there are many, in sectors of their own
// (DIFAT). The directory is one chain of 128-byte entries, which form binary trees of siblings;
// streams below 4096 bytes live in 64-byte sectors within the root's stream, with a FAT of their
// own.
#pragma once
#include <cstddef>
#include <cstdint>

constexpr uint8_t kSignature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
constexpr size_t kHeaderSize = 512;
constexpr uint32_t kHeaderFatEntries = 109;
constexpr uint32_t kByteOrder = 0xFFFE;
constexpr uint32_t kSectorShift = 9; // of version 3; version 4 has 12
constexpr uint32_t kMiniShift = 6;
constexpr uint32_t kMiniCutoff = 4096; // streams below it live in the mini stream
constexpr size_t kEntrySize = 128;
constexpr size_t kEntryType = 66;   // offset in an entry
constexpr size_t kEntryStamps = 80; // and of its class, state and times
constexpr uint32_t kNoEntry = 0xFFFFFFFF;
constexpr uint32_t kMaxSector = 0xFFFFFFFA; // marks are above
constexpr uint32_t kDifatSector = 0xFFFFFFFC;
constexpr uint32_t kFatSector = 0xFFFFFFFD;
constexpr uint32_t kEndOfChain = 0xFFFFFFFE;
constexpr uint32_t kFreeSector = 0xFFFFFFFF;

enum EntryType { kNoEntryType = 0, kStorageEntry = 1, kStreamEntry = 2, kRootEntry = 5 };
