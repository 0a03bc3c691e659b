// See old_style.h.
#include "cdinfo/old_style.h"

#include "cdinfo/record.h"

#include <algorithm>

constexpr uint32_t kCdpMagic = 0x564E4F54; // "TONV"
constexpr uint32_t kNewestVersion = 1;

CdpFault OpenCdp(std::span<const uint8_t> file, CdpReader* reader) {
    *reader = {};
    reader->bytes.bytes = file;
    const uint32_t magic = ReadU32(reader->bytes);
    if (reader->bytes.failed) return kCdpShort;
    if (magic != kCdpMagic) return kCdpBadMagic;
    reader->version = ReadU32(reader->bytes);
    if (reader->bytes.failed) return kCdpShort;
    if (reader->version > kNewestVersion) return kCdpTooNew;
    reader->count = ReadU32(reader->bytes);
    if (reader->bytes.failed) return kCdpShort;
    return reader->count > kMaxCdpEntries ? kCdpBadCount : kCdpGood;
}

uint32_t CdpChecksum(std::span<const uint8_t> packed) {
    const size_t covered = std::max<size_t>(packed.size() / 4 * 4, 4);
    uint32_t sum = 0;
    for (size_t i = 0; i < std::min(covered, packed.size()); ++i)
        sum ^= static_cast<uint32_t>(packed[i]) << (i % 4 * 8);
    return sum;
}

static CdpFault ReadEntry(CdpReader* reader, CdpEntry* entry) {
    const uint32_t length = ReadU32(reader->bytes);
    if (reader->bytes.failed) return kCdpShort;
    if (length > kMaxPackedEntry) return kCdpBadSize;
    entry->identity = ReadU32(reader->bytes);
    const uint32_t checksum = ReadU32(reader->bytes);
    entry->packed = ReadBytes(reader->bytes, length);
    if (reader->bytes.failed) return kCdpShort;
    const uint32_t right = reader->version ? CdpChecksum(entry->packed) : 0;
    return checksum == right ? kCdpGood : kCdpBadChecksum;
}

int ReadCdpEntry(CdpReader* reader, CdpEntry* entry, CdpFault* fault) {
    *fault = kCdpGood;
    if (reader->next >= reader->count) return 0;
    *fault = ReadEntry(reader, entry);
    reader->next = *fault == kCdpGood ? reader->next + 1 : reader->count;
    return *fault == kCdpGood;
}
