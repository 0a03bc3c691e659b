// Reading the database, and the changes of one disc. See store.h; docs/database.md tells the
// format and how a change is put in place. State: the file layer, set once at start-up; everything
// else lives for one call.
#include "core/platform.h"
#include "cdinfo/store_parts_win.h"

#include <atomic>
#include <cstring>
#include <memory>

#include "core/strings_win.h"
#include "resources/ids.h"

static struct {
    std::atomic<const FileLayer*> files{nullptr};
    std::atomic<const wchar_t*> standard{nullptr}; // instead of the one beside the executable
} s_store;

void SetStoreFiles(const FileLayer* files) {
    s_store.files = files;
}

void SetDefaultDatabase(const wchar_t* path) {
    s_store.standard = path;
}

std::wstring DefaultDatabasePath() {
    if (const wchar_t* standard = s_store.standard) return standard;
    wchar_t path[MAX_PATH * 4];
    const DWORD capacity = sizeof path / sizeof *path;
    const DWORD length = GetModuleFileNameW(nullptr, path, capacity);
    std::wstring text(path, length < capacity ? length : 0);
    text.resize(text.rfind(L'\\') == std::wstring::npos ? 0 : text.rfind(L'\\') + 1);
    return text + L"CDInfo.CDP";
}

// One spelling of a path, since locks go by it.
static std::wstring FullPath(const wchar_t* path) {
    wchar_t full[MAX_PATH * 4];
    const DWORD capacity = sizeof full / sizeof *full;
    const DWORD length = GetFullPathNameW(path, capacity, full, nullptr);
    return length && length < capacity ? std::wstring(full, length) : std::wstring(path);
}

void PrepareStoreFile(const wchar_t* path, SafeFile* file) {
    const std::wstring standard = DefaultDatabasePath();
    const FileLayer* files = s_store.files;
    file->files = files ? files : &SystemFiles();
    file->path = path ? FullPath(path) : standard;
    file->keepsBad = lstrcmpiW(file->path.c_str(), standard.c_str()) == 0;
}

// ---- reading

int ReadIndex(const SafeFile& file, std::vector<IndexPair>* pairs) {
    const CompoundStream* index = FindCompoundStream(file.view, kIndexName);
    if (!index) return 0;
    *pairs = ParseIndex(ReadCompoundStream(file.view, *index));
    return 1;
}

const CompoundStream* FindEntry(const SafeFile& file, uint32_t entry) {
    char name[kEntryNameSize];
    EntryName(entry, name);
    return FindCompoundStream(file.view, name);
}

int UnpackStored(std::span<const uint8_t> bytes, uint32_t entry, CDInfoRecord* record) {
    if (!UnpackEntry(bytes, record)) return 0;
    if (!record->identity) SetIdentity(record, entry);
    if (!record->programCount) DefaultProgram(record);
    return 1;
}

static int LoadWithIndex(const wchar_t* path, SafeFile* file, std::vector<IndexPair>* pairs) {
    PrepareStoreFile(path, file);
    return LoadSafeFile(file) == kLoadGood && ReadIndex(*file, pairs);
}

uint32_t CountEntries(const wchar_t* path) {
    SafeFile file;
    std::vector<IndexPair> pairs;
    return LoadWithIndex(path, &file, &pairs) ? static_cast<uint32_t>(pairs.size()) : 0;
}

static int LoadEntry(const wchar_t* path, uint32_t entry, std::vector<uint8_t>* bytes) {
    SafeFile file;
    PrepareStoreFile(path, &file);
    if (LoadSafeFile(&file) != kLoadGood) return 0;
    const CompoundStream* stream = FindEntry(file, entry);
    if (!stream) return 0;
    *bytes = ReadCompoundStream(file.view, *stream);
    return 1;
}

int ReadEntry(const wchar_t* path, uint32_t entryIdentity, CDInfoRecord* record) {
    std::vector<uint8_t> bytes;
    return LoadEntry(path, entryIdentity, &bytes) && UnpackStored(bytes, entryIdentity, record);
}

int ReadRawEntry(const wchar_t* path, uint32_t entryIdentity, uint8_t (&buffer)[kMaxPackedEntry],
                 size_t* length) {
    std::vector<uint8_t> bytes;
    *length = 0;
    if (!LoadEntry(path, entryIdentity, &bytes) || bytes.size() > sizeof buffer) return 0;
    if (!bytes.empty()) std::memcpy(buffer, bytes.data(), bytes.size());
    *length = bytes.size();
    return 1;
}

// ---- changing

