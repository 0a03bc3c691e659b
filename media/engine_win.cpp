// The media engine's operations. See engine_win.h.
//
// Each operation takes the lock when it begins and once more before it traces, and never gives it
// back: the engine belongs to the thread that made the graph. The lock comes with the graph and
// goes with it, so operations without a graph take none.
#include "media/engine_win.h"

#include "core/commands.h"
#include "core/settings.h"
#include "core/shared_block.h"
#include "core/text.h"
#include "media/engine.h"
#include "media/graph_win.h"
#include "waves/engine_win.h"

#include <cmath>
#include <cstring>

constexpr const char* kTraceValue = "LastLogLocation";
constexpr DWORD kSeekRestMs = 20;    // for the sound that is on its way
constexpr DWORD kStopLimitMs = 1000; // for a stop "when ready", which may never come
constexpr int kSettleTries = 10;
constexpr long kSettleMs = 200;

namespace {
struct MediaEngine {
    IGraphBuilder* graph;
    IMediaControl* control;
    IMediaEventEx* events;
    IVideoWindow* video;
    IBasicAudio* audio;
    CRITICAL_SECTION lock;
    int hasLock;
    int hasCom;
    HWND listener;
    UINT listenerMessage;
    char lastWord[kTraceMax];
};
} // namespace
static MediaEngine s_media;

static void TakeLock() {
    if (s_media.hasLock) EnterCriticalSection(&s_media.lock);
}

// The position is asked for several times a second, so a word that stands already is not written.
static int Trace(MediaOperation operation, int step, int result) {
    TakeLock();
    char word[kTraceMax];
    MediaTraceWord(operation, step, word);
    if (std::strcmp(word, s_media.lastWord)) {
        CopyText(s_media.lastWord, word);
        WriteRegString(kUserRoot, kSettingsRoot, kTraceValue, word);
    }
    return result;
}

static void SwitchCapture(int on) {
    SendWavesCommand(on ? kWavesOpen : kWavesClose, 0);
}

static void ClearAnalysis() {
    if (!SharedBlock) return;
    std::memset(SharedBlock->SoundBuffer, 0, sizeof SharedBlock->SoundBuffer);
    SharedBlock->PowerLeft = SharedBlock->PowerRight = 0;
    std::memset(SharedBlock->BandsLeft, 0, sizeof SharedBlock->BandsLeft);
    std::memset(SharedBlock->BandsRight, 0, sizeof SharedBlock->BandsRight);
}

// ---- the graph

template <typename Interface> static int Query(REFIID interfaceId, Interface** object) {
    *object = nullptr;
    return SUCCEEDED(
               s_media.graph->QueryInterface(interfaceId, reinterpret_cast<void**>(object))) &&
           *object;
}

static void ReleaseInterfaces() {
    if (s_media.events) s_media.events->SetNotifyWindow(0, 0, 0);
    ReleaseCom(&s_media.audio);
    ReleaseCom(&s_media.video);
    ReleaseCom(&s_media.events);
    ReleaseCom(&s_media.control);
    ReleaseCom(&s_media.graph);
    if (s_media.hasCom) CoUninitialize();
    s_media.hasCom = 0;
}

static void TellListener() {
    if (s_media.events && s_media.listener)
        s_media.events->SetNotifyWindow(reinterpret_cast<OAHWND>(s_media.listener),
                                        static_cast<long>(s_media.listenerMessage), 0);
}

int InitMediaGraph() {
    if (s_media.graph) ReleaseMediaGraph();
    s_media.hasCom = SUCCEEDED(CoInitialize(nullptr));
    if (FAILED(TheMediaPlatform.CreateGraph(&s_media.graph)) || !s_media.graph ||
        !Query(IID_IMediaControl, &s_media.control) || !Query(IID_IMediaEventEx, &s_media.events) ||
        !Query(IID_IVideoWindow, &s_media.video) || !Query(IID_IBasicAudio, &s_media.audio)) {
        ReleaseInterfaces();
        return 0;
    }
    TellListener();
    InitializeCriticalSection(&s_media.lock);
    s_media.hasLock = 1;
    return 1;
}

void ReleaseMediaGraph() {
    ReleaseInterfaces();
    SwitchCapture(1);
    if (s_media.hasLock) DeleteCriticalSection(&s_media.lock);
    s_media.hasLock = 0;
}

static DWORD WINAPI StopForgotten(void* control) {
    const ComScope com;
    static_cast<IMediaControl*>(control)->Stop();
    return 0;
}

// Its interfaces are left to whoever of the graph's threads still uses them, but nobody is left to
// stop the sound. A thread that ends whenever it can does so: the killed one may hold a lock.
void ForgetMediaGraph() {
    IMediaControl* const control = s_media.control;
    s_media = {};
    const HANDLE thread =
        control ? CreateThread(nullptr, 0, StopForgotten, control, 0, nullptr) : nullptr;
    if (thread) CloseHandle(thread);
    SwitchCapture(1);
}

int LoadMediaFile(const char* path) {
    TakeLock();
    StopMediaPlay();
    ReleaseMediaGraph();
    if (!InitMediaGraph()) return Trace(kTraceLoad, 1, 0);
    TakeLock();
    if (!AddExtractor(s_media.graph)) return Trace(kTraceLoad, 2, 0);
    SwitchCapture(0);
    if (!RenderMediaFile(s_media.graph, path)) return Trace(kTraceLoad, 3, 0);
    s_media.video->put_Visible(OAFALSE);
    return Trace(kTraceLoad, 0, 1);
}

