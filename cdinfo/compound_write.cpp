// See compound_write.h. The order of sectors: large streams, mini stream, directory, mini FAT,
// FAT, DIFAT, each without a gap, so that every chain is a run and all offsets are known before
// the first byte is written.
#include "cdinfo/compound_write.h"

#include <algorithm>
#include <iterator>
#include <new>

#include "cdinfo/compound_layout.h"
#include "cdinfo/file_layer.h"
#include "core/bytes.h"

constexpr uint32_t kSectorSize = 1u << kSectorShift;
constexpr uint32_t kMiniSize = 1u << kMiniShift;
constexpr uint32_t kWords = kSectorSize / 4; // of a sector
constexpr uint32_t kMinorVersion = 0x3E;
constexpr char16_t kRootName[] = u"Root Entry";

struct Run {
    uint32_t first = 0, count = 0; // sectors
};

struct Builder {
    std::vector<CompoundPart> parts; // in the order of the directory
    CompoundStamps root;
    std::vector<uint8_t>* image;
    uint32_t minis = 0; // sectors of the mini stream's own size
    Run large, miniStream, directory, miniFat, fat, difat;
    std::vector<uint32_t> starts; // one a part
};

static uint32_t SizeOf(const CompoundPart& part) {
    return part.stream ? part.stream->size : static_cast<uint32_t>(part.bytes.size());
}

static uint64_t Pieces(uint64_t size, uint32_t piece) {
    return (size + piece - 1) / piece;
}

static size_t OffsetOf(uint32_t sector) {
    return (size_t{sector} + 1) << kSectorShift;
}

// ---- the plan

static int SortParts(Builder* b) {
    const auto order = [](const CompoundPart& x, const CompoundPart& y) {
        return CompareCompoundNames(x.name, y.name);
    };
    for (const CompoundPart& part : b->parts) {
        if (!part.name[0] || part.name[kMaxCompoundName] || !IsPlainName(part.name)) return 0;
        if (part.bytes.size() > kMaxFileSize) return 0;
    }
    std::sort(b->parts.begin(), b->parts.end(),
              [&](const CompoundPart& x, const CompoundPart& y) { return order(x, y) < 0; });
    for (size_t i = 1; i < b->parts.size(); ++i) {
        if (!order(b->parts[i - 1], b->parts[i])) return 0;
    }
    return 1;
}

static uint64_t PlaceRun(Run* run, uint64_t at, uint64_t count) {
    run->first = static_cast<uint32_t>(at);
    run->count = static_cast<uint32_t>(count);
    return at + count;
}

// How many sectors the FAT and its lists take, which the FAT itself has words for.
static void SizeFat(uint64_t others, uint64_t* fat, uint64_t* difat) {
    *fat = *difat = 0;
    for (uint64_t before = 1; before != *fat + *difat;) {
        before = *fat + *difat;
        *fat = Pieces(others + before, kWords);
        *difat = *fat > kHeaderFatEntries ? Pieces(*fat - kHeaderFatEntries, kWords - 1) : 0;
    }
}

static int PlanSectors(Builder* b) {
    uint64_t large = 0, minis = 0, fat, difat;
    for (const CompoundPart& part : b->parts) {
        const uint32_t size = SizeOf(part);
        if (size < kMiniCutoff)
            minis += Pieces(size, kMiniSize);
        else
            large += Pieces(size, kSectorSize);
    }
    const uint64_t miniStream = Pieces(minis * kMiniSize, kSectorSize);
    const uint64_t directory = Pieces((b->parts.size() + uint64_t{1}) * kEntrySize, kSectorSize);
    const uint64_t miniFat = Pieces(minis, kWords);
    SizeFat(large + miniStream + directory + miniFat, &fat, &difat);
    const uint64_t all = large + miniStream + directory + miniFat + fat + difat;
    if ((all + 1) * kSectorSize > kMaxFileSize) return 0;
    uint64_t at = PlaceRun(&b->large, 0, large);
    at = PlaceRun(&b->miniStream, at, miniStream);
    at = PlaceRun(&b->directory, at, directory);
    at = PlaceRun(&b->miniFat, at, miniFat);
    at = PlaceRun(&b->fat, at, fat);
    PlaceRun(&b->difat, at, difat);
    b->minis = static_cast<uint32_t>(minis);
    return 1;
}

