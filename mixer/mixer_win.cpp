// The mixer window: destinations, refresh, commands. It holds no value of its own: what a bar or a
// button shows was read from the device through the engine, and what the user does is handed to the
// engine, whose notice brings the next refresh.
#include "mixer/mixer_win.h"

#include <algorithm>
#include <cstring>

#include <mmsystem.h>

#include "core/commands.h"
#include "core/settings.h"
#include "mixer/mixer_state_win.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/components.h"
#include "ui/layouts_win.h"
#include "ui/menu_win.h"
#include "ui/trackbar_win.h"
#include "ui/window_thread_win.h"

static constexpr UINT_PTR kTimerId = 6969;
static constexpr UINT kTimerMs = 2000;
static constexpr UINT_PTR kSoonTimerId = 6970;
static constexpr UINT kSoonMs = 15;
static constexpr int kAsk = -1; // reads without setting
static constexpr const char* kDestinationValue = "Dest Component";

// By index of the destination's button.
static constexpr uint32_t kDestinationTypes[kMixerDestinations] = {
    MIXERLINE_COMPONENTTYPE_DST_WAVEIN,     MIXERLINE_COMPONENTTYPE_DST_SPEAKERS,
    MIXERLINE_COMPONENTTYPE_DST_HEADPHONES, MIXERLINE_COMPONENTTYPE_DST_VOICEIN,
    MIXERLINE_COMPONENTTYPE_DST_TELEPHONE,  MIXERLINE_COMPONENTTYPE_DST_LINE,
    MIXERLINE_COMPONENTTYPE_DST_MONITOR,    MIXERLINE_COMPONENTTYPE_DST_DIGITAL};

static MixerWindow s_mixer;

static uint32_t TypeOf(const MixerWindow& mixer) {
    return kDestinationTypes[mixer.destination];
}

// ---- showing

static void SetLit(HWND button, uint8_t* lit, int on) {
    *lit = on != 0;
    SetButtonOn(button, *lit);
}

static void ShowBar(HWND slider, LevelBar* bar, int percent) {
    SetTrackBarPos(slider, FollowLevel(bar, percent));
}

// The controls repaint themselves where something has changed.
static void Refresh(MixerWindow* mixer) {
    for (int i = 0; i < mixer->count; ++i) {
        const uint32_t line = mixer->sources[i].lineId;
        SetLit(mixer->buttons[i], &mixer->sourceLit[i], MixerSourceOn(TypeOf(*mixer), line, kAsk));
        ShowBar(mixer->sliders[i], &mixer->levels[i], MixerLineVolume(line, kAsk));
    }
    SetLit(ControlOf(*mixer, kMixerMaster), &mixer->masterLit, MixerMasterOn(kAsk));
    ShowBar(ControlOf(*mixer, kMixerVolume), &mixer->volume, MixerMasterVolume(kAsk));
    if (mixer->hasTreble)
        ShowBar(ControlOf(*mixer, kMixerTreble), &mixer->treble, MixerMasterTreble(kAsk));
    if (mixer->hasBass) ShowBar(ControlOf(*mixer, kMixerBass), &mixer->bass, MixerMasterBass(kAsk));
}

// Notices may come faster than a refresh takes, while a bar is dragged above all; the timer comes
// when everything else in the queue is done.
static void RefreshSoon(MixerWindow* mixer) {
    if (mixer->refreshAhead) return;
    mixer->refreshAhead = SetTimer(mixer->window, kSoonTimerId, kSoonMs, nullptr) != 0;
}

// 1 when the sources are others than before.
static int ReadSources(MixerWindow* mixer) {
    MixerSource sources[kMixerColumns] = {};
    const int all = MixerSources(TypeOf(*mixer), sources, kMixerColumns);
    const int count = std::clamp(all, 0, kMixerColumns);
    int changed = count != mixer->count;
    for (int i = 0; i < count; ++i) {
        sources[i].name[kMixerNameSize - 1] = 0;
        changed |= sources[i].lineId != mixer->sources[i].lineId ||
                   strcmp(sources[i].name, mixer->sources[i].name);
    }
    if (!changed) return 0;
    mixer->count = count;
    memcpy(mixer->sources, sources, sizeof sources);
    for (LevelBar& level : mixer->levels)
        level.settled = kLevelNone; // another line's
    return 1;
}

static void ReadMasters(MixerWindow* mixer) {
    const int hasTreble = MixerHasTreble(), hasBass = MixerHasBass();
    if (hasTreble == mixer->hasTreble && hasBass == mixer->hasBass) return;
    mixer->hasTreble = hasTreble;
    mixer->hasBass = hasBass;
    EnableMixerMasters(mixer);
}

static void ShowDestination(MixerWindow* mixer) {
    for (int i = 0; i < kMixerDestinations; ++i)
        SetLit(mixer->fixed[i], &mixer->lit[i], i == mixer->destination);
    ReadSources(mixer);
    ReadMasters(mixer);
    Refresh(mixer);
    ShowMixerColumns(mixer); // after their values are known
}

// Everything is looked up anew: the device may have been changed or taken away, and another engine
// may have taken the place of the one that this window was registered with.
static void Update(MixerWindow* mixer) {
    RegisterMixerWindow(mixer->window);
    const int changed = ReadSources(mixer);
    ReadMasters(mixer);
    Refresh(mixer);
    if (changed) ShowMixerColumns(mixer);
}

// ---- acting

static void Choose(MixerWindow* mixer, int destination) {
    mixer->destination = destination;
    WriteWindowDword(kMixerWindowId, kDestinationValue, static_cast<uint32_t>(destination));
    ShowDestination(mixer);
}

