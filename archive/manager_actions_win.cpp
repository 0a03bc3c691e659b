// What the manager does with discs: edit, delete, copy, paste, carry to and from files, print.
#include "archive/clipboard_win.h"
#include "archive/manager_state_win.h"
#include "archive/print_win.h"
#include "archive/store_queue_win.h"
#include "cdinfo/editor.h"
#include "cdinfo/editor_win.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"

#include <algorithm>

static int ShowBox(HWND window, const char* text, UINT captionId, UINT style) {
    char caption[kStringMax];
    LoadText(captionId, caption);
    return MessageBoxA(window, text, caption, style);
}

static int ShowMessage(HWND window, UINT textId, UINT captionId, UINT style) {
    char text[kStringMax];
    LoadText(textId, text);
    return ShowBox(window, text, captionId, style);
}

// After anything that ran a message loop.
static int IsStillOpen(const ManagerWindow* manager, HWND window) {
    return manager->window == window && IsWindow(window);
}

static int HasWholeDiscs(const ManagerWindow& manager) {
    return manager.settings.view != kTrackView;
}

// ---- storing

// Without a window, or where it has gone, the change is stored all the same.
static void Queue(ManagerWindow* manager, HWND window, StoreChange&& change,
                  std::unique_ptr<CDInfoRecord> before) {
    const int isOpen = IsStillOpen(manager, window);
    const size_t deletes = change.deletes.size();
    const uint32_t id = QueueChange(isOpen ? window : nullptr, kManagerChange, std::move(change));
    if (isOpen && id) manager->changes.push_back({id, deletes, std::move(before)});
}

static void QueueRecord(ManagerWindow* manager, HWND window, const CDInfoRecord& before,
                        const CDInfoRecord& after) {
    StoreChange change;
    change.before = std::make_unique<CDInfoRecord>(before);
    change.put = std::make_unique<CDInfoRecord>(after);
    Queue(manager, window, std::move(change), std::make_unique<CDInfoRecord>(before));
}

static void ShowRecord(ManagerWindow* manager, const CDInfoRecord& record) {
    NoteTouched(manager, record.identity);
    CatalogPut(manager->catalog, record);
    ArrangeManager(manager);
}

void StoreEdited(ManagerWindow* manager, const CDInfoRecord& before, const CDInfoRecord& after) {
    if (IsNothingToStore(after)) { // the database would not take it: the row keeps what it has
        MessageBeep(MB_ICONWARNING);
        return;
    }
    // The disc may have been edited elsewhere meanwhile.
    const auto now = std::make_unique<CDInfoRecord>(before);
    if (!CatalogRecord(manager->catalog, before.identity, now.get())) *now = before;
    const auto merged = std::make_unique<CDInfoRecord>(*now);
    MergeEdit(before, after, merged.get());
    ShowRecord(manager, *merged);
    QueueRecord(manager, manager->window, *now, *merged);
}

// The disc has been edited once more since: what becomes of that edit is shown then.
static int IsChangedAgain(const ManagerWindow& manager, uint32_t identity) {
    return std::any_of(manager.changes.begin(), manager.changes.end(),
                       [identity](const PendingChange& pending) {
                           return pending.before && pending.before->identity == identity;
                       });
}

static void OnRecordRefused(ManagerWindow* manager, const CDInfoRecord& before,
                            const CDInfoRecord& after) {
    const HWND window = manager->window;
    const int answer = ShowMessage(window, IDS_DATABASE_RETRY_TEXT, IDS_DATABASE_CAPTION,
                                   MB_RETRYCANCEL | MB_ICONWARNING);
    if (answer != IDCANCEL) // also when the window has gone below the question
        QueueRecord(manager, window, before, after);
    else if (IsStillOpen(manager, window) && !IsChangedAgain(*manager, before.identity))
        ShowRecord(manager, before);
}

// ---- editing

