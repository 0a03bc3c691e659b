// The structure of a compound file (OLE structured storage), checked from its bytes. The
// platform's own reader trusts what it is given and can run for ever on a damaged file, so
// nothing reaches it that has not passed here. A file that passes can also be read here, which
// is how a database that the platform has just written is looked over.
#pragma once
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

enum CompoundState {
    kNotCompound = 0,     // no such signature: some other file, or an empty one
    kCompoundDamaged = 1, // the signature is there, but something behind it is not sound
    kCompoundGood = 2,    // safe to read and to write
};

constexpr uint32_t kMaxCompoundName = 31; // characters

struct CompoundStream {
    char16_t name[kMaxCompoundName + 1] = {};
    uint32_t start = 0;
    uint32_t size = 0; // bytes
};

// What a check learned. Points into the checked bytes, which must outlive it unchanged.
struct CompoundView {
    std::span<const uint8_t> bytes;
    uint32_t sectorShift = 9;
    std::vector<uint32_t> fat;
    std::vector<uint32_t> miniFat;
    std::vector<uint32_t> miniSectors;   // where the small streams' 64-byte sectors are kept
    std::vector<CompoundStream> streams; // of the root, not of storages below it; by name
    uint8_t classId[16] = {};            // of the root, as it stands in the file
};

// Every chain is walked at most once, so the time is linear in the size of the file.
CompoundState CheckCompound(std::span<const uint8_t> bytes, CompoundView* view);

// The stream of that name (ASCII, case ignored), or null.
const CompoundStream* FindCompoundStream(const CompoundView& view, std::string_view name);

int IsSameName(const CompoundStream& a, const CompoundStream& b);

// 1 when both hold the same bytes; the views may be of different files.
int IsSameStream(const CompoundView& viewA, const CompoundStream& a, const CompoundView& viewB,
                 const CompoundStream& b);

// The whole stream.
std::vector<uint8_t> ReadCompoundStream(const CompoundView& view, const CompoundStream& stream);
