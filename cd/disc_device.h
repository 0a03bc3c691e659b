// The CD-audio device: the one place where the engine meets MCI. Every call may take as long as
// the drive likes, so none is made with a lock held; a device is opened, used and closed by one
// thread, as MCI demands. Failed queries give 0.
#pragma once
#include <cstdint>

#include "cd/toc.h"
#include "core/tmsf.h"

constexpr uint32_t kPollMinMs = 1000;
constexpr uint32_t kPollMaxMs = 2000;

// How long twenty queries to a CD-audio device take, within the limits above.
uint32_t MeasurePollPeriod();

// Opens the drive, or the system's default CD-audio device if that fails, shareable. On failure
// *device is 0.
int OpenDisc(char letter, uint32_t* device);
// `wait` 0: does not wait for the device, for the way out.
void CloseDisc(uint32_t device, int wait);

enum DiscTimes { kTimesInTracks, kTimesInMsf };
int SetDiscTimes(uint32_t device, DiscTimes times);

uint32_t DiscMode(uint32_t device); // CdDeviceMode
uint32_t DiscTrackCount(uint32_t device);
Tmsf DiscPosition(uint32_t device); // with times in tracks
Msf DiscTrackLength(uint32_t device, uint32_t track);
Msf DiscTrackStart(uint32_t device, uint32_t track); // with times in MSF
// The track count once more, asked for as an item of track 0, which some drives answer
// differently for data discs. Many refuse the question: that counts as the plain answer.
uint32_t DiscTracksAgain(uint32_t device);
int DiscTrackIsAudio(uint32_t device, uint32_t track);
void DiscIdentity(uint32_t device, char (&text)[kIdentityTextSize]);

// `window` (HWND) receives MM_MCINOTIFY when play ends.
int PlayDisc(uint32_t device, void* window, Tmsf from, Tmsf to);
int PauseDisc(uint32_t device);
int StopDisc(uint32_t device);
int MoveDiscDoor(uint32_t device, int open);
