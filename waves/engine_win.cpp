// The Waves engine's thread: commands, capture, the watchdog. Everything here belongs to that
// thread but the two functions that hand it a command.
#include "waves/engine_win.h"

#include "core/commands.h"
#include "core/shared_block.h"
#include "waves/loopback_win.h"
#include "waves/publish.h"
#include "waves/settings_win.h"
#include "waves/wave_in_win.h"

#include <mmsystem.h>

constexpr UINT_PTR kWatchTimer = 600, kLoopbackTimer = 601;
constexpr UINT kWatchMs = 1000, kLoopbackMs = 15;
constexpr DWORD kStallMs = 1000;         // without a buffer
constexpr uint32_t kMaxRevivePause = 16; // watches between attempts at a device that stays silent
constexpr DWORD kWavesStopMs = 3000;
constexpr UINT kSendMs = 3000;

namespace {
struct WavesEngine {
    HWND window;
    WavesSettings source; // what is captured, or was last
    PublishedSound sound;
    int wanted; // capture is to run: a device that is gone is tried again and again
    int open;
    LoopbackStream* loopback; // where that is what is open
    DWORD soundTick;          // of the last buffer
    uint32_t silentWatches;   // in a row
};
} // namespace
static WavesEngine s_waves;
static SoundSums s_sums; // large, and worth keeping: it holds tables

// ---- publishing

static void OnSound(const uint8_t* bytes) {
    const DWORD now = GetTickCount();
    s_waves.soundTick = now;
    s_waves.silentWatches = 0;
    if (SharedBlock) PublishSound(SharedBlock, &s_waves.sound, &s_sums, bytes, now);
}

// ---- the source

static int OpenLoopbackSource(uint16_t device) {
    s_waves.loopback = OpenLoopback(device, s_waves.sound.format);
    if (!s_waves.loopback) return 0;
    if (SetTimer(s_waves.window, kLoopbackTimer, kLoopbackMs, nullptr)) return 1;
    CloseLoopback(s_waves.loopback);
    s_waves.loopback = nullptr;
    return 0;
}

static int OpenSource(const WavesSettings& source) {
    s_waves.sound.format = FormatOfCode(source.format);
    s_waves.open = source.device >= kLoopbackDefault
                       ? OpenLoopbackSource(source.device)
                       : OpenWaveIn(source.device, s_waves.sound.format, s_waves.window);
    if (!s_waves.open) return 0;
    s_waves.source = source;
    if (s_waves.wanted && SharedBlock) PublishOpening(SharedBlock, &s_waves.sound);
    return 1;
}

// 0 when the driver holds on to it.
static int CloseSource() {
    s_waves.open = 0;
    if (s_waves.loopback) {
        KillTimer(s_waves.window, kLoopbackTimer);
        CloseLoopback(s_waves.loopback);
        s_waves.loopback = nullptr;
    }
    return CloseWaveIn();
}

static void Revive() {
    if (CloseSource()) OpenSource(s_waves.source);
}

// ---- commands

static void BeginWatch() {
    s_waves.soundTick = GetTickCount();
    s_waves.silentWatches = 0;
}

static int OnOpenCommand() {
    s_waves.wanted = 1;
    if (s_waves.open) return 1;
    BeginWatch();
    return OpenSource(s_waves.source);
}

static int OnCloseCommand() {
    s_waves.wanted = 0;
    return CloseSource();
}

static int OnReconfigure(const WavesSettings& source) {
    BeginWatch();
    if (!CloseSource()) return 0;
    const int good = OpenSource(source);
    if (good)
        StoreWavesSettings(source);
    else if (s_waves.wanted)
        OpenSource(s_waves.source);
    if (!s_waves.wanted) CloseSource(); // somebody else publishes; it was only tried
    return good;
}

static int ReadFftChoice() {
    s_waves.sound.fftChoice = static_cast<uint32_t>(LoadFftChoice());
    return 1;
}

static LRESULT OnCommand(WPARAM command, LPARAM argument) {
    switch (command) {
    case kWavesOpen: return OnOpenCommand();
    case kWavesClose: return OnCloseCommand();
    case kWavesReconfigure: return OnReconfigure({LOWORD(argument), HIWORD(argument)});
    case kWavesFftChoice: return ReadFftChoice();
    default: return 0;
    }
}

