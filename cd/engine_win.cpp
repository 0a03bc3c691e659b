// The CD engine's thread: start and stop, the hidden window, the poll. See engine_parts_win.h.
#include "cd/engine_parts_win.h"

#include "cd/disc_device.h"
#include "cd/drives.h"
#include "cdinfo/store.h"
#include "core/commands.h"
#include "core/shared_block.h"

#include <mmsystem.h>

#include <algorithm>

CdEngine TheCd;

static const char* const kWindowClass = "CDPlayrHiddenWindowClassName";
static const char* const kWindowTitle = "CDPlayrWindow";
constexpr DWORD kStoreAtStopMs = 500;
constexpr uint32_t kMaxRetryPause = 16; // polls

// ---- the poll

// What other processes left in the shared block.
static void TakeRequests() {
    const uint32_t track = ExchangeShared(SHARED_FIELD(RequestedTrack), 0);
    if (track) PostCdCommand(kCdPlay, static_cast<LPARAM>(track));
    const auto skip = static_cast<int32_t>(ExchangeShared(SHARED_FIELD(SkipCount), 0));
    if (skip > 0) PostCdCommand(kCdNext, skip);
    // The most negative count has no positive twin.
    if (skip < 0) PostCdCommand(kCdPrevious, -std::max(skip, -INT32_MAX));
}

static void Act(PollAction action, uint16_t track, Tmsf position) {
    switch (action) {
    case kPollNothing:
    case kPollEnded: break;
    case kPollStop: PostCdCommand(kCdStop, 0); break;
    case kPollNext: PostCdCommand(kCdNext, 1); break;
    case kPollLockTrack: GoOn(track); break;
    case kPollFollow:
        if (!TmsfTrack(position)) break;
        WithCd([&](CDEngineState& state, CDEngineSettings&) {
            FollowPosition(&state, position, GetTickCount());
        });
        NotifyCdWindows();
        break;
    }
}

static void PollPlaying() {
    const uint32_t mode = ReadCdMode();
    const Tmsf position = mode == kModePlay ? ReadCdPosition() : 0;
    PollAction action = kPollNothing;
    int ended = 0, doorOpened = 0;
    uint16_t track = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        if (!state.playing) return;
        if (!state.paused) {
            const uint32_t seconds = (GetTickCount() - state.trackStartTick) / 1000;
            state.elapsedSeconds = static_cast<uint16_t>(std::min<uint32_t>(seconds, UINT16_MAX));
        }
        doorOpened = state.paused && mode == kModeOpen;
        ended = PlayHasEnded(&TheCd.watch, state, mode, position);
        action = DecidePoll(state, settings, mode);
        track = state.currentTrack;
    });
    if (ended)
        CheckEndOfPlay(mode == kModeOpen ? mode : kModeStop);
    else if (doorOpened || action == kPollEnded)
        CheckEndOfPlay(0);
    else
        Act(action, track, position);
}

static void PollIdle() {
    if (!UseLostDevice()) return;
    uint32_t mode = DiscMode(TheCd.device);
    TheCd.failedModes = mode ? 0 : TheCd.failedModes + 1;
    if (!mode) {
        if (TheCd.failedModes < 2) return; // once may be a slip
        mode = kModeNotReady;
    }
    uint32_t stored = mode;
    WithCd([&](CDEngineState& state, CDEngineSettings&) {
        stored = state.deviceMode;
        state.deviceMode = mode;
    });
    // The mode is also read between polls, so a change may be stored already.
    const int doorMoved = (mode == kModeOpen) != (TheCd.tocMode == kModeOpen);
    if (mode == stored && !doorMoved && !TheCd.tocRetries) return;
    // Stopped after play: the disc is the same.
    const int sameDisc = mode != kModeNotReady && stored != kModeNotReady && !doorMoved;
    ReadToc(!sameDisc || TheCd.tocRetries);
    CheckEndOfPlay(0);
}

static void TakeRefresh() {
    if (!(ClearSharedBits(SHARED_FIELD(CommandFlags), kCommandRefresh) & kCommandRefresh)) return;
    ReadToc(1);
    CheckEndOfPlay(0);
    NotifyCdWindows();
}

static void TakeAutoplay() {
    if (!(ClearSharedBits(SHARED_FIELD(CommandFlags), kCommandPlayCd) & kCommandPlayCd)) return;
    const auto wanted = static_cast<char>(SharedBlock->CommandDrive & 0xFF);
    if (CdIsBusy() || (wanted != '-' && !UseCdDrive(wanted))) return;
    ReadToc(1);
    CheckEndOfPlay(0);
    BuildCdList();
    PostCdCommand(kCdPlay, 0);
}

// What the database refused so far: at the next poll, then after two, four, ... polls, since every
// attempt reads the whole file, and a folder without rights refuses for good.
static void TryDatabaseAgain() {
    const int pending = PendingRecords();
    if (!pending && !TheCd.lookUpAgain && !TheCd.entryReads) {
        TheCd.retryPause = TheCd.retryWait = 0;
        return;
    }
    if (TheCd.retryWait > 0) {
        --TheCd.retryWait;
        return;
    }
    if (pending) StorePendingRecords(0);
    if (TheCd.lookUpAgain) LookUpAgain();
    if (TheCd.entryReads) ReadEntryAnew();
    TheCd.retryPause = std::clamp(TheCd.retryPause * 2, 1u, kMaxRetryPause);
    TheCd.retryWait = TheCd.retryPause - 1;
}

static void OnTimer() {
    TakeRequests();
    int playing = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) { playing = state.playing != 0; });
    if (playing)
        PollPlaying();
    else
        PollIdle();
    TakeRefresh();
    TakeAutoplay();
    TryDatabaseAgain();
}

// ---- the window

