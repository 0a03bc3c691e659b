// What the CD engine knows: its settings and the state of play, as plain records that the logic
// works on and the engine's file holds one of.
#pragma once
#include <cstdint>

#include "cdinfo/record.h"
#include "core/tmsf.h"

constexpr uint32_t kMaxPlayEntries = 100;

// Modes of a CD-audio device, numbered as MCI numbers them.
enum CdDeviceMode : uint32_t {
    kModeNotReady = 524,
    kModeStop = 525,
    kModePlay = 526,
    kModeSeek = 528,
    kModePause = 529,
    kModeOpen = 530 // the door is open, or there is no disc
};

// Play modes as windows exchange them with the engine.
enum CdPlayFlag : uint32_t {
    kPlayRandom = 1,
    kPlayProgrammed = 2,
    kPlayIntro = 4,
    kPlayRepeat = 8,
    kPlayTrackLock = 16
};

// Options as kCdOptions carries them.
enum CdOption : uint32_t {
    kOptionAutoEject = 2,
    kOptionStopExit = 4,
    kOptionUseAsDefault = 8,
    kOptionAutoRun = 16,
    kOptionAutoExit = 32
};

struct CDEngineSettings {
    uint32_t Drive;  // letter of the drive in use, upper case
    uint32_t Random; // the five play modes: 0 or not 0
    uint32_t Programmed;
    uint32_t Intro;
    uint32_t Repeat;
    uint32_t TrackLock;   // never stored, off at every start
    uint32_t IntroLength; // seconds
    uint32_t AutoEject;
    uint32_t StopExit;
    uint32_t UseAsDefault;
    uint32_t AutoRun;
    uint32_t AutoExit;
};

// One stretch that is played by one command to the device.
struct PlayEntry {
    Tmsf from = 0;
    Tmsf to = 0;
};

struct CDEngineState {
    // A shuffle may draw an index that equals the count: the slot past the last entry is real,
    // and empty after every build.
    PlayEntry list[kMaxPlayEntries + 1] = {};
    uint16_t listCount = 0;
    uint16_t listIndex = 0;
    uint32_t paused = 0;
    uint32_t playing = 0;        // a play command is in force; stays set while paused
    Tmsf pausedPosition = 0;     // where play resumes
    uint16_t currentTrack = 0;   // 1-based, 0: none
    uint32_t trackStartTick = 0; // when second 0 of the track was, or would have been, played
    uint16_t elapsedSeconds = 0; // of the current track, brought up to date by the poll
    uint32_t deviceMode = 0;     // CdDeviceMode, as last read
    CDInfoRecord record;
};
