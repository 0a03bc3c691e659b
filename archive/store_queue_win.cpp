// See store_queue_win.h. One lock guards the queue; it is held for moments and never while the
// database is at work. The thread ends when the queue is empty.
#include "archive/store_queue_win.h"

#include "cdinfo/store.h"
#include "core/guard_win.h"
#include "core/lock_win.h"

#include <deque>
#include <list>
#include <process.h>

constexpr int kTries = 5; // of a change whose window waits for it
constexpr DWORD kTryPauseMs = 100;
constexpr int kOrphanTries = 120; // those behind it wait as long
constexpr DWORD kOrphanPauseMs = 500;
constexpr DWORD kNoticePauseMs = 50;

namespace {
struct QueuedChange {
    StoreChange change;
    HWND window;
    UINT notice;
    volatile LONG done;
};
} // namespace

static struct {
    HANDLE lock = CreateMutexA(nullptr, FALSE, nullptr);
    std::deque<std::unique_ptr<QueuedChange>> waiting; // the first one is being stored
    std::list<StoreChange> ended;                      // until they are taken
    uint32_t lastId = 0;
    int running = 0;
} s_queue;

// ---- storing

static int PutInPlace(QueuedChange* queued) {
    StoreChange& change = queued->change;
    StoreBatch* batch = BeginStoreBatch(nullptr);
    if (!batch) return 0;
    int packed = 1;
    std::unique_ptr<CDInfoRecord> merged;
    if (change.put) {
        merged = std::make_unique<CDInfoRecord>();
        BatchMerge(batch, *change.before, *change.put, merged.get());
        packed = BatchAdd(batch, *merged);
    }
    DWORD told = GetTickCount();
    for (size_t i = 0; i < change.deletes.size(); ++i) {
        BatchDelete(batch, change.deletes[i]);
        queued->done = static_cast<LONG>(i + 1);
        const int isLast = i + 1 == change.deletes.size(); // what takes long comes now
        if (!isLast && GetTickCount() - told < kNoticePauseMs) continue;
        told = GetTickCount();
        if (queued->window)
            PostMessageA(queued->window, WM_COMMAND, queued->notice,
                         static_cast<LPARAM>(change.id));
    }
    if (!packed) {
        CancelStoreBatch(batch);
        return 0;
    }
    const int good = CommitStoreBatch(batch);
    if (good && merged) change.put = std::move(merged);
    return good;
}

static void StoreGuarded(void* argument) {
    auto* queued = static_cast<QueuedChange*>(argument);
    queued->change.good = PutInPlace(queued);
}

// 1 when the change has come to its end, well or not.
static int TryToStore(QueuedChange* queued, int tries) {
    GuardCall(StoreGuarded, queued, nullptr);
    if (queued->change.good) return 1;
    HWND window = nullptr;
    {
        const ScopedLock lock(s_queue.lock);
        if (lock.held) window = queued->window;
    }
    Sleep(window ? kTryPauseMs : kOrphanPauseMs);
    return tries >= (window ? kTries : kOrphanTries);
}

// ---- the thread

static QueuedChange* FirstWaiting() {
    const ScopedLock lock(s_queue.lock);
    if (lock.held && !s_queue.waiting.empty()) return s_queue.waiting.front().get();
    s_queue.running = 0;
    return nullptr;
}

static void EndFirst() {
    const ScopedLock lock(s_queue.lock);
    if (!lock.held) return;
    const std::unique_ptr<QueuedChange> queued = std::move(s_queue.waiting.front());
    s_queue.waiting.pop_front();
    if (!queued->window) return;
    const auto id = static_cast<LPARAM>(queued->change.id);
    s_queue.ended.push_back(std::move(queued->change));
    PostMessageA(queued->window, WM_COMMAND, queued->notice, id);
}

static unsigned __stdcall StoreAll(void*) {
    while (QueuedChange* queued = FirstWaiting()) {
        for (int tries = 1; !TryToStore(queued, tries);)
            ++tries;
        EndFirst();
    }
    return 0;
}

static void StartThreadLocked() {
    if (s_queue.running) return;
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, StoreAll, nullptr, 0, nullptr));
    if (!thread) return; // the next change tries again
    s_queue.running = 1;
    CloseHandle(thread);
}

// ---- interface

uint32_t QueueChange(HWND window, UINT notice, StoreChange&& change) {
    auto queued = std::make_unique<QueuedChange>();
    queued->change = std::move(change);
    queued->window = window;
    queued->notice = notice;
    const ScopedLock lock(s_queue.lock);
    if (!lock.held) return 0;
    const uint32_t id = queued->change.id = ++s_queue.lastId;
    s_queue.waiting.push_back(std::move(queued));
    StartThreadLocked();
    return id;
}

size_t ChangeProgress(uint32_t id) {
    const ScopedLock lock(s_queue.lock);
    if (!lock.held) return 0;
    for (const auto& queued : s_queue.waiting)
        if (queued->change.id == id) return static_cast<size_t>(queued->done);
    return 0;
}

int TakeChange(uint32_t id, StoreChange* change) {
    const ScopedLock lock(s_queue.lock);
    if (!lock.held) return 0;
    for (auto at = s_queue.ended.begin(); at != s_queue.ended.end(); ++at) {
        if (at->id != id) continue;
        *change = std::move(*at);
        s_queue.ended.erase(at);
        return 1;
    }
    return 0;
}

void AbandonChanges(HWND window) {
    const ScopedLock lock(s_queue.lock);
    if (!lock.held) return;
    for (const auto& queued : s_queue.waiting)
        if (queued->window == window) queued->window = nullptr;
    // What failed for it is given another chance without it.
    for (StoreChange& change : s_queue.ended) {
        if (change.good) continue;
        auto again = std::make_unique<QueuedChange>();
        again->change = std::move(change);
        s_queue.waiting.push_back(std::move(again));
    }
    s_queue.ended.clear();
    StartThreadLocked();
}

int FinishChanges(DWORD waitMs) {
    const DWORD start = GetTickCount();
    for (;;) {
        {
            const ScopedLock lock(s_queue.lock);
            if (lock.held && s_queue.waiting.empty()) return 1;
        }
        if (GetTickCount() - start >= waitMs) return 0;
        Sleep(kTryPauseMs);
    }
}
