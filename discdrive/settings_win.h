// The drive's key in the registry (core/disc_drive.h): read in one pass, and only when it changed.
#pragma once
#include "core/platform.h"

#include <cstdint>
#include <string>

struct DriveSettings {
    wchar_t letter = 0; // upper case; 0: no letter is served
    std::wstring image; // empty: no disc
    int door = 0;       // 1: open
    // Manners for trials.
    uint32_t stallMs = 0;
    uint32_t failCommand = 0, failError = 0;
    int noNotify = 0, stayPlaying = 0, pauseAsStopped = 0, staleToc = 0;
    std::wstring logFile;
};

struct SettingsWatch {
    HKEY key = nullptr;
    HANDLE changed = nullptr;
    ULONGLONG lookedAt = 0;
};

// Costs one look at an event while nothing has changed. 1 when `settings` were read anew, as they
// are the first time. What is missing or of a wrong kind gets its default. Not reentrant.
int RefreshSettings(SettingsWatch* watch, DriveSettings* settings);

// Every process with the drive open sees it as a change.
int WriteDoor(const SettingsWatch& watch, int open);
