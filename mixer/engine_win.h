// The mixer engine: the sound card's mixer in percent and on or off. The operations are called on
// any thread, without a lock; each gives the value that stood before. Percent: 0 to 100; a request
// below 0 only asks. Failures give 0 or off; the code stays in MixerLastError.
#pragma once
#include "core/component_win.h"

#include <cstdint>

constexpr const char* kMixerEngineClass = "MixerHiddenWindowClassName";
constexpr const char* kMixerEngineTitle = "MixerWindow";
constexpr int kMixerNameSize = 32;

struct MixerSource {
    uint32_t lineId;
    char name[kMixerNameSize];
};

ComponentThread* MixerEngineThread();
int PostMixerCommand(UINT command, LPARAM argument); // 0 when the engine is off

// The first `size` sources of a destination (a MIXERLINE_COMPONENTTYPE_DST_ value); the number of
// all that it has, 0 on any error.
int MixerSources(uint32_t destinationType, MixerSource* sources, int size);
int MixerLineVolume(uint32_t lineId, int percent);
int MixerMasterVolume(int percent);
int MixerMasterBass(int percent);
int MixerMasterTreble(int percent);
int MixerMasterOn(int on); // 1 on, 0 off, else asks: 1 when it was not muted
int MixerSourceOn(uint32_t destinationType, uint32_t lineId, int on);
// 1 when the device has such a control on the speaker line.
int MixerHasBass();
int MixerHasTreble();
uint32_t MixerLastError();

// Windows that get kNotifyMixer on every change, five at most.
int RegisterMixerWindow(HWND window);
int UnregisterMixerWindow(HWND window);

// What the configuration dialog lists: mixer devices first, then outputs with a volume of their
// own. Choose posts to the engine, or stores where the engine is off.
int CountMixerChoices();
int MixerChoiceName(int index, char* name, int size);
int CurrentMixerChoice(); // index, or 0
void ChooseMixer(int index);

// At installation: the first device, or a message that there is none.
void SeedMixerDefaults();
