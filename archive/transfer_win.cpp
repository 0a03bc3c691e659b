// Imports and exports on threads of their own. See transfer_win.h.
//
// What a job works on belongs to it and to its owner's handle together, whichever lives longer: a
// change that is just being put in place can't be broken off, and a component that waited for it
// would be taken for hung.
#include "archive/transfer_win.h"

#include "archive/clipboard.h"
#include "archive/exchange_win.h"
#include "cdinfo/store.h"
#include "core/guard_win.h"

#include <algorithm>
#include <memory>
#include <new>
#include <process.h>

constexpr DWORD kNoticeMs = 50;     // between two notices
constexpr DWORD kFreeWaitMs = 1500; // a component has two seconds to end
constexpr DWORD kLookMs = 50;       // between two looks for messages that wait for an answer

namespace {
struct Access {
    explicit Access(SRWLOCK* l) : lock(l) { AcquireSRWLockExclusive(lock); }
    ~Access() { ReleaseSRWLockExclusive(lock); }
    Access(const Access&) = delete;
    Access& operator=(const Access&) = delete;

    SRWLOCK* const lock;
};

struct Job {
    SRWLOCK lock = SRWLOCK_INIT; // guards state, window and lastNotice
    TransferState state;
    HWND window = nullptr; // null when nobody listens any more
    DWORD lastNotice = 0;

    volatile LONG cancelled = 0;
    volatile LONG threadId = 0; // 0 until it runs
    // Fixed before the thread starts; from then on the thread's own.
    HWND owner = nullptr;
    UINT notice = 0;
    int (*Run)(Job*) = nullptr;
    TransferChoice choice;
    std::vector<uint8_t> block;
    DiscBlockReader reader;
};
using JobPointer = std::shared_ptr<Job>;
} // namespace

struct Transfer {
    JobPointer job;
    HANDLE thread;
};

// All jobs that run, also those whose owner has gone.
static struct {
    SRWLOCK lock = SRWLOCK_INIT;
    std::vector<JobPointer> jobs;
} s_running;

// ---- on the job's thread

static void PostNoticeLocked(Job* job) {
    job->lastNotice = GetTickCount();
    if (job->window) PostMessageA(job->window, WM_COMMAND, job->notice, 0);
}

// 0 when the job is to end.
static int Step(Job* job, size_t done, size_t total) {
    const Access access(&job->lock);
    job->state.done = done;
    if (total) job->state.total = total;
    if (GetTickCount() - job->lastNotice >= kNoticeMs) PostNoticeLocked(job);
    return !job->cancelled;
}

static int OnStep(size_t done, size_t total, void* context) {
    return Step(static_cast<Job*>(context), done, total);
}

static void CountDiscs(Job* job, size_t discs) {
    const Access access(&job->lock);
    job->state.discs = discs;
}

static int RunImport(Job* job) {
    size_t discs = 0;
    const int good =
        ImportDiscs(job->owner, job->choice.form, job->choice.path.c_str(), {OnStep, job}, &discs);
    CountDiscs(job, discs);
    return good;
}

// Adds all discs of the block; 0 when broken off.
static int AddBlock(Job* job, StoreBatch* batch, size_t* discs) {
    const auto record = std::make_unique<CDInfoRecord>();
    while (NextInDiscBlock(&job->reader, record.get())) {
        if (!BatchAdd(batch, *record) || !Step(job, ++*discs, 0)) return 0;
    }
    return 1;
}

static int RunPaste(Job* job) {
    StoreBatch* const batch = job->reader.left ? BeginStoreBatch(nullptr) : nullptr;
    if (!batch) return 0;
    size_t discs = 0;
    if (!AddBlock(job, batch, &discs)) {
        CancelStoreBatch(batch);
        return 0;
    }
    if (!CommitStoreBatch(batch)) return 0;
    CountDiscs(job, discs);
    return 1;
}

static int NextDisc(CDInfoRecord* record, void* context) {
    return NextInDiscBlock(&static_cast<Job*>(context)->reader, record);
}

static int RunExport(Job* job) {
    const TransferChoice& choice = job->choice;
    return ExportDiscs(choice.form, choice.path.c_str(), choice.separator, NextDisc, job,
                       {OnStep, job});
}

