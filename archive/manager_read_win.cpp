// Reading the database into the manager's memory. A thread reads the file whole and lets go of it;
// then the window takes the entries over, slice by slice, and goes on answering. Discs that change
// meanwhile are read again by themselves and not taken from what was read before.
#include "archive/manager_state_win.h"

#include "cdinfo/store.h"
#include "core/guard_win.h"
#include "resources/ids.h"

#include <algorithm>
#include <process.h>

constexpr DWORD kSliceMs = 12;     // what a user does not notice
constexpr DWORD kIdleSliceMs = 60; // while nothing waits for the window
constexpr UINT kFillPauseMs = 10;
constexpr UINT kFirstRetryMs = 250; // doubled each time
constexpr int kMaxRetries = 7;      // half a minute in all

struct ReadEntryPlace {
    uint32_t identity;
    size_t offset, length;
};

// Shared by the window and the thread; who is last frees it.
struct ReadJob {
    std::unordered_set<uint32_t> wanted; // empty: all
    std::vector<uint8_t> bytes;          // packed entries, one after the other
    std::vector<ReadEntryPlace> entries;
    int good = 0;
    volatile LONG cancelled = 0, ended = 0;
    HWND window = nullptr;
};

// ---- the thread

static int KeepEntry(const void* data, size_t length, uint32_t identity, void* context) {
    auto* job = static_cast<ReadJob*>(context);
    if (job->cancelled || (!job->wanted.empty() && !job->wanted.count(identity))) return 1;
    const auto* bytes = static_cast<const uint8_t*>(data);
    job->entries.push_back({identity, job->bytes.size(), length});
    job->bytes.insert(job->bytes.end(), bytes, bytes + length);
    return 1;
}

// No database at all is an empty one.
static int ReadAll(ReadJob* job) {
    if (EnumerateEntries(nullptr, nullptr, KeepEntry, job, 0, 1)) return 1;
    return GetFileAttributesW(DefaultDatabasePath().c_str()) == INVALID_FILE_ATTRIBUTES &&
           GetLastError() == ERROR_FILE_NOT_FOUND;
}

static void ReadGuarded(void* argument) {
    auto* job = static_cast<ReadJob*>(argument);
    job->good = ReadAll(job);
}

static unsigned __stdcall ReadThread(void* argument) {
    const std::unique_ptr<std::shared_ptr<ReadJob>> job(
        static_cast<std::shared_ptr<ReadJob>*>(argument));
    GuardCall(ReadGuarded, job->get(), nullptr);
    InterlockedExchange(&(*job)->ended, 1);
    PostMessageA((*job)->window, WM_COMMAND, kManagerRead, 0);
    return 0;
}

static int StartJob(ManagerWindow* manager, std::unordered_set<uint32_t>&& wanted) {
    auto job = std::make_shared<ReadJob>();
    job->wanted = std::move(wanted);
    job->window = manager->window;
    auto* forThread = new std::shared_ptr<ReadJob>(job);
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, ReadThread, forThread, 0, nullptr));
    if (!thread) {
        delete forThread;
        return 0;
    }
    CloseHandle(thread);
    manager->reading = job;
    return 1;
}

// One reading at a time. All of it first: single discs are newer.
static void ReadNext(ManagerWindow* manager) {
    if (manager->reading) return;
    if (manager->readAgain) {
        if (manager->filling) return;
        manager->touched.clear();
        if (StartJob(manager, {})) manager->readAgain = 0;
    } else if (!manager->wanted.empty()) {
        StartJob(manager, std::move(manager->wanted));
        manager->wanted.clear();
    }
}

void ReadDatabase(ManagerWindow* manager) {
    manager->readAgain = 1;
    manager->retries = 0;
    KillTimer(manager->window, kRetryTimer);
    ReadNext(manager);
}

void NoteTouched(ManagerWindow* manager, uint32_t identity) {
    if (manager->filling || (manager->reading && manager->reading->wanted.empty()))
        manager->touched.insert(identity);
}

void RefreshDisc(ManagerWindow* manager, uint32_t identity) {
    NoteTouched(manager, identity);
    manager->wanted.insert(identity);
    ReadNext(manager);
}

// ---- taking over

static void TakeEntry(Catalog* catalog, const ReadJob& job, const ReadEntryPlace& entry,
                      CDInfoRecord* record) {
    *record = CDInfoRecord();
    if (!UnpackEntry({job.bytes.data() + entry.offset, entry.length}, record)) return;
    if (!record->identity) SetIdentity(record, entry.identity);
    if (!record->programCount) DefaultProgram(record);
    CatalogPut(catalog, *record);
}

