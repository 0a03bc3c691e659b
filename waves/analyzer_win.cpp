// The spectrum analyzer window: life, timer, commands. Every 35 ms it reads what was published,
// and paints when anybody could see it; the indicators follow the format in any case.
#include "waves/analyzer_win.h"

#include <cstring>

#include "core/commands.h"
#include "core/lock_win.h"
#include "ui/components.h"
#include "ui/button_win.h"
#include "ui/menu_win.h"
#include "ui/window_thread_win.h"
#include "waves/analyzer_state_win.h"
#include "waves/engine_win.h"
#include "waves/published_win.h"

static constexpr UINT_PTR kFrameTimer = 799;
static constexpr UINT kFrameMs = 35;
static constexpr UINT_PTR kDisplayTimer = 798; // once, after a change of the display's mode
static constexpr UINT kDisplayMs = 3000;
static constexpr uint32_t kPaintsPerRefresh = 5;
static constexpr int kFirstForConsole = 200, kLastForConsole = 205; // command ids

static AnalyzerWindow s_analyzer;

// ---- format

static int SameFormat(const SoundFormatRecord& a, const SoundFormatRecord& b) {
    return a.channels == b.channels && a.rate == b.rate && a.bits == b.bits;
}

static void RefreshFormat(AnalyzerWindow* analyzer) {
    const ScopedLock lock(analyzer->formatLock);
    if (!lock.held) return;
    PublishedFormat(&analyzer->format);
    analyzer->bins = PublishedBinCount();
}

// Indicators, tooltips and axis, when another format is published. An empty one changes nothing
// that is to be seen; without bins, though, nothing is painted until there is a format again.
static void FollowFormat(AnalyzerWindow* analyzer) {
    SoundFormatRecord now;
    PublishedFormat(&now);
    if (!SameFormat(now, analyzer->format)) RefreshFormat(analyzer);
    if (!now.rate || SameFormat(now, analyzer->indicated)) return;
    const char* const* labels = BandLabels(analyzer->indicated.rate);
    analyzer->indicated = now;
    ShowAnalyzerFormat(analyzer);
    if (BandLabels(now.rate) != labels) DrawAnalyzerPicture(analyzer);
}

// ---- frames

static void OnFrame(AnalyzerWindow* analyzer) {
    if (VisualsHaveTaken() || !analyzer->bins) return;
    if (!AreaInSight(analyzer->window, RectOf(analyzer->layout.panel))) return;
    if (++analyzer->paints % kPaintsPerRefresh == 0) RefreshFormat(analyzer);
    AnalyzerInput input = {};
    float left, right;
    PublishedPower(&left, &right, &input.fullScalePower);
    PublishedBands(input.left, input.right);
    input.bins = analyzer->bins;
    PaintAnalyzerFrame(analyzer, input);
}

static void OnTimer(AnalyzerWindow* analyzer, WPARAM timer) {
    if (timer == kFrameTimer) {
        OnFrame(analyzer);
        FollowFormat(analyzer);
    } else if (timer == kDisplayTimer) {
        KillTimer(analyzer->window, kDisplayTimer);
        FreeCanvas(&analyzer->canvas);
        DrawAnalyzerPicture(analyzer);
    }
}

// ---- commands

static void LayOutAgain(AnalyzerWindow* analyzer) {
    RECT client;
    GetClientRect(analyzer->window, &client);
    if (client.right > 0 && client.bottom > 0) // not while minimised
        LayOutAnalyzerWindow(analyzer, client.right, client.bottom);
}

static void OnSwitch(AnalyzerWindow* analyzer, int id) {
    analyzer->state = {}; // no marks of long ago
    ShowAnalyzerSwitches(analyzer);
    if (id == kAnalyzerTrails) return;
    LayOutAgain(analyzer);
}

static void EditSettings(AnalyzerWindow* analyzer) {
    const HWND window = analyzer->window;
    if (!EditAnalyzerSettings(window, &analyzer->settings) || analyzer->window != window) return;
    WriteAnalyzerSettings(analyzer->settings);
    DrawAnalyzerPicture(analyzer);
}

