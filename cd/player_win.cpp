// The CD player window: refresh, timer, commands. Everything runs on the window's own thread. A
// refresh (on the engine's notice, after each button, at start) reads one snapshot with the disc
// record; the timer reads a snapshot without it. Neither holds a lock while it draws.
#include "cd/player_win.h"

#include "cd/config_win.h"
#include "cd/menu_win.h"
#include "cd/player_state_win.h"
#include "core/commands.h"
#include "core/strings_win.h"
#include "core/text.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/components.h"
#include "ui/indicator_win.h"
#include "ui/menu_win.h"
#include "ui/tooltips_win.h"
#include "ui/trackbar_win.h"
#include "ui/window_thread_win.h"

static constexpr UINT_PTR kTimerId = 700;
static constexpr UINT kTimerMs = 500;
static constexpr int kPageStep = 5;
static constexpr int kNowhere = -1;

static PlayerWindow s_player;

// ---- showing

static void ShowTitles(PlayerWindow* player) {
    const CdSnapshot& now = player->now;
    const PlayerTitles titles = TitlesShown(player->record, now.busy, now.track ? now.track : 1);
    SetPlayerText(player, kPlayerTitle, titles.disc);
    SetPlayerText(player, kPlayerArtist, titles.artist);
    SetPlayerText(player, kPlayerTrackTitle, titles.track);
}

static void SetTip(const PlayerWindow& player, int id, const char* text) {
    const HWND control = ControlOf(player, id);
    if (text)
        SetToolTipText(player.tooltips, player.window, control, text);
    else
        SetToolTipTextFromString(player.tooltips, player.window, control,
                                 IDS_CD_TIPS + (id - kPlayerFirst));
}

static void ShowTransport(PlayerWindow* player) {
    const CdSnapshot& now = player->now;
    SetPlayerLit(player, kPlayerPlay, now.busy);
    SetPlayerLit(player, kPlayerPause, now.paused);
    SetTip(*player, kPlayerBack, BackTip(player->record, now.busy, now.track));
    SetTip(*player, kPlayerForward, ForwardTip(player->record, now.busy, now.track));
}

static void ShowSlider(PlayerWindow* player) {
    const HWND slider = ControlOf(*player, kPlayerSlider);
    SetTrackBarRange(slider, 0, player->now.trackLength, 1);
    SetTrackBarPos(slider, player->now.elapsed);
}

static const struct {
    int id;
    uint32_t flag;
} kModes[] = {{kPlayerRepeat, kPlayRepeat},
              {kPlayerRandom, kPlayRandom},
              {kPlayerIntro, kPlayIntro},
              {kPlayerProgram, kPlayProgrammed},
              {kPlayerTrackLock, kPlayTrackLock}};

static void ShowTimeTips(PlayerWindow* player, int programmed) {
    if (player->tipsProgrammed == programmed) return;
    player->tipsProgrammed = programmed;
    const struct {
        int id;
        UINT disc, program;
    } tips[] = {{kPlayerDiscTime, IDS_CD_TIPS + kPlayerDiscTime - kPlayerFirst,
                 IDS_CD_TIP_PROGRAM_POSITION},
                {kPlayerDriveTime, IDS_CD_TIPS + kPlayerDriveTime - kPlayerFirst,
                 IDS_CD_TIP_PROGRAM_TOTAL}};
    for (const auto& tip : tips) {
        char text[kStringMax];
        LoadText(programmed ? tip.program : tip.disc, text);
        SetRectToolTipText(player->tooltips, player->window, tip.id, text);
    }
}

static void ShowModes(PlayerWindow* player, uint32_t flags) {
    for (const auto& mode : kModes)
        SetPlayerLit(player, mode.id, (flags & mode.flag) != 0);
    ShowTimeTips(player, (flags & kPlayProgrammed) != 0);
}

static void ShowTrackButtons(PlayerWindow* player) {
    const uint16_t count = player->record.trackCount, page = player->page;
    const int playing = player->now.busy ? ButtonOfTrack(player->now.track, page) : 0;
    for (int button = 1; button <= kPlayerTrackButtons; ++button) {
        const int id = kPlayerTrack1 + button - 1, track = page + button;
        char label[12];
        FormatText(label, sizeof label, "%d", track);
        SetPlayerText(player, id, label);
        SetPlayerEnabled(player, id, TrackButtonEnabled(button, page, count));
        SetPlayerLit(player, id, button == playing);
        SetTip(*player, id,
               track <= static_cast<int>(kMaxTracks) ? player->record.trackTitles[track - 1] : "");
    }
    SetPlayerEnabled(player, kPlayerPreviousPage, PreviousPageEnabled(page));
    SetPlayerEnabled(player, kPlayerNextPage, NextPageEnabled(page, count));
}

// `elapsed` is the engine's, or the thumb's while it is dragged.
static void ShowTrackTime(PlayerWindow* player, uint32_t elapsed) {
    char text[kTextSize];
    TrackTimeText(text, sizeof text, player->now.track ? player->now.track : 1, elapsed,
                  player->now.trackLength);
    SetPlayerText(player, kPlayerTrackTime, text);
}

