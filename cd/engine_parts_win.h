// What the files of the CD engine share. Not for others: they have engine_win.h.
//
// Two kinds of state. What stands under `mutex` is read and written by any thread, with the lock
// held for moments and never across a call into the device, the database or another window: the
// engine reads the device into locals, then locks and stores. The rest belongs to the engine's
// thread alone, and only that thread calls cd/disc_device.h.
#pragma once
#include "cd/engine_win.h"
#include "cd/play.h"
#include "core/lock_win.h"

constexpr uint32_t kMaxCdWindows = 5;
constexpr UINT_PTR kCdPollTimer = 700;
constexpr UINT kCdDeviceChanged = WM_APP + 1; // posted by the engine to itself
constexpr UINT kCdPutImage = WM_APP + 2;      // the path stands in `image`
constexpr UINT kCdReadEntry = WM_APP + 4;     // posted by the engine to itself
constexpr UINT kCdGoOn = WM_APP + 3; // lParam as for kCdPlay; void unless `goesOn` still stands

struct CdEngine {
    HANDLE mutex; // made at the first start and kept, so that nobody ever waits on a closed one

    // ---- under the mutex
    int open;        // from a successful start to the stop; the rest is void while it is 0
    uint32_t device; // written by the engine's thread alone
    CDEngineSettings settings;
    CDEngineState state;
    uint32_t recordSerial; // raised whenever a window hands over a record
    HWND windows[kMaxCdWindows];
    char image[MAX_PATH];

    // ---- the engine's thread
    uint32_t pollMs;
    uint32_t tocMode;     // device mode at the last reading of the table of contents
    uint32_t tocRetries;  // readings still to try, as the last one had holes
    uint32_t failedModes; // polls in a row at which the device did not tell its mode
    int timesWrong;       // times could not be set back to tracks
    int goesOn;           // kCdGoOn is posted; any other play or stop takes it back
    int changePosted;     // kCdDeviceChanged is posted
    int readEntryPosted;  // kCdReadEntry is posted
    uint32_t entryReads;  // attempts left to read the disc's entry, which somebody has changed
    int lookUpAgain;      // the database was in use: the disc's texts are still to be read
    uint32_t retryPause;  // polls between the last two attempts at the database, 0: none failed
    uint32_t retryWait;   // polls to go to the next one
    PlayWatch watch;
};
extern CdEngine TheCd;
extern ComponentThread CdThread;

// Runs `use(state, settings)` under the lock: 0 when it can't be had or the engine is off.
template <class Use> int WithCd(Use use) {
    const ScopedLock lock(TheCd.mutex);
    if (!lock.held || !TheCd.open) return 0;
    use(TheCd.state, TheCd.settings);
    return 1;
}

// ---- engine_access_win.cpp: any thread
void NotifyCdWindows(); // and the mirror in the shared block
void SaveCdEngineSettings();

// ---- engine_disc_win.cpp: the engine's thread
uint32_t ReadCdMode(); // 0 when the device does not say; a change is stored and told
Tmsf ReadCdPosition();
int TimesAreInTracks();                          // tries once more to set them when that has failed
int OpenCdDevice(char letter, uint32_t* device); // with times in tracks
int UseLostDevice(); // 1 when a device is open, after another attempt if it was not
// Reads the table of contents, looks the disc up, builds the list and tells the windows. With
// `reopen`, and only while neither the engine nor the device plays, the device is opened anew
// first: some drivers go on telling the table of contents of the disc that was in at the opening.
void ReadToc(int reopen);
void LookUpAgain();
// Somebody stored that entry (0: many), by the notice of the database.
void OnDatabaseChanged(uint32_t entry);
void ReadEntryAnew();
// Takes over a device that plays already.
void JoinPlay();

// ---- engine_records_win.cpp: records on their way into the database
// An edit of `before`, until it is stored.
int KeepRecord(const CDInfoRecord& before, const CDInfoRecord& record);
int PendingRecords();
// Tries to store what is kept; waits that long for another thread that does the same.
void StorePendingRecords(DWORD waitMs);
// Texts for the disc of the record, of which identity and timing stand. 1 when they are what the
// database or somebody's edit says, 0 when the database could not be read.
int FillFromDatabase(CDInfoRecord* record);
// The disc's entry as it stands in the database; nothing is stored. 0 while there is none that can
// be read, and where somebody's edit of the disc is still on its way into it.
int ReadStoredEntry(CDInfoRecord* record);

// ---- engine_commands_win.cpp: the engine's thread
RandomSource CdRandom();
void OnCdCommand(uint32_t command, LPARAM argument);
// The end-of-play check. `forcedMode` (not 0) counts in the device's place.
void CheckEndOfPlay(uint32_t forcedMode);
void GoOn(uint32_t track); // posts it
void OnGoOn(uint32_t track);
void StopCd();
int UseCdDrive(char letter); // 1 also when it is in use already
void BuildCdList();

// ---- drives_win.cpp
void WriteDiscImage(const char* path);
// ---- engine_access_win.cpp: 0 when the engine is off
int AskEngineForImage(const char* path);