static void ToggleSource(MixerWindow* mixer, int column) {
    if (column >= mixer->count) return;
    const uint32_t line = mixer->sources[column].lineId;
    MixerSourceOn(TypeOf(*mixer), line, !MixerSourceOn(TypeOf(*mixer), line, kAsk));
    Refresh(mixer);
}

// The dialog runs a message loop: the window may be gone when it returns.
static void Configure(MixerWindow* mixer) {
    const HWND window = mixer->window;
    ConfigureMixer(window);
    if (mixer->window == window) Update(mixer);
}

static int OnCommand(MixerWindow* mixer, int id, int code) {
    if (id == kNotifyMixer) {
        RefreshSoon(mixer);
        return 1;
    }
    if (code != kButtonClicked) return 0;
    if (id >= kMixerDestination1 && id < kMixerDestination1 + kMixerDestinations)
        Choose(mixer, id - kMixerDestination1);
    else if (id >= kMixerSource1 && id < kMixerSource1 + kMixerColumns)
        ToggleSource(mixer, id - kMixerSource1);
    else if (id == kMixerMaster) {
        MixerMasterOn(!MixerMasterOn(kAsk));
        Refresh(mixer);
    } else if (id == kMixerPower)
        PostMessageA(mixer->window, WM_CLOSE, 0, 0);
    else if (id == kMixerConfigure)
        Configure(mixer);
    else
        return 0;
    return 1;
}

// A release is reported also where nothing was moved: it sets nothing.
template <class Set> static void MoveBar(LevelBar* bar, int pos, const Set& set) {
    const int percent = AskByLevel(bar, pos);
    if (percent == kLevelNone) return;
    const int before = set(percent);
    SettleLevel(bar, before, set(kAsk));
}

static int SetMasterBar(MixerWindow* mixer, HWND slider, int pos) {
    const struct {
        int id;
        LevelBar* bar;
        int (*Set)(int percent);
    } masters[] = {{kMixerVolume, &mixer->volume, MixerMasterVolume},
                   {kMixerTreble, &mixer->treble, MixerMasterTreble},
                   {kMixerBass, &mixer->bass, MixerMasterBass}};
    for (const auto& master : masters) {
        if (slider != ControlOf(*mixer, master.id)) continue;
        MoveBar(master.bar, pos, master.Set);
        return 1;
    }
    return 0;
}

static void OnSlider(MixerWindow* mixer, HWND slider, int code, int pos) {
    if (!SetMasterBar(mixer, slider, pos))
        for (int i = 0; i < mixer->count; ++i) {
            const uint32_t line = mixer->sources[i].lineId;
            if (slider == mixer->sliders[i])
                MoveBar(&mixer->levels[i], pos,
                        [=](int percent) { return MixerLineVolume(line, percent); });
        }
    if (code == SB_ENDSCROLL) RefreshSoon(mixer); // what was held back while the bar was dragged
}

static void OnContextMenu(HWND window, POINT at) {
    const HMENU menu = CreatePopupMenu();
    if (!menu) return;
    AppendMenuEntry(menu, kMixerConfigure, IDS_MIXER_MENU_CONFIGURE);
    AppendLayoutsMenu(menu);
    ShowMenu(menu, window, at, TPM_CENTERALIGN | TPM_VCENTERALIGN);
}

// ---- the window as a component

static int OnCreateControls(HWND window) {
    s_mixer = {};
    s_mixer.window = window;
    if (!SetTimer(window, kTimerId, kTimerMs, nullptr)) return 0;
    const uint32_t kept = ReadWindowDword(kMixerWindowId, kDestinationValue, 0);
    s_mixer.destination = kept < kMixerDestinations ? static_cast<int>(kept) : 0;
    if (!CreateMixerControls(&s_mixer)) return 0;
    RegisterMixerWindow(window);
    ShowDestination(&s_mixer);
    return 1;
}

static void OnLayout(HWND, int width, int height) {
    LayOutMixerWindow(&s_mixer, width, height);
}

static void OnDestroy(HWND window) {
    KillTimer(window, kTimerId);
    KillTimer(window, kSoonTimerId);
    UnregisterMixerWindow(window);
    FreeMixerFonts(&s_mixer);
    s_mixer.window = nullptr; // what children still send on their way out concerns nobody
}

static void Forget() {
    s_mixer = {};
}

static LRESULT MixerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

static ComponentWindow s_component = {.title = "MixerUI",
                                      .windowId = kMixerWindowId,
                                      .procedure = GuardedProc<MixerProc>,
                                      .OnCreateControls = OnCreateControls,
                                      .OnLayout = OnLayout,
                                      .OnDestroy = OnDestroy,
                                      .Forget = Forget};

static LRESULT MixerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    MixerWindow* mixer = &s_mixer;
    if (mixer->window == window) switch (message) {
        case WM_COMMAND:
            if (OnCommand(mixer, LOWORD(wParam), HIWORD(wParam))) return 0;
            break;
        case WM_TIMER:
            if (wParam != kTimerId && wParam != kSoonTimerId) break;
            KillTimer(window, kSoonTimerId);
            mixer->refreshAhead = 0;
            Update(mixer);
            return 0;
        case WM_VSCROLL:
            OnSlider(mixer, reinterpret_cast<HWND>(lParam), LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_CONTEXTMENU: OnContextMenu(window, ContextMenuPlace(window, lParam)); return 0;
        case WM_PAINT: PaintMixer(mixer); return 0;
        }
    return PassOnMessage(&s_component, window, message, wParam, lParam);
}

ComponentThread* MixerThread() {
    return ComponentThreadOf(&s_component);
}
