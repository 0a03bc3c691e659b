// The CD engine in the notification area: tooltip, click and menu, on a thread of its own.
#pragma once
#include "core/component_win.h"

constexpr const char* kCdIconClass = "CDTaskBarIconCommandProcessorWindow";

// Commands of its hidden window: the menu's entries, and the icon's mouse messages (in lParam).
enum CdIconCommand {
    kCdIconPlay = 700,
    kCdIconEject = 701,
    kCdIconStop = 702,
    kCdIconPause = 703,
    kCdIconForward = 704,
    kCdIconBack = 705, // the current track again
    kCdIconRepeat = 706,
    kCdIconRandom = 707,
    kCdIconProgram = 708,
    kCdIconIntro = 709,
    kCdIconInfo = 710,
    kCdIconConfigure = 711,
    kCdIconCallback = 796,
    kCdIconEntryFirst = 800, // + i: entry i of the program, or track i + 1
    kCdIconDriveFirst = 1000 // + k: use drive letter 'A' + k
};

// Its start record, for the console's table.
ComponentThread* CdIconThread();

// ---- for the console, whether the icon is on or not
constexpr const char* kCdIconOptionsValue = "CDIconShowOptions"; // in the settings' root key
// Sets the five bits (CdIconOption) and saves them, -1 only reads. The bits in
// force.
uint32_t CdIconOptions(int bits);
// The entries that turn each of them over, and their commands: 1 when it was one.
void FillCdIconProperties(HMENU menu);
int OnCdIconProperty(UINT command);
