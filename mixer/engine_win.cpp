// The mixer engine's thread. See engine_win.h. Thin so far: it starts, and knows no device yet.
#include "mixer/engine_win.h"

#include "core/commands.h"
#include "core/shared_block.h"

static LRESULT WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DESTROY) PostQuitMessage(0);
    return DefWindowProcA(window, message, wParam, lParam);
}

static int OpenEngine(ComponentThread* thread) {
    thread->Window = CreateHiddenWindow(thread->Instance, kMixerEngineClass, kMixerEngineTitle,
                                        GuardedProc<WindowProc>);
    return thread->Window != nullptr;
}

static ComponentThread s_thread = [] {
    ComponentThread thread = {};
    thread.title = kMixerEngineTitle;
    thread.isEngine = 1;
    thread.runningBit = kRunningMixer;
    thread.Open = OpenEngine;
    return thread;
}();

ComponentThread* MixerEngineThread() {
    return &s_thread;
}

int PostMixerCommand(UINT command, LPARAM argument) {
    return s_thread.Window && PostMessageA(s_thread.Window, WM_COMMAND, command, argument);
}

int MixerSources(uint32_t, MixerSource*, int) {
    return 0;
}
int MixerLineVolume(uint32_t, int) {
    return 0;
}
int MixerMasterVolume(int) {
    return 0;
}
int MixerMasterBass(int) {
    return 0;
}
int MixerMasterTreble(int) {
    return 0;
}
int MixerMasterOn(int) {
    return 0;
}
int MixerSourceOn(uint32_t, uint32_t, int) {
    return 0;
}
int MixerHasBass() {
    return 0;
}
int MixerHasTreble() {
    return 0;
}
uint32_t MixerLastError() {
    return 0;
}
int RegisterMixerWindow(HWND) {
    return 0;
}
int UnregisterMixerWindow(HWND) {
    return 0;
}
int CountMixerChoices() {
    return 0;
}
int MixerChoiceName(int, char*, int) {
    return 0;
}
int CurrentMixerChoice() {
    return 0;
}
void ChooseMixer(int) {}
void SeedMixerDefaults() {}