// ---- allocation

static uint32_t StartOf(const Run& run) {
    return run.count ? run.first : kEndOfChain;
}

// Enters a run into a table that begins in that sector.
static void PutChain(const Builder& b, const Run& table, const Run& run) {
    ByteWriter w{*b.image, OffsetOf(table.first) + size_t{4} * run.first};
    for (uint32_t i = 1; i <= run.count; ++i)
        WriteU32(w, i < run.count ? run.first + i : kEndOfChain);
}

static void PutMarks(const Builder& b, const Run& run, uint32_t mark) {
    ByteWriter w{*b.image, OffsetOf(b.fat.first) + size_t{4} * run.first};
    for (uint32_t i = 0; i < run.count; ++i)
        WriteU32(w, mark);
}

static void PutTables(const Builder& b) {
    for (const Run& table : {b.miniFat, b.fat, b.difat})
        std::fill_n(b.image->begin() + static_cast<ptrdiff_t>(OffsetOf(table.first)),
                    size_t{table.count} << kSectorShift, uint8_t{0xFF}); // kFreeSector
    for (const Run& run : {b.miniStream, b.directory, b.miniFat})
        PutChain(b, b.fat, run);
    PutMarks(b, b.fat, kFatSector);
    PutMarks(b, b.difat, kDifatSector);
    // The list of the FAT's sectors goes on behind the header; each sector ends with the next.
    ByteWriter w{*b.image, OffsetOf(b.difat.first)};
    uint32_t listed = kHeaderFatEntries;
    for (uint32_t i = 0; i < b.difat.count; ++i) {
        for (uint32_t word = 0; word + 1 < kWords; ++word, ++listed)
            WriteU32(w, listed < b.fat.count ? b.fat.first + listed : kFreeSector);
        WriteU32(w, i + 1 < b.difat.count ? b.difat.first + i + 1 : kEndOfChain);
    }
}

static void PutStreams(Builder* b) {
    uint32_t nextMini = 0, nextLarge = b->large.first;
    for (const CompoundPart& part : b->parts) {
        const uint32_t size = SizeOf(part);
        const int mini = size < kMiniCutoff;
        const uint32_t piece = mini ? kMiniSize : kSectorSize;
        uint32_t* const next = mini ? &nextMini : &nextLarge;
        const Run run = {*next, static_cast<uint32_t>(Pieces(size, piece))};
        b->starts.push_back(StartOf(run));
        if (!size) continue;
        PutChain(*b, mini ? b->miniFat : b->fat, run);
        uint8_t* const to =
            b->image->data() + (mini ? OffsetOf(b->miniStream.first) + size_t{run.first} * piece
                                     : OffsetOf(run.first));
        if (part.stream)
            CopyCompoundStream(*part.from, *part.stream, to);
        else
            std::copy(part.bytes.begin(), part.bytes.end(), to);
        *next += run.count;
    }
}

// ---- header and directory

static void PutHeader(const Builder& b) {
    ByteWriter w{*b.image};
    WriteBytes(w, kSignature, sizeof kSignature);
    w.at = 24; // a class that nobody reads
    for (const uint32_t value : {kMinorVersion, 3u, kByteOrder, kSectorShift, kMiniShift})
        WriteLittle(w, value, 2);
    w.at = 44;
    for (const uint32_t value :
         {b.fat.count, b.directory.first, 0u, kMiniCutoff, StartOf(b.miniFat), b.miniFat.count,
          StartOf(b.difat), b.difat.count})
        WriteU32(w, value);
    for (uint32_t i = 0; i < kHeaderFatEntries; ++i)
        WriteU32(w, i < b.fat.count ? b.fat.first + i : kFreeSector);
}

