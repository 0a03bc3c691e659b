// See compound.h, and compound_layout.h for the layout.
//
// Strict where a fault makes the platform's reader hang or its writer destroy other streams
// (cycles, sectors used twice or marked free, ends outside the file, names out of order), and
// lenient in all that does neither, since files of many makers must pass: chains longer than
// needed, sectors that nobody uses, colours, time stamps.
#include "cdinfo/compound.h"

#include <algorithm>
#include <cstring>

#include "cdinfo/compound_layout.h"

constexpr size_t kSmallestFile = 1536; // header, FAT, directory

struct Entry {
    char16_t name[kMaxCompoundName + 1];
    uint32_t nameBytes; // the NUL included
    uint8_t type;
    uint32_t left, right, child, start, size, sizeHigh;
};

struct Checker {
    CompoundView* view;
    uint32_t sectors = 0;             // whole sectors behind the header
    std::vector<uint8_t> claimed;     // one a sector
    std::vector<uint8_t> miniClaimed; // one a mini sector
    std::vector<uint32_t> directory;  // its sectors
};

static uint32_t LoadLittle(const uint8_t* at, size_t width) {
    uint32_t value = 0;
    for (size_t i = 0; i < width; ++i)
        value |= static_cast<uint32_t>(at[i]) << (8 * i);
    return value;
}

static uint32_t HeaderWord(const CompoundView& view, size_t offset) {
    return LoadLittle(view.bytes.data() + offset, 4);
}

static const uint8_t* SectorAt(const CompoundView& view, uint32_t sector) {
    return view.bytes.data() + ((static_cast<size_t>(sector) + 1) << view.sectorShift);
}

static size_t SectorSize(const CompoundView& view) {
    return size_t{1} << view.sectorShift;
}

static int IsMark(uint32_t sector) {
    return sector > kMaxSector;
}

// ---- chains

static int Claim(std::vector<uint8_t>& claimed, uint32_t sector) {
    if (sector >= claimed.size() || claimed[sector]) return 0;
    claimed[sector] = 1;
    return 1;
}

// Walks a chain, claiming its sectors; each is claimed at most once, which ends every cycle.
// `chain` (may be null) receives them, `length` their number.
static int WalkChain(const std::vector<uint32_t>& fat, std::vector<uint8_t>& claimed,
                     uint32_t start, std::vector<uint32_t>* chain, uint64_t* length = nullptr) {
    if (length) *length = 0;
    if (IsMark(start)) return 1;
    for (uint32_t sector = start; sector != kEndOfChain; sector = fat[sector]) {
        if (sector >= fat.size() || !Claim(claimed, sector)) return 0;
        if (chain) chain->push_back(sector);
        if (length) ++*length;
    }
    return 1;
}

static int ReadHeader(Checker* c) {
    const auto bytes = c->view->bytes;
    if (bytes.size() < kSmallestFile || bytes.size() % kHeaderSize) return 0;
    const uint32_t major = LoadLittle(bytes.data() + 26, 2);
    const uint32_t shift = LoadLittle(bytes.data() + 30, 2);
    if (!(major == 3 && shift == 9) && !(major == 4 && shift == 12)) return 0;
    if (LoadLittle(bytes.data() + 28, 2) != kByteOrder) return 0;
    if (LoadLittle(bytes.data() + 32, 2) != kMiniShift) return 0;
    if (HeaderWord(*c->view, 56) != kMiniCutoff) return 0;
    c->view->sectorShift = shift;
    const size_t whole = bytes.size() >> shift;
    if (whole < 3) return 0;
    c->sectors = static_cast<uint32_t>(std::min<size_t>(whole - 1, kMaxSector));
    c->claimed.assign(c->sectors, 0);
    return 1;
}

// ---- the FAT

static int AddFatSector(Checker* c, uint32_t sector, std::vector<uint32_t>* own) {
    if (!Claim(c->claimed, sector)) return 0;
    own->push_back(sector);
    const uint8_t* at = SectorAt(*c->view, sector);
    for (size_t i = 0; i < SectorSize(*c->view); i += 4)
        c->view->fat.push_back(LoadLittle(at + i, 4));
    return 1;
}

