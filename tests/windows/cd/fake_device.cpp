// See fake_device.h. FAKE gives the way to the real function and the delay and fault of every call.
#include "fake_device.h"

#include "core/platform.h"

#include <mmsystem.h>

#include <algorithm>
#include <cstring>

FakeDrive s_fake;

constexpr uint32_t kFakeDevice = 77;

// The product's own device beside the fake, so that one program tests with both.
namespace real {
#include "cd/disc_device_win.cpp"
}

void FakeDrive::Insert(const FakeDisc& another) {
    const std::lock_guard guard(lock);
    disc = another;
}

PlayEntry FakeDrive::Played() {
    const std::lock_guard guard(lock);
    return played;
}

// 1 when the call goes through. The stall is cut short when the test takes it back.
static int Enter(const char* call) {
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < s_fake.stallMs)
        Sleep(10);
    const std::lock_guard guard(s_fake.lock);
    if (!FailsNow(s_fake.calls)) return 1;
    s_fake.failed = call;
    return 0;
}

#define FAKE(failure, name, ...)                        \
    if (!s_fake.active) return real::name(__VA_ARGS__); \
    if (!Enter(#name)) return failure;                  \
    const std::lock_guard guard(s_fake.lock)

static int Knows(uint32_t track) {
    return s_fake.mode != kModeOpen && track >= 1 && track <= s_fake.told.seconds.size();
}

uint32_t MeasurePollPeriod() {
    FAKE(0, MeasurePollPeriod);
    return kPollMinMs;
}
int OpenDisc(char letter, uint32_t* device) {
    *device = 0;
    FAKE(0, OpenDisc, letter, device);
    *device = kFakeDevice;
    s_fake.told = s_fake.disc;
    s_fake.openedBy = GetCurrentThreadId();
    ++s_fake.opens;
    return 1;
}
void CloseDisc(uint32_t device, int wait) {
    FAKE(void(), CloseDisc, device, wait);
    if (device != kFakeDevice) return;
    s_fake.closedBy = GetCurrentThreadId();
    --s_fake.opens;
}
int SetDiscTimes(uint32_t device, DiscTimes times) {
    FAKE(0, SetDiscTimes, device, times);
    return 1;
}
uint32_t DiscMode(uint32_t device) {
    if (s_fake.active && s_fake.crash.exchange(0))
        RaiseException(EXCEPTION_ACCESS_VIOLATION, 0, 0, nullptr);
    FAKE(0, DiscMode, device);
    return device ? s_fake.mode.load() : 0;
}
uint32_t DiscTrackCount(uint32_t device) {
    FAKE(0, DiscTrackCount, device);
    return s_fake.mode == kModeOpen ? 0 : static_cast<uint32_t>(s_fake.told.seconds.size());
}
Tmsf DiscPosition(uint32_t device) {
    FAKE(0, DiscPosition, device);
    return s_fake.position;
}
Msf DiscTrackLength(uint32_t device, uint32_t track) {
    FAKE(0, DiscTrackLength, device, track);
    return Knows(track) ? FramesToMsf(s_fake.told.seconds[track - 1] * kFramesPerSecond + 37) : 0;
}
Msf DiscTrackStart(uint32_t device, uint32_t track) {
    FAKE(0, DiscTrackStart, device, track);
    uint32_t at = kLeadInFrames;
    for (uint32_t i = 1; i < track && Knows(track); ++i)
        at += s_fake.told.seconds[i - 1] * kFramesPerSecond + 37;
    return Knows(track) ? FramesToMsf(at) : 0;
}
uint32_t DiscTracksAgain(uint32_t device) {
    FAKE(0, DiscTracksAgain, device);
    return s_fake.mode == kModeOpen ? 0 : static_cast<uint32_t>(s_fake.told.seconds.size());
}
int DiscTrackIsAudio(uint32_t device, uint32_t track) {
    FAKE(0, DiscTrackIsAudio, device, track);
    return Knows(track);
}
void DiscIdentity(uint32_t device, char (&text)[kIdentityTextSize]) {
    text[0] = 0;
    FAKE(void(), DiscIdentity, device, text);
    if (Knows(1)) std::strncpy(text, s_fake.told.identity.c_str(), kIdentityTextSize - 1);
}
int PlayDisc(uint32_t device, void* window, Tmsf from, Tmsf to) {
    FAKE(0, PlayDisc, device, window, from, to);
    if (!Knows(TmsfTrack(from)) || !Knows(TmsfTrack(to))) return 0;
    s_fake.played = {from, to};
    s_fake.position = from;
    s_fake.mode = kModePlay;
    ++s_fake.plays;
    return 1;
}
int PauseDisc(uint32_t device) {
    FAKE(0, PauseDisc, device);
    s_fake.mode = kModePause;
    return 1;
}
int StopDisc(uint32_t device) {
    FAKE(0, StopDisc, device);
    if (s_fake.mode != kModeOpen) s_fake.mode = kModeStop;
    return 1;
}
int MoveDiscDoor(uint32_t device, int open) {
    FAKE(0, MoveDiscDoor, device, open);
    s_fake.mode = open ? kModeOpen : kModeStop;
    return 1;
}
