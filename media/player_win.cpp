// The media player window: plays a list through the media engine, entry by entry. Everything runs
// on the window's own thread, which is the only one that calls the engine.
//
// While it plays the timer asks for the position; a file is over when the graph says so. A file
// that can't be played is told of for a tick, then the list goes on.
#include "media/player_win.h"

#include "core/commands.h"
#include "core/settings.h"
#include "core/shared_block.h"
#include "core/text.h"
#include "media/dialogs_win.h"
#include "media/engine_win.h"
#include "media/history_win.h"
#include "media/lengths.h"
#include "media/player_state_win.h"
#include "media/types_win.h"
#include "ui/button_win.h"
#include "ui/components.h"
#include "ui/indicator_win.h"
#include "ui/trackbar_win.h"
#include "ui/window_thread_win.h"

static constexpr UINT_PTR kTimerId = 700;
static constexpr UINT kTimerMs = 250;
static constexpr UINT kGraphSpeaks = WM_APP + 1;
static constexpr int kNowhere = -1;
static constexpr int kEndTicks = 2;          // the graph's own word is given a tick to come
static constexpr DWORD kMediaStopMs = 6000;  // a graph that stands still, and the capture
static constexpr LPARAM kIsRepeat = 1 << 30; // of a key that is held down

static MediaPlayer s_player;

// ---- showing

static uint32_t StateOf(const MediaPlayer& player) {
    if (!player.playing) return kMediaStopped;
    return player.paused ? kMediaPaused : kMediaPlaying;
}

static void Publish(const MediaPlayer& player) {
    if (!SharedBlock) return;
    const std::string title = FileTitle(CurrentEntry(player.list));
    CopyText(SharedBlock->MediaTitle, kMediaTitleMax + 1, title.c_str());
    SharedBlock->MediaState = StateOf(player);
    SharedBlock->MediaEntry =
        player.list.position < player.list.entries.size() ? player.list.position + 1 : 0;
    SharedBlock->MediaTick = GetTickCount(); // last: the rest belongs to it
}

static void Refresh(MediaPlayer* player) {
    SetMediaLit(player, kMediaPlay, player->playing);
    SetMediaLit(player, kMediaPause, player->paused);
    SetMediaLit(player, kMediaRepeat, player->Repeat);
    SetMediaLit(player, kMediaRandom, player->Random);
    ShowMediaCaption(player);
    Publish(*player);
}

static void ShowTime(MediaPlayer* player, int position) {
    char text[32];
    MediaTimeText(text, sizeof text, position, WholeSeconds(player->duration));
    SetMediaText(player, kMediaTime, text);
}

static void ShowPosition(MediaPlayer* player, double position) {
    const HWND bar = ControlOf(*player, kMediaSeek);
    const SeekSlider slider = SeekSliderAt(player->duration, position);
    if (slider.maximum != player->sliderMaximum) SetTrackBarRange(bar, 1, slider.maximum, 1);
    player->sliderMaximum = slider.maximum;
    SetTrackBarPos(bar, slider.position);
    if (player->dragging) return;
    player->second = slider.position;
    ShowTime(player, WholeSeconds(position));
}

// ---- playing

static void BeStopped(MediaPlayer* player) {
    player->playing = player->paused = player->goesOn = 0;
    player->sought = kNowhere;
}

static void Stop(MediaPlayer* player) {
    StopMediaPlay();
    BeStopped(player);
    player->unknownType = player->failures = 0;
    ShowPosition(player, 0);
    Refresh(player);
}

// The graph goes, so that the capture comes back; the list goes on with the next tick, unless it
// has nothing else.
static void Fail(MediaPlayer* player, int unknownType) {
    ReleaseMediaGraph();
    BeStopped(player);
    player->unknownType = unknownType;
    player->duration = 0;
    ++player->failures;
    player->goesOn = player->failures < static_cast<int>(player->list.entries.size());
    ShowPosition(player, 0);
    Refresh(player);
}

// 1 when it plays.
static int PlayCurrent(MediaPlayer* player) {
    const std::string entry = CurrentEntry(player->list);
    if (entry.empty()) return 0;
    BeStopped(player);
    player->unknownType = player->endTicks = player->heard = 0;
    const int loaded = LoadMediaFile(ResolveEntry(player->list, entry).c_str());
    if (!loaded || !BeginMediaPlay()) {
        Fail(player, !loaded);
        return 0;
    }
    double position = 0;
    player->playing = 1;
    GetMediaPosition(&player->duration, &position);
    ShowPosition(player, position);
    Refresh(player);
    return 1;
}

static void PlayEntry(MediaPlayer* player, int entry) {
    player->list.position = static_cast<uint32_t>(entry);
    player->failures = 0;
    PlayCurrent(player);
}

// Without playing, another entry is only chosen.
static void GoBeside(MediaPlayer* player, int step) {
    const int entry = EntryBeside(player->list, step, player->Random, NextRandom(&player->seed));
    if (player->playing || player->goesOn) {
        PlayEntry(player, entry);
        return;
    }
    player->list.position = static_cast<uint32_t>(entry);
    player->unknownType = 0;
    player->duration = 0; // it was another file's
    ShowPosition(player, 0);
    Refresh(player);
}