static void ShowTimes(PlayerWindow* player) {
    const CdSnapshot& now = player->now;
    char text[kTextSize] = "";
    if (now.busy) MinuteText(text, sizeof text, now.discElapsed);
    SetPlayerText(player, kPlayerDiscTime, text);
    if (!now.busy)
        SetPlayerText(player, kPlayerTrackTime, "");
    else if (!player->dragging)
        ShowTrackTime(player, now.elapsed);
    DriveTimeText(text, sizeof text, now.drive, now.discTotal);
    SetPlayerText(player, kPlayerDriveTime, text);
    SetTrackBarPos(ControlOf(*player, kPlayerSlider), now.elapsed);
    SetPlayerPie(player, PieDegrees(now.discElapsed, now.discTotal));
}

static void Refresh(PlayerWindow* player) {
    // Without an engine: an empty disc.
    if (!GetCdSnapshot(&player->now, &player->record)) player->record.trackCount = 0;
    player->page = KeptPage(player->page, player->record.trackCount);
    ShowTitles(player);
    ShowTransport(player);
    ShowSlider(player);
    ShowModes(player, player->now.playFlags);
    ShowTrackButtons(player);
}

static void OnTimer(PlayerWindow* player) {
    // The engine may have died since, and another one may have taken its place.
    const int before = player->registered;
    player->registered = RegisterCdWindow(player->window);
    if (player->registered == 1 || (before && !player->registered)) Refresh(player);
    GetCdSnapshot(&player->now);
    player->sought = kNowhere;
    ShowTimes(player);
}

// ---- acting

static void ToggleMode(PlayerWindow* player, uint32_t flag) {
    ShowModes(player, SetCdPlayFlags(CdPlayFlags() ^ flag));
}

static void EditInformation(PlayerWindow* player) {
    const HWND window = player->window;
    EditDiscInformation(window);
    if (!IsWindow(window)) return;
    RECT client;
    GetClientRect(window, &client);
    LayOutPlayerWindow(player, client.right, client.bottom);
}

// Where the disc is now, from the engine itself: the last snapshot may be half a second old.
static Tmsf PositionNow(int* playing) {
    uint16_t track = 0, elapsed = 0;
    CdTrackTime(&track, &elapsed, nullptr);
    *playing = CdIsBusy() && !CdIsPaused();
    return SegmentPoint(track, elapsed);
}

static void StartSegment(PlayerWindow* player) {
    int playing;
    const Tmsf position = PositionNow(&playing);
    player->segmentStart = playing ? position : kNoSegmentStart;
}

static void EndSegment(PlayerWindow* player) {
    int playing;
    ProgramSegment segment;
    const Tmsf start = player->segmentStart, end = PositionNow(&playing);
    player->segmentStart = kNoSegmentStart;
    CDInfoRecord record;
    if (!RecordedSegment(start, end, &segment) || !GetCdRecord(&record)) return;
    record.program[0] = segment;
    record.programCount = 1;
    PostCdCommand(kCdStop, 0);
    // A change of programmed play makes the engine build its list anew: off first, so that "on" is
    // one.
    uint32_t flags = CdPlayFlags();
    if (flags & kPlayProgrammed) flags = SetCdPlayFlags(flags & ~kPlayProgrammed);
    ShowModes(player, SetCdPlayFlags(flags | kPlayProgrammed | kPlayRepeat));
    SetCdRecord(record);
    PostCdCommand(kCdPlay, 0);
}

static const struct {
    int id;
    CdEngineCommand command;
    int argument;
} kTransport[] = {{kPlayerPlay, kCdPlay, 0},       {kPlayerBack, kCdPrevious, 1},
                  {kPlayerForward, kCdNext, 1},    {kPlayerPause, kCdPause, 0},
                  {kPlayerStop, kCdStop, 0},       {kPlayerEject, kCdEject, 0},
                  {kPlayerRestart, kCdPrevious, 0}};

static int OnButton(PlayerWindow* player, int id) {
    for (const auto& button : kTransport)
        if (button.id == id) PostCdCommand(button.command, button.argument);
    for (const auto& mode : kModes)
        if (mode.id == id) ToggleMode(player, mode.flag);
    if (id >= kPlayerTrack1 && id < kPlayerTrack1 + kPlayerTrackButtons)
        PostCdCommand(kCdPlay, id - kPlayerTrack1 + 1 + player->page);
    if (id == kPlayerNextPage) player->page += kPageStep;
    if (id == kPlayerPreviousPage) player->page -= kPageStep; // below 0 it wraps, and is not kept
    if (id == kPlayerPower) PostMessageA(player->window, WM_CLOSE, 0, 0);
    if (id == kPlayerInfo) EditInformation(player);
    if (IsWindow(player->window)) Refresh(player);
    return 1;
}

