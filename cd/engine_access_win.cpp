// What any thread may ask of the engine, and how the engine tells of changes. See engine_win.h.
#include "cd/engine_parts_win.h"

#include "core/commands.h"
#include "core/shared_block.h"
#include "core/text.h"

#include <algorithm>
#include <cstring>

constexpr DWORD kStoreAtOnceMs = 20;

// ---- telling

static const CDInfoRecord& RecordLocked() {
    return TheCd.state.record;
}

// Index of the track whose texts are shown.
static uint32_t TextTrackLocked(uint32_t track) {
    if (!track) track = TheCd.state.currentTrack;
    const uint32_t count = std::min<uint32_t>(RecordLocked().trackCount, kMaxTracks);
    return track >= 1 && track <= count ? track - 1 : 0;
}

static void WriteMirrorLocked() {
    SharedControlBlock* block = SharedBlock;
    if (!block) return;
    const CDInfoRecord& record = RecordLocked();
    const uint32_t track = TextTrackLocked(0);
    block->CdTick = GetTickCount();
    block->CdIdentity = record.identity;
    block->CdMode = TheCd.state.deviceMode;
    block->CdTrack = TheCd.state.currentTrack;
    block->CdTrackCount = record.trackCount;
    CopyText(block->CdTitle, record.title);
    CopyText(block->CdArtist, record.trackArtists[track]);
    CopyText(block->CdTrackTitle, record.trackTitles[track]);
}

void NotifyCdWindows() {
    HWND windows[kMaxCdWindows] = {};
    WithCd([&](CDEngineState&, CDEngineSettings&) {
        WriteMirrorLocked();
        std::copy(std::begin(TheCd.windows), std::end(TheCd.windows), windows);
    });
    for (HWND window : windows)
        if (window) PostMessageA(window, WM_COMMAND, kNotifyCdEngine, 0);
}

int RegisterCdWindow(HWND window) {
    int registered = 0;
    if (!window) return 0;
    WithCd([&](CDEngineState&, CDEngineSettings&) {
        for (HWND slot : TheCd.windows)
            if (slot == window) registered = 2;
        for (HWND& slot : TheCd.windows) {
            if (registered) return;
            // A window whose thread was killed could not say goodbye.
            if (slot && IsWindow(slot)) continue;
            slot = window;
            registered = 1;
        }
    });
    return registered;
}

int UnregisterCdWindow(HWND window) {
    int found = 0;
    if (!window) return 0;
    WithCd([&](CDEngineState&, CDEngineSettings&) {
        for (HWND& slot : TheCd.windows) {
            if (slot != window) continue;
            slot = nullptr;
            found = 1;
        }
    });
    return found;
}

// ---- reading

static void FillSnapshotLocked(CdSnapshot* snapshot) {
    const CDEngineState& state = TheCd.state;
    const DiscTime time = ComputeDiscTime(state, TheCd.settings);
    const uint32_t track = TextTrackLocked(0);
    snapshot->drive = static_cast<char>(TheCd.settings.Drive);
    snapshot->playFlags = PlayFlagsOf(TheCd.settings);
    snapshot->busy = state.playing || state.paused;
    snapshot->paused = state.paused != 0;
    snapshot->track = state.currentTrack;
    snapshot->trackCount = state.record.trackCount;
    snapshot->elapsed = state.elapsedSeconds;
    snapshot->trackLength = TrackLength(state.record, std::max<uint32_t>(state.currentTrack, 1));
    snapshot->discElapsed = time.elapsed;
    snapshot->discTotal = time.total;
    snapshot->listIndex = state.listIndex;
    snapshot->listCount = state.listCount;
    snapshot->identity = state.record.identity;
    snapshot->deviceMode = state.deviceMode;
    CopyText(snapshot->title, state.record.title);
    CopyText(snapshot->trackArtist, state.record.trackArtists[track]);
    CopyText(snapshot->trackTitle, state.record.trackTitles[track]);
}

int GetCdSnapshot(CdSnapshot* snapshot, CDInfoRecord* record) {
    *snapshot = CdSnapshot{};
    snapshot->drive = 'D';
    return WithCd([&](CDEngineState&, CDEngineSettings&) {
        FillSnapshotLocked(snapshot);
        if (!record) return;
        *record = RecordLocked();
        record->device = TheCd.device;
    });
}

uint32_t CdPlayFlags() {
    uint32_t flags = 0;
    WithCd([&](CDEngineState&, CDEngineSettings& settings) { flags = PlayFlagsOf(settings); });
    return flags;
}

char CdDriveLetter() {
    char letter = 'D';
    WithCd([&](CDEngineState&, CDEngineSettings& settings) {
        letter = static_cast<char>(settings.Drive);
    });
    return letter;
}

uint32_t CdIdentity() {
    uint32_t identity = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) { identity = state.record.identity; });
    return identity;
}

