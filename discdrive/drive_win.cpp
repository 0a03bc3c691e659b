// See drive_win.h. Swaps come from the registry and are noticed at the next command, or, while a
// disc plays, at the next tick of the play's thread: the play is abandoned there and then, and the
// new image opened at the next command, since opening may take long.
#include "discdrive/drive_win.h"

#include "core/tmsf.h"

extern "C" BOOL APIENTRY mciDriverNotify(HANDLE, MCIDEVICEID, UINT); // absent from the headers

constexpr ULONGLONG kSpinUpMs = 2500; // a drive needs this long to know a disc put into it

struct DriveState {
    SettingsWatch watch;
    DriveSettings settings;
    int started = 0;    // the settings have been read once
    int imageStale = 0; // the image is to be opened anew
    std::shared_ptr<const DiscImage> image, told;
    ULONGLONG readyAt = 0;
    std::shared_ptr<Play> play; // running or paused
    int playedOut = 0;          // the last play came to its end
    uint32_t frame = kLeadInFrames;
    HWND window = nullptr;  // who is told how the play ended,
    MCIDEVICEID device = 0; // and for which device
    int opens = 0, shareable = 1;
};

struct DriveLock {
    explicit DriveLock(SRWLOCK* l) : lock(l) { AcquireSRWLockExclusive(lock); }
    ~DriveLock() { ReleaseSRWLockExclusive(lock); }
    DriveLock(const DriveLock&) = delete;
    DriveLock& operator=(const DriveLock&) = delete;
    SRWLOCK* lock;
};

static SRWLOCK s_lock = SRWLOCK_INIT; // guards the state

// Never destroyed: at the process's end the play's thread may have been cut off anywhere.
static DriveState& State() {
    static DriveState* const s_state = new DriveState;
    return *s_state;
}

static uint32_t FirstFrame(const DiscImage* image) {
    return image && !image->disc.tracks.empty() ? image->disc.tracks[0].start : kLeadInFrames;
}

static int IsReadyLocked(const DriveState& d) {
    return d.image && !d.settings.door && GetTickCount64() >= d.readyAt;
}

// It only posts a message, so the lock may be held.
static void NotifyLocked(DriveState& d, UINT code) {
    const HWND window = d.window;
    d.window = nullptr;
    if (window && !d.settings.noNotify) mciDriverNotify(window, d.device, code);
}

// The play ends by itself soon; who wants silence on return joins what is returned (or null).
static std::shared_ptr<Play> AbandonPlayLocked(DriveState& d, UINT code) {
    const std::shared_ptr<Play> old = std::move(d.play);
    d.play.reset();
    d.playedOut = 0;
    if (old) {
        d.frame = old->frame;
        StopPlay(*old);
    }
    NotifyLocked(d, code);
    return old;
}

static void TakeSettingsLocked(DriveState& d, const DriveSettings& now) {
    const DriveSettings old = d.settings;
    d.settings = now;
    const int swapped = now.image != old.image;
    const int first = !d.started;
    d.started = 1;
    if (first) {
        d.imageStale = 1; // in there already when the first program came: known, ready
        return;
    }
    if (!swapped && now.door == old.door) return;
    AbandonPlayLocked(d, MCI_NOTIFY_ABORTED);
    d.image.reset();
    if (!now.staleToc) d.told.reset();
    d.imageStale = 1;
    d.readyAt = GetTickCount64() + kSpinUpMs;
}

static void LookForChangeLocked(DriveState& d) {
    DriveSettings now;
    if (RefreshSettings(&d.watch, &now)) TakeSettingsLocked(d, now);
}

static void OnPlayTick() {
    DriveLock lock(&s_lock);
    LookForChangeLocked(State());
}

static void OnPlayEnd(Play* play, PlayOutcome outcome) {
    DriveLock lock(&s_lock);
    DriveState& d = State();
    if (d.play.get() != play) return; // abandoned: that has been told already
    d.play.reset();
    d.frame = play->frame;
    d.playedOut = outcome == kPlayDone;
    NotifyLocked(d, outcome == kPlayDone ? MCI_NOTIFY_SUCCESSFUL : MCI_NOTIFY_FAILURE);
}

