// What the CD icon says: its tooltip, as the user's options put it together.
#pragma once
#include <cstddef>
#include <cstdint>

enum CdIconOption : uint32_t {
    kTipDiscTitle = 1,
    kTipArtist = 2,
    kTipTrackTitle = 4,
    kTipElapsed = 8,
    kTipLength = 16,
    kCdIconOptions = 31 // all of them
};

// What there is to tell. Texts are never null; times are in seconds.
struct CdIconFacts {
    int busy; // playing or paused
    const char* discTitle;
    const char* artist; // of the current track while busy, else of the disc
    const char* trackTitle;
    uint32_t elapsed; // of the current track
    uint32_t length;  // of the current track while busy, else of the disc
};

// "mm:ss", from one hour on "h:mm:ss".
void CdIconTime(char* text, size_t size, uint32_t seconds);
// Cut at the buffer's size.
void CdIconText(char* text, size_t size, uint32_t options, const CdIconFacts& facts);