void EditSelected(ManagerWindow* manager) {
    const HWND window = manager->window;
    const std::vector<RowKey> rows = SelectedRows(*manager);
    if (rows.size() != 1 || !HasWholeDiscs(*manager)) return;
    const auto before = std::make_unique<CDInfoRecord>();
    if (!CatalogRecord(manager->catalog, rows[0].identity, before.get())) {
        ShowMessage(window, IDS_DATABASE_EDIT_FAILED, IDS_DATABASE_EDIT_CAPTION,
                    MB_OK | MB_ICONERROR);
        return;
    }
    const auto after = std::make_unique<CDInfoRecord>(*before);
    if (!EditCdInformation(window, after.get())) return;
    if (IsStillOpen(manager, window))
        StoreEdited(manager, *before, *after);
    else
        QueueRecord(manager, window, *before, *after);
}

// ---- deleting

static int AskToDelete(HWND window, size_t discs) {
    char format[kStringMax], text[kStringMax];
    LoadText(IDS_DATABASE_DELETE_TEXT, format);
    FormatText(text, sizeof text, format, static_cast<int>(discs));
    return ShowBox(window, text, IDS_DATABASE_DELETE_CAPTION, MB_YESNO | MB_ICONQUESTION) == IDYES;
}

void DeleteSelected(ManagerWindow* manager) {
    constexpr int kAskFrom = 4; // fewer go without a word
    const HWND window = manager->window;
    if (!HasWholeDiscs(*manager) || IsManagerBusy(*manager)) return;
    StoreChange change;
    change.deletes = SelectedDiscs(*manager);
    if (change.deletes.empty()) return;
    if (SelectedCount(*manager) >= kAskFrom && !AskToDelete(window, change.deletes.size())) return;
    if (!IsStillOpen(manager, window)) return;
    SetCursor(LoadCursorA(nullptr, reinterpret_cast<LPCSTR>(IDC_WAIT)));
    ShowManagerProgress(manager, 0, change.deletes.size());
    Queue(manager, window, std::move(change), nullptr);
}

// The rows leave the list when the change is in place; else they stay, and are deselected.
static void OnDeleted(ManagerWindow* manager, const StoreChange& change) {
    ShowManagerProgress(manager, 0, 0);
    if (!change.good) {
        manager->status = IDS_DATABASE_IN_USE;
        DeselectDiscs(manager, change.deletes);
        ShowManagerCount(manager);
        return;
    }
    for (const uint32_t identity : change.deletes) {
        NoteTouched(manager, identity);
        CatalogRemove(manager->catalog, identity);
    }
    ArrangeAfterDeletion(manager);
}

static std::vector<PendingChange>::iterator FindChange(ManagerWindow* manager, uint32_t id) {
    return std::find_if(manager->changes.begin(), manager->changes.end(),
                        [id](const PendingChange& pending) { return pending.id == id; });
}

void OnManagerChange(ManagerWindow* manager, uint32_t id) {
    const auto at = FindChange(manager, id);
    StoreChange change;
    if (at == manager->changes.end()) return;
    if (!TakeChange(id, &change)) {
        if (at->deletes) ShowManagerProgress(manager, ChangeProgress(id), at->deletes);
        return;
    }
    const PendingChange pending = std::move(*at);
    manager->changes.erase(at);
    if (pending.deletes)
        OnDeleted(manager, change);
    else if (!change.good)
        OnRecordRefused(manager, *pending.before, *change.put);
    else if (!IsChangedAgain(*manager, change.put->identity))
        ShowRecord(manager, *change.put); // a reading meanwhile may have brought the old one
}

int IsManagerBusy(const ManagerWindow& manager) {
    return manager.transfer || std::any_of(manager.changes.begin(), manager.changes.end(),
                                           [](const PendingChange& p) { return p.deletes != 0; });
}

// ---- discs as a block

static int MakeBlock(const ManagerWindow& manager, const std::vector<uint32_t>& discs,
                     std::vector<uint8_t>* block) {
    const auto record = std::make_unique<CDInfoRecord>();
    for (const uint32_t identity : discs) {
        *record = CDInfoRecord();
        if (!CatalogRecord(manager.catalog, identity, record.get())) continue;
        if (!AppendToDiscBlock(*record, block)) return 0;
    }
    return 1;
}

