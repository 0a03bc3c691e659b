// The old-style CDP file: discs one behind the other in a flat file. It is read only; what is
// written today is the database's own form (store.h), whose EnumerateEntries reads this one, too.
//
//   4 bytes "TONV", u32 version (0 or 1), u32 number of entries; then for each entry
//   u32 length S, u32 identity, u32 checksum and S bytes of packed entry. All little-endian.
#pragma once
#include "cdinfo/store.h"
#include "core/bytes.h"

#include <cstdint>
#include <span>

constexpr uint32_t kMaxCdpEntries = 65536;
constexpr size_t kCdpHeaderBytes = 12;

enum CdpFault {
    kCdpGood,
    kCdpNotOpened, // never given here: for who opens the file
    kCdpShort,     // the file ends within what was to be read
    kCdpBadMagic,
    kCdpTooNew,
    kCdpBadCount,
    kCdpBadSize,
    kCdpBadChecksum
};

struct CdpReader {
    ByteReader bytes;
    uint32_t version = 0;
    uint32_t count = 0; // entries as the header says
    uint32_t next = 0;  // entries read
};

struct CdpEntry {
    uint32_t identity = 0;
    std::span<const uint8_t> packed; // within the file's bytes
};

// `file` must outlive the reader.
CdpFault OpenCdp(std::span<const uint8_t> file, CdpReader* reader);
// 1 when *entry was filled, 0 at the end and after a fault, which *fault then tells.
int ReadCdpEntry(CdpReader* reader, CdpEntry* entry, CdpFault* fault);

// What version 1 holds as checksum: all whole words of the packed entry in one exclusive-or. Of an
// entry shorter than a word the missing bytes count as 0.
uint32_t CdpChecksum(std::span<const uint8_t> packed);

// Reads the file, which nobody else may have open, and calls back for each entry: with a record and
// the packed entry's length, or with the packed entry itself when raw. The callback ends the
// reading with 0. 1 when every entry was read and taken. What is wrong with the file is told in a
// box in front of `owner`; only an entry that can't be unpacked ends the reading without a word. A
// null path stands for the default database, of whose faults nobody is told: it is read without
// anybody asking.
int ReadOldStyleFile(StoreWindow owner, const wchar_t* path, StoreCallback callback, void* context,
                     int raw);