// ---- play, pause, stop

static void NameVideoWindow() {
    const BSTR caption = s_media.video ? SysAllocString(L"Tonvue Video Window") : nullptr;
    if (!caption) return;
    s_media.video->put_Caption(caption);
    SysFreeString(caption);
}

int BeginMediaPlay() {
    TakeLock();
    NameVideoWindow();
    if (!s_media.control) return Trace(kTracePlay, 1, 0);
    SwitchCapture(0);
    if (SUCCEEDED(s_media.control->Run())) return Trace(kTracePlay, 0, 1);
    SwitchCapture(1);
    return Trace(kTracePlay, 2, 0);
}

// What was said of the sound before a stop or a seek is over.
static void EmptyEventQueue() {
    MediaHasEnded();
}

// StopWhenReady answers before the graph stands still.
static void WaitStopped() {
    const DWORD start = GetTickCount();
    OAFilterState state = State_Running;
    do {
        if (SUCCEEDED(s_media.control->GetState(kSettleMs, &state)) && state == State_Stopped)
            return;
        Sleep(1);
    } while (GetTickCount() - start < kStopLimitMs);
    s_media.control->Stop();
}

int StopMediaPlay() {
    TakeLock();
    if (!s_media.graph || !s_media.control || !s_media.video) return Trace(kTraceStop, 1, 1);
    if (FAILED(s_media.control->StopWhenReady())) return Trace(kTraceStop, 2, 0);
    WaitStopped();
    EmptyEventQueue();
    s_media.video->put_Visible(OAFALSE);
    IMediaPosition* position = nullptr;
    if (!Query(IID_IMediaPosition, &position)) return Trace(kTraceStop, 3, 0);
    const HRESULT rewound = position->put_CurrentPosition(0);
    position->Release();
    if (FAILED(rewound)) return Trace(kTraceStop, 4, 0);
    ClearAnalysis();
    SwitchCapture(1);
    return Trace(kTraceStop, 0, 1);
}

int ToggleMediaPause() {
    TakeLock();
    if (!s_media.control) return Trace(kTracePause, 1, 0);
    OAFilterState state = State_Stopped;
    if (SUCCEEDED(s_media.control->GetState(0, &state)) && state == State_Paused)
        return BeginMediaPlay();
    if (FAILED(s_media.control->Pause())) return Trace(kTracePause, 2, 0);
    s_media.control->GetState(kSettleMs, &state); // until then sound may still be published
    ClearAnalysis();
    return Trace(kTracePause, 0, 1);
}

// ---- position

static void StopAndSettle() {
    OAFilterState state = State_Running;
    s_media.control->Stop();
    s_media.control->GetState(static_cast<long>(INFINITE), &state);
    for (int i = 0; i < kSettleTries; ++i) {
        if (SUCCEEDED(s_media.control->GetState(kSettleMs, &state))) return;
        Sleep(0);
    }
}

// Runs on wherever it then stands, also when the place is refused.
static int RunFrom(IMediaPosition* position, double second) {
    REFTIME duration = 0, target = 0;
    position->get_Duration(&duration);
    if (!SeekTarget(second, duration, &target)) return 0;
    Sleep(kSeekRestMs);
    StopAndSettle();
    EmptyEventQueue();
    const int moved = SUCCEEDED(position->put_CurrentPosition(target));
    return SUCCEEDED(s_media.control->Run()) && moved;
}

int SeekMediaToSecond(double second) {
    TakeLock();
    if (!s_media.graph || !s_media.control) return Trace(kTraceSeek, 1, 0);
    IMediaPosition* position = nullptr;
    if (!Query(IID_IMediaPosition, &position)) return Trace(kTraceSeek, 2, 0);
    const int moved = RunFrom(position, second);
    position->Release();
    return Trace(kTraceSeek, moved ? 0 : 3, moved);
}

int GetMediaPosition(double* duration, double* position) {
    TakeLock();
    *duration = *position = 0;
    if (!s_media.graph) return Trace(kTracePosition, 1, 1);
    IMediaPosition* source = nullptr;
    if (!Query(IID_IMediaPosition, &source)) return Trace(kTracePosition, 2, 0);
    REFTIME length = 0, now = 0;
    int failed = 0;
    if (FAILED(source->get_Duration(&length)) || !std::isfinite(length))
        failed = 3;
    else if (FAILED(source->get_CurrentPosition(&now)) || !std::isfinite(now))
        failed = 4;
    source->Release();
    if (failed != 3) *duration = length;
    if (!failed) *position = now;
    return Trace(kTracePosition, failed, !failed);
}

// ---- what the graph says

void NotifyMediaWindow(HWND window, UINT message) {
    s_media.listener = window;
    s_media.listenerMessage = message;
    TellListener();
}

// A graph that gave up, say because its output has gone, will not come to any other end.
static int IsEnd(long code) {
    return code == EC_COMPLETE || code == EC_ERRORABORT || code == EC_USERABORT;
}

int MediaHasEnded() {
    int ended = 0;
    long code = 0;
    LONG_PTR first = 0, second = 0;
    while (s_media.events && SUCCEEDED(s_media.events->GetEvent(&code, &first, &second, 0))) {
        ended |= IsEnd(code);
        s_media.events->FreeEventParams(code, first, second);
    }
    return ended;
}