// Goes to the entry after this one, or back to the first one and stops: then 0.
static int GoOn(MediaPlayer* player) {
    const int next =
        EntryAfterEnd(player->list, player->Repeat, player->Random, NextRandom(&player->seed));
    player->list.position = next < 0 ? 0 : static_cast<uint32_t>(next);
    return next >= 0;
}

// A file of which nothing was to be heard counts as one that failed: or a list of such files would
// go round for ever.
static void EndFile(MediaPlayer* player) {
    double duration = 0, position = 0;
    GetMediaPosition(&duration, &position);
    player->failures = player->heard || position > 0 ? 0 : player->failures + 1;
    const int goesOn =
        player->failures < static_cast<int>(player->list.entries.size()) && GoOn(player);
    StopMediaPlay();
    BeStopped(player);
    ShowPosition(player, 0);
    if (goesOn) PostMessageA(player->window, WM_COMMAND, kMediaPlay, 0);
    Refresh(player);
}

static void GoOnAfterFailure(MediaPlayer* player) {
    player->goesOn = 0;
    if (GoOn(player))
        PlayCurrent(player);
    else
        Refresh(player); // the caption still tells of the last file
}

static void TogglePause(MediaPlayer* player) {
    if (!ToggleMediaPause()) return;
    player->paused = !player->paused;
    Refresh(player);
}

static void Seek(MediaPlayer* player, int second) {
    player->sought = second;
    player->endTicks = 0;
    SeekMediaToSecond(second);
    player->paused = 0; // a seek plays on
    Refresh(player);
}

static void Play(MediaPlayer* player) {
    if (player->paused)
        TogglePause(player);
    else
        PlayCurrent(player);
}

// ---- opening

static void Open(MediaPlayer* player, const std::string& path) {
    if (!OpenMediaPath(path, &player->list)) return;
    player->failures = 0;
    const int plays = PlayCurrent(player);
    if (plays || IsPlaylistPath(path)) AddHistory(path);
    if (player->list.entries.empty()) Stop(player);
    WriteMediaSettings(*player);
}

static void OnDrop(MediaPlayer* player, HDROP drop) {
    const std::string file = OnlyDroppedFile(drop);
    const int several = file.empty() && OpenDroppedFiles(drop, &player->list);
    DragFinish(drop);
    if (!file.empty()) {
        Open(player, file);
    } else if (several) {
        PlayEntry(player, 0);
        WriteMediaSettings(*player);
    }
}

// ---- dialogs

static void Ask(MediaPlayer* player, int (*Dialog)(HWND owner, std::string* path)) {
    const HWND window = player->window;
    std::string path;
    if (Dialog(window, &path) && player->window == window) Open(player, path);
}

static void EditList(MediaPlayer* player) {
    if (EditMediaList(player)) Stop(player);
}

static int IsDialogCommand(int id) {
    return (id >= kMediaOpen && id <= kMediaHistory) || id == kMediaFileTypes;
}

// The window may be gone when a dialog returns.
static void OnDialogCommand(MediaPlayer* player, int id) {
    const HWND window = player->window;
    if (player->dialogOpen) { // it is open already
        SetForegroundWindow(GetLastActivePopup(window));
        return;
    }
    player->dialogOpen = 1;
    switch (id) {
    case kMediaOpen: Ask(player, AskMediaFile); break;
    case kMediaHistory: Ask(player, ShowHistory); break;
    case kMediaSave: SaveMediaList(player); break;
    case kMediaEditor: EditList(player); break;
    default: ShowFileTypes(window); break;
    }
    if (player->window != window) return;
    player->dialogOpen = 0;
    WriteMediaSettings(*player);
    Refresh(player);
}

// ---- the timer

static void OnFirstTick(MediaPlayer* player) {
    player->started = 1;
    if (player->TouchFiles) RefreshMediaIcons();
    if (CheckMediaSupport()) ShowMediaPlayerRequired(player->window);
}

static void FollowFile(MediaPlayer* player) {
    double position = 0;
    GetMediaPosition(&player->duration, &position);
    player->sought = kNowhere;
    if (position > 0) player->heard = 1;
    ShowPosition(player, position);
    player->endTicks = IsAtEnd(player->duration, position) ? player->endTicks + 1 : 0;
    if (player->endTicks >= kEndTicks) SendMessageA(player->window, WM_COMMAND, kMediaEnded, 0);
}

static void OnTimer(MediaPlayer* player) {
    const HWND window = player->window;
    std::string path;
    if (!player->started) OnFirstTick(player);
    if (player->window != window) return;
    if (TakeCommandFile(&path))
        Open(player, path);
    else if (player->playing)
        FollowFile(player);
    else if (player->goesOn)
        GoOnAfterFailure(player);
}

// ---- commands

static void ToggleFlag(MediaPlayer* player, int MediaPlayer::*flag) {
    player->*flag = !(player->*flag);
    WriteMediaSettings(*player);
    Refresh(player);
}

