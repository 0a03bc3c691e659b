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

// What a directory entry tells of a storage besides its name; it stands so in the file.
struct CompoundStamps {
    uint8_t classId[16] = {};
    uint8_t stateAndTimes[20] = {};
};

// What a check learned. Points into the checked bytes, which must outlive it unchanged.
struct CompoundView {
    std::span<const uint8_t> bytes;
    uint32_t sectorShift = 9;
    std::vector<uint32_t> fat;
    std::vector<uint32_t> miniFat;
    std::vector<uint32_t> miniSectors;   // where the small streams' 64-byte sectors are kept
    std::vector<CompoundStream> streams; // of the root, not of storages below it; by name
    CompoundStamps root;
    // 1 when the root, its stamps and these streams are all there is, in the form that
    // BuildCompound writes: version 3, plain names, no storages, no stamps of streams.
    int isFlat = 0;
};

// Every chain is walked at most once, so the time is linear in the size of the file.
CompoundState CheckCompound(std::span<const uint8_t> bytes, CompoundView* view);

// The stream of that name (ASCII, case ignored), or null.
const CompoundStream* FindCompoundStream(const CompoundView& view, std::string_view name);

// The order of siblings in the directory: the shorter first, then by upper-case characters; <0, 0,
// >0. For plain names (ASCII) only: the upper case of others is a matter of tables.
int CompareCompoundNames(std::u16string_view a, std::u16string_view b);
int IsPlainName(std::u16string_view name);

int IsSameName(const CompoundStream& a, const CompoundStream& b);

// 1 when both hold the same bytes; the views may be of different files.
int IsSameStream(const CompoundView& viewA, const CompoundStream& a, const CompoundView& viewB,
                 const CompoundStream& b);

// The whole stream; `to` has room for it.
void CopyCompoundStream(const CompoundView& view, const CompoundStream& stream, uint8_t* to);
std::vector<uint8_t> ReadCompoundStream(const CompoundView& view, const CompoundStream& stream);
