// Wave input made of variables, in the place of the system's, and a clock that a test can put
// forward. All calls come from the engine's thread; a test reads between two messages to it.
#pragma once
#include "core/platform.h"
#include <mmsystem.h>

#include <set>
#include <vector>

struct FakeInput {
    // What it is like.
    int devices = 1;
    DWORD formats = 0xFFF;
    int gone = 0;           // nothing can be opened, and what is open fails
    int refuseQueueing = 0; // so many times
    DWORD refusedRate = 0;  // of formats that it can't open
    DWORD stuckMs = 0;      // in the next reset
    // What was done to it.
    int opens = 0, open = 0, wrong = 0;
    WAVEFORMATEX format = {};
    UINT device = 0;
    HWND window = nullptr;
    std::vector<WAVEHDR*> queue;
    std::set<WAVEHDR*> prepared, everSeen;
};
extern FakeInput TheInput;
extern DWORD TheClockAhead; // ms

// As a driver does: the first buffer of the queue comes back with these bytes all over.
void DeliverBuffer(int level, DWORD recorded = 1); // any number but 0 counts as all of them
