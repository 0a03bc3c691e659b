// See fake_device.h. FAKE is the delay and fault of every call.
#include "fake_device.h"

#include "core/platform.h"

#include <mmsystem.h>

#include <algorithm>
#include <cstring>

FakeDrive s_fake;

constexpr uint32_t kFakeDevice = 77;

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

#define FAKE(failure, name)            \
    if (!Enter(#name)) return failure; \
    const std::lock_guard guard(s_fake.lock)

static int Knows(uint32_t track) {
    return s_fake.mode != kModeOpen && track >= 1 && track <= s_fake.told.seconds.size();
}

uint32_t MeasurePollPeriod() {
    FAKE(0, MeasurePollPeriod);
    return kPollMinMs;
}
int OpenDisc(char, uint32_t* device) {
    *device = 0;
    FAKE(0, OpenDisc);
    *device = kFakeDevice;
    s_fake.told = s_fake.disc;
    ++s_fake.opens;
    return 1;
}
void CloseDisc(uint32_t device, int) {
    FAKE(void(), CloseDisc);
    if (device != kFakeDevice) return;
    --s_fake.opens;
}
int SetDiscTimes(uint32_t, DiscTimes) {
    FAKE(0, SetDiscTimes);
    return 1;
}
uint32_t DiscMode(uint32_t device) {
    FAKE(0, DiscMode);
    return device ? s_fake.mode.load() : 0;
}
uint32_t DiscTrackCount(uint32_t) {
    FAKE(0, DiscTrackCount);
    return s_fake.mode == kModeOpen ? 0 : static_cast<uint32_t>(s_fake.told.seconds.size());
}
Tmsf DiscPosition(uint32_t) {
    FAKE(0, DiscPosition);
    return s_fake.position;
}
Msf DiscTrackLength(uint32_t, uint32_t track) {
    FAKE(0, DiscTrackLength);
    return Knows(track) ? FramesToMsf(s_fake.told.seconds[track - 1] * kFramesPerSecond + 37) : 0;
}
Msf DiscTrackStart(uint32_t, uint32_t track) {
    FAKE(0, DiscTrackStart);
    uint32_t at = kLeadInFrames;
    for (uint32_t i = 1; i < track && Knows(track); ++i)
        at += s_fake.told.seconds[i - 1] * kFramesPerSecond + 37;
    return Knows(track) ? FramesToMsf(at) : 0;
}
uint32_t DiscTracksAgain(uint32_t) {
    FAKE(0, DiscTracksAgain);
    return s_fake.mode == kModeOpen ? 0 : static_cast<uint32_t>(s_fake.told.seconds.size());
}
int DiscTrackIsAudio(uint32_t, uint32_t track) {
    FAKE(0, DiscTrackIsAudio);
    return Knows(track);
}
void DiscIdentity(uint32_t, char (&text)[kIdentityTextSize]) {
    text[0] = 0;
    FAKE(void(), DiscIdentity);
    if (Knows(1)) std::strncpy(text, s_fake.told.identity.c_str(), kIdentityTextSize - 1);
}
int PlayDisc(uint32_t, void*, Tmsf from, Tmsf to) {
    FAKE(0, PlayDisc);
    if (!Knows(TmsfTrack(from)) || !Knows(TmsfTrack(to))) return 0;
    s_fake.played = {from, to};
    s_fake.position = from;
    s_fake.mode = kModePlay;
    ++s_fake.plays;
    return 1;
}
int PauseDisc(uint32_t) {
    FAKE(0, PauseDisc);
    s_fake.mode = kModePause;
    return 1;
}
int StopDisc(uint32_t) {
    FAKE(0, StopDisc);
    if (s_fake.mode != kModeOpen) s_fake.mode = kModeStop;
    return 1;
}
int MoveDiscDoor(uint32_t, int open) {
    FAKE(0, MoveDiscDoor);
    s_fake.mode = open ? kModeOpen : kModeStop;
    return 1;
}
