// Where the disc drive (TONVDisc.dll) keeps its settings, under HKEY_CURRENT_USER. Not below the
// settings root, whose absence means "not installed".
#pragma once

constexpr const char* kDiscDriveKey = "Software\\TonvistaDiscDrive";
constexpr const char* kDiscDriveLetter = "Drive"; // REG_SZ, the letter it serves
constexpr const char* kDiscDriveImage = "Image";  // REG_SZ, path of the disc image; empty: no disc
constexpr const char* kDiscDriveDoor = "Door";    // REG_DWORD, not 0: open

// Manners for trials, REG_DWORD unless told, all off when absent or 0. They take effect at once.
constexpr const char* kDiscDriveStall = "StallMs";                 // every call takes so long
constexpr const char* kDiscDriveFailCommand = "FailCommand";       // this MCI command fails ...
constexpr const char* kDiscDriveFailError = "FailError";           // ... with this error
constexpr const char* kDiscDriveNoNotify = "NoNotify";             // notifications never come
constexpr const char* kDiscDriveStayPlaying = "StayPlaying";       // still "playing" after the end
constexpr const char* kDiscDrivePauseAsStopped = "PauseAsStopped"; // a pause reads as stopped
constexpr const char* kDiscDriveStaleToc = "StaleToc"; // old table of contents until opened again
constexpr const char* kDiscDriveLogFile = "LogFile";   // REG_SZ, each command is appended here
