// The drive: a disc, a door, a laser. All opens of it in this process share it, and it lasts as
// long as the process. Two locks: the driver runs one command at a time, as a drive does
// (driver_win.cpp; held while files are read and while a play starts or ends); the drive's own
// lock guards what the play's thread touches too and is held for moments only. The functions here
// take the latter themselves; those marked (command) want the former held.
#pragma once
#include "discdrive/player_win.h"
#include "discdrive/settings_win.h"

#include <mmsystem.h>
#include <mmddk.h>

// One MCI_OPEN.
struct DriveOpen {
    int used = 0, attached = 0;
    MCIDEVICEID device = 0;
    TimeFormat format = kTimeMsf;
};

// The drive as it is told to the outside.
struct DriveView {
    uint32_t mode = MCI_MODE_OPEN;
    int ready = 0; // a disc is in, the door is closed, and it has been looked at
    std::shared_ptr<const DiscImage> told; // whose table of contents is told; may be null
    uint32_t frame = 0;
};

// (command) Takes over changes of the settings and opens a new image. Before everything else.
void RefreshDrive();
DriveView ViewDrive();
DriveSettings GetDriveSettings();
uint32_t GetStallMs(); // looks for a change first

// (command) Results are MCI's. `element` is null when the drive was opened without one.
LRESULT AttachDrive(DriveOpen& open, const wchar_t* element, int shareable);
void DetachDrive(DriveOpen& open);
// `running`: what a caller who wants to wait for the end waits for.
LRESULT PlayDisc(const DriveOpen& open, DWORD flags, const MCI_PLAY_PARMS* parms,
                 std::shared_ptr<Play>* running);
LRESULT StopDisc();
LRESULT PauseDisc(int paused);
LRESULT SeekDisc(const DriveOpen& open, DWORD flags, const MCI_SEEK_PARMS* parms);
void SetDoor(int open);

// A command that asked for a notification was successful.
void NotifySuccess(HWND window, MCIDEVICEID device);

// ---- status_win.cpp: questions, answered from a view
LRESULT AnswerStatus(const DriveOpen& open, DWORD flags, MCI_STATUS_PARMS* parms);
LRESULT AnswerInfo(DWORD flags, MCI_INFO_PARMSW* parms);
LRESULT AnswerCapabilities(DWORD flags, MCI_GETDEVCAPS_PARMS* parms);
