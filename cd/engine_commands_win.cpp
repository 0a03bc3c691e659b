// The engine's commands, on the engine's thread. Each reads the device, decides under the lock
// (cd/play.h), and then acts without it. See engine_parts_win.h.
#include "cd/disc_device.h"
#include "cd/drives.h"
#include "cd/engine_parts_win.h"
#include "core/commands.h"

#include <algorithm>
#include <cstdlib>

static void SeedRandom(uint32_t seed) {
    srand(seed);
}
static int DrawRandom() {
    return rand();
}

RandomSource CdRandom() {
    return {SeedRandom, DrawRandom, GetTickCount()};
}

void BuildCdList() {
    const RandomSource random = CdRandom();
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        BuildPlayList(&state, settings, random);
    });
}

static int PlayRange(PlayEntry range) {
    TheCd.goesOn = 0;
    // The device reads track 0 as it likes: the shuffle's empty slot, or an empty program.
    if (!TmsfTrack(range.from) || !TimesAreInTracks()) return 0;
    if (!PlayDisc(TheCd.device, CdThread.Window, range.from, range.to)) return 0;
    TheCd.watch = PlayWatch{range.to};
    WithCd([&](CDEngineState& state, CDEngineSettings&) {
        PlayStarted(&state, range.from, GetTickCount());
    });
    NotifyCdWindows();
    return 1;
}

// After a play command that failed. The rules leave the state as it was, but play that was in
// force when the disc was taken out is over: it must not begin again, at places of the old disc,
// in the next one.
static void EndPlayWithoutDisc() {
    if (ReadCdMode() != kModeOpen) return;
    const RandomSource random = CdRandom();
    int ended = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        ended = state.playing && !state.paused;
        if (ended) PlayStopped(&state, settings, random);
    });
    if (ended) NotifyCdWindows();
}

static void OnPlay(uint32_t track) {
    const RandomSource random = CdRandom();
    PlayEntry range;
    int play = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        play = DecidePlay(&state, &settings, track, random, &range);
    });
    if (!play || PlayRange(range)) return;
    if (track)
        NotifyCdWindows(); // the modes have changed all the same
    else
        EndPlayWithoutDisc();
}

static void OnSeek(LPARAM seconds) {
    const Tmsf position = ReadCdPosition();
    PlayEntry range;
    int play = 0;
    if (seconds < 0) return;
    WithCd([&](CDEngineState& state, CDEngineSettings&) {
        play = DecideSeek(state, position, static_cast<uint32_t>(seconds), &range);
    });
    if (play) PlayRange(range);
}

static void OnPlayEntry(uint32_t index) {
    PlayEntry range;
    int play = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        play = DecidePlayEntry(&state, settings, index, &range);
    });
    if (play) PlayRange(range);
}

static void Resume() {
    PlayEntry range;
    int paused = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) {
        paused = state.paused != 0;
        range = {state.pausedPosition, CurrentEntry(state).to};
    });
    if (paused) PlayRange(range);
}

static void OnPause() {
    const uint32_t mode = ReadCdMode();
    if (!mode) return;
    if (mode != kModePlay) {
        Resume();
        return;
    }
    const Tmsf position = ReadCdPosition();
    WithCd([&](CDEngineState& state, CDEngineSettings&) {
        const uint32_t seconds = state.elapsedSeconds;
        state.pausedPosition = TmsfTrack(position)
                                   ? position
                                   : MakeTmsf(state.currentTrack, seconds / 60, seconds % 60, 0);
        state.paused = 1; // before the device stops, or its notice would count as the end of play
    });
    if (!PauseDisc(TheCd.device))
        WithCd([&](CDEngineState& state, CDEngineSettings&) { state.paused = 0; });
    NotifyCdWindows();
}

void StopCd() {
    TheCd.goesOn = 0;
    // Cleared first: the device's notice of the stop must not count as the end of play.
    WithCd([&](CDEngineState& state, CDEngineSettings&) { state.playing = state.paused = 0; });
    StopDisc(TheCd.device);
    const RandomSource random = CdRandom();
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        PlayStopped(&state, settings, random);
    });
    NotifyCdWindows();
}

static void OnEject() {
    if (ReadCdMode() != kModeOpen) {
        StopCd();
        MoveDiscDoor(TheCd.device, 1);
    } else {
        MoveDiscDoor(TheCd.device, 0);
    }
    WithCd([&](CDEngineState& state, CDEngineSettings&) { state.listIndex = 0; });
    NotifyCdWindows();
}

// Next and previous need a disc that plays or pauses; 0 when it does not.
static int ReadMovingPosition(Tmsf* position) {
    const uint32_t mode = ReadCdMode();
    Tmsf paused = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings&) {
        paused = state.paused ? state.pausedPosition : 0;
    });
    if (mode == kModeStop && paused) { // a drive that reports its pause as a stop
        *position = paused;
        return 1;
    }
    if (mode != kModePlay && mode != kModePause) return 0;
    *position = ReadCdPosition();
    return 1;
}

