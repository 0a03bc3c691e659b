// Reading lengths on a thread. See durations_win.h.
#include "media/durations_win.h"

#include "core/guard_win.h"
#include "media/engine_win.h"

#include <deque>
#include <memory>
#include <new>
#include <process.h>
#include <utility>

namespace {
struct SharedAccess {
    explicit SharedAccess(SRWLOCK* l) : lock(l) { AcquireSRWLockExclusive(lock); }
    ~SharedAccess() { ReleaseSRWLockExclusive(lock); }
    SharedAccess(const SharedAccess&) = delete;
    SharedAccess& operator=(const SharedAccess&) = delete;

    SRWLOCK* const lock;
};

// Belongs to the dialog and to the thread, whichever lives longer.
struct ReadingState {
    SRWLOCK lock = SRWLOCK_INIT;
    HWND window = nullptr; // null when nobody listens any more
    UINT message = 0;
    int running = 0; // a thread works
    std::string current;
    std::deque<std::string> waiting;
    std::vector<FileLength> ready;
};
} // namespace

struct LengthReader {
    std::shared_ptr<ReadingState> state;
};

// The next file; 0 when there is none, and the thread is to end.
static int NextFile(ReadingState* state) {
    const SharedAccess access(&state->lock);
    state->current.clear();
    if (!state->window || state->waiting.empty()) {
        state->running = 0;
        return 0;
    }
    state->current = std::move(state->waiting.front());
    state->waiting.pop_front();
    return 1;
}

static void GiveLength(ReadingState* state, const FileLength& length) {
    const SharedAccess access(&state->lock);
    state->ready.push_back(length);
    if (state->ready.size() == 1 && state->window)
        PostMessageA(state->window, state->message, 0, 0);
}

// What reads a damaged file is other people's code: a fault there costs that file's length.
static void ReadLength(void* argument) {
    auto* length = static_cast<FileLength*>(argument);
    length->seconds = MediaFileDuration(length->path.c_str());
}

static unsigned __stdcall ReadLengths(void* argument) {
    const std::unique_ptr<std::shared_ptr<ReadingState>> owned(
        static_cast<std::shared_ptr<ReadingState>*>(argument));
    ReadingState* const state = owned->get();
    while (NextFile(state)) {
        FileLength length = {state->current, 0}; // the thread alone writes `current`
        if (GuardCall(ReadLength, &length, nullptr) != kGuardNormal) length.seconds = 0;
        GiveLength(state, length);
    }
    return 0;
}

static int StartThread(const std::shared_ptr<ReadingState>& state) {
    auto* own = new (std::nothrow) std::shared_ptr<ReadingState>(state);
    if (!own) return 0;
    const auto thread =
        reinterpret_cast<HANDLE>(_beginthreadex(nullptr, 0, ReadLengths, own, 0, nullptr));
    if (!thread) {
        delete own;
        return 0;
    }
    SetThreadPriority(thread, THREAD_PRIORITY_BELOW_NORMAL); // music may be playing
    CloseHandle(thread);
    return 1;
}

LengthReader* StartLengthReader(HWND window, UINT message) {
    auto* reader = new (std::nothrow) LengthReader{std::make_shared<ReadingState>()};
    if (!reader) return nullptr;
    reader->state->window = window;
    reader->state->message = message;
    return reader;
}

void AskForLengths(LengthReader* reader, const std::vector<std::string>& paths) {
    ReadingState* const state = reader->state.get();
    const SharedAccess access(&state->lock);
    state->waiting.clear();
    for (const std::string& path : paths)
        if (path != state->current) state->waiting.push_back(path);
    if (state->waiting.empty() || state->running) return;
    state->running = StartThread(reader->state);
}

std::vector<FileLength> TakeLengths(LengthReader* reader) {
    const SharedAccess access(&reader->state->lock);
    return std::exchange(reader->state->ready, {});
}

void EndLengthReader(LengthReader* reader) {
    if (!reader) return;
    {
        const SharedAccess access(&reader->state->lock);
        reader->state->window = nullptr;
        reader->state->waiting.clear();
    }
    delete reader;
}