static int OnCommand(AnalyzerWindow* analyzer, int id, int code, LPARAM lParam) {
    if (id >= kFirstForConsole && id <= kLastForConsole) {
        PostMessageA(analyzer->owner, WM_COMMAND, static_cast<WPARAM>(id), lParam);
        return 1;
    }
    if (id == kFormatChanged) {
        if (!lParam) RefreshFormat(analyzer);
        return 1;
    }
    if (code != kButtonClicked) return 0;
    if (SwitchAnalyzer(&analyzer->settings, id)) {
        OnSwitch(analyzer, id);
        return 1;
    }
    switch (id) {
    case kAnalyzerPower: PostMessageA(analyzer->window, WM_CLOSE, 0, 0); return 1;
    case kAnalyzerSetUp: EditSettings(analyzer); return 1;
    case kAnalyzerConfigure: ConfigureWaves(analyzer->window); return 1;
    default: return 0;
    }
}

// ---- the window as a component

static int OnCreateControls(HWND window);

static void OnLayout(HWND, int width, int height) {
    LayOutAnalyzerWindow(&s_analyzer, width, height);
}

static void OnDestroy(HWND window) {
    KillTimer(window, kFrameTimer);
    KillTimer(window, kDisplayTimer);
    FreeAnalyzerPictures(&s_analyzer);
    if (s_analyzer.formatLock) CloseHandle(s_analyzer.formatLock);
    s_analyzer.formatLock = nullptr;
    s_analyzer.window = nullptr; // what children still send on their way out concerns nobody
}

static void OnSave() {
    WriteAnalyzerSettings(s_analyzer.settings);
}

static void Forget() {
    s_analyzer = {};
}

static LRESULT AnalyzerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

static ComponentWindow s_component = {.title = "SpectrumUI",
                                      .windowId = kSpectrumWindowId,
                                      .procedure = GuardedProc<AnalyzerProc>,
                                      .OnCreateControls = OnCreateControls,
                                      .OnLayout = OnLayout,
                                      .OnDestroy = OnDestroy,
                                      .OnSave = OnSave,
                                      .Forget = Forget};

static int OnCreateControls(HWND window) {
    s_analyzer = {};
    s_analyzer.window = window;
    s_analyzer.owner = s_component.thread.Owner;
    ReadAnalyzerSettings(&s_analyzer.settings);
    s_analyzer.formatLock = CreateMutexA(nullptr, FALSE, nullptr);
    if (!s_analyzer.formatLock) return 0;
    RefreshFormat(&s_analyzer);
    if (!s_analyzer.format.rate || !s_analyzer.bins) return 0; // there is no sound to show
    if (!CreateAnalyzerControls(&s_analyzer)) return 0;
    FollowFormat(&s_analyzer);
    return SetTimer(window, kFrameTimer, kFrameMs, nullptr) != 0;
}

// The display is left out: its picture covers it, and an erased one would flicker. Painting uses
// the same dc, without that clipping.
static LRESULT EraseAround(const AnalyzerWindow& analyzer, WPARAM wParam) {
    const HDC dc = reinterpret_cast<HDC>(wParam);
    const int saved = SaveDC(dc);
    const RECT panel = RectOf(analyzer.layout.panel);
    if (analyzer.canvas.dc) ExcludeClipRect(dc, panel.left, panel.top, panel.right, panel.bottom);
    const LRESULT result = PassOnMessage(&s_component, analyzer.window, WM_ERASEBKGND, wParam, 0);
    RestoreDC(dc, saved);
    return result;
}

static LRESULT AnalyzerProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    AnalyzerWindow* analyzer = &s_analyzer;
    if (analyzer->window == window) switch (message) {
        case WM_TIMER: OnTimer(analyzer, wParam); return 0;
        case WM_COMMAND:
            if (OnCommand(analyzer, LOWORD(wParam), HIWORD(wParam), lParam)) return 0;
            break;
        case WM_HSCROLL: analyzer->settings.Gainer = GainAtPosition(HIWORD(wParam)); return 0;
        case WM_CONTEXTMENU: ShowAnalyzerMenu(analyzer, ContextMenuPlace(window, lParam)); return 0;
        case WM_DISPLAYCHANGE: SetTimer(window, kDisplayTimer, kDisplayMs, nullptr); break;
        case WM_ERASEBKGND: return EraseAround(*analyzer, wParam);
        case WM_PAINT: PaintAnalyzer(analyzer); return 0;
        }
    return PassOnMessage(&s_component, window, message, wParam, lParam);
}

ComponentThread* AnalyzerThread() {
    return ComponentThreadOf(&s_component);
}
