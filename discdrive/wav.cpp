// See wav.h.
#include "discdrive/wav.h"

#include "core/bytes.h"

static constexpr uint32_t kRiff = 0x46464952, kWave = 0x45564157, kFmt = 0x20746D66,
                          kData = 0x61746164;
static constexpr uint16_t kTagPcm = 1, kTagExtensible = 0xFFFE;

static int IsDiscFormat(std::span<const uint8_t> chunk) {
    ByteReader r{chunk};
    uint16_t tag = ReadU16(r);
    const uint16_t channels = ReadU16(r);
    const uint32_t rate = ReadU32(r);
    ReadU32(r); // bytes a second
    const uint16_t align = ReadU16(r);
    const uint16_t bits = ReadU16(r);
    if (tag == kTagExtensible) {
        ReadBytes(r, 8);  // its length, valid bits, channel mask
        tag = ReadU16(r); // the first word of the sub-format is the plain tag
    }
    return !r.failed && tag == kTagPcm && channels == 2 && rate == 44100 && align == 4 &&
           bits == 16;
}

int ReadWavHeader(std::span<const uint8_t> head, uint64_t fileBytes, WavData* data) {
    *data = {};
    ByteReader r{head};
    const uint32_t riff = ReadU32(r);
    ReadU32(r); // its length: often wrong, and not needed
    if (riff != kRiff || ReadU32(r) != kWave) return 0;
    int known = 0;
    while (!r.failed) {
        const uint32_t id = ReadU32(r);
        const uint32_t bytes = ReadU32(r);
        if (r.failed) return 0;
        if (id == kData) {
            data->offset = r.at;
            data->bytes = bytes;
            return known && bytes <= fileBytes && r.at <= fileBytes - bytes;
        }
        const auto chunk = ReadBytes(r, bytes);
        if (id == kFmt) known = IsDiscFormat(chunk);
        if (bytes & 1) ReadBytes(r, 1);
    }
    return 0;
}
