// The machine's outputs with volumes of their own, in place of the system's COM objects.
#pragma once
#include "core/platform.h"
#include <mmdeviceapi.h>

#include <endpointvolume.h>
#include <string>
#include <vector>

struct FakeOutputs {
    std::vector<std::wstring> ids; // an output's name is its id in upper case
    float level = 0.5f;
    BOOL muted = FALSE;
    int plugging = 0; // counted up when they are pulled out and put back: older volumes are dead
    HANDLE block = nullptr;                           // a volume call waits for it
    IAudioEndpointVolumeCallback* listener = nullptr; // the last one
    int listeners = 0;
    volatile LONG waiting = 0; // calls that wait
    volatile LONG objects = 0; // not yet released
};
extern FakeOutputs Outputs;
