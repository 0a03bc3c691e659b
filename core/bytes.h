// Bounds-checked reading and writing of little-endian byte strings. Both carry a sticky error: a
// read past the end gives zeros and marks the reader, a write past the end writes nothing more
// and marks the writer. So a whole record is read or written first and tested once.
#pragma once
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

struct ByteReader {
    std::span<const uint8_t> bytes;
    size_t at = 0;
    bool failed = false;
};

struct ByteWriter {
    std::span<uint8_t> bytes;
    size_t at = 0;
    bool failed = false;
};

// The next `count` bytes, or an empty span (and the error) when fewer are left.
inline std::span<const uint8_t> ReadBytes(ByteReader& r, size_t count) {
    if (r.failed || count > r.bytes.size() - r.at) {
        r.failed = true;
        return {};
    }
    const auto part = r.bytes.subspan(r.at, count);
    r.at += count;
    return part;
}

inline uint32_t ReadLittle(ByteReader& r, size_t width) {
    uint32_t value = 0;
    const auto part = ReadBytes(r, width);
    for (size_t i = 0; i < part.size(); ++i)
        value |= static_cast<uint32_t>(part[i]) << (8 * i);
    return value;
}
inline uint8_t ReadU8(ByteReader& r) {
    return static_cast<uint8_t>(ReadLittle(r, 1));
}
inline uint16_t ReadU16(ByteReader& r) {
    return static_cast<uint16_t>(ReadLittle(r, 2));
}
inline uint32_t ReadU32(ByteReader& r) {
    return ReadLittle(r, 4);
}
inline size_t BytesLeft(const ByteReader& r) {
    return r.failed ? 0 : r.bytes.size() - r.at;
}

inline void WriteBytes(ByteWriter& w, const void* data, size_t count) {
    if (w.failed || count > w.bytes.size() - w.at) {
        w.failed = true;
        return;
    }
    if (count) std::memcpy(w.bytes.data() + w.at, data, count);
    w.at += count;
}

inline void WriteLittle(ByteWriter& w, uint32_t value, size_t width) {
    uint8_t part[4];
    for (size_t i = 0; i < width; ++i)
        part[i] = static_cast<uint8_t>(value >> (8 * i));
    WriteBytes(w, part, width);
}
inline void WriteU8(ByteWriter& w, uint8_t value) {
    WriteLittle(w, value, 1);
}
inline void WriteU16(ByteWriter& w, uint16_t value) {
    WriteLittle(w, value, 2);
}
inline void WriteU32(ByteWriter& w, uint32_t value) {
    WriteLittle(w, value, 4);
}
