// The machine's CD drives, and the disc drive that plays images. See engine_win.h.
#include "cd/drives.h"
#include "cd/engine_parts_win.h"
#include "core/disc_drive.h"
#include "core/settings.h"
#include "core/text.h"

#include <cstring>

// Where the system's MCI drivers are registered: Windows looks into the first, Wine into the
// second.
static const char* const kMciKeys[] = {"Software\\Microsoft\\Windows NT\\CurrentVersion\\MCI32",
                                       "Software\\Microsoft\\Windows NT\\CurrentVersion\\MCI"};

static int OurDriverIsRegistered() {
    for (const char* key : kMciKeys) {
        char driver[MAX_PATH] = "";
        if (!ReadRegString(kMachineRoot, key, "cdaudio", driver, sizeof driver)) continue;
        LowerText(driver);
        if (std::strstr(driver, "tonvdisc.dll")) return 1;
    }
    return 0;
}

char DiscImageDrive() {
    char letter[8] = "";
    if (!OurDriverIsRegistered()) return 0;
    ReadRegString(kUserRoot, kDiscDriveKey, kDiscDriveLetter, letter, sizeof letter);
    return DriveLetterOf(letter[0]);
}

static int SystemSaysCd(char letter) {
    const char root[] = {letter, ':', '\\', 0};
    return GetDriveTypeA(root) == DRIVE_CDROM;
}

int IsCdDrive(char wanted) {
    const char letter = DriveLetterOf(wanted);
    return letter && (SystemSaysCd(letter) || letter == DiscImageDrive());
}

uint32_t RealCdDriveMask() {
    const DWORD drives = GetLogicalDrives();
    uint32_t mask = 0;
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        const uint32_t bit = 1u << (letter - 'A');
        if ((drives & bit) && SystemSaysCd(letter)) mask |= bit;
    }
    return mask;
}

uint32_t CdDriveMask() {
    const uint32_t mask = RealCdDriveMask();
    const char served = DiscImageDrive();
    return served ? mask | 1u << (served - 'A') : mask;
}

char ChooseCdDrive(char wanted) {
    return ChooseDrive(CdDriveMask(), wanted);
}

void WriteDiscImage(const char* path) {
    WriteRegString(kUserRoot, kDiscDriveKey, kDiscDriveImage, path);
    // A disc is put in by hand, so the door closes behind it; taking one out leaves it as it is.
    if (*path) WriteRegDword(kUserRoot, kDiscDriveKey, kDiscDriveDoor, kRegDword, 0);
}

int PutDiscImage(const char* path) {
    if (!DiscImageDrive() || std::strlen(path) >= MAX_PATH) return 0;
    if (!AskEngineForImage(path)) WriteDiscImage(path);
    return 1;
}

int EjectDiscImage() {
    return PutDiscImage("");
}

int GetDiscImage(char* path, uint32_t size) {
    if (!size || !DiscImageDrive()) return 0;
    path[0] = 0;
    ReadRegString(kUserRoot, kDiscDriveKey, kDiscDriveImage, path, size);
    return 1;
}