int EnsureDatabase(const wchar_t* path) {
    SafeFile file;
    PrepareStoreFile(path, &file);
    const LoadState state = LoadSafeFile(&file);
    if (state == kLoadGood) return 1;
    if (state == kLoadUnreadable) return 0;
    StoreBatch* batch = BeginStoreBatch(path);
    if (batch) batch->isChanged = batch->isFresh;
    return CommitStoreBatch(batch);
}

// Puts the record into an open batch, ends it and tells the listeners.
static int StoreAndEnd(StoreBatch* batch, const CDInfoRecord& record) {
    uint32_t entry;
    const int packed = BatchPut(batch, record, &entry);
    if (!packed) CancelStoreBatch(batch);
    const int stored = packed && CommitUntold(batch);
    TellStoreListeners(entry, 0); // also when it failed: they then show what is really there
    return stored;
}

static int AskToReplace(HWND owner) {
    char text[kStringMax], caption[kStringMax];
    LoadText(IDS_DUPLICATE_TEXT, text);
    LoadText(IDS_DUPLICATE_CAPTION, caption);
    return MessageBoxA(owner, text, caption, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

int AddOrReplace(const wchar_t* path, const CDInfoRecord& record, int confirm, StoreWindow owner) {
    if (IsNothingToStore(record)) return 1;
    StoreBatch* batch = BeginStoreBatch(path);
    if (batch && confirm && BatchHasDisc(*batch, record.identity)) {
        CancelStoreBatch(batch); // the question waits for a person: nothing is held meanwhile
        if (!AskToReplace(owner)) return 0;
        batch = BeginStoreBatch(path);
    }
    return batch && StoreAndEnd(batch, record);
}

int StoreEdit(const CDInfoRecord& before, const CDInfoRecord& after) {
    StoreBatch* batch = IsNothingToStore(after) ? nullptr : BeginStoreBatch(nullptr);
    if (!batch) return IsNothingToStore(after);
    const auto merged = std::make_unique<CDInfoRecord>();
    BatchMerge(batch, before, after, merged.get());
    return StoreAndEnd(batch, *merged);
}

int DeleteEntry(const wchar_t* path, uint32_t identity) {
    StoreBatch* batch = BeginStoreBatch(path);
    if (!batch) return 0;
    if (batch->isFresh) {
        const int absent = batch->file.state == kLoadAbsent;
        CancelStoreBatch(batch);
        return absent;
    }
    BatchDelete(batch, identity);
    return CommitStoreBatch(batch);
}

// ---- a disc that was put into the drive

// A record from a drive that has not read the whole table of contents must not cut the entry.
static int WouldLoseTracks(std::span<const uint8_t> bytes, const CDInfoRecord& record) {
    auto stored = std::make_unique<CDInfoRecord>();
    return UnpackEntry(bytes, stored.get()) && stored->trackCount > record.trackCount;
}

// Reads the disc's texts from a loaded file into the record. mayStore: 0 when storing the record
// could lose what is there.
static LookUpState ReadDisc(const SafeFile& file, CDInfoRecord* record, int* mayStore) {
    *mayStore = file.state == kLoadAbsent;
    if (file.state == kLoadAbsent) return kLookUpNew;
    std::vector<IndexPair> pairs;
    if (file.state != kLoadGood || !ReadIndex(file, &pairs)) return kLookUpUnread;
    const IndexPair* pair = FindPair(pairs, record->identity);
    const uint32_t entry = pair ? pair->entry : record->identity;
    const CompoundStream* stream = FindEntry(file, entry);
    *mayStore = 1;
    if (!stream || !stream->size) return kLookUpNew;
    const auto bytes = ReadCompoundStream(file.view, *stream);
    auto read = std::make_unique<CDInfoRecord>(*record);
    *mayStore = UnpackStored(bytes, entry, read.get());
    if (!*mayStore) return kLookUpUnread;
    *record = *read;
    *mayStore = !WouldLoseTracks(bytes, *record);
    return kLookUpFound;
}

int LookUpDisc(CDInfoRecord* record, LookUpState* state) {
    ApplyDefaults(record);
    // Begun as a change, so that nobody else's comes between reading and storing. When that can't
    // be had the texts can mostly still be read.
    StoreBatch* batch = BeginStoreBatch(nullptr);
    SafeFile file;
    if (!batch) {
        PrepareStoreFile(nullptr, &file);
        LoadSafeFile(&file);
    }
    int mayStore;
    const LookUpState found = ReadDisc(batch ? batch->file : file, record, &mayStore);
    if (state) *state = found;
    if (batch && mayStore && !IsNothingToStore(*record))
        StoreAndEnd(batch, *record);
    else
        CancelStoreBatch(batch);
    return found == kLookUpFound;
}