int CdIsBusy() {
    int busy = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) { busy = state.playing || state.paused; });
    return busy;
}

int CdIsPaused() {
    int paused = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) { paused = state.paused != 0; });
    return paused;
}

uint16_t CdCurrentTrack() {
    uint16_t track = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) { track = state.currentTrack; });
    return track;
}

uint16_t CdListIndex() {
    uint16_t index = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) { index = state.listIndex; });
    return index;
}

int CdIsSingleArtist() {
    int single = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) { single = IsSingleArtist(state.record); });
    return single;
}

static void Give(uint16_t* to, uint16_t value) {
    if (to) *to = value;
}

int CdTrackTime(uint16_t* track, uint16_t* elapsed, uint16_t* length) {
    return WithCd([&](CDEngineState& state, CDEngineSettings&) {
        const uint16_t current = std::max<uint16_t>(state.currentTrack, 1);
        Give(track, current);
        Give(elapsed, state.elapsedSeconds);
        Give(length, TrackLength(state.record, current));
    });
}

int CdTrackAndCount(uint16_t* track, uint16_t* count) {
    return WithCd([&](CDEngineState& state, CDEngineSettings&) {
        Give(track, std::max<uint16_t>(state.currentTrack, 1));
        Give(count, state.record.trackCount);
    });
}

int CdDiscTime(uint16_t* elapsed, uint16_t* total) {
    return WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        const DiscTime time = ComputeDiscTime(state, settings);
        Give(elapsed, time.elapsed);
        Give(total, time.total);
    });
}

int CdTrackTexts(uint32_t track, char (&title)[kTextSize], char (&artist)[kTextSize],
                 char (&trackTitle)[kTextSize]) {
    return WithCd([&](CDEngineState& state, CDEngineSettings&) {
        const uint32_t index = TextTrackLocked(track);
        CopyText(title, state.record.title);
        CopyText(artist, state.record.trackArtists[index]);
        CopyText(trackTitle, state.record.trackTitles[index]);
    });
}

int GetCdRecord(CDInfoRecord* record) {
    return WithCd([&](CDEngineState& state, CDEngineSettings&) {
        *record = state.record;
        record->device = TheCd.device;
    });
}

// ---- asking

// Copy and writing go together, or of two threads that save the older copy could be written last.
static const HANDLE s_saving = CreateMutexA(nullptr, FALSE, nullptr);

void SaveCdEngineSettings() {
    const ScopedLock saving(s_saving);
    CDEngineSettings copy = {};
    if (saving.held && WithCd([&](CDEngineState&, CDEngineSettings& settings) { copy = settings; }))
        SaveCdSettings(copy);
}

uint32_t SetCdPlayFlags(uint32_t flags) {
    uint32_t before = 0;
    if (!WithCd([&](CDEngineState&, CDEngineSettings& settings) {
            before = PlayFlagsOf(settings);
            SetPlayFlagsOf(&settings, flags);
        }))
        return TheCd.open ? PlayFlagsOf(TheCd.settings) : 0;
    constexpr uint32_t kListFlags = kPlayRandom | kPlayProgrammed;
    if ((before ^ flags) & kListFlags) PostCdCommand(kCdModeChanged, static_cast<LPARAM>(before));
    SaveCdEngineSettings();
    NotifyCdWindows();
    return CdPlayFlags();
}

int SetCdRecord(const CDInfoRecord& record) {
    CDInfoRecord before;
    // Without tracks: what can't be told from the edit gives way to it.
    if (!GetCdRecord(&before) || before.identity != record.identity) before = CDInfoRecord();
    const int kept = KeepRecord(before, record); // first: from here on no look-up can win over it
    const int running = WithCd([&](CDEngineState& state, CDEngineSettings&) {
        ++TheCd.recordSerial;
        if (state.record.identity != record.identity) return; // the disc was changed meanwhile
        state.record = record;
        state.record.trackCount = std::min<uint16_t>(record.trackCount, kMaxTracks);
        state.record.programCount = std::min<uint16_t>(record.programCount, kMaxSegments);
    });
    if (kept) StorePendingRecords(kStoreAtOnceMs);
    if (!running) return 0;
    PostCdCommand(kCdRecordChanged, 0);
    NotifyCdWindows();
    return 1;
}

void PostCdCommand(uint32_t command, LPARAM argument) {
    if (CdThread.Window) PostMessageA(CdThread.Window, WM_COMMAND, command, argument);
}

void ChangeCdDrive(char letter) {
    PostCdCommand(kCdUseDrive, letter);
}

int AskEngineForImage(const char* path) {
    if (!WithCd([&](CDEngineState&, CDEngineSettings&) { CopyText(TheCd.image, path); })) return 0;
    return CdThread.Window && PostMessageA(CdThread.Window, kCdPutImage, 0, 0);
}