static int LoadFat(Checker* c) {
    const CompoundView& view = *c->view;
    uint32_t left = HeaderWord(view, 44);
    if (left == 0 || left > c->sectors) return 0;
    std::vector<uint32_t> own; // sectors of the FAT itself and of its lists
    c->view->fat.reserve(left * (SectorSize(view) / 4));
    for (uint32_t i = 0; i < kHeaderFatEntries && left; ++i, --left) {
        if (!AddFatSector(c, HeaderWord(view, 76 + 4 * i), &own)) return 0;
    }
    const uint32_t perList = static_cast<uint32_t>(SectorSize(view) / 4) - 1;
    uint32_t list = HeaderWord(view, 68);
    const uint32_t lists = HeaderWord(view, 72);
    for (uint32_t n = 0; n < lists; ++n) {
        if (!Claim(c->claimed, list)) return 0;
        own.push_back(list);
        const uint8_t* at = SectorAt(view, list);
        for (uint32_t i = 0; i < perList && left; ++i, --left) {
            if (!AddFatSector(c, LoadLittle(at + 4 * i, 4), &own)) return 0;
        }
        list = LoadLittle(at + 4 * perList, 4);
    }
    if (left || !IsMark(list)) return 0;
    // A sector of the FAT that the FAT calls free would be given to the next stream written.
    for (uint32_t sector : own) {
        if (sector >= view.fat.size() || view.fat[sector] == kFreeSector) return 0;
    }
    return 1;
}

static int LoadMiniFat(Checker* c) {
    CompoundView& view = *c->view;
    std::vector<uint32_t> chain;
    if (!WalkChain(view.fat, c->claimed, HeaderWord(view, 60), &chain)) return 0;
    for (uint32_t sector : chain) {
        const uint8_t* at = SectorAt(view, sector);
        for (size_t i = 0; i < SectorSize(view); i += 4)
            view.miniFat.push_back(LoadLittle(at + i, 4));
    }
    return 1;
}

// ---- the directory

static size_t EntryCount(const Checker& c) {
    return (c.directory.size() << c.view->sectorShift) / kEntrySize;
}

static const uint8_t* EntryAt(const Checker& c, uint32_t id) {
    const size_t offset = id * kEntrySize;
    return SectorAt(*c.view, c.directory[offset >> c.view->sectorShift]) +
           (offset & (SectorSize(*c.view) - 1));
}

static Entry LoadEntry(const Checker& c, uint32_t id) {
    const uint8_t* at = EntryAt(c, id);
    Entry entry = {};
    for (size_t i = 0; i < kMaxCompoundName + 1; ++i)
        entry.name[i] = static_cast<char16_t>(LoadLittle(at + 2 * i, 2));
    entry.nameBytes = LoadLittle(at + 64, 2);
    entry.type = at[kEntryType];
    entry.left = LoadLittle(at + 68, 4);
    entry.right = LoadLittle(at + 72, 4);
    entry.child = LoadLittle(at + 76, 4);
    entry.start = LoadLittle(at + 116, 4);
    entry.size = LoadLittle(at + 120, 4);
    entry.sizeHigh = LoadLittle(at + 124, 4);
    return entry;
}

static int IsNameSound(const Entry& entry) {
    if (entry.nameBytes % 2 || entry.nameBytes < 4 || entry.nameBytes > 64) return 0;
    const char16_t* end = entry.name + entry.nameBytes / 2 - 1;
    return std::find(entry.name, end + 1, u'\0') == end;
}

static char16_t Upper(char16_t c) {
    return c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - 32) : c;
}

int CompareCompoundNames(std::u16string_view a, std::u16string_view b) {
    if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
    for (size_t i = 0; i < a.size(); ++i) {
        if (Upper(a[i]) != Upper(b[i])) return Upper(a[i]) < Upper(b[i]) ? -1 : 1;
    }
    return 0;
}

int IsPlainName(std::u16string_view name) {
    return std::all_of(name.begin(), name.end(), [](char16_t c) { return c < 0x80; });
}

