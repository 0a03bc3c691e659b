// Changes of the database. They are gathered, then made on a copy in memory: a few by the platform,
// many by laying the whole file out anew. The result is read by our own eyes (sound, every other
// stream as before, every change there) and only then put in place as a whole.
#include "core/platform.h"
#include "cdinfo/store_parts_win.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "cdinfo/compound_win.h"
#include "cdinfo/editor.h"
#include "cdinfo/compound_write.h"

// {C09D0670-BA7E-11D0-AA01-00AA00BF0389}
constexpr CLSID kDatabaseClass = {
    0xC09D0670, 0xBA7E, 0x11D0, {0xAA, 0x01, 0x00, 0xAA, 0x00, 0xBF, 0x03, 0x89}};
constexpr wchar_t kIndexStream[] = L"Mappings";
constexpr size_t kManyChanges = 64; // streams; see docs/database.md

static std::wstring StreamName(uint32_t entry) {
    char name[kEntryNameSize];
    EntryName(entry, name);
    return std::wstring(name, name + kEntryNameSize - 1);
}

// ---- gathering

static void AppendPair(StoreBatch* batch, const IndexPair& pair) {
    batch->places.emplace(pair.disc, batch->pairs.size());
    if (pair.entry != pair.disc) batch->places.emplace(pair.entry, batch->pairs.size());
    batch->pairs.push_back(pair);
    batch->dropped.push_back(0);
    ++batch->livePairs;
}

// The first pair of a disc counts.
static const IndexPair* LivePair(const StoreBatch& batch, uint32_t disc) {
    const IndexPair* first = nullptr;
    const auto [from, to] = batch.places.equal_range(disc);
    for (auto at = from; at != to; ++at) {
        const IndexPair* pair = &batch.pairs[at->second];
        if (!batch.dropped[at->second] && pair->disc == disc && (!first || pair < first))
            first = pair;
    }
    return first;
}

int BatchHasDisc(const StoreBatch& batch, uint32_t disc) {
    return LivePair(batch, disc) != nullptr;
}

StoreBatch* BeginStoreBatch(const wchar_t* path) {
    auto batch = std::make_unique<StoreBatch>();
    PrepareStoreFile(path, &batch->file);
    std::vector<IndexPair> pairs = {{0, 0}}; // of a new database
    const int open = BeginChange(&batch->file);
    batch->isFresh = batch->file.state != kLoadGood;
    if (!open || (!batch->isFresh && !ReadIndex(batch->file, &pairs))) {
        EndChange(&batch->file);
        return nullptr;
    }
    for (const IndexPair& pair : pairs)
        AppendPair(batch.get(), pair);
    batch->keptPairs = batch->isFresh ? 0 : pairs.size();
    return batch.release();
}

int BatchRead(const StoreBatch* batch, uint32_t identity, CDInfoRecord* record) {
    const IndexPair* pair = LivePair(*batch, identity);
    const uint32_t entry = pair ? pair->entry : identity;
    SetIdentity(record, identity);
    if (const auto put = batch->puts.find(entry); put != batch->puts.end())
        return UnpackStored(put->second, entry, record);
    if (batch->isFresh || batch->removals.count(entry)) return 0;
    const CompoundStream* stream = FindEntry(batch->file, entry);
    return stream && stream->size &&
           UnpackStored(ReadCompoundStream(batch->file.view, *stream), entry, record);
}

static int HoldsAlready(const StoreBatch& batch, uint32_t entry,
                        const std::vector<uint8_t>& bytes) {
    if (const auto put = batch.puts.find(entry); put != batch.puts.end())
        return put->second == bytes;
    if (batch.isFresh || batch.removals.count(entry)) return 0;
    const CompoundStream* stream = FindEntry(batch.file, entry);
    return stream && ReadCompoundStream(batch.file.view, *stream) == bytes;
}

