// The CD-audio device over MCI. See disc_device.h.
//
// Opened by element, one open per drive and process: a second open of the same element is refused
// by the system before it reaches the driver. After a failed open the device id is garbage.
#include "cd/disc_device.h"

#include "core/platform.h"

#include <mmsystem.h>

#include <algorithm>

constexpr int kPollQueries = 20;

static MCIERROR Send(uint32_t device, UINT command, DWORD flags, void* parms) {
    return mciSendCommandA(device, command, flags, reinterpret_cast<DWORD_PTR>(parms));
}

static int Open(DWORD flags, const char* element, uint32_t* device) {
    MCI_OPEN_PARMSA parms = {};
    parms.lpstrDeviceType = reinterpret_cast<LPCSTR>(static_cast<DWORD_PTR>(MCI_DEVTYPE_CD_AUDIO));
    parms.lpstrElementName = element;
    *device = 0;
    if (Send(0, MCI_OPEN, flags | MCI_OPEN_TYPE | MCI_OPEN_TYPE_ID, &parms)) return 0;
    *device = parms.wDeviceID;
    return 1;
}

static uint32_t Status(uint32_t device, DWORD item) {
    MCI_STATUS_PARMS parms = {};
    parms.dwItem = item;
    if (!device || Send(device, MCI_STATUS, MCI_WAIT | MCI_STATUS_ITEM, &parms)) return 0;
    return static_cast<uint32_t>(parms.dwReturn);
}

static uint32_t TrackStatus(uint32_t device, DWORD item, uint32_t track) {
    MCI_STATUS_PARMS parms = {};
    parms.dwItem = item;
    parms.dwTrack = track;
    if (!device || Send(device, MCI_STATUS, MCI_WAIT | MCI_STATUS_ITEM | MCI_TRACK, &parms))
        return 0;
    return static_cast<uint32_t>(parms.dwReturn);
}

uint32_t MeasurePollPeriod() {
    uint32_t device = 0;
    if (!Open(0, nullptr, &device) && !Open(MCI_OPEN_SHAREABLE, nullptr, &device))
        return kPollMinMs;
    const DWORD start = GetTickCount();
    DWORD passed = 0;
    // A drive that takes seconds to answer is as slow as it can count after the first of them.
    for (int i = 0; i < kPollQueries && passed < kPollMaxMs; ++i) {
        Status(device, MCI_STATUS_MEDIA_PRESENT);
        passed = GetTickCount() - start;
    }
    CloseDisc(device, 0);
    return std::clamp<uint32_t>(passed, kPollMinMs, kPollMaxMs);
}

int OpenDisc(char letter, uint32_t* device) {
    const char element[] = {letter, ':', 0};
    return Open(MCI_WAIT | MCI_OPEN_SHAREABLE | MCI_OPEN_ELEMENT, element, device) ||
           Open(MCI_WAIT | MCI_OPEN_SHAREABLE, nullptr, device);
}

void CloseDisc(uint32_t device, int wait) {
    MCI_GENERIC_PARMS parms = {};
    if (device) Send(device, MCI_CLOSE, wait ? MCI_WAIT : 0, &parms);
}

int SetDiscTimes(uint32_t device, DiscTimes times) {
    MCI_SET_PARMS parms = {};
    parms.dwTimeFormat = times == kTimesInTracks ? MCI_FORMAT_TMSF : MCI_FORMAT_MSF;
    return device && !Send(device, MCI_SET, MCI_SET_TIME_FORMAT, &parms);
}

uint32_t DiscMode(uint32_t device) {
    return Status(device, MCI_STATUS_MODE);
}

uint32_t DiscTrackCount(uint32_t device) {
    return Status(device, MCI_STATUS_NUMBER_OF_TRACKS);
}

Tmsf DiscPosition(uint32_t device) {
    return Status(device, MCI_STATUS_POSITION);
}

Msf DiscTrackLength(uint32_t device, uint32_t track) {
    return TrackStatus(device, MCI_STATUS_LENGTH, track);
}

Msf DiscTrackStart(uint32_t device, uint32_t track) {
    return TrackStatus(device, MCI_STATUS_POSITION, track);
}

uint32_t DiscTracksAgain(uint32_t device) {
    const uint32_t count = TrackStatus(device, MCI_STATUS_NUMBER_OF_TRACKS, 0);
    return count ? count : DiscTrackCount(device);
}

int DiscTrackIsAudio(uint32_t device, uint32_t track) {
    return TrackStatus(device, MCI_CDA_STATUS_TYPE_TRACK, track) == MCI_CDA_TRACK_AUDIO;
}

void DiscIdentity(uint32_t device, char (&text)[kIdentityTextSize]) {
    MCI_INFO_PARMSA parms = {};
    parms.lpstrReturn = text;
    parms.dwRetSize = kIdentityTextSize;
    std::fill(text, text + kIdentityTextSize, '\0');
    if (!device || Send(device, MCI_INFO, MCI_INFO_MEDIA_IDENTITY, &parms)) text[0] = 0;
    text[kIdentityTextSize - 1] = 0;
}

int PlayDisc(uint32_t device, void* window, Tmsf from, Tmsf to) {
    MCI_PLAY_PARMS parms = {};
    parms.dwCallback = reinterpret_cast<DWORD_PTR>(window);
    parms.dwFrom = from;
    parms.dwTo = to;
    return device && !Send(device, MCI_PLAY, MCI_NOTIFY | MCI_FROM | MCI_TO, &parms);
}

int PauseDisc(uint32_t device) {
    MCI_GENERIC_PARMS parms = {};
    return device && !Send(device, MCI_PAUSE, MCI_WAIT, &parms);
}

int StopDisc(uint32_t device) {
    MCI_GENERIC_PARMS parms = {};
    return device && !Send(device, MCI_STOP, MCI_WAIT, &parms);
}

int MoveDiscDoor(uint32_t device, int open) {
    MCI_SET_PARMS parms = {};
    const DWORD way = open ? MCI_SET_DOOR_OPEN : MCI_SET_DOOR_CLOSED;
    return device && !Send(device, MCI_SET, MCI_WAIT | way, &parms);
}
