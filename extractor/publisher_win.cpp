// The publisher's thread and what is left for it. See publisher_win.h.
#include "extractor/publisher_win.h"

#include "core/guard_win.h"
#include "core/shared_block.h"
#include "extractor/media_type_win.h"
#include "waves/settings_win.h"

namespace {
struct [[nodiscard]] Held {
    explicit Held(SRWLOCK* l) : lock(l) { AcquireSRWLockExclusive(lock); }
    ~Held() { ReleaseSRWLockExclusive(lock); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    SRWLOCK* lock;
};
// One view for all filters of the process, while any of them plays.
struct SharedView {
    SRWLOCK lock;
    SharedControlBlock* block;
    int users;
};
} // namespace
static SharedView s_view = {SRWLOCK_INIT, nullptr, 0};

static SharedControlBlock* AcquireBlock() {
    const Held held(&s_view.lock);
    if (!s_view.block) s_view.block = OpenPresentSharedBlock();
    if (s_view.block) ++s_view.users;
    return s_view.block;
}

static void ReleaseBlock() {
    const Held held(&s_view.lock);
    if (--s_view.users) return;
    CloseSharedBlock(s_view.block);
    s_view.block = nullptr;
}

// ---- the thread

// Without a clock the graph runs as fast as it can, and the picture with it.
static DWORD MsUntilNext(const Publisher* publisher, const SoundBlock& block) {
    REFERENCE_TIME now = 0;
    if (!publisher->running) return INFINITE;
    if (!publisher->clock || FAILED(publisher->clock->GetTime(&now))) return 0;
    return MsUntilShown(block, now - publisher->start);
}

static const SoundBlock* NextOrIdle(Publisher* publisher) {
    if (const SoundBlock* block = NextBlock(&publisher->queue)) return block;
    publisher->idle = 1;
    return NextBlock(&publisher->queue); // one may have been left meanwhile, without a wake
}

static void Show(Publisher* publisher, const SoundBlock& block) {
    publisher->sound.format = block.format;
    PublishSound(publisher->block, &publisher->sound, &publisher->sums, block.bytes,
                 GetTickCount());
    TakeBlock(&publisher->queue);
}

// Under the lock, so that nothing more is shown after a pause. How long to wait before it is due.
static DWORD ShowWhenDue(Publisher* publisher, const SoundBlock& block) {
    const Held held(&publisher->lock);
    const DWORD wait = MsUntilNext(publisher, block);
    if (!wait) Show(publisher, block);
    return wait;
}

static void Publish(void* argument) {
    auto* publisher = static_cast<Publisher*>(argument);
    while (!publisher->quit) {
        const SoundBlock* block = NextOrIdle(publisher);
        const DWORD wait = block ? ShowWhenDue(publisher, *block) : INFINITE;
        if (wait) WaitForSingleObject(publisher->wake, wait);
    }
}

static DWORD WINAPI PublisherThread(void* argument) {
    GuardCall(Publish, argument, nullptr); // the sound goes on without a picture
    return 0;
}

// ---- start and stop

int OpenPublisher(Publisher* publisher) {
    publisher->wake = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    return publisher->wake != nullptr;
}

void ClosePublisher(Publisher* publisher) {
    StopPublisher(publisher);
    SetPublisherClock(publisher, nullptr);
    if (publisher->wake) CloseHandle(publisher->wake);
}

void SetPublisherFormat(Publisher* publisher, const SoundFormatRecord& format) {
    SetBlockFormat(&publisher->queue, format);
}

void StartPublisher(Publisher* publisher) {
    if (publisher->thread) return;
    publisher->block = AcquireBlock();
    if (!publisher->block) return;
    publisher->sound.format = publisher->queue.format;
    publisher->sound.fftChoice = static_cast<uint32_t>(LoadFftChoice());
    publisher->sums.buffers = 0;
    publisher->quit = 0;
    FlushBlocks(&publisher->queue);
    PublishOpening(publisher->block, &publisher->sound);
    publisher->thread = CreateThread(nullptr, 0, PublisherThread, publisher, 0, nullptr);
    if (publisher->thread)
        publisher->active = 1;
    else
        StopPublisher(publisher);
}

void StopPublisher(Publisher* publisher) {
    PausePublisher(publisher);
    publisher->active = 0;
    publisher->quit = 1;
    if (publisher->thread) {
        SetEvent(publisher->wake);
        WaitForSingleObject(publisher->thread, INFINITE); // it calls nobody who could hold it
        CloseHandle(publisher->thread);
    }
    if (publisher->block) ReleaseBlock();
    publisher->thread = nullptr;
    publisher->block = nullptr;
}

void RunPublisher(Publisher* publisher, REFERENCE_TIME start) {
    {
        const Held held(&publisher->lock);
        publisher->running = 1;
        publisher->start = start;
    }
    SetEvent(publisher->wake);
}

void PausePublisher(Publisher* publisher) {
    const Held held(&publisher->lock);
    publisher->running = 0;
}

void SetPublisherClock(Publisher* publisher, IReferenceClock* clock) {
    if (clock) clock->AddRef();
    IReferenceClock* before;
    {
        const Held held(&publisher->lock);
        before = publisher->clock;
        publisher->clock = clock;
    }
    if (before) before->Release();
    SetEvent(publisher->wake);
}

IReferenceClock* GetPublisherClock(Publisher* publisher) {
    const Held held(&publisher->lock);
    if (publisher->clock) publisher->clock->AddRef();
    return publisher->clock;
}

void FlushPublisher(Publisher* publisher) {
    FlushBlocks(&publisher->queue);
    SetEvent(publisher->wake); // it may wait for one that is void
}

// ---- the streaming thread

static void WakeIdle(Publisher* publisher) {
    if (publisher->idle.exchange(0)) SetEvent(publisher->wake);
}

// A sample may bring the format of all that follow.
static void TakeFormatOf(Publisher* publisher, IMediaSample* sample) {
    AM_MEDIA_TYPE* type = nullptr;
    if (sample->GetMediaType(&type) != S_OK || !type) return;
    SoundFormatRecord format = {};
    AcceptsMediaType(type, &format); // else it stays empty: there is no picture of that
    SetBlockFormat(&publisher->queue, format);
    FreeMediaType(type);
    CoTaskMemFree(type);
}

static SampleTime TimeOf(IMediaSample* sample) {
    SampleTime time = {};
    const HRESULT result = sample->GetTime(&time.start, &time.end);
    time.hasStart = SUCCEEDED(result);
    time.hasEnd = result == S_OK;
    time.gap = sample->IsDiscontinuity() == S_OK;
    return time;
}

void LeaveSample(Publisher* publisher, IMediaSample* sample) {
    if (!publisher->active) return;
    TakeFormatOf(publisher, sample);
    if (sample->IsPreroll() == S_OK) return; // it is not heard
    BYTE* bytes = nullptr;
    const long size = sample->GetSize(), used = sample->GetActualDataLength();
    if (FAILED(sample->GetPointer(&bytes)) || !bytes || size <= 0 || used <= 0) return;
    const size_t count = static_cast<size_t>(used < size ? used : size);
    if (PutSample(&publisher->queue, bytes, count, TimeOf(sample))) WakeIdle(publisher);
}

void LeaveEnd(Publisher* publisher) {
    if (publisher->active && PutEnd(&publisher->queue)) WakeIdle(publisher);
}