int BatchPut(StoreBatch* batch, const CDInfoRecord& record, uint32_t* entry) {
    const IndexPair* known = LivePair(*batch, record.identity);
    *entry = known ? known->entry : record.identity;
    auto buffer = std::make_unique<uint8_t[][kMaxPackedEntry]>(1);
    size_t length;
    if (!PackRecord(record, buffer[0], &length)) return 0;
    // An index that was emptied stays empty; the entry is found by the disc's own identity.
    if (!known && batch->livePairs) {
        AppendPair(batch, {record.identity, record.identity});
        batch->isChanged = 1;
    }
    std::vector<uint8_t> bytes(buffer[0], buffer[0] + length);
    if (HoldsAlready(*batch, *entry, bytes)) return 1;
    batch->removals.erase(*entry);
    batch->puts[*entry] = std::move(bytes);
    batch->isChanged = 1;
    return 1;
}

int BatchAdd(StoreBatch* batch, const CDInfoRecord& record) {
    uint32_t entry;
    return IsNothingToStore(record) || BatchPut(batch, record, &entry);
}

void BatchMerge(const StoreBatch* batch, const CDInfoRecord& before, const CDInfoRecord& after,
                CDInfoRecord* merged) {
    *merged = CDInfoRecord();
    if (BatchRead(batch, after.identity, merged))
        MergeEdit(before, after, merged);
    else
        *merged = after;
}

void BatchDelete(StoreBatch* batch, uint32_t identity) {
    int asEntry = 0;
    const auto [from, to] = batch->places.equal_range(identity);
    for (auto at = from; at != to; ++at) {
        const size_t place = at->second;
        if (batch->dropped[place]) continue;
        batch->dropped[place] = 1;
        batch->keptPairs = std::min(batch->keptPairs, place);
        --batch->livePairs;
        batch->isChanged = 1;
        asEntry |= batch->pairs[place].entry == identity;
    }
    if (!asEntry) return;
    batch->puts.erase(identity);
    if (!batch->isFresh && FindEntry(batch->file, identity)) batch->removals.insert(identity);
}

// The index as it is to be.
static void TakeDroppedOut(StoreBatch* batch) {
    size_t kept = 0;
    for (size_t i = 0; i < batch->pairs.size(); ++i) {
        if (!batch->dropped[i]) batch->pairs[kept++] = batch->pairs[i];
    }
    batch->pairs.resize(kept);
}

// ---- the new image

static int WriteIndex(const StoreBatch& batch, const CompoundFile& file) {
    const auto bytes = PackIndex(batch.pairs);
    if (batch.isFresh) return WriteStream(file, kIndexStream, bytes);
    const size_t kept = batch.keptPairs * kIndexPairSize;
    if (kept == bytes.size() && kept == FindCompoundStream(batch.file.view, kIndexName)->size)
        return 1;
    return RewriteStream(file, kIndexStream, static_cast<uint32_t>(kept),
                         std::span(bytes).subspan(kept));
}

static int WriteEntries(const StoreBatch& batch, const CompoundFile& file) {
    for (uint32_t entry : batch.removals) {
        if (!RemoveStream(file, StreamName(entry).c_str())) return 0;
    }
    std::vector<uint32_t> order;
    for (const auto& put : batch.puts)
        order.push_back(put.first);
    ScatterOrder(&order);
    for (uint32_t entry : order) {
        if (!WriteStream(file, StreamName(entry).c_str(), batch.puts.at(entry))) return 0;
    }
    return 1;
}

static int ChangeByPlatform(const StoreBatch& batch, std::vector<uint8_t>* image) {
    CompoundFile file;
    const int open = batch.isFresh ? CreateCompound(&file)
                                   : OpenCompound(std::vector<uint8_t>(batch.file.bytes), &file);
    const int made = open && SetCompoundClass(file, kDatabaseClass) && WriteIndex(batch, file) &&
                     WriteEntries(batch, file) && FlushCompound(file);
    CloseCompound(&file, image);
    return made;
}