void RefreshDrive() {
    std::wstring path;
    {
        DriveLock lock(&s_lock);
        DriveState& d = State();
        LookForChangeLocked(d);
        if (!d.imageStale) return;
        d.imageStale = 0;
        path = d.settings.image;
    }
    const std::shared_ptr<const DiscImage> image = OpenDiscImage(path);
    DriveLock lock(&s_lock);
    DriveState& d = State();
    d.image = image;
    d.frame = FirstFrame(image.get());
    if (!d.settings.staleToc || !d.told) d.told = image;
}

DriveSettings GetDriveSettings() {
    DriveLock lock(&s_lock);
    return State().settings;
}

uint32_t GetStallMs() {
    DriveLock lock(&s_lock);
    LookForChangeLocked(State());
    return State().settings.stallMs;
}

DriveView ViewDrive() {
    DriveLock lock(&s_lock);
    const DriveState& d = State();
    DriveView view;
    view.ready = IsReadyLocked(d);
    view.told = d.told;
    view.frame = d.play ? d.play->frame.load() : d.frame;
    if (!view.ready) return view;
    if (d.play && d.play->pause) {
        view.mode = d.settings.pauseAsStopped ? MCI_MODE_STOP : MCI_MODE_PAUSE;
    } else {
        const int plays = d.play || (d.playedOut && d.settings.stayPlaying);
        view.mode = plays ? MCI_MODE_PLAY : MCI_MODE_STOP;
    }
    return view;
}

// "X:" or "X:\", as they are or behind "\\.\". 0 when it is something else.
static wchar_t ElementLetter(const wchar_t* element) {
    if (!wcsncmp(element, L"\\\\.\\", 4)) element += 4;
    const wchar_t letter = element[0] & ~0x20;
    if (letter < L'A' || letter > L'Z' || element[1] != L':') return 0;
    return !element[2] || (element[2] == L'\\' && !element[3]) ? letter : 0;
}

LRESULT AttachDrive(DriveOpen& open, const wchar_t* element, int shareable) {
    DriveLock lock(&s_lock);
    DriveState& d = State();
    if (element) {
        const wchar_t letter = ElementLetter(element);
        if (!letter || letter != d.settings.letter) return MCIERR_INVALID_FILE;
    }
    if (d.opens && !(shareable && d.shareable)) return MCIERR_MUST_USE_SHAREABLE;
    d.shareable = shareable;
    ++d.opens;
    d.told = d.image; // opening the device is what makes a stale table of contents fresh
    open.attached = 1;
    open.format = kTimeMsf;
    return 0;
}

// The sound goes on, as it does from a drive whose last program has left.
void DetachDrive(DriveOpen& open) {
    DriveLock lock(&s_lock);
    DriveState& d = State();
    if (!open.attached) return;
    open.attached = 0;
    if (--d.opens == 0) d.shareable = 1;
    if (d.device == open.device) NotifyLocked(d, MCI_NOTIFY_ABORTED);
}

static void AskForNotifyLocked(DriveState& d, const DriveOpen& open, const MCI_PLAY_PARMS* parms) {
    d.window = reinterpret_cast<HWND>(parms->dwCallback);
    d.device = open.device;
}

static LRESULT ReadRangeLocked(const DriveState& d, TimeFormat format, DWORD flags,
                               const MCI_PLAY_PARMS* parms, uint32_t* from, uint32_t* to) {
    if (!d.told) return MCIERR_HARDWARE;
    const Disc& disc = d.told->disc;
    *from = d.play ? d.play->frame.load() : d.frame;
    *to = disc.end;
    if ((flags & MCI_FROM) && !ReadPosition(disc, format, parms->dwFrom, from))
        return MCIERR_OUTOFRANGE;
    if ((flags & MCI_TO) && !ReadPosition(disc, format, parms->dwTo, to)) return MCIERR_OUTOFRANGE;
    return *from <= *to && !disc.tracks.empty() ? 0 : MCIERR_OUTOFRANGE;
}

