// The engine and its device: mode, position, table of contents. See engine_parts_win.h.
#include "cd/disc_device.h"
#include "cd/engine_parts_win.h"
#include "cd/toc.h"

#include <algorithm>
#include <cstring>

constexpr uint32_t kTocRetries = 5;
constexpr uint32_t kEntryReads = 6; // attempts at a database that is in use

int OpenCdDevice(char letter, uint32_t* device) {
    if (!OpenDisc(letter, device)) return 0;
    TheCd.timesWrong = !SetDiscTimes(*device, kTimesInTracks);
    return 1;
}

static void SetDevice(uint32_t device) {
    const ScopedLock lock(TheCd.mutex);
    TheCd.device = device; // a word, and ours alone to write: the lock only orders it
}

static char DriveInUse() {
    char letter = 'D';
    WithCd([&](CDEngineState&, CDEngineSettings& settings) {
        letter = static_cast<char>(settings.Drive);
    });
    return letter;
}

int UseLostDevice() {
    if (TheCd.device) return 1;
    uint32_t device = 0;
    if (!OpenCdDevice(DriveInUse(), &device)) return 0;
    SetDevice(device);
    TheCd.tocMode = 0;
    TheCd.tocRetries = 1;
    return 1;
}

uint32_t ReadCdMode() {
    const uint32_t mode = DiscMode(TheCd.device);
    if (!mode) return 0;
    int changed = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) {
        changed = state.deviceMode != mode;
        state.deviceMode = mode;
    });
    if (changed) NotifyCdWindows();
    return mode;
}

// Times in another format would be taken for tracks and minutes of nowhere.
int TimesAreInTracks() {
    if (TheCd.timesWrong) TheCd.timesWrong = !SetDiscTimes(TheCd.device, kTimesInTracks);
    return !TheCd.timesWrong;
}

Tmsf ReadCdPosition() {
    return TimesAreInTracks() ? DiscPosition(TheCd.device) : 0;
}

void JoinPlay() {
    const uint32_t mode = ReadCdMode();
    if (mode != kModePlay && mode != kModePause) return;
    const Tmsf position = ReadCdPosition();
    TheCd.watch = PlayWatch{}; // where that play is to end nobody can tell: with the disc
    WithCd([&](CDEngineState& state, CDEngineSettings&) {
        FollowPosition(&state, position, GetTickCount());
        state.playing = 1;
    });
}

// ---- the table of contents

static void ReopenDevice() {
    int busy = 1;
    WithCd([&](CDEngineState& state, CDEngineSettings&) { busy = state.playing || state.paused; });
    if (busy) return;
    if (TheCd.device) {
        const uint32_t mode = DiscMode(TheCd.device);
        if (mode == kModePlay || mode == kModePause) return; // another program's
        CloseDisc(TheCd.device, 1);
    }
    uint32_t device = 0;
    OpenCdDevice(DriveInUse(), &device);
    SetDevice(device);
}

static TocReading ReadTocFromDevice() {
    const uint32_t device = TheCd.device;
    TocReading reading;
    reading.mode = DiscMode(device);
    reading.trackCount = std::min<uint32_t>(DiscTrackCount(device), kMaxTracks);
    for (uint32_t track = 1; track <= reading.trackCount; ++track)
        reading.lastLength = DiscTrackLength(device, track);
    SetDiscTimes(device, kTimesInMsf);
    for (uint32_t track = 1; track <= reading.trackCount; ++track)
        reading.starts[track - 1] = DiscTrackStart(device, track);
    TheCd.timesWrong = !SetDiscTimes(device, kTimesInTracks);
    DiscIdentity(device, reading.identity);
    if (reading.mode != kModeOpen) {
        reading.tracksAgain = DiscTracksAgain(device);
        if (reading.tracksAgain == 1) reading.firstIsAudio = DiscTrackIsAudio(device, 1);
    }
    return reading;
}

// A disc that is still spinning up answers some questions and not others.
static int HasHoles(const TocReading& reading) {
    if (reading.mode == kModeOpen) return 0;
    if (!reading.mode || !reading.trackCount || !reading.tracksAgain || !reading.lastLength ||
        !reading.identity[0])
        return 1;
    for (uint32_t i = 1; i < reading.trackCount; ++i)
        if (MsfToFrames(reading.starts[i]) <= MsfToFrames(reading.starts[i - 1])) return 1;
    return 0;
}

void ReadToc(int reopen) {
    if (reopen) ReopenDevice();
    const TocReading reading = ReadTocFromDevice();
    if (!HasHoles(reading))
        TheCd.tocRetries = 0;
    else // a new disc gets its five attempts, the last attempts of an old one count down
        TheCd.tocRetries = TheCd.tocRetries ? TheCd.tocRetries - 1 : kTocRetries;
    TheCd.lookUpAgain = 0;
    CDInfoRecord record;
    ApplyToc(reading, &record);
    const DiscKind kind = KindOfDisc(reading);
    if (kind == kDiscAudio)
        TheCd.lookUpAgain = !FillFromDatabase(&record);
    else
        SetNoDiscTexts(&record, kind);
    const RandomSource random = CdRandom();
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        state.record = record;
        if (reading.mode) state.deviceMode = reading.mode;
        state.listIndex = 0;
        BuildPlayList(&state, settings, random);
    });
    TheCd.tocMode = reading.mode;
    NotifyCdWindows();
}

// 0 when an edit has come since the serial was taken, or another disc: newer than the record.
static int ShowRecord(const CDInfoRecord& record, uint32_t serial) {
    int shown = 0;
    const RandomSource random = CdRandom();
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        if (serial != TheCd.recordSerial || state.record.identity != record.identity) return;
        state.record = record;
        if (!state.playing) BuildPlayList(&state, settings, random);
        shown = 1;
    });
    return shown;
}

static int CopyRecord(CDInfoRecord* record, uint32_t* serial) {
    return WithCd([&](CDEngineState& state, CDEngineSettings&) {
        *record = state.record;
        *serial = TheCd.recordSerial;
    });
}

// The database was in use when the disc was read.
void LookUpAgain() {
    CDInfoRecord record;
    uint32_t serial = 0;
    if (!CopyRecord(&record, &serial) || !FillFromDatabase(&record)) return;
    TheCd.lookUpAgain = 0;
    ShowRecord(record, serial);
    NotifyCdWindows();
}

// ---- somebody else's change of the database

// Notices come in bursts, our own stores' among them: one reading is enough for all.
void OnDatabaseChanged(uint32_t entry) {
    if ((entry && entry != CdIdentity()) || TheCd.readEntryPosted) return;
    TheCd.readEntryPosted = PostMessageA(CdThread.Window, kCdReadEntry, 0, 0) != 0;
    TheCd.entryReads = kEntryReads;
}

// What is in the database counts, or the next edit in a window of ours would put the old texts over
// it. A disc that is not there any more keeps its texts here: they are stored when edited.
void ReadEntryAnew() {
    CDInfoRecord record, before;
    uint32_t serial = 0;
    if (!CopyRecord(&before, &serial)) return;
    record = before;
    if (!record.identity || IsNothingToStore(record)) TheCd.entryReads = 0; // no audio disc
    if (!TheCd.entryReads) return;
    --TheCd.entryReads;
    if (!ReadStoredEntry(&record)) return;
    TheCd.entryReads = 0;
    record.device = before.device;
    if (!std::memcmp(&record, &before, sizeof record)) return;
    if (ShowRecord(record, serial)) NotifyCdWindows();
}