// ---- the watchdog

// A device that is slow to begin would never begin if it were made to start anew each second.
static int IsTimeToRevive(uint32_t silentWatches) {
    return !(silentWatches & (silentWatches - 1)) || !(silentWatches % kMaxRevivePause);
}

static int Restart() {
    return s_waves.loopback ? RestartLoopback(s_waves.loopback) : RestartWaveIn();
}

static void OnWatch() {
    if (!s_waves.wanted) return;
    if (!s_waves.open) {
        Revive();
        return;
    }
    if (GetTickCount() - s_waves.soundTick <= kStallMs) return;
    ++s_waves.silentWatches;
    if (!IsTimeToRevive(s_waves.silentWatches)) return;
    if (s_waves.silentWatches > 1 || !Restart()) Revive();
}

// ---- the window

static void OnWaveInData(LPARAM header) {
    const uint8_t* bytes = FullWaveInBuffer(header);
    if (!bytes) return;
    OnSound(bytes);
    QueueWaveInAgain(header); // when that fails for all of them, the watchdog begins anew
}

static void OnTimer(WPARAM timer) {
    if (timer == kWatchTimer) OnWatch();
    if (timer == kLoopbackTimer && s_waves.loopback)
        PollLoopback(s_waves.loopback, GetTickCount(), OnSound);
}

static LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_COMMAND: return OnCommand(LOWORD(wParam), lParam);
    case MM_WIM_DATA: OnWaveInData(lParam); return 0;
    case WM_TIMER: OnTimer(wParam); return 0;
    case WM_CLOSE: // while the window still takes what the device gives back
        OnCloseCommand();
        DestroyWindow(window);
        return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

// ---- start and stop

static int OpenEngine(ComponentThread* thread) {
    s_waves = {};
    s_waves.window = CreateHiddenWindow(thread->Instance, kWavesEngineClass, kWavesEngineTitle,
                                        GuardedProc<WindowProc>);
    if (!s_waves.window) return 0;
    thread->Window = s_waves.window;
    s_waves.source = LoadWavesSettings();
    ReadFftChoice();
    SendMessageA(s_waves.window, WM_COMMAND, kWavesOpen, 0);
    if (s_waves.open) return 1;
    DestroyWindow(s_waves.window);
    return 0;
}

static void Opened(ComponentThread* thread) {
    SetTimer(thread->Window, kWatchTimer, kWatchMs, nullptr);
    PostMessageA(thread->Window, WM_COMMAND, kWavesOpen, 0); // harmless where it captures already
}

static void CloseEngine(ComponentThread*) {
    OnCloseCommand();
    AbandonWaveIn();
}

// The thread was killed, most likely inside a driver's call, or has faulted.
static void ForgetEngine(ComponentThread*) {
    AbandonWaveIn();
    s_waves = {}; // a loopback stream stays: it belongs to the thread that made it
}

static ComponentThread s_thread = [] {
    ComponentThread thread = {};
    thread.title = kWavesEngineTitle;
    thread.isEngine = 1;
    thread.runningBit = kRunningWaves;
    thread.stopWaitMs = kWavesStopMs;
    thread.Open = OpenEngine;
    thread.Opened = Opened;
    thread.Close = CloseEngine;
    thread.Forget = ForgetEngine;
    return thread;
}();

ComponentThread* WavesEngineThread() {
    return &s_thread;
}

// ---- any thread

static HWND EngineWindow() {
    return ComponentIsOn(&s_thread) ? s_thread.Window : nullptr;
}

int PostWavesCommand(UINT command, LPARAM argument) {
    HWND window = EngineWindow();
    return window && PostMessageA(window, WM_COMMAND, command, argument);
}

int SendWavesCommand(UINT command, LPARAM argument) {
    HWND window = EngineWindow();
    DWORD_PTR answer = 0;
    return window && SendMessageTimeoutA(window, WM_COMMAND, command, argument, SMTO_NORMAL,
                                         kSendMs, &answer) != 0;
}
