// Where loopback takes its sound from: the platform's endpoints (outputs, as it calls them) and a
// client that records what one of them plays.
#pragma once
#include "core/platform.h"
#include "waves/format.h"

#include <mmdeviceapi.h>
#include <audioclient.h>

constexpr int kEndpointIdMax = 128; // characters with the NUL; an id has 55

// A test puts an enumerator of its own here, or lets the same code record from an input.
struct LoopbackSource {
    HRESULT (*MakeEnumerator)(IMMDeviceEnumerator** made);
    EDataFlow flow;
    DWORD streamFlags; // besides those for the conversion
};
extern LoopbackSource TheLoopbackSource;
// Whether the platform can do it is asked once; after this, once more.
void ForgetLoopbackVerdict();

// Releases an interface at the end of the scope.
template <class T> struct Held {
    T* it = nullptr;
    Held() = default;
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;
    ~Held() { Drop(); }
    void Drop() {
        if (it) it->Release();
        it = nullptr;
    }
};

struct Recording {
    Held<IAudioClient> client;
    Held<IAudioCaptureClient> capture;
    UINT32 mostFrames; // of a packet
};

int MakeLoopbackEnumerator(Held<IMMDeviceEnumerator>* made);
int CountEndpoints(IMMDeviceEnumerator* enumerator);
// `index` below 0: the default one.
int FindEndpoint(IMMDeviceEnumerator* enumerator, int index, Held<IMMDevice>* found);
int EndpointId(IMMDevice* endpoint, WCHAR id[kEndpointIdMax]);
int EndpointName(IMMDevice* endpoint, char* name, int size);
// Opens, without starting; what fails leaves nothing open.
HRESULT OpenRecording(IMMDevice* endpoint, const SoundFormatRecord& delivered, Recording* made);
void EndRecording(Recording* recording);
