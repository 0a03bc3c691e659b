// The disc drive as the machine's CD-audio driver, and the driver that was it before. See
// setup_win.h.
#include "app/setup_win.h"
#include "cd/engine_win.h"
#include "core/disc_drive.h"
#include "core/settings.h"
#include "core/text.h"

#include <cstring>

constexpr const char* kDriverFile = "TONVDisc.dll";
constexpr const char* kDriverValue = "cdaudio";
// Machine-wide, where the driver is: what was registered before. Not beside it: every value there
// is the name of a device.
constexpr const char* kReplaced = "ReplacedDriver";

// Windows looks into the one, Wine into the other, and only the right one may be written: the
// other lists drivers of another kind.
static const char* DriversKey() {
    const HMODULE system = GetModuleHandleA("ntdll.dll");
    return system && GetProcAddress(system, "wine_get_version")
               ? "Software\\Microsoft\\Windows NT\\CurrentVersion\\MCI"
               : "Software\\Microsoft\\Windows NT\\CurrentVersion\\MCI32";
}

static int IsOurDriver(const char* driver) {
    char lower[MAX_PATH];
    CopyText(lower, driver);
    LowerText(lower);
    return std::strstr(lower, "tonvdisc.dll") != nullptr;
}

static void ReadDriver(char (&driver)[MAX_PATH]) {
    driver[0] = 0;
    ReadRegString(kMachineRoot, DriversKey(), kDriverValue, driver, sizeof driver);
}

int IsDiscDriveWanted() {
    return !RealCdDriveMask();
}

int IsDiscDriveOurs() {
    char driver[MAX_PATH];
    ReadDriver(driver);
    return IsOurDriver(driver);
}

// MCI takes what follows a blank as an argument to the driver.
static int PathWithoutBlanks(const char* folder, char (&path)[kPathSize]) {
    char full[kPathSize];
    if (!JoinPath(folder, kDriverFile, full)) return 0;
    if (!std::strchr(full, ' ')) {
        CopyText(path, full);
        return GetFileAttributesA(path) != INVALID_FILE_ATTRIBUTES;
    }
    const DWORD length = GetShortPathNameA(full, path, sizeof path);
    return length && length < sizeof path && !std::strchr(path, ' ');
}

// The first letter that is free, from D on; the user's choice stays.
static void ChooseLetter() {
    if (RegValueExists(kUserRoot, kDiscDriveKey, kDiscDriveLetter)) return;
    const DWORD taken = GetLogicalDrives();
    char letter[] = "D";
    while (letter[0] < 'Z' && taken & 1u << (letter[0] - 'A'))
        ++letter[0];
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, letter);
}

int RegisterDiscDrive(const char* folder) {
    char driver[kPathSize], before[MAX_PATH];
    ReadDriver(before);
    if (!PathWithoutBlanks(folder, driver) ||
        !WriteRegString(kMachineRoot, DriversKey(), kDriverValue, driver))
        return 0;
    if (!IsOurDriver(before)) WriteRegString(kMachineRoot, kDiscDriveKey, kReplaced, before);
    ChooseLetter();
    return 1;
}

void TakeBackDiscDrive(const char* folder) {
    char driver[MAX_PATH], own[kPathSize], before[MAX_PATH] = "";
    ReadDriver(driver);
    if (!JoinPath(folder, kDriverFile, own) || !SameFile(driver, own)) return;
    ReadRegString(kMachineRoot, kDiscDriveKey, kReplaced, before, sizeof before);
    if (*before)
        WriteRegString(kMachineRoot, DriversKey(), kDriverValue, before);
    else
        DeleteRegValue(kMachineRoot, DriversKey(), kDriverValue);
    DeleteEmptyRegKey(kMachineRoot, DriversKey());
    DeleteRegTree(kMachineRoot, kDiscDriveKey);
}
