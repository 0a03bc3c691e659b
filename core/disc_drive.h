// Where the disc drive (TONVDisc.dll) keeps its settings, under HKEY_CURRENT_USER. Not below the
// settings root, whose absence means "not installed".
#pragma once

constexpr const char* kDiscDriveKey = "Software\\TonvistaDiscDrive";
constexpr const char* kDiscDriveLetter = "Drive"; // REG_SZ, the letter it serves
constexpr const char* kDiscDriveImage = "Image";  // REG_SZ, path of the disc image; empty: no disc
constexpr const char* kDiscDriveDoor = "Door";    // REG_DWORD, not 0: open