static void OnNext(LPARAM steps) {
    Tmsf position = 0;
    if (!ReadMovingPosition(&position)) return;
    const RandomSource random = CdRandom();
    PlayEntry range;
    int play = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        play = DecideNext(&state, settings, position, static_cast<int32_t>(steps), random, &range);
    });
    if (play) PlayRange(range);
}

static void OnPrevious(LPARAM steps) {
    Tmsf position = 0;
    if (!ReadMovingPosition(&position)) return;
    PlayEntry range;
    int play = 0;
    WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
        play = DecidePrevious(&state, settings, position, static_cast<int32_t>(steps), &range);
    });
    if (play) PlayRange(range);
}

// ---- drive, options, modes

int UseCdDrive(char wanted) {
    const char letter = DriveLetterOf(wanted);
    if (!letter) return 0;
    if (letter == CdDriveLetter() && TheCd.device) return 1;
    // The open falls back to the system's default device: without this, any letter would do.
    if (!IsCdDrive(letter)) return 0;
    uint32_t device = 0;
    if (!OpenCdDevice(letter, &device)) return 0;
    StopCd();
    CloseDisc(TheCd.device, 1);
    {
        const ScopedLock lock(TheCd.mutex);
        TheCd.device = device;
        TheCd.state = CDEngineState{};
        TheCd.settings.Drive = static_cast<uint8_t>(letter);
    }
    TheCd.tocRetries = 0;
    JoinPlay();
    ReadToc(0);
    SaveCdEngineSettings();
    return 1;
}

static void OnOptions(uint32_t bits) {
    WithCd([&](CDEngineState&, CDEngineSettings& settings) {
        settings.AutoEject = (bits & kOptionAutoEject) != 0;
        settings.StopExit = (bits & kOptionStopExit) != 0;
        settings.UseAsDefault = (bits & kOptionUseAsDefault) != 0;
        settings.AutoRun = (bits & kOptionAutoRun) != 0;
        settings.AutoExit = (bits & kOptionAutoExit) != 0;
    });
    SaveCdEngineSettings();
}

static void OnIntroLength(uint32_t seconds) {
    WithCd([&](CDEngineState&, CDEngineSettings& settings) { settings.IntroLength = seconds; });
    SaveCdEngineSettings();
}

static void OnModeChanged() {
    StopCd(); // builds the list anew
    SaveCdEngineSettings();
    NotifyCdWindows();
}

static void OnRecordChanged() {
    ReadToc(0);
    CheckEndOfPlay(0);
}

void OnCdCommand(uint32_t command, LPARAM argument) {
    const auto number = static_cast<uint32_t>(argument);
    switch (command) {
    case kCdPlay: OnPlay(number); break;
    case kCdSeek: OnSeek(argument); break;
    case kCdPlayEntry: OnPlayEntry(number); break;
    case kCdPause: OnPause(); break;
    case kCdStop: StopCd(); break;
    case kCdEject: OnEject(); break;
    case kCdNext: OnNext(argument); break;
    case kCdPrevious: OnPrevious(argument); break;
    case kCdUseDrive: UseCdDrive(DriveLetterOf(argument)); break;
    case kCdIntroLength: OnIntroLength(number); break;
    case kCdOptions: OnOptions(number); break;
    case kCdRecordChanged: OnRecordChanged(); break;
    case kCdModeChanged: OnModeChanged(); break;
    }
}

// ---- the end of play

// Until it is carried out, a second notice of the same end must not step again. It is no command
// like others: the drive may have kept us waiting meanwhile, and a stop or another track that
// somebody asked for then stands before it in the queue and must win.
void GoOn(uint32_t track) {
    TheCd.goesOn = PostMessageA(CdThread.Window, kCdGoOn, 0, static_cast<LPARAM>(track)) != 0;
}

void OnGoOn(uint32_t track) {
    if (!TheCd.goesOn) return;
    TheCd.goesOn = 0;
    OnPlay(track);
}

void CheckEndOfPlay(uint32_t forcedMode) {
    const uint32_t deviceMode = ReadCdMode();
    const uint32_t mode = forcedMode ? forcedMode : deviceMode;
    if (mode && !TheCd.goesOn) {
        const uint32_t tracks = std::min<uint32_t>(DiscTrackCount(TheCd.device), kMaxTracks);
        const RandomSource random = CdRandom();
        EndDecision end;
        WithCd([&](CDEngineState& state, CDEngineSettings& settings) {
            end = DecideEnd(&state, settings, mode, tracks, random);
        });
        if (end.ranOut) TheCd.watch = PlayWatch{TheCd.watch.to};
        if (end.playEntry)
            GoOn(0);
        else if (end.ranOut && deviceMode == kModePlay)
            StopDisc(TheCd.device); // it stands at the end and does not know it
        if (end.eject) PostCdCommand(kCdEject, 0);
        if (end.exit && CdThread.Owner) PostMessageA(CdThread.Owner, WM_CLOSE, 0, 0);
    }
    NotifyCdWindows();
}