// Rows show up early and often enough, but sorting them costs: each time twice as many.
static void ShowSoFar(ManagerWindow* manager) {
    if (manager->filled < manager->arrangeAt) return;
    manager->arrangeAt = 2 * manager->filled;
    ArrangeManager(manager);
}

// Discs that stand in the list but not in the database any more.
static void DropTheGone(ManagerWindow* manager) {
    std::unordered_set<uint32_t> there;
    for (const ReadEntryPlace& entry : manager->filling->entries)
        there.insert(entry.identity);
    for (const uint32_t identity : CatalogDiscs(manager->catalog))
        if (!there.count(identity) && !manager->touched.count(identity))
            CatalogRemove(manager->catalog, identity);
}

static void EndFilling(ManagerWindow* manager) {
    KillTimer(manager->window, kFillTimer);
    DropTheGone(manager);
    manager->filling.reset();
    ShowManagerProgress(manager, 0, 0);
    ArrangeManager(manager);
    ReadNext(manager);
}

static void FillSlice(ManagerWindow* manager) {
    if (!manager->filling) return;
    const ReadJob& job = *manager->filling;
    const auto record = std::make_unique<CDInfoRecord>();
    const DWORD start = GetTickCount();
    while (manager->filled < job.entries.size()) {
        const ReadEntryPlace& entry = job.entries[manager->filled++];
        if (!manager->touched.count(entry.identity))
            TakeEntry(manager->catalog, job, entry, record.get());
        const DWORD passed = GetTickCount() - start;
        if (passed < kSliceMs) continue;
        constexpr UINT kWaiting = QS_INPUT | QS_PAINT | QS_POSTMESSAGE | QS_SENDMESSAGE;
        if (passed >= kIdleSliceMs || HIWORD(GetQueueStatus(kWaiting))) break;
    }
    if (manager->filled >= job.entries.size()) {
        EndFilling(manager);
        return;
    }
    ShowManagerProgress(manager, manager->filled, job.entries.size());
    ShowSoFar(manager);
}

static void BeginFilling(ManagerWindow* manager, const std::shared_ptr<ReadJob>& job) {
    manager->filling = job;
    manager->filled = manager->arrangeAt = 0;
    SetTimer(manager->window, kFillTimer, kFillPauseMs, nullptr);
    FillSlice(manager);
}

// A few discs: those that are not there have gone.
static void TakeSome(ManagerWindow* manager, const ReadJob& job) {
    const auto record = std::make_unique<CDInfoRecord>();
    std::unordered_set<uint32_t> gone = job.wanted;
    for (const ReadEntryPlace& entry : job.entries) {
        gone.erase(entry.identity);
        // It has changed once more: that reading is on its way.
        if (!manager->wanted.count(entry.identity))
            TakeEntry(manager->catalog, job, entry, record.get());
    }
    for (const uint32_t identity : gone)
        if (!manager->wanted.count(identity)) CatalogRemove(manager->catalog, identity);
    ArrangeManager(manager);
}

// In use, most likely: later, then.
static void TryAgainLater(ManagerWindow* manager, const ReadJob& job) {
    if (job.wanted.empty())
        manager->readAgain = 1;
    else
        manager->wanted.insert(job.wanted.begin(), job.wanted.end());
    if (manager->retries < kMaxRetries) {
        SetTimer(manager->window, kRetryTimer, kFirstRetryMs << manager->retries, nullptr);
        ++manager->retries;
    }
    if (job.wanted.empty()) manager->status = IDS_DATABASE_UNREADABLE;
    ShowManagerCount(manager);
}

void OnManagerRead(ManagerWindow* manager) {
    const std::shared_ptr<ReadJob> job = manager->reading;
    if (!job || !job->ended) return;
    manager->reading.reset();
    if (!job->good) {
        TryAgainLater(manager, *job);
        return;
    }
    manager->retries = 0;
    if (manager->status == IDS_DATABASE_UNREADABLE) manager->status = 0;
    if (job->wanted.empty())
        BeginFilling(manager, job);
    else
        TakeSome(manager, *job);
    ReadNext(manager);
}

void OnManagerReadTimer(ManagerWindow* manager, UINT_PTR timer) {
    if (timer == kFillTimer) {
        FillSlice(manager);
        return;
    }
    KillTimer(manager->window, kRetryTimer);
    ReadNext(manager);
}

void StopReading(ManagerWindow* manager) {
    if (manager->reading) InterlockedExchange(&manager->reading->cancelled, 1);
    manager->reading.reset();
    manager->filling.reset();
}
