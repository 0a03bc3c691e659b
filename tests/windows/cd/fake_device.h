// A drive made of variables, in the place of the CD-audio device. Nothing moves by itself: a test
// says where the laser is and what the drive claims to be doing.
#pragma once
#include "cd/disc_device.h"
#include "cd/engine_state.h"
#include "tests/support/nth_call.h"

#include <atomic>
#include <mutex>
#include <string>
#include <vector>

struct FakeDisc {
    std::vector<uint32_t> seconds; // of each track; half a second more lies between two
    std::string identity;
};

struct FakeDrive {
    std::atomic<uint32_t> stallMs{0}; // each call takes so long
    std::atomic<uint32_t> mode{kModeStop};
    std::atomic<Tmsf> position{0};
    std::atomic<int> opens{0}, plays{0}; // opens: less the closes
    std::recursive_mutex lock;           // guards what follows
    FakeDisc disc, told;                 // told: as it was when the device was opened
    NthCall calls;
    const char* failed = ""; // the call that did
    PlayEntry played;
    void Insert(const FakeDisc& another);
    PlayEntry Played();
};
extern FakeDrive s_fake;