static void RunJob(void* argument) {
    auto* const job = static_cast<Job*>(argument);
    OpenDiscBlock(job->block, &job->reader);
    Step(job, 0, job->reader.left);
    const int good = job->Run(job);
    job->block = {};
    const Access access(&job->lock);
    job->state.good = good;
}

static unsigned __stdcall JobThread(void* argument) {
    JobPointer job = *std::unique_ptr<JobPointer>(static_cast<JobPointer*>(argument));
    InterlockedExchange(&job->threadId, static_cast<LONG>(GetCurrentThreadId()));
    GuardCall(RunJob, job.get(), nullptr);
    {
        const Access access(&job->lock);
        job->state.ended = 1;
        PostNoticeLocked(job.get());
    }
    const Access access(&s_running.lock);
    std::erase(s_running.jobs, job);
    return 0;
}

// ---- starting

static HANDLE StartThread(const JobPointer& job) {
    auto own = std::make_unique<JobPointer>(job);
    const Access access(&s_running.lock);
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, JobThread, own.get(), 0, nullptr));
    if (!thread) return nullptr;
    own.release();
    s_running.jobs.push_back(job);
    return thread;
}

static Transfer* StartJob(HWND owner, UINT notice, const TransferChoice& choice,
                          std::vector<uint8_t>&& block, int (*run)(Job*)) {
    const JobPointer job = std::make_shared<Job>();
    job->owner = job->window = owner;
    job->notice = notice;
    job->Run = run;
    job->choice = choice;
    job->block = std::move(block);
    job->state.isImport = run != RunExport;
    const HANDLE thread = StartThread(job);
    return thread ? new Transfer{job, thread} : nullptr;
}

Transfer* StartImport(HWND owner, UINT notice, const TransferChoice& choice) {
    return StartJob(owner, notice, choice, {}, RunImport);
}

Transfer* StartPaste(HWND owner, UINT notice, std::vector<uint8_t>&& block) {
    return StartJob(owner, notice, {}, std::move(block), RunPaste);
}

Transfer* StartExport(HWND owner, UINT notice, const TransferChoice& choice,
                      std::vector<uint8_t>&& block) {
    return StartJob(owner, notice, choice, std::move(block), RunExport);
}

TransferState ReadTransfer(Transfer* transfer) {
    const Access access(&transfer->job->lock);
    return transfer->job->state;
}

// ---- ending

void CancelTransfer(Transfer* transfer) {
    InterlockedExchange(&transfer->job->cancelled, 1);
}

static BOOL CALLBACK CloseBox(HWND window, LPARAM) {
    if (IsWindowVisible(window)) PostMessageA(window, WM_CLOSE, 0, 0);
    return TRUE;
}

// A message about a file's fault would wait for the user.
static void CloseBoxes(const Job& job) {
    if (job.threadId) EnumThreadWindows(static_cast<DWORD>(job.threadId), CloseBox, 0);
}

void FreeTransfer(Transfer* transfer) {
    if (!transfer) return;
    CancelTransfer(transfer);
    Job* const job = transfer->job.get();
    {
        const Access access(&job->lock);
        job->window = nullptr;
    }
    const DWORD from = GetTickCount();
    for (DWORD spent = 0; spent < kFreeWaitMs; spent = GetTickCount() - from) {
        CloseBoxes(*job);
        const DWORD wait = std::min(kLookMs, kFreeWaitMs - spent);
        const DWORD result =
            MsgWaitForMultipleObjects(1, &transfer->thread, FALSE, wait, QS_SENDMESSAGE);
        if (result == WAIT_OBJECT_0) break;
        // A box that goes makes its owner active again, which this thread has to answer.
        MSG message;
        PeekMessageA(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
    }
    CloseHandle(transfer->thread);
    delete transfer;
}

int FinishTransfers(DWORD waitMs) {
    const DWORD from = GetTickCount();
    for (;;) {
        {
            const Access access(&s_running.lock);
            if (s_running.jobs.empty()) return 1;
            for (const JobPointer& job : s_running.jobs) {
                InterlockedExchange(&job->cancelled, 1);
                CloseBoxes(*job);
            }
        }
        if (GetTickCount() - from >= waitMs) return 0;
        Sleep(10);
    }
}