static int MakeBlockOrTell(const ManagerWindow& manager, const std::vector<uint32_t>& discs,
                           std::vector<uint8_t>* block) {
    int made = 0;
    try {
        made = MakeBlock(manager, discs, block);
    } catch (const std::bad_alloc&) {
        block->clear();
    }
    if (!made)
        ShowMessage(manager.window, IDS_DATABASE_TOO_MANY, IDS_DATABASE_CAPTION,
                    MB_OK | MB_ICONWARNING);
    return made;
}

void CopySelected(ManagerWindow* manager) {
    std::vector<uint8_t> block;
    const std::vector<uint32_t> discs = SelectedDiscs(*manager);
    if (discs.empty() || !HasWholeDiscs(*manager)) return;
    if (!MakeBlockOrTell(*manager, discs, &block)) return;
    if (!PutDiscsOnClipboard(manager->window, block)) MessageBeep(MB_ICONWARNING);
}

// ---- transfers

static void BeginTransfer(ManagerWindow* manager, Transfer* transfer) {
    manager->transfer = transfer;
    if (!transfer) MessageBeep(MB_ICONWARNING);
}

void PasteDiscs(ManagerWindow* manager) {
    std::vector<uint8_t> block;
    if (!HasWholeDiscs(*manager) || IsManagerBusy(*manager)) return;
    if (!TakeDiscsFromClipboard(manager->window, &block)) return;
    BeginTransfer(manager, StartPaste(manager->window, kManagerTransfer, std::move(block)));
}

void ImportFromFile(ManagerWindow* manager) {
    const HWND window = manager->window;
    TransferChoice choice;
    if (!HasWholeDiscs(*manager) || IsManagerBusy(*manager)) return;
    if (!ChooseImport(window, &choice) || !IsStillOpen(manager, window)) return;
    if (!IsManagerBusy(*manager))
        BeginTransfer(manager, StartImport(window, kManagerTransfer, choice));
}

void ExportToFile(ManagerWindow* manager) {
    const HWND window = manager->window;
    TransferChoice choice;
    std::vector<uint8_t> block;
    if (!HasWholeDiscs(*manager) || IsManagerBusy(*manager)) return;
    if (!ChooseExport(window, &choice) || !IsStillOpen(manager, window)) return;
    if (!MakeBlockOrTell(*manager, SelectedOrAllDiscs(*manager), &block)) return;
    if (IsStillOpen(manager, window) && !IsManagerBusy(*manager))
        BeginTransfer(manager, StartExport(window, kManagerTransfer, choice, std::move(block)));
}

void OnManagerTransfer(ManagerWindow* manager) {
    if (!manager->transfer) return;
    const TransferState state = ReadTransfer(manager->transfer);
    if (!state.ended) {
        // Where the end is not known the indicator shows that something goes on.
        ShowManagerProgress(manager, state.total ? state.done : 1, state.total ? state.total : 2);
        return;
    }
    FreeTransfer(manager->transfer);
    manager->transfer = nullptr;
    manager->status = state.good ? 0 : IDS_DATABASE_FAILED;
    ShowManagerProgress(manager, 0, 0);
    ShowManagerCount(manager);
    if (state.isImport) ReadDatabase(manager);
}

// ---- printing

namespace {
struct PrintedDiscs {
    const ManagerWindow* manager;
    std::vector<uint32_t> discs;
};
} // namespace

// The window may go while the dialog is open, and its catalog with it.
static int PrintedRecord(size_t index, CDInfoRecord* record, void* context) {
    const auto* printed = static_cast<const PrintedDiscs*>(context);
    const Catalog* catalog = printed->manager->catalog;
    return catalog && CatalogRecord(catalog, printed->discs[index], record);
}

void PrintSelected(ManagerWindow* manager) {
    PrintedDiscs printed = {manager, SelectedOrAllDiscs(*manager)};
    ShowPrinting(manager->window, {printed.discs.size(), PrintedRecord, &printed});
}
