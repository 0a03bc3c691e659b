// The seam between the mixer engine and what holds the volumes: a mixer device (device_win.cpp) or
// an output's own volume (endpoint_win.cpp). One of them is in use at a time.
//
// Operations are called on any thread, without a lock. Opening and closing is for the engine's
// thread, counting and naming for any.
#pragma once
#include "mixer/engine_win.h"

enum MixerFader { kVolumeFader, kBassFader, kTrebleFader };

struct MixerAnswer {
    int value;   // what stood before, 0 on failure
    int changed; // the request changed something
};

struct MixerBackend {
    int (*Sources)(uint32_t destinationType, MixerSource* sources, int size);
    MixerAnswer (*LineVolume)(uint32_t lineId, int percent);
    MixerAnswer (*Master)(MixerFader fader, int percent);
    int (*HasMaster)(MixerFader fader);
    MixerAnswer (*MasterOn)(int on);
    MixerAnswer (*SourceOn)(uint32_t destinationType, uint32_t lineId, int on);
    void (*Close)();
};
extern const MixerBackend kDeviceBackend;
extern const MixerBackend kOutputBackend;

// Opens first and closes what it had open afterwards: on failure (0) nothing changes.
int OpenMixerDevice(UINT index, HWND window); // the window gets the driver's change messages
int CountMixerDevices();
int MixerDeviceName(int index, char* name, int size);

constexpr int kOutputIdSize = 256;
int OpenOutputVolume(const char* id);
int CountOutputs();
int OutputId(int index, char (&id)[kOutputIdSize]);
int OutputName(int index, char* name, int size);

// ---- what the engine gives its backends
void NoteMixerError(uint32_t error);
void NotifyMixerChange(); // from any thread: the registered windows are told soon