// 1 when `a` may stand before `b`. Names whose order is not known may stand anywhere; no two
// siblings have the same one.
static int MayPrecede(const Entry& a, const Entry& b) {
    return !IsPlainName(a.name) || !IsPlainName(b.name) || CompareCompoundNames(a.name, b.name) < 0;
}

// An entry still to be looked at, and between which of its elders it must stand.
struct Visit {
    uint32_t id;
    uint32_t above, below; // ids, or kNoEntry
    int inRoot;
};

static int IsPlaced(const Checker& c, const Visit& visit, const Entry& entry) {
    if (visit.above != kNoEntry && !MayPrecede(LoadEntry(c, visit.above), entry)) return 0;
    return visit.below == kNoEntry || MayPrecede(entry, LoadEntry(c, visit.below));
}

static int CheckStream(Checker* c, const Entry& entry) {
    if (entry.sizeHigh) return 0;
    uint64_t length;
    const int mini = entry.size < kMiniCutoff;
    if (!WalkChain(mini ? c->view->miniFat : c->view->fat, mini ? c->miniClaimed : c->claimed,
                   entry.start, nullptr, &length))
        return 0;
    return (length << (mini ? kMiniShift : c->view->sectorShift)) >= entry.size;
}

// 1 when there is no more to a stream than its name and its bytes.
static int IsBare(const Checker& c, uint32_t id, const Entry& entry) {
    const uint8_t* at = EntryAt(c, id) + kEntryStamps;
    return IsPlainName(entry.name) &&
           std::all_of(at, at + sizeof c.view->root, [](uint8_t byte) { return byte == 0; });
}

// Entries that are not in the tree count, too: nobody knows what they were.
static int HasOthers(const Checker& c) {
    size_t used = 0;
    for (uint32_t id = 0; id < EntryCount(c); ++id)
        used += EntryAt(c, id)[kEntryType] != kNoEntryType;
    return used != 1 + c.view->streams.size();
}

static int CheckTree(Checker* c, uint32_t top) {
    std::vector<uint8_t> seen(EntryCount(*c), 0);
    seen[0] = 1;
    std::vector<Visit> open;
    if (top != kNoEntry) open.push_back({top, kNoEntry, kNoEntry, 1});
    while (!open.empty()) {
        const Visit visit = open.back();
        open.pop_back();
        if (!Claim(seen, visit.id)) return 0;
        const Entry entry = LoadEntry(*c, visit.id);
        if (!IsNameSound(entry) || !IsPlaced(*c, visit, entry)) return 0;
        if (entry.type == kStreamEntry) {
            if (!CheckStream(c, entry)) return 0;
            if (visit.inRoot) {
                CompoundStream stream;
                std::copy(std::begin(entry.name), std::end(entry.name), stream.name);
                stream.start = entry.start;
                stream.size = entry.size;
                c->view->streams.push_back(stream);
                c->view->isFlat &= IsBare(*c, visit.id, entry);
            }
        } else if (entry.type == kStorageEntry) {
            if (entry.child != kNoEntry) open.push_back({entry.child, kNoEntry, kNoEntry, 0});
        } else {
            return 0;
        }
        if (entry.left != kNoEntry)
            open.push_back({entry.left, visit.above, visit.id, visit.inRoot});
        if (entry.right != kNoEntry)
            open.push_back({entry.right, visit.id, visit.below, visit.inRoot});
    }
    return 1;
}

static int CheckDirectory(Checker* c) {
    CompoundView& view = *c->view;
    if (!WalkChain(view.fat, c->claimed, HeaderWord(view, 48), &c->directory)) return 0;
    if (c->directory.empty()) return 0;
    const Entry root = LoadEntry(*c, 0);
    if (root.type != kRootEntry || root.sizeHigh) return 0;
    std::memcpy(&view.root, EntryAt(*c, 0) + kEntryStamps, sizeof view.root);
    if (!WalkChain(view.fat, c->claimed, root.start, &view.miniSectors)) return 0;
    if ((uint64_t{view.miniSectors.size()} << view.sectorShift) < root.size) return 0;
    const size_t minis = (size_t{root.size} + 63) >> kMiniShift;
    c->miniClaimed.assign(std::min(minis, view.miniFat.size()), 0);
    view.isFlat = view.sectorShift == kSectorShift;
    if (!CheckTree(c, root.child)) return 0;
    view.isFlat &= !HasOthers(*c);
    return 1;
}