static void OnDeviceChanged() {
    TheCd.changePosted = 0;
    ReadToc(1);
    CheckEndOfPlay(0);
}

static void OnPutImage() {
    char path[MAX_PATH] = "";
    {
        const ScopedLock lock(TheCd.mutex);
        if (!lock.held) return;
        CopyMemory(path, TheCd.image, sizeof path);
    }
    // A disc that is pulled from under a running play would count as played to its end.
    if (CdIsBusy() && CdDriveLetter() == DiscImageDrive()) StopCd();
    WriteDiscImage(path);
}

static void OnDestroy() {
    uint32_t stop = 0;
    WithCd([&](CDEngineState&, CDEngineSettings& settings) { stop = settings.StopExit; });
    StorePendingRecords(kStoreAtStopMs); // before the drive gets a chance to keep us waiting
    if (stop) StopDisc(TheCd.device);
    PostQuitMessage(0);
}

static LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND:
        if (LOWORD(wParam) == kDatabaseChanged)
            OnDatabaseChanged(static_cast<uint32_t>(lParam));
        else
            OnCdCommand(LOWORD(wParam), lParam);
        return 0;
    case WM_TIMER:
        if (wParam == kCdPollTimer) OnTimer();
        return 0;
    case MM_MCINOTIFY: CheckEndOfPlay(0); return 0;
    // Broadcast by sending: the sender must not wait for a slow drive, nor may it come in between
    // two commands to the device. Broadcasts come in bursts, of which one reading is enough.
    case WM_DEVICECHANGE:
        if (!TheCd.changePosted)
            TheCd.changePosted = PostMessageA(window, kCdDeviceChanged, 0, 0) != 0;
        return TRUE;
    case kCdDeviceChanged: OnDeviceChanged(); return 0;
    case kCdReadEntry:
        TheCd.readEntryPosted = 0;
        ReadEntryAnew();
        return 0;
    case kCdGoOn: OnGoOn(static_cast<uint32_t>(lParam)); return 0;
    case kCdPutImage: OnPutImage(); return 0;
    case WM_DESTROY: OnDestroy(); return 0;
    }
    return DefWindowProcA(window, message, wParam, lParam);
}

// ---- start and stop

static int TakeDevice(uint32_t device, const CDEngineSettings& settings) {
    const ScopedLock lock(TheCd.mutex);
    if (!lock.held) return 0;
    std::fill(std::begin(TheCd.windows), std::end(TheCd.windows), nullptr);
    TheCd.state = CDEngineState{};
    TheCd.settings = settings;
    TheCd.device = device;
    TheCd.open = 1;
    return 1;
}

static int OpenDrive(HWND window) {
    TheCd.pollMs = MeasurePollPeriod();
    TheCd.tocMode = TheCd.tocRetries = TheCd.failedModes = 0;
    TheCd.goesOn = TheCd.changePosted = TheCd.lookUpAgain = TheCd.readEntryPosted = 0;
    TheCd.entryReads = 0;
    TheCd.retryPause = TheCd.retryWait = 0;
    TheCd.watch = PlayWatch{};
    CDEngineSettings settings;
    LoadCdSettings(&settings);
    uint32_t device = 0;
    if (!SetTimer(window, kCdPollTimer, TheCd.pollMs, nullptr)) return 0;
    if (!OpenCdDevice(static_cast<char>(settings.Drive), &device)) return 0;
    if (TakeDevice(device, settings)) return 1;
    CloseDisc(device, 0);
    return 0;
}

static int OpenEngine(ComponentThread* thread) {
    if (!TheCd.mutex) TheCd.mutex = CreateMutexA(nullptr, FALSE, nullptr);
    if (!TheCd.mutex) return 0;
    HWND window =
        CreateHiddenWindow(thread->Instance, kWindowClass, kWindowTitle, GuardedProc<WindowProc>);
    if (!window) return 0;
    if (!OpenDrive(window)) {
        DestroyWindow(window);
        return 0;
    }
    thread->Window = window;
    AddStoreListener(window, 1);
    return 1;
}

static void Opened(ComponentThread*) {
    JoinPlay();
    ReadToc(0);
    uint32_t autoRun = 0;
    WithCd([&](CDEngineState&, CDEngineSettings& settings) { autoRun = settings.AutoRun; });
    if (!autoRun || !SharedBlock) return;
    if (ReadShared(SHARED_FIELD(CommandFlags)) & kCommandPlayCd) return;
    SharedBlock->CommandDrive = '-';
    SetSharedBits(SHARED_FIELD(CommandFlags), kCommandPlayCd);
}

static void ForgetState() {
    const ScopedLock lock(TheCd.mutex);
    TheCd.open = 0;
    TheCd.device = 0;
    TheCd.state = CDEngineState{};
    std::fill(std::begin(TheCd.windows), std::end(TheCd.windows), nullptr);
}

static void CloseEngine(ComponentThread* thread) {
    RemoveStoreListener(thread->Window);
    StorePendingRecords(kStoreAtStopMs);
    CloseDisc(TheCd.device, 0);
    ForgetState();
}

// The thread was killed, most likely inside a driver's call, or has faulted. If it could not close
// the device, that stays open: MCI lets nobody else close it.
static void ForgetEngine(ComponentThread*) {
    ForgetState();
    StorePendingRecords(kStoreAtStopMs);
}

ComponentThread CdThread = [] {
    ComponentThread thread = {};
    thread.title = kWindowTitle;
    thread.isEngine = 1;
    thread.runningBit = kRunningCd;
    thread.Open = OpenEngine;
    thread.Opened = Opened;
    thread.Close = CloseEngine;
    thread.Forget = ForgetEngine;
    return thread;
}();

ComponentThread* CdEngineThread() {
    return &CdThread;
}
