// A machine's sound cards in place of winmm's mixer functions, which the linker finds here first.
// It is as strict about sizes and counts as a driver may be, so that a badly formed call fails.
// Change it freely before the engine runs, and under FakeLock while it does.
#pragma once
#include "core/platform.h"
#include <mmsystem.h>

#include <mutex>
#include <string>
#include <vector>

struct FakeControl {
    DWORD type = 0;
    std::vector<DWORD> values = {0}; // each item's channels, item by item
    DWORD minimum = 0, maximum = 65535;
    bool uniform = false;          // one value for all channels
    std::vector<DWORD> items = {}; // multiple items: the line that each stands for
    DWORD id = 0;                  // given by AddLine
};

struct FakeLine {
    DWORD type = 0; // component type
    std::string name;
    DWORD channels = 2;
    std::vector<FakeControl> controls;
    DWORD id = 0; // given by AddLine
};

struct FakeDestination {
    FakeLine line;
    std::vector<FakeLine> sources;
    DWORD toldSources = 0; // not 0: what the driver says instead of their number
};

struct FakeCard {
    std::string name;
    std::vector<FakeDestination> destinations;
    bool refusesOpen = false;
};

struct FakeMixer {
    std::vector<FakeCard> cards;
    bool removed = false;  // every call on an open mixer fails
    bool notifies = false; // the window is told of every write, also of one that changes nothing
    int failCall = 0;      // the n-th call on an open mixer from now on fails

    int calls = 0, writes = 0; // counted since the last reset
    int open = 0;              // handles
    int openCard = -1;         // the last one opened
    HWND window = nullptr;
};
extern FakeMixer Fake;

inline std::recursive_mutex FakeMutex;
struct FakeLock : std::lock_guard<std::recursive_mutex> {
    FakeLock() : lock_guard(FakeMutex) {}
};

// One card with
// - speakers: volume 20000, bass 16384, treble 49152 (each two channels), mute off, and three
//   sources "Wave", "Synthesizer", "CD Audio" with volume and mute
// - recording: volume, and the sources "Microphone" and "Line In", picked by a MUX
void ResetFake();
// Adds a source to a destination of the first card and gives its line id; controls get ids.
DWORD AddSource(int destination, const FakeLine& source);
// A source with a volume and a mute.
FakeLine PlainSource(const std::string& name);
// A control of the first card's line, or null.
FakeControl* FindFake(DWORD lineId, DWORD type);
DWORD SpeakerLine();
DWORD SourceLine(int destination, int source);
