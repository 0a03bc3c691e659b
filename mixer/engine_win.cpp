// The mixer engine's thread, the registered windows, and which mixer is in use. See engine_win.h;
// what an operation does stands behind backend_win.h.
#include "mixer/engine_win.h"

#include "core/commands.h"
#include "core/lock_win.h"
#include "core/settings.h"
#include "core/shared_block.h"
#include "core/strings_win.h"
#include "mixer/backend_win.h"
#include "resources/ids.h"

#include <mmsystem.h>
#include <objbase.h>

#include <algorithm>
#include <cstring>

static const char* const kSection = "Software\\Tonvista\\Mixer";
static const char* const kDeviceValue = "Device";       // index of a mixer device
static const char* const kOutputValue = "SystemVolume"; // id of an output; counts before "Device"
constexpr int kMaxWindows = 5;

// To the hidden window: something changed; use the output of index lParam; devices came or went.
constexpr UINT kChanged = WM_APP + 1;
constexpr UINT kUseOutput = WM_APP + 2;
constexpr UINT kDevicesChanged = WM_APP + 3;

namespace {
struct MixerEngine {
    const MixerBackend* volatile backend; // both null while the engine is off
    HWND volatile window;
    uint32_t device; // "Device" as the start has read it
    volatile LONG lastError;
    volatile LONG changePosted; // changes come in bursts, of which one notice is enough
    HANDLE mutex;               // guards what follows
    int open;
    HWND windows[kMaxWindows];
};
} // namespace

static MixerEngine s_engine;

// ---- telling

static void TellWindows() {
    HWND windows[kMaxWindows] = {};
    {
        const ScopedLock lock(s_engine.mutex);
        if (lock.held) std::copy_n(s_engine.windows, kMaxWindows, windows);
    }
    for (HWND window : windows)
        if (window) PostMessageA(window, WM_COMMAND, kNotifyMixer, 0);
}

void NotifyMixerChange() {
    if (InterlockedExchange(&s_engine.changePosted, 1)) return;
    const HWND window = s_engine.window;
    if (!window || !PostMessageA(window, kChanged, 0, 0)) s_engine.changePosted = 0;
}

void NoteMixerError(uint32_t error) {
    InterlockedExchange(&s_engine.lastError, static_cast<LONG>(error));
}

uint32_t MixerLastError() {
    return static_cast<uint32_t>(s_engine.lastError);
}

int RegisterMixerWindow(HWND window) {
    const ScopedLock lock(s_engine.mutex);
    if (!lock.held || !s_engine.open || !window) return 0;
    HWND* place = nullptr;
    for (HWND& slot : s_engine.windows) {
        if (slot == window) return 1;
        // A window whose thread was killed could not say goodbye.
        if (!place && !(slot && IsWindow(slot))) place = &slot;
    }
    if (place) *place = window;
    return place != nullptr;
}

int UnregisterMixerWindow(HWND window) {
    const ScopedLock lock(s_engine.mutex);
    if (!lock.held || !window) return 0;
    HWND* const end = s_engine.windows + kMaxWindows;
    HWND* const slot = std::find(s_engine.windows, end, window);
    if (slot == end) return 0;
    *slot = nullptr;
    return 1;
}

// ---- operations: the backend is read once, so that one operation stays with one mixer

template <class Operation> static int Ask(Operation operation) {
    const MixerBackend* backend = s_engine.backend;
    if (!backend) return 0;
    const MixerAnswer answer = operation(*backend);
    if (answer.changed) NotifyMixerChange(); // drivers don't always tell
    return answer.value;
}

static int Master(MixerFader fader, int percent) {
    return Ask([=](const MixerBackend& backend) { return backend.Master(fader, percent); });
}

static int HasMaster(MixerFader fader) {
    const MixerBackend* backend = s_engine.backend;
    return backend && backend->HasMaster(fader);
}

int MixerSources(uint32_t destinationType, MixerSource* sources, int size) {
    const MixerBackend* backend = s_engine.backend;
    return backend ? backend->Sources(destinationType, sources, size) : 0;
}

