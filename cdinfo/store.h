// The database of discs: one compound file with an index stream, "Mappings", and one stream per
// disc that holds its packed entry. The same layout serves as exchange file, so every operation
// takes a path; null stands for the default database beside the executable.
//
// Nothing stays open between calls. A change is made on a copy and put in place by a rename
// (see docs/database.md); a file that is in use, write-protected or unreadable gives 0 and is
// left as it was. Every function may be called from any thread and waits for nobody: what can't
// be had at once counts as in use, and the caller tries again when it sees fit.
#pragma once
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "cdinfo/record.h"

// <windows.h> stays out, so that logic may include this.
struct HWND__;               // NOLINT(bugprone-reserved-identifier)
using StoreWindow = HWND__*; // HWND

// "CDInfo.CDP" in the folder of the executable.
std::wstring DefaultDatabasePath();

// Windows that hear of changes: kDatabaseChanged is posted to them, lParam the entry identity, for
// every disc that is stored by itself. With `batches` also for what a batch puts into the default
// database; lParam is 0 where it was more than one disc. Deletions are not told. 0 when no slot is
// free; a window that is gone needs none.
int AddStoreListener(StoreWindow window, int batches);
void RemoveStoreListener(StoreWindow window);

// 1 when the path holds a sound compound file or a new database was made there. What is no
// compound file is replaced; in the default database's place it is moved aside first.
int EnsureDatabase(const wchar_t* path);

// Pairs in the index, with the {0, 0} that every new database begins with; 0 when there is no
// database or it can't be read.
uint32_t CountEntries(const wchar_t* path);

// Reads the entry of that stream identity into a record that the caller zeroed or filled with
// disc data. Afterwards the identity is set if it was 0, and a program is there.
int ReadEntry(const wchar_t* path, uint32_t entryIdentity, CDInfoRecord* record);

// The same, packed: up to kMaxPackedEntry bytes.
int ReadRawEntry(const wchar_t* path, uint32_t entryIdentity, uint8_t (&buffer)[kMaxPackedEntry],
                 size_t* length);

enum LookUpState {
    kLookUpFound,  // the record holds the stored texts
    kLookUpNew,    // no entry yet; the defaults stand in the record and were stored if possible
    kLookUpUnread, // the database or the entry could not be read: the defaults stand in for texts
                   // that may well exist, so they should not be stored over them
};

// Fills a record that holds the identity and the data of the disc in the drive: 1 when an entry
// was found. A new disc is stored at once with its defaults, and a known one with the timing just
// read, unless the database is in use or the entry has more tracks than the record. `state` may
// be null.
int LookUpDisc(CDInfoRecord* record, LookUpState* state);

// 1 when stored, or when there is nothing to store (a placeholder, no texts, no tracks). With
// `confirm` an existing entry is replaced only after a question in front of `owner`; a "No" gives
// 0. Bytes that stand there already are not written again.
int AddOrReplace(const wchar_t* path, const CDInfoRecord& record, int confirm, StoreWindow owner);

// Stores an edit in the default database, as AddOrReplace: what changed between `before` and
// `after` goes onto what stands there by now (MergeEdit), so that of two edits at once both stand.
int StoreEdit(const CDInfoRecord& before, const CDInfoRecord& after);

// Drops every pair that names the identity, and its stream if it is named as an entry. 0 when the
// change could not be put in place; 1 also when there was nothing to delete.
int DeleteEntry(const wchar_t* path, uint32_t identity);

// data: a CDInfoRecord, or the packed entry when raw. length: of the packed entry. The result ends
// the reading of an old-style file with 0, and is ignored otherwise. Nothing is held during the
// call; it may change the database.
using StoreCallback = int (*)(const void* data, size_t length, uint32_t identity, void* context);

// Calls back for each pair of the index whose disc identity has a stream, in the index's order.
// The database is read once, before the first call. Returns 1, or 0 when it can't be read. With
// more than ten pairs and showProgress a small window in front of `owner` shows how far it is.
// What is no compound file is read as an old-style one (old_style.h), with its messages and its
// result.
int EnumerateEntries(StoreWindow owner, const wchar_t* path, StoreCallback callback, void* context,
                     int showProgress, int raw);

// ---- many changes in one go, at the cost of one copy

struct StoreBatch;

// Null when the database is in use or can't be changed. From here to the end no one else can
// change this database, so keep it short; one thread begins, changes and ends it.
StoreBatch* BeginStoreBatch(const wchar_t* path);
// The entry of a disc as it is to be after what was done so far, into a zeroed record; 0 when there
// is none or it can't be read.
int BatchRead(const StoreBatch* batch, uint32_t identity, CDInfoRecord* record);
// As AddOrReplace without a question; nothing is on disk yet, and no window hears of it.
int BatchAdd(StoreBatch* batch, const CDInfoRecord& record);
// What StoreEdit would store.
void BatchMerge(const StoreBatch* batch, const CDInfoRecord& before, const CDInfoRecord& after,
                CDInfoRecord* merged);
void BatchDelete(StoreBatch* batch, uint32_t identity);
// Puts all changes in place (1) or none (0). Both end the batch.
int CommitStoreBatch(StoreBatch* batch);
void CancelStoreBatch(StoreBatch* batch);
