// Packed entries: any bytes give 1 or 0, and what was read can be written and read again without
// a further change. The first byte chooses whether disc data are there already.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "cdinfo/record.h"

static void Require(bool holds) {
    if (!holds) std::abort();
}

static void RequireSound(const CDInfoRecord& r) {
    Require(r.trackCount <= kMaxTracks && r.programCount <= kMaxSegments);
    Require(std::memchr(r.title, 0, kTextSize) && std::memchr(r.comment, 0, kCommentSize));
    Require(std::memchr(r.discArtist, 0, kTextSize) != nullptr);
    for (size_t i = 0; i < kMaxTracks; ++i) {
        Require(std::memchr(r.trackArtists[i], 0, kTextSize) != nullptr);
        Require(std::memchr(r.trackTitles[i], 0, kTextSize) != nullptr);
        Require(std::memchr(r.trackComments[i], 0, kCommentSize) != nullptr);
    }
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static uint8_t first[kMaxPackedEntry], second[kMaxPackedEntry];
    if (!size) return 0;
    auto record = std::make_unique<CDInfoRecord>();
    if (data[0] & 1) {
        record->trackCount = data[0] >> 1;
        ApplyDefaults(record.get());
        for (uint32_t i = 0; i <= kMaxTracks; ++i)
            record->trackStarts[i] = 150 + i * 5000;
    }
    if (!UnpackEntry({data + 1, size - 1}, record.get())) return 0;
    RequireSound(*record);
    size_t firstLength, secondLength;
    if (!PackRecord(*record, first, &firstLength)) return 0;
    auto again = std::make_unique<CDInfoRecord>();
    Require(UnpackEntry({first, firstLength}, again.get()));
    RequireSound(*again);
    Require(again->trackCount == record->trackCount && !std::strcmp(again->title, record->title));
    Require(PackRecord(*again, second, &secondLength));
    Require(firstLength == secondLength && !std::memcmp(first, second, firstLength));
    return 0;
}