int MixerLineVolume(uint32_t lineId, int percent) {
    return Ask([=](const MixerBackend& backend) { return backend.LineVolume(lineId, percent); });
}

int MixerMasterVolume(int percent) {
    return Master(kVolumeFader, percent);
}

int MixerMasterBass(int percent) {
    return Master(kBassFader, percent);
}

int MixerMasterTreble(int percent) {
    return Master(kTrebleFader, percent);
}

int MixerMasterOn(int on) {
    return Ask([=](const MixerBackend& backend) { return backend.MasterOn(on); });
}

int MixerSourceOn(uint32_t destinationType, uint32_t lineId, int on) {
    return Ask(
        [=](const MixerBackend& backend) { return backend.SourceOn(destinationType, lineId, on); });
}

int MixerHasBass() {
    return HasMaster(kBassFader);
}

int MixerHasTreble() {
    return HasMaster(kTrebleFader);
}

// ---- which mixer

static void SaveDevice(uint32_t device) {
    WriteRegDword(kUserRoot, kSection, kDeviceValue, kRegDword, device);
    DeleteRegValue(kUserRoot, kSection, kOutputValue);
}

static int SavedOutput(char (&id)[kOutputIdSize]) {
    return ReadRegString(kUserRoot, kSection, kOutputValue, id, sizeof id) && *id;
}

// What was in use is closed only now.
static void TakeBackend(const MixerBackend* backend) {
    const MixerBackend* before = s_engine.backend;
    s_engine.backend = backend;
    if (before && before != backend) before->Close();
}

// The stored index stays that of the start: the choice is for this run.
static void UseDevice(UINT index) {
    if (!OpenMixerDevice(index, s_engine.window)) return;
    TakeBackend(&kDeviceBackend);
    SaveDevice(s_engine.device);
    TellWindows();
}

static void UseOutput(int index) {
    char id[kOutputIdSize];
    if (!OutputId(index, id) || !OpenOutputVolume(id)) return;
    TakeBackend(&kOutputBackend);
    WriteRegString(kUserRoot, kSection, kOutputValue, id);
    TellWindows();
}

// An output that was away and is back is another object.
static void FindOutputAgain() {
    char id[kOutputIdSize];
    if (s_engine.backend == &kOutputBackend && SavedOutput(id)) OpenOutputVolume(id);
    NotifyMixerChange();
}

// The output that was chosen, and where it is gone, the mixer device.
static int OpenSavedMixer(HWND window) {
    char id[kOutputIdSize];
    s_engine.device = ReadRegDword(kUserRoot, kSection, kDeviceValue);
    if (SavedOutput(id) && OpenOutputVolume(id))
        s_engine.backend = &kOutputBackend;
    else if (OpenMixerDevice(s_engine.device, window))
        s_engine.backend = &kDeviceBackend;
    return s_engine.backend != nullptr;
}

int PostMixerCommand(UINT command, LPARAM argument) {
    const HWND window = s_engine.window;
    return window && PostMessageA(window, WM_COMMAND, command, argument);
}

int CountMixerChoices() {
    return CountMixerDevices() + CountOutputs();
}

int MixerChoiceName(int index, char* name, int size) {
    const int devices = CountMixerDevices();
    if (index < 0 || size < 1) return 0;
    return index < devices ? MixerDeviceName(index, name, size)
                           : OutputName(index - devices, name, size);
}

int CurrentMixerChoice() {
    char wanted[kOutputIdSize], id[kOutputIdSize];
    const int devices = CountMixerDevices();
    if (SavedOutput(wanted))
        for (int i = 0; OutputId(i, id); ++i)
            if (!std::strcmp(id, wanted)) return devices + i;
    const uint32_t device =
        s_engine.backend ? s_engine.device : ReadRegDword(kUserRoot, kSection, kDeviceValue);
    return device < static_cast<uint32_t>(devices) ? static_cast<int>(device) : 0;
}

