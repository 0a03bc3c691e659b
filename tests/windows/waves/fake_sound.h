// A platform's sound made of variables: outputs, the default one, packets that a test puts in. It
// stands in the place of the enumerator that loopback records through.
#pragma once
#include "tests/support/nth_call.h"
#include "waves/loopback_source_win.h"

#include <deque>
#include <vector>

struct FakePacket {
    std::vector<int16_t> samples; // empty: a null pointer
    UINT32 frames;
    DWORD flags;
};

struct FakeSound {
    int outputs = 2, standard = 0; // how many are plugged in; the default one
    int missing = 0;               // the platform knows no such thing
    HRESULT service = S_OK;        // what asking for the recording's service gives
    NthCall calls = {};
    int refs = 0, from = -1; // from: the output that is being recorded
    int channels = 0;
    DWORD flags = 0;
    std::deque<FakePacket> packets = {};
};
extern FakeSound s_sound;
HRESULT MakeFakeEnumerator(IMMDeviceEnumerator** made);