struct DirectoryEntry {
    EntryType type = kNoEntryType;
    int isRed = 0;
    uint32_t left = kNoEntry, right = kNoEntry, child = kNoEntry, start = 0, size = 0;
};

static void PutEntry(const Builder& b, size_t id, std::u16string_view name,
                     const DirectoryEntry& entry) {
    const size_t at = OffsetOf(b.directory.first) + id * kEntrySize;
    ByteWriter w{*b.image, at};
    for (const char16_t c : name)
        WriteLittle(w, c, 2);
    w.at = at + 64;
    WriteLittle(w, name.empty() ? 0 : static_cast<uint32_t>(2 * (name.size() + 1)), 2);
    WriteU8(w, static_cast<uint8_t>(entry.type));
    WriteU8(w, !entry.isRed && entry.type != kNoEntryType); // 1: black
    for (const uint32_t link : {entry.left, entry.right, entry.child})
        WriteU32(w, link);
    if (entry.type == kRootEntry) WriteBytes(w, &b.root, sizeof b.root);
    w.at = at + 116;
    WriteU32(w, entry.start);
    WriteU32(w, entry.size);
}

// The middle one on top, so that all levels but the last are full: that one is red, the others are
// black, and no path has more black ones than another. Gives the id of the top.
static uint32_t PutTree(const Builder& b, size_t from, size_t to, int levels) {
    if (from == to) return kNoEntry;
    const size_t middle = from + (to - from) / 2;
    DirectoryEntry entry = {kStreamEntry, levels == 1 && b.parts.size() > 1};
    entry.left = PutTree(b, from, middle, levels - 1);
    entry.right = PutTree(b, middle + 1, to, levels - 1);
    entry.start = b.starts[middle];
    entry.size = SizeOf(b.parts[middle]);
    PutEntry(b, middle + 1, b.parts[middle].name, entry);
    return static_cast<uint32_t>(middle + 1);
}

static void PutDirectory(const Builder& b) {
    int levels = 0;
    while (b.parts.size() >> levels)
        ++levels;
    DirectoryEntry root = {kRootEntry};
    root.child = PutTree(b, 0, b.parts.size(), levels);
    root.start = StartOf(b.miniStream);
    root.size = b.minis * kMiniSize;
    PutEntry(b, 0, kRootName, root);
    const size_t entries = size_t{b.directory.count} * (kSectorSize / kEntrySize);
    for (size_t id = b.parts.size() + 1; id < entries; ++id)
        PutEntry(b, id, {}, {});
}

CompoundPart MakePart(std::string_view name, std::span<const uint8_t> bytes) {
    CompoundPart part;
    if (name.size() <= kMaxCompoundName) std::copy(name.begin(), name.end(), part.name);
    part.bytes = bytes;
    return part;
}

CompoundPart CarryPart(const CompoundView& view, const CompoundStream& stream) {
    CompoundPart part;
    std::copy(std::begin(stream.name), std::end(stream.name), part.name);
    part.from = &view;
    part.stream = &stream;
    return part;
}

int BuildCompound(const CompoundStamps& root, std::vector<CompoundPart> parts,
                  std::vector<uint8_t>* image) {
    Builder b;
    b.parts = std::move(parts);
    b.root = root;
    b.image = image;
    if (!SortParts(&b) || !PlanSectors(&b)) return 0;
    try {
        const uint32_t sectors = b.difat.first + b.difat.count;
        image->assign(OffsetOf(sectors), 0);
        b.starts.reserve(b.parts.size());
    } catch (const std::bad_alloc&) {
        return 0;
    }
    PutTables(b);
    PutStreams(&b);
    PutHeader(b);
    PutDirectory(b);
    return 1;
}
