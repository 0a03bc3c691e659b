// A block of discs from somebody else's clipboard. The checksum would keep nearly all bytes from
// getting any further, so it is put right here, as anybody could.
#include "archive/clipboard.h"

#include <cstdlib>
#include <memory>

static uint32_t WordAt(const std::vector<uint8_t>& bytes, size_t at) {
    return bytes[at] | bytes[at + 1] << 8 | bytes[at + 2] << 16 |
           static_cast<uint32_t>(bytes[at + 3]) << 24;
}

static void PutSumRight(std::vector<uint8_t>* block) {
    constexpr size_t kHead = 20;
    if (block->size() < kHead) return;
    const size_t end = std::min<size_t>(WordAt(*block, 8), block->size());
    uint32_t sum = 2166136261u;
    for (size_t i = kHead; i < end; ++i)
        sum = (sum ^ (*block)[i]) * 16777619u;
    for (size_t i = 0; i < 4; ++i)
        (*block)[16 + i] = static_cast<uint8_t>(sum >> (8 * i));
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<uint8_t> block(data, data + size);
    PutSumRight(&block);
    DiscBlockReader reader;
    if (!OpenDiscBlock(block, &reader)) return 0;
    const auto record = std::make_unique<CDInfoRecord>();
    std::vector<uint8_t> again;
    size_t discs = reader.left;
    if (!discs) abort();
    for (; NextInDiscBlock(&reader, record.get()); --discs) {
        if (record->trackCount > kMaxTracks || record->programCount > kMaxSegments) abort();
        if (!AppendToDiscBlock(*record, &again)) abort();
    }
    if (discs || !reader.entries.empty()) abort(); // what passed the check is read to its end
    if (!OpenDiscBlock(again, &reader)) abort();
    return 0;
}
