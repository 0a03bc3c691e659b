// Walking through a whole database.
#include "core/platform.h"
#include "cdinfo/old_style.h"
#include "cdinfo/progress_win.h"
#include "cdinfo/store_parts_win.h"

#include <memory>

constexpr size_t kPairsWithoutProgress = 10;
constexpr int kWordsPerPair = 2; // the bar counts the index's 32-bit words

struct Visitor {
    StoreCallback callback;
    void* context;
    int raw;
    CDInfoRecord* record; // room for one
};

static void VisitEntry(const SafeFile& file, uint32_t identity, const Visitor& visitor) {
    const CompoundStream* stream = FindEntry(file, identity);
    if (!stream) return;
    const auto bytes = ReadCompoundStream(file.view, *stream);
    if (visitor.raw) {
        // Readers of packed entries have buffers of this size.
        if (bytes.size() <= kMaxPackedEntry)
            visitor.callback(bytes.data(), bytes.size(), identity, visitor.context);
        return;
    }
    *visitor.record = CDInfoRecord();
    if (UnpackStored(bytes, identity, visitor.record))
        visitor.callback(visitor.record, bytes.size(), identity, visitor.context);
}

// By its bytes, or, when these can't be had, because whoever named the file is to hear of it. A
// damaged compound file is none.
static int IsOldStyle(LoadState state, const wchar_t* path) {
    return state == kLoadForeign || (path && (state == kLoadAbsent || state == kLoadUnreadable));
}

int EnumerateEntries(StoreWindow owner, const wchar_t* path, StoreCallback callback, void* context,
                     int showProgress, int raw) {
    SafeFile file;
    std::vector<IndexPair> pairs;
    PrepareStoreFile(path, &file);
    const LoadState state = LoadSafeFile(&file);
    if (IsOldStyle(state, path)) return ReadOldStyleFile(owner, path, callback, context, raw);
    if (state != kLoadGood || !ReadIndex(file, &pairs)) return 0;
    const HWND progress = showProgress && pairs.size() > kPairsWithoutProgress
                              ? ShowProgress(owner, 0, pairs.size() * kWordsPerPair, kWordsPerPair)
                              : nullptr;
    auto record = std::make_unique<CDInfoRecord>();
    const Visitor visitor = {callback, context, raw, record.get()};
    for (const IndexPair& pair : pairs) {
        VisitEntry(file, pair.disc, visitor);
        StepProgress(progress);
    }
    CloseProgress(progress);
    return 1;
}