// Commands that play, if there is something for them to act on.
static void OnPlayCommand(MediaPlayer* player, int id) {
    if (!MediaCommandActs(id, player->list, player->playing)) return;
    switch (id) {
    case kMediaRefresh: Refresh(player); break;
    case kMediaPlay: Play(player); break;
    case kMediaPrevious: GoBeside(player, -1); break;
    case kMediaNext: GoBeside(player, 1); break;
    case kMediaPause: TogglePause(player); break;
    case kMediaStop: Stop(player); break;
    case kMediaSeek: Seek(player, player->second); break;
    case kMediaEnded: EndFile(player); break;
    default: PlayEntry(player, id - kMediaEntryFirst); break;
    }
}

static void OnCommand(MediaPlayer* player, int id) {
    switch (id) {
    case kMediaRepeat: ToggleFlag(player, &MediaPlayer::Repeat); break;
    case kMediaRandom: ToggleFlag(player, &MediaPlayer::Random); break;
    case kMediaTouchFiles:
        ToggleFlag(player, &MediaPlayer::TouchFiles);
        if (player->TouchFiles) RefreshMediaIcons();
        break;
    case kMediaPower: PostMessageA(player->window, WM_CLOSE, 0, 0); break;
    default:
        if (IsDialogCommand(id))
            OnDialogCommand(player, id);
        else
            OnPlayCommand(player, id);
    }
}

// A click beside the thumb is reported twice, by its page step and by its release; the release must
// not seek once more.
static void OnSlider(MediaPlayer* player, int code, int position) {
    const int dragged = player->dragging;
    player->dragging = code == SB_THUMBTRACK;
    if (!player->playing) {
        if (!player->dragging) ShowPosition(player, 0); // there is no other place to be at
    } else if (player->dragging)
        ShowTime(player, position);
    else if (dragged || (position != player->sought && position != player->second))
        Seek(player, position);
}

static int OnKey(MediaPlayer* player, WPARAM key, LPARAM state) {
    const struct {
        WPARAM key;
        int command;
    } keys[] = {{VK_PAUSE, kMediaPause},
                {VK_PRIOR, kMediaPrevious},
                {VK_NEXT, kMediaNext},
                {VK_PLAY, kMediaPlay}};
    for (const auto& entry : keys) {
        if (entry.key != key) continue;
        if (!(state & kIsRepeat)) OnPlayCommand(player, entry.command);
        return 1;
    }
    return 0;
}

// ---- the window as a component

static int OnCreateControls(HWND window) {
    s_player = {};
    s_player.window = window;
    s_player.sought = kNowhere;
    s_player.seed = GetTickCount();
    ReadMediaSettings(&s_player);
    if (!CreateMediaControls(&s_player)) return 0;
    if (!SetTimer(window, kTimerId, kTimerMs, nullptr)) return 0;
    NotifyMediaWindow(window, kGraphSpeaks);
    DragAcceptFiles(window, TRUE);
    ShowPosition(&s_player, 0);
    Refresh(&s_player);
    return 1;
}

static void OnLayout(HWND, int width, int height) {
    LayOutMediaWindow(&s_player, width, height);
}

static void OnDestroy(HWND window) {
    KillTimer(window, kTimerId);
    NotifyMediaWindow(nullptr, 0);
    StopMediaPlay();
    ReleaseMediaGraph();
    FreeMediaFonts(&s_player);
    s_player = {}; // what children still send on their way out concerns nobody
    Publish(s_player);
}

static void Forget() {
    ForgetMediaGraph();
    s_player = {};
    Publish(s_player);
}

static LRESULT MediaProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

static ComponentWindow MediaComponent() {
    ComponentWindow component;
    component.title = "MediaUI";
    component.windowId = kMediaWindowId;
    component.procedure = GuardedProc<MediaProc>;
    component.OnCreateControls = OnCreateControls;
    component.OnLayout = OnLayout;
    component.OnDestroy = OnDestroy;
    component.Forget = Forget;
    component.thread.stopWaitMs = kMediaStopMs;
    return component;
}
static ComponentWindow s_component = MediaComponent();

static LRESULT MediaProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    MediaPlayer* player = &s_player;
    if (player->window == window) switch (message) {
        case WM_COMMAND:
            if (HIWORD(wParam) == kButtonClicked) OnCommand(player, LOWORD(wParam));
            break;
        case WM_TIMER:
            if (wParam != kTimerId) break;
            OnTimer(player);
            return 0;
        case kGraphSpeaks:
            if (MediaHasEnded()) SendMessageA(window, WM_COMMAND, kMediaEnded, 0);
            return 0;
        case WM_HSCROLL: OnSlider(player, LOWORD(wParam), HIWORD(wParam)); return 0;
        case WM_KEYDOWN:
            if (OnKey(player, wParam, lParam)) return 0;
            break;
        case WM_DROPFILES: OnDrop(player, reinterpret_cast<HDROP>(wParam)); return 0;
        case WM_CONTEXTMENU: ShowMediaMenu(*player, lParam); return 0;
        case WM_PAINT: PaintMediaWindow(*player); return 0;
        }
    return PassOnMessage(&s_component, window, message, wParam, lParam);
}

ComponentThread* MediaThread() {
    return ComponentThreadOf(&s_component);
}
