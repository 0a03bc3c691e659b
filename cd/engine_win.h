// The CD engine as the rest of the program sees it: a component without a window of its own that
// plays from one CD drive.
//
// Any thread may call anything here. Nothing waits for the drive: accessors copy under the
// engine's lock, which is never held while the drive or the database is busy; commands are posted
// to the engine's thread. While the engine is off, or if the lock can't be had within 3 s,
// accessors return the failure value that stands with them and change nothing.
//
// After every change of state each registered window gets WM_COMMAND kNotifyCdEngine (posted) and
// reads what it shows.
#pragma once
#include "cd/engine_state.h"
#include "core/component_win.h"

// The engine's start record, for StartComponentThread and StopComponentThread.
ComponentThread* CdEngineThread();

// ---- what windows read

// Everything that a window shows, of one moment.
struct CdSnapshot {
    char drive;         // letter; 'D' while the engine is off
    uint32_t playFlags; // CdPlayFlag
    int busy;           // playing or paused
    int paused;
    uint16_t track; // current track, 0: none
    uint16_t trackCount;
    uint16_t elapsed;     // seconds of the current track
    uint16_t trackLength; // seconds
    uint16_t discElapsed; // of the disc, or of the program in programmed play
    uint16_t discTotal;
    uint16_t listIndex;
    uint16_t listCount;
    uint32_t identity;
    uint32_t deviceMode;         // CdDeviceMode
    char title[kTextSize];       // of the disc
    char trackArtist[kTextSize]; // of the current track, track 1's while there is none
    char trackTitle[kTextSize];
};
// 1, or 0 with an all-zero snapshot whose drive is 'D'. `record` (may be null) receives the whole
// disc record of the same moment; it is large, so a timer had better leave it out.
int GetCdSnapshot(CdSnapshot* snapshot, CDInfoRecord* record = nullptr);

uint32_t CdPlayFlags(); // CdPlayFlag bits; 0 on failure
char CdDriveLetter();   // 'D' on failure
uint32_t CdIdentity();  // 0: no disc
int CdIsBusy();
int CdIsPaused();
uint16_t CdCurrentTrack(); // 0: none
uint16_t CdListIndex();
int CdIsSingleArtist();
// *track is 1 where there is no current track. Null pointers are skipped.
int CdTrackTime(uint16_t* track, uint16_t* elapsed, uint16_t* length);
int CdTrackAndCount(uint16_t* track, uint16_t* count);
int CdDiscTime(uint16_t* elapsed, uint16_t* total);
// Track 0 is the current track; a track that the disc does not have gives track 1's texts.
int CdTrackTexts(uint32_t track, char (&title)[kTextSize], char (&artist)[kTextSize],
                 char (&trackTitle)[kTextSize]);
// The whole record, with the MCI id of the open drive in its device field.
int GetCdRecord(CDInfoRecord* record);

// ---- what windows ask for

// Stores the five modes and saves the settings; a change of random or programmed play stops play
// and builds the list anew. Returns the flags in force afterwards.
uint32_t SetCdPlayFlags(uint32_t flags);
// Takes over an edited record: shown at once (if its disc is still the one in the drive) and
// stored in the database. A record that can't be stored now is kept and tried again until it is,
// also after the disc was changed. 0 when the engine is off; the record is stored all the same.
int SetCdRecord(const CDInfoRecord& record);
// For the program's end, when the engine is off: tries for up to 2 s to store what is still kept.
// 1 when nothing is left.
int FlushCdRecords();
// WM_COMMAND `command` (CdEngineCommand) with its argument, to the engine.
void PostCdCommand(uint32_t command, LPARAM argument);
void ChangeCdDrive(char letter);

// At most five windows are told of changes. Register: 1, 2 when it was registered already, 0 when
// no slot is free. Unregister: 1, 0 when it was not registered. An engine that dies forgets its
// windows, so each registers again now and then (on its timer), and reads anew when that gives 1.
int RegisterCdWindow(HWND window);
int UnregisterCdWindow(HWND window);

// ---- drives: by the system's word, or by that of the disc drive's driver (TONVDisc.dll) while it
// is the machine's CD-audio driver. These ask the system and the registry: for menus and dialogs,
// not for paints.
int IsCdDrive(char letter);
uint32_t CdDriveMask();     // bit 0 is A
uint32_t RealCdDriveMask(); // by the system's word alone
// `wanted` if it is a CD drive, else the first one from A to Z, else 'D'.
char ChooseCdDrive(char wanted);

// The letter that the disc drive serves, or 0 while its driver is not the CD-audio driver.
char DiscImageDrive();
// Puts an image (a CUE sheet or a folder of WAV files) into the disc drive, or, with an empty
// path, takes the image out; the engine stops play first. 0 when the driver is not there or the
// path too long.
int PutDiscImage(const char* path);
int EjectDiscImage();
// The image in the drive, an empty text for none. 0 when the driver is not there.
int GetDiscImage(char* path, uint32_t size);

// ---- settings (section "CDEngine")

// Reads all of them; the drive is chosen among the drives that are there.
void LoadCdSettings(CDEngineSettings* settings);
// Writes all of them and makes the registration as the system's CD player follow UseAsDefault.
int SaveCdSettings(const CDEngineSettings& settings);
// At installation: defaults for what is not there yet. Without any CD drive a message (owned by
// `owner`, may be null) says so and nothing is written. 1 when written. `program` is the executable
// to be registered, null: the one that runs.
int SeedCdDefaults(HWND owner, int claimDefault, const char* program = nullptr);
// Where that executable is the system's CD player, the one that was it before is it again.
void GiveBackCdPlayer(const char* program);
