// The block of discs, little-endian, nothing aligned:
//
//   u32 magic "CDPI"; u32 version (1); u32 bytes of the whole block; u32 discs;
//   u32 checksum of all that follows (FNV-1a); discs * (u32 length, u32 identity, packed entry)
//
// The checksum is not for safety, which the bounds give, but so that half of a block or another
// program's data are not taken for somebody's titles.
#include "archive/clipboard.h"

#include "core/bytes.h"

#include <memory>

constexpr uint32_t kMagic = 0x49504443;
constexpr uint32_t kVersion = 1;
constexpr size_t kHeadBytes = 20;
constexpr size_t kEntryHeadBytes = 8;
constexpr size_t kMaxBlock = 256u << 20;
constexpr uint32_t kSumStart = 2166136261u, kSumFactor = 16777619u;

namespace {
struct Head {
    uint32_t magic = kMagic, version = kVersion, bytes = kHeadBytes, discs = 0, sum = kSumStart;
};
} // namespace

static uint32_t AddToSum(uint32_t sum, std::span<const uint8_t> bytes) {
    for (const uint8_t byte : bytes)
        sum = (sum ^ byte) * kSumFactor;
    return sum;
}

static int ReadHead(std::span<const uint8_t> block, Head* head) {
    ByteReader r{block};
    *head = {ReadU32(r), ReadU32(r), ReadU32(r), ReadU32(r), ReadU32(r)};
    return !r.failed;
}

static void WriteHead(const Head& head, std::span<uint8_t> block) {
    ByteWriter w{block};
    for (const uint32_t value : {head.magic, head.version, head.bytes, head.discs, head.sum})
        WriteU32(w, value);
}

int AppendToDiscBlock(const CDInfoRecord& record, std::vector<uint8_t>* block) {
    const auto packed = std::make_unique<uint8_t[][kMaxPackedEntry]>(1);
    size_t length;
    if (!PackRecord(record, packed[0], &length)) return 0;
    Head head;
    if (block->empty())
        block->resize(kHeadBytes);
    else
        ReadHead(*block, &head);
    const size_t from = block->size();
    if (from > kMaxBlock - kEntryHeadBytes - length) return 0;
    block->resize(from + kEntryHeadBytes + length);
    const auto entry = std::span(*block).subspan(from);
    ByteWriter w{entry};
    WriteU32(w, static_cast<uint32_t>(length));
    WriteU32(w, record.identity);
    WriteBytes(w, packed[0], length);
    head.bytes = static_cast<uint32_t>(block->size());
    ++head.discs;
    head.sum = AddToSum(head.sum, entry);
    WriteHead(head, *block);
    return 1;
}

int NextInDiscBlock(DiscBlockReader* reader, CDInfoRecord* record) {
    if (!reader->left) return 0;
    ByteReader r{reader->entries};
    const size_t length = ReadU32(r);
    const uint32_t identity = ReadU32(r);
    const auto packed = ReadBytes(r, length);
    ByteReader first{packed};
    if (length > kMaxPackedEntry || ReadU16(first) != length || first.failed) return 0;
    *record = CDInfoRecord();
    if (!UnpackEntry(packed, record)) return 0;
    SetIdentity(record, identity);
    reader->entries = reader->entries.subspan(r.at);
    --reader->left;
    return 1;
}

int OpenDiscBlock(std::span<const uint8_t> block, DiscBlockReader* reader) {
    *reader = {};
    Head head;
    if (!ReadHead(block, &head) || head.magic != kMagic || head.version != kVersion) return 0;
    if (head.bytes < kHeadBytes || head.bytes > block.size() || !head.discs) return 0;
    const auto entries = block.subspan(kHeadBytes, head.bytes - kHeadBytes);
    if (AddToSum(kSumStart, entries) != head.sum) return 0;
    DiscBlockReader trial = {entries, head.discs};
    const auto record = std::make_unique<CDInfoRecord>();
    while (NextInDiscBlock(&trial, record.get()))
        continue;
    if (trial.left || !trial.entries.empty()) return 0;
    *reader = {entries, head.discs};
    return 1;
}