LRESULT PlayDisc(const DriveOpen& open, DWORD flags, const MCI_PLAY_PARMS* parms,
                 std::shared_ptr<Play>* running) {
    if (!parms && (flags & (MCI_FROM | MCI_TO | MCI_NOTIFY))) return MCIERR_NULL_PARAMETER_BLOCK;
    const UINT endOfOld = flags & MCI_NOTIFY ? MCI_NOTIFY_SUPERSEDED : MCI_NOTIFY_ABORTED;
    auto play = std::make_shared<Play>();
    std::shared_ptr<Play> old;
    {
        DriveLock lock(&s_lock);
        DriveState& d = State();
        if (!IsReadyLocked(d)) return MCIERR_HARDWARE;
        if (!(flags & (MCI_FROM | MCI_TO)) && d.play && d.play->pause) {
            if (flags & MCI_NOTIFY) {
                NotifyLocked(d, MCI_NOTIFY_SUPERSEDED);
                AskForNotifyLocked(d, open, parms);
            }
            *running = d.play;
        } else {
            const LRESULT bad =
                ReadRangeLocked(d, open.format, flags, parms, &play->from, &play->to);
            if (bad) return bad;
            old = AbandonPlayLocked(d, endOfOld);
            play->image = d.image;
        }
    }
    if (*running) {
        PausePlay(**running, 0);
        return 0;
    }
    if (old) JoinPlay(*old);
    play->onTick = OnPlayTick;
    play->onEnd = OnPlayEnd;
    {
        DriveLock lock(&s_lock);
        // The play before may have noticed a swap with its last tick.
        if (State().image != play->image) return MCIERR_HARDWARE;
        State().play = play;
        if (flags & MCI_NOTIFY) AskForNotifyLocked(State(), open, parms);
    }
    if (StartPlay(play)) {
        *running = play;
        return 0;
    }
    DriveLock lock(&s_lock);
    DriveState& d = State();
    if (d.play == play) d.play.reset();
    d.window = nullptr; // the error says it all
    d.frame = play->from;
    return MCIERR_HARDWARE;
}

LRESULT StopDisc() {
    std::shared_ptr<Play> old;
    {
        DriveLock lock(&s_lock);
        DriveState& d = State();
        if (!IsReadyLocked(d)) return MCIERR_HARDWARE;
        old = AbandonPlayLocked(d, MCI_NOTIFY_ABORTED);
    }
    if (old) JoinPlay(*old);
    return 0;
}

LRESULT PauseDisc(int paused) {
    std::shared_ptr<Play> play;
    {
        DriveLock lock(&s_lock);
        if (!IsReadyLocked(State())) return MCIERR_HARDWARE;
        play = State().play;
    }
    if (play) PausePlay(*play, paused);
    return 0;
}

LRESULT SeekDisc(const DriveOpen& open, DWORD flags, const MCI_SEEK_PARMS* parms) {
    const DWORD where = flags & (MCI_TO | MCI_SEEK_TO_START | MCI_SEEK_TO_END);
    if (!where) return MCIERR_MISSING_PARAMETER;
    if (where & (where - 1)) return MCIERR_FLAGS_NOT_COMPATIBLE;
    if (!parms && (flags & MCI_TO)) return MCIERR_NULL_PARAMETER_BLOCK;
    std::shared_ptr<Play> old;
    {
        DriveLock lock(&s_lock);
        DriveState& d = State();
        if (!IsReadyLocked(d) || !d.told) return MCIERR_HARDWARE;
        uint32_t frame = where == MCI_SEEK_TO_END ? d.told->disc.end : FirstFrame(d.told.get());
        if (where == MCI_TO && !ReadPosition(d.told->disc, open.format, parms->dwTo, &frame))
            return MCIERR_OUTOFRANGE;
        old = AbandonPlayLocked(d, MCI_NOTIFY_ABORTED);
        d.frame = frame;
    }
    if (old) JoinPlay(*old);
    return 0;
}

void SetDoor(int open) {
    std::shared_ptr<Play> old;
    {
        DriveLock lock(&s_lock);
        DriveState& d = State();
        DriveSettings now = d.settings;
        if (now.door == open) return;
        now.door = open;
        WriteDoor(d.watch, open);
        old = AbandonPlayLocked(d, MCI_NOTIFY_ABORTED);
        TakeSettingsLocked(d, now);
    }
    if (old) JoinPlay(*old);
}

void NotifySuccess(HWND window, MCIDEVICEID device) {
    DriveLock lock(&s_lock);
    DriveState& d = State();
    NotifyLocked(d, MCI_NOTIFY_SUPERSEDED);
    d.window = window;
    d.device = device;
    NotifyLocked(d, MCI_NOTIFY_SUCCESSFUL);
}