// Menu entries come without a control; so track 100 is told from the control of the same number.
static int OnMenuCommand(PlayerWindow* player, int id) {
    if (id > kPlayerTrackFirst && id <= kPlayerTrackFirst + static_cast<int>(kMaxTracks))
        PostCdCommand(kCdPlay, id - kPlayerTrackFirst);
    else if (id >= kPlayerDriveFirst && id < kPlayerDriveFirst + 26)
        ChangeCdDrive(static_cast<char>('A' + id - kPlayerDriveFirst));
    else if (id == kPlayerDiscImage)
        ChooseDiscImage(player->window);
    else if (id == kPlayerEjectImage)
        EjectDiscImage();
    else if (id == kPlayerConfigure)
        ConfigureCd(player->window);
    else
        return 0;
    return 1;
}

static int OnCommand(PlayerWindow* player, int id, int code, int fromControl) {
    if (id == kNotifyCdEngine) {
        Refresh(player);
        return 1;
    }
    if (!fromControl && OnMenuCommand(player, id)) return 1;
    if (id < kPlayerFirst || id >= kPlayerFirst + kPlayerControls) return 0;
    if (id <= kPlayerTrackTitle) {
        if (code == kIndicatorDoubleClicked) EditInformation(player);
        return 1;
    }
    if (id == kPlayerRepeater) {
        if (code == kButtonPressed) StartSegment(player);
        if (code == kButtonReleased) EndSegment(player);
        return 1;
    }
    return code == kButtonClicked && OnButton(player, id);
}

// A click beside the thumb is reported twice, by its page step and by its release. The release must
// not seek once more, least of all when a tick has set the thumb back meanwhile to where the disc
// still is.
static void OnSlider(PlayerWindow* player, int code, int position) {
    const int dragged = player->dragging;
    player->dragging = code == SB_THUMBTRACK;
    GetCdSnapshot(&player->now);
    if (!player->now.busy) return;
    if (player->dragging) {
        ShowTrackTime(player, position);
    } else if (dragged || (position != player->sought && position != player->now.elapsed)) {
        PostCdCommand(kCdSeek, position);
        player->sought = position;
    }
}

// Keys of the transport, typed here or handed on by the console.
static int OnKey(PlayerWindow* player, WPARAM key) {
    switch (key) {
    case VK_PAUSE: return OnButton(player, kPlayerPause);
    case VK_PRIOR: return OnButton(player, kPlayerBack);
    case VK_NEXT: return OnButton(player, kPlayerForward);
    case VK_PLAY: return OnButton(player, kPlayerPlay);
    default: return 0;
    }
}

static void OnContextMenu(PlayerWindow* player, POINT at) {
    Refresh(player);
    ShowPlayerMenu(player->window, at, player->now, player->record);
}

// ---- the window as a component

static int OnCreateControls(HWND window) {
    s_player = {};
    s_player.window = window;
    s_player.segmentStart = kNoSegmentStart;
    s_player.sought = kNowhere;
    if (!CreatePlayerControls(&s_player)) return 0;
    if (!SetTimer(window, kTimerId, kTimerMs, nullptr)) return 0;
    s_player.registered = RegisterCdWindow(window);
    if (!s_player.registered) return 0;
    Refresh(&s_player);
    ShowTimes(&s_player);
    return 1;
}

static void OnLayout(HWND, int width, int height) {
    LayOutPlayerWindow(&s_player, width, height);
}

static void OnDestroy(HWND window) {
    KillTimer(window, kTimerId);
    UnregisterCdWindow(window);
    FreePlayerPictures(&s_player);
    s_player.window = nullptr; // what children still send on their way out concerns nobody
}

static void Forget() {
    s_player = {};
}

static LRESULT PlayerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

static ComponentWindow s_component = {.title = "CDPlayerUI",
                                      .windowId = kCdPlayerWindowId,
                                      .procedure = GuardedProc<PlayerProc>,
                                      .OnCreateControls = OnCreateControls,
                                      .OnLayout = OnLayout,
                                      .OnDestroy = OnDestroy,
                                      .Forget = Forget};

static LRESULT PlayerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    PlayerWindow* player = &s_player;
    if (player->window == window) switch (message) {
        case WM_COMMAND:
            if (OnCommand(player, LOWORD(wParam), HIWORD(wParam), lParam != 0)) return 0;
            break;
        case WM_TIMER:
            if (wParam != kTimerId) break;
            OnTimer(player);
            return 0;
        case WM_HSCROLL: OnSlider(player, LOWORD(wParam), HIWORD(wParam)); return 0;
        case WM_KEYDOWN:
            if (OnKey(player, wParam)) return 0;
            break;
        case WM_CONTEXTMENU: OnContextMenu(player, ContextMenuPlace(window, lParam)); return 0;
        case WM_PAINT: PaintPlayer(player); return 0;
        }
    return PassOnMessage(&s_component, window, message, wParam, lParam);
}

ComponentThread* CdPlayerThread() {
    return ComponentThreadOf(&s_component);
}