void ChooseMixer(int index) {
    const int devices = CountMixerDevices();
    const HWND engine = s_engine.backend ? s_engine.window : nullptr;
    char id[kOutputIdSize];
    if (index < 0 || index >= CountMixerChoices()) return;
    if (index < devices) {
        if (!engine || !PostMixerCommand(kMixerUseDevice, index))
            SaveDevice(static_cast<uint32_t>(index));
    } else if (!engine || !PostMessageA(engine, kUseOutput, 0, index - devices)) {
        if (OutputId(index - devices, id)) WriteRegString(kUserRoot, kSection, kOutputValue, id);
    }
}

void SeedMixerDefaults() {
    if (!CountMixerDevices()) {
        char text[kStringMax], caption[kStringMax];
        LoadText(IDS_NO_MIXER, text);
        LoadText(IDS_NO_MIXER_CAPTION, caption);
        MessageBoxA(nullptr, text, caption, MB_OK | MB_ICONEXCLAMATION);
    } else if (!RegValueExists(kUserRoot, kSection, kDeviceValue)) {
        WriteRegDword(kUserRoot, kSection, kDeviceValue, kRegDword, 0);
    }
}

// ---- the thread

static LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case MM_MIXM_LINE_CHANGE:
    case MM_MIXM_CONTROL_CHANGE: TellWindows(); return 0;
    case kChanged:
        s_engine.changePosted = 0; // first: what changes from here on is told again
        TellWindows();
        return 0;
    case WM_DEVICECHANGE: PostMessageA(window, kDevicesChanged, 0, 0); return TRUE;
    case kDevicesChanged: FindOutputAgain(); return 0;
    case WM_COMMAND:
        if (LOWORD(wParam) == kMixerUseDevice) UseDevice(static_cast<UINT>(lParam));
        return 0;
    case kUseOutput: UseOutput(static_cast<int>(lParam)); return 0;
    case WM_DESTROY: PostQuitMessage(0); return 0;
    default: return DefWindowProcA(window, message, wParam, lParam);
    }
}

static int StartRegistry() {
    if (!s_engine.mutex) s_engine.mutex = CreateMutexA(nullptr, FALSE, nullptr);
    const ScopedLock lock(s_engine.mutex);
    std::fill_n(s_engine.windows, kMaxWindows, nullptr);
    s_engine.open = lock.held;
    return lock.held;
}

static void EndRegistry() {
    s_engine.window = nullptr;
    const ScopedLock lock(s_engine.mutex);
    s_engine.open = 0;
    std::fill_n(s_engine.windows, kMaxWindows, nullptr);
}

static void CloseEngine(ComponentThread*) {
    EndRegistry();
    TakeBackend(nullptr);
    CoUninitialize();
}

static int OpenEngine(ComponentThread* thread) {
    HWND window = CreateHiddenWindow(thread->Instance, kMixerEngineClass, kMixerEngineTitle,
                                     GuardedProc<WindowProc>);
    if (!window) return 0;
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    s_engine.changePosted = 0;
    s_engine.lastError = 0;
    s_engine.window = window;
    if (!OpenSavedMixer(window) || !StartRegistry()) {
        CloseEngine(thread);
        DestroyWindow(window);
        return 0;
    }
    thread->Window = window;
    return 1;
}

// The thread was killed, most likely inside a driver, or has faulted. What it left open is not
// touched from here; a later opening takes its place and closes it.
static void ForgetEngine(ComponentThread*) {
    EndRegistry();
    s_engine.backend = nullptr;
}

static ComponentThread s_thread = [] {
    ComponentThread thread = {};
    thread.title = kMixerEngineTitle;
    thread.isEngine = 1;
    thread.runningBit = kRunningMixer;
    thread.Open = OpenEngine;
    thread.Close = CloseEngine;
    thread.Forget = ForgetEngine;
    return thread;
}();

ComponentThread* MixerEngineThread() {
    return &s_thread;
}