// 1 for a stream that this batch writes or removes itself.
static int IsTouched(const StoreBatch& batch, const CompoundStream& stream) {
    if (&stream == FindCompoundStream(batch.file.view, kIndexName)) return 1;
    uint32_t entry;
    return ParseEntryName(stream.name, &entry) &&
           (batch.puts.count(entry) || batch.removals.count(entry));
}

static int LayOutAnew(const StoreBatch& batch, std::vector<uint8_t>* image) {
    const CompoundView& view = batch.file.view;
    const auto index = PackIndex(batch.pairs);
    CompoundStamps root;
    if (!batch.isFresh) root = view.root;
    std::memcpy(root.classId, &kDatabaseClass, sizeof root.classId);
    std::vector<CompoundPart> parts = {MakePart(kIndexName, index)};
    for (const CompoundStream& stream : view.streams) {
        if (!batch.isFresh && !IsTouched(batch, stream)) parts.push_back(CarryPart(view, stream));
    }
    for (const auto& [entry, bytes] : batch.puts) {
        char name[kEntryNameSize];
        EntryName(entry, name);
        parts.push_back(MakePart(name, bytes));
    }
    return BuildCompound(root, std::move(parts), image);
}

// The platform's way leaves a file's structure alone where nothing changes, so it is the one for
// what a person types; and the one for files that hold more than we can carry over.
static int BuildImage(const StoreBatch& batch, std::vector<uint8_t>* image) {
    const int many = batch.puts.size() + batch.removals.size() >= kManyChanges;
    return many && (batch.isFresh || batch.file.view.isFlat) ? LayOutAnew(batch, image)
                                                             : ChangeByPlatform(batch, image);
}

static int HoldsStream(const CompoundView& view, const char* name,
                       const std::vector<uint8_t>& bytes) {
    const CompoundStream* stream = FindCompoundStream(view, name);
    return stream && ReadCompoundStream(view, *stream) == bytes;
}

static int IsImageRight(const StoreBatch& batch, std::span<const uint8_t> image) {
    CompoundView view;
    if (CheckCompound(image, &view) != kCompoundGood) return 0;
    if (std::memcmp(view.root.classId, &kDatabaseClass, sizeof view.root.classId)) return 0;
    if (!HoldsStream(view, kIndexName, PackIndex(batch.pairs))) return 0;
    char name[kEntryNameSize];
    for (const auto& [entry, bytes] : batch.puts) {
        EntryName(entry, name);
        if (!HoldsStream(view, name, bytes)) return 0;
    }
    for (uint32_t entry : batch.removals) {
        EntryName(entry, name);
        if (FindCompoundStream(view, name)) return 0;
    }
    // Both lists are in the order of names.
    size_t carried = 0;
    auto now = view.streams.begin();
    for (const CompoundStream& stream : batch.file.view.streams) {
        if (IsTouched(batch, stream)) continue;
        while (now != view.streams.end() && !IsSameName(*now, stream))
            ++now;
        if (now == view.streams.end() || !IsSameStream(batch.file.view, stream, view, *now))
            return 0;
        ++carried;
    }
    return view.streams.size() == 1 + batch.puts.size() + carried;
}

static int Commit(StoreBatch* batch) {
    std::vector<uint8_t> image;
    TakeDroppedOut(batch);
    return BuildImage(*batch, &image) && IsImageRight(*batch, image) &&
           PutInPlace(&batch->file, image);
}

int CommitUntold(StoreBatch* batch) {
    if (!batch) return 0;
    const int done = !batch->isChanged || Commit(batch);
    CancelStoreBatch(batch);
    return done;
}

int CommitStoreBatch(StoreBatch* batch) {
    if (!batch) return 0;
    const size_t discs = batch->file.keepsBad ? batch->puts.size() : 0; // of the default database
    const uint32_t entry = discs == 1 ? batch->puts.begin()->first : 0;
    const int done = CommitUntold(batch);
    if (done && discs) TellStoreListeners(entry, 1);
    return done;
}

void CancelStoreBatch(StoreBatch* batch) {
    if (!batch) return;
    EndChange(&batch->file);
    delete batch;
}
