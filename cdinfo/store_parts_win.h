// What the files of the store share among themselves.
#pragma once
#include <cstdint>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "cdinfo/index.h"
#include "cdinfo/safe_file.h"
#include "cdinfo/store.h"

struct StoreBatch {
    SafeFile file;
    int isFresh = 0;   // no usable database: a new one is made
    int isChanged = 0; // something is to be written
    std::vector<IndexPair> pairs;
    std::vector<uint8_t> dropped; // one a pair; they go when the batch is committed
    size_t keptPairs = 0;         // leading pairs that stand in the file as they are
    size_t livePairs = 0;
    std::unordered_multimap<uint32_t, size_t> places;        // of the pairs that name an identity
    std::unordered_map<uint32_t, std::vector<uint8_t>> puts; // by entry
    std::unordered_set<uint32_t> removals;                   // entries that have a stream
};

// The files that the store works on; SystemFiles() unless a test has set others.
void SetStoreFiles(const FileLayer* files);
// For tests, of which several programs run from one folder: the default database's full path from
// now on. The text must stay.
void SetDefaultDatabase(const wchar_t* path);

// A file object for the path, or for the default database.
void PrepareStoreFile(const wchar_t* path, SafeFile* file);

// 0 when a good file has no index.
int ReadIndex(const SafeFile& file, std::vector<IndexPair>* pairs);

const CompoundStream* FindEntry(const SafeFile& file, uint32_t entry);

// Unpacks into the record and completes it as ReadEntry promises.
int UnpackStored(std::span<const uint8_t> bytes, uint32_t entry, CDInfoRecord* record);

// 1 when the index names the disc.
int BatchHasDisc(const StoreBatch& batch, uint32_t disc);

// Adds a record that is worth storing. `entry` receives where it belongs, also when 0.
int BatchPut(StoreBatch* batch, const CDInfoRecord& record, uint32_t* entry);

// Posts kDatabaseChanged; with `byBatch` only to those who want to hear of batches.
void TellStoreListeners(uint32_t entry, int byBatch);

// As CommitStoreBatch, but nobody hears of it.
int CommitUntold(StoreBatch* batch);
