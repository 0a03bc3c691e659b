// Walking through a whole database, with a small window that shows how far it is.
#include "core/platform.h"
#include "cdinfo/store_parts_win.h"

#include <memory>

#include "resources/ids.h"

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

int EnumerateEntries(StoreWindow owner, const wchar_t* path, StoreCallback callback, void* context,
                     int showProgress, int raw) {
    SafeFile file;
    std::vector<IndexPair> pairs;
    PrepareStoreFile(path, &file);
    if (LoadSafeFile(&file) != kLoadGood || !ReadIndex(file, &pairs)) return 0;
    const HWND progress = showProgress && pairs.size() > kPairsWithoutProgress
                              ? ShowReadProgress(owner, pairs.size())
                              : nullptr;
    auto record = std::make_unique<CDInfoRecord>();
    const Visitor visitor = {callback, context, raw, record.get()};
    for (const IndexPair& pair : pairs) {
        VisitEntry(file, pair.disc, visitor);
        StepReadProgress(progress);
    }
    CloseReadProgress(progress);
    return 1;
}

// ---- the progress window

static INT_PTR CALLBACK OnProgressMessage(HWND, UINT, WPARAM, LPARAM) {
    return FALSE;
}

StoreWindow ShowReadProgress(StoreWindow owner, size_t pairs) {
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_PROGRESS_CLASS};
    InitCommonControlsEx(&classes);
    const HWND window =
        CreateDialogParamA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(IDD_READ_PROGRESS), owner,
                           OnProgressMessage, 0);
    if (!window) return nullptr;
    const HWND bar = GetDlgItem(window, IDC_READ_BAR);
    SendMessageA(bar, PBM_SETRANGE32, 0, static_cast<LPARAM>(pairs * kWordsPerPair));
    SendMessageA(bar, PBM_SETSTEP, kWordsPerPair, 0);
    SendMessageA(bar, PBM_SETPOS, 0, 0);
    ShowWindow(window, SW_SHOW);
    UpdateWindow(window);
    return window;
}

// The caller's thread dispatches nothing meanwhile, so the bar is painted here.
void StepReadProgress(StoreWindow progress) {
    if (!progress) return;
    const HWND bar = GetDlgItem(progress, IDC_READ_BAR);
    SendMessageA(bar, PBM_STEPIT, 0, 0);
    UpdateWindow(bar);
}

void CloseReadProgress(StoreWindow progress) {
    if (progress) DestroyWindow(progress);
}