static int IsBefore(const CompoundStream& a, const CompoundStream& b) {
    for (size_t i = 0; i < kMaxCompoundName; ++i) {
        const char16_t x = Upper(a.name[i]);
        const char16_t y = Upper(b.name[i]);
        if (x != y) return x < y;
        if (!x) break;
    }
    return 0;
}

CompoundState CheckCompound(std::span<const uint8_t> bytes, CompoundView* view) {
    *view = {};
    if (bytes.size() < sizeof kSignature ||
        std::memcmp(bytes.data(), kSignature, sizeof kSignature))
        return kNotCompound;
    view->bytes = bytes;
    Checker checker{view, 0, {}, {}, {}};
    if (ReadHeader(&checker) && LoadFat(&checker) && LoadMiniFat(&checker) &&
        CheckDirectory(&checker)) {
        std::sort(view->streams.begin(), view->streams.end(), IsBefore);
        return kCompoundGood;
    }
    *view = {};
    return kCompoundDamaged;
}

// ---- reading

const CompoundStream* FindCompoundStream(const CompoundView& view, std::string_view name) {
    CompoundStream wanted;
    if (name.size() > kMaxCompoundName) return nullptr;
    for (size_t i = 0; i < name.size(); ++i)
        wanted.name[i] = static_cast<unsigned char>(name[i]);
    const auto at = std::lower_bound(view.streams.begin(), view.streams.end(), wanted, IsBefore);
    return at == view.streams.end() || IsBefore(wanted, *at) ? nullptr : &*at;
}

int IsSameName(const CompoundStream& a, const CompoundStream& b) {
    return !IsBefore(a, b) && !IsBefore(b, a);
}

// Steps through a stream of a checked file piece by piece.
struct Walk {
    const CompoundView& view;
    uint32_t sector;
    int mini;
};

static Walk BeginWalk(const CompoundView& view, const CompoundStream& stream) {
    return {view, stream.start, stream.size < kMiniCutoff};
}

static size_t PieceSize(const Walk& walk) {
    return walk.mini ? size_t{1} << kMiniShift : SectorSize(walk.view);
}

static const uint8_t* NextPiece(Walk& walk) {
    const CompoundView& view = walk.view;
    const uint32_t sector = walk.sector;
    if (!walk.mini) {
        walk.sector = view.fat[sector];
        return SectorAt(view, sector);
    }
    walk.sector = view.miniFat[sector];
    const uint32_t perSector = static_cast<uint32_t>(SectorSize(view) >> kMiniShift);
    return SectorAt(view, view.miniSectors[sector / perSector]) +
           (static_cast<size_t>(sector % perSector) << kMiniShift);
}

void CopyCompoundStream(const CompoundView& view, const CompoundStream& stream, uint8_t* to) {
    Walk walk = BeginWalk(view, stream);
    const size_t piece = PieceSize(walk);
    for (size_t done = 0; done < stream.size; done += piece)
        std::memcpy(to + done, NextPiece(walk), std::min<size_t>(piece, stream.size - done));
}

std::vector<uint8_t> ReadCompoundStream(const CompoundView& view, const CompoundStream& stream) {
    std::vector<uint8_t> out(stream.size);
    CopyCompoundStream(view, stream, out.data());
    return out;
}

int IsSameStream(const CompoundView& viewA, const CompoundStream& a, const CompoundView& viewB,
                 const CompoundStream& b) {
    if (a.size != b.size) return 0;
    Walk walkA = BeginWalk(viewA, a);
    Walk walkB = BeginWalk(viewB, b);
    const size_t piece = PieceSize(walkA);
    if (piece != PieceSize(walkB))
        return ReadCompoundStream(viewA, a) == ReadCompoundStream(viewB, b);
    for (size_t done = 0; done < a.size; done += piece) {
        const size_t count = std::min<size_t>(piece, a.size - done);
        if (std::memcmp(NextPiece(walkA), NextPiece(walkB), count)) return 0;
    }
    return 1;
}
