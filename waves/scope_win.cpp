// The oscilloscope window: timer, commands, menu, the component. Everything runs on the window's
// own thread.
#include "waves/scope_win.h"

#include "core/commands.h"
#include "resources/ids.h"
#include "ui/button_win.h"
#include "ui/components.h"
#include "ui/menu_win.h"
#include "ui/window_thread_win.h"
#include "waves/published_win.h"
#include "waves/scope_state_win.h"

static constexpr UINT_PTR kTimerId = 799;
static constexpr UINT kTimerMs = 35;

static ScopeWindow s_scope;

// ---- acting

static const struct {
    int id;
    uint32_t ScopeSettings::*flag;
    UINT menu;
} kToggles[] = {{kScopeForceMono, &ScopeSettings::forceMono, IDS_SCOPE_MENU_FORCE_MONO},
                {kScopeVertical, &ScopeSettings::vertical, IDS_SCOPE_VERTICAL},
                {kScopeGradient, &ScopeSettings::gradient, IDS_SCOPE_GRADIENT},
                {kScopeLegends, &ScopeSettings::legends, IDS_SCOPE_LEGENDS}};

// The dialog runs a message loop: the window may be gone when it returns.
static void EditColors(ScopeWindow* scope) {
    if (EditScopeColors(scope->window, &scope->settings)) scope->repaintBackground = 1;
}

static int OnCommand(ScopeWindow* scope, int id) {
    for (const auto& toggle : kToggles) {
        if (toggle.id != id) continue;
        scope->settings.*toggle.flag ^= 1;
        ShowScopeToggles(*scope);
        scope->repaintBackground = 1;
        return 1;
    }
    switch (id) {
    case kScopePower: PostMessageA(scope->window, WM_CLOSE, 0, 0); return 1;
    case kScopeSettings: EditColors(scope); return 1;
    case kFormatChanged: scope->repaintBackground = 1; return 1;
    default: return 0;
    }
}

// A position that is no other than the last (a click on the thumb, any key) changes nothing: so a
// gain below the slider's least stays until the slider really moves.
static void OnSlider(ScopeWindow* scope, int position) {
    if (position == scope->sliderPosition) return;
    scope->sliderPosition = position;
    scope->settings.gain = GainOfSlider(position);
}

static int SameFormat(const SoundFormatRecord& a, const SoundFormatRecord& b) {
    return a.channels == b.channels && a.bits == b.bits && a.rate == b.rate;
}

static void OnTimer(ScopeWindow* scope) {
    if (!VisualsHaveTaken()) ShowScopeTraces(scope);
    SoundFormatRecord format;
    PublishedFormat(&format);
    if (SameFormat(format, scope->shownFormat)) return;
    ShowScopeFormat(scope, format);
    scope->repaintBackground = 1;
}

// ---- the menu

static void OnContextMenu(ScopeWindow* scope, POINT at) {
    const HMENU menu = CreatePopupMenu();
    if (!menu) return;
    for (const auto& toggle : kToggles)
        AppendMenuEntry(menu, toggle.id, toggle.menu, scope->settings.*toggle.flag);
    AppendMenuSeparator(menu);
    AppendMenuEntry(menu, kScopeSettings, IDS_SCOPE_MENU_SETTINGS);
    AppendMenuEntry(menu, kScopePower, IDS_SCOPE_MENU_POWER);
    ShowMenu(menu, scope->window, at);
}

// ---- the window as a component

static int OnCreateControls(HWND window) {
    s_scope = {};
    s_scope.window = window;
    s_scope.settings = ReadScopeSettings();
    s_scope.repaintBackground = 1;
    return CreateScopeControls(&s_scope) && SetTimer(window, kTimerId, kTimerMs, nullptr);
}

static void OnLayout(HWND, int width, int height) {
    LayOutScopeWindow(&s_scope, width, height);
}

static void OnDestroy(HWND window) {
    KillTimer(window, kTimerId);
    FreeScopePictures(&s_scope);
    s_scope.window = nullptr; // what children still send on their way out concerns nobody
}

static void OnSave() {
    WriteScopeSettings(s_scope.settings);
}

static void Forget() {
    s_scope = {};
}

static LRESULT ScopeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

static ComponentWindow s_component = {.title = "ScopeUI",
                                      .windowId = kScopeWindowId,
                                      .procedure = GuardedProc<ScopeProc>,
                                      .OnCreateControls = OnCreateControls,
                                      .OnLayout = OnLayout,
                                      .OnDestroy = OnDestroy,
                                      .OnSave = OnSave,
                                      .Forget = Forget};

static LRESULT ScopeProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    ScopeWindow* scope = &s_scope;
    if (scope->window == window) switch (message) {
        case WM_COMMAND:
            if (HIWORD(wParam) == kButtonClicked && OnCommand(scope, LOWORD(wParam))) return 0;
            break;
        case WM_TIMER:
            if (wParam != kTimerId) break;
            OnTimer(scope);
            return 0;
        case WM_VSCROLL:
            if (reinterpret_cast<HWND>(lParam) == ControlOf(*scope, kScopeGain))
                OnSlider(scope, HIWORD(wParam));
            return 0;
        case WM_CONTEXTMENU: OnContextMenu(scope, ContextMenuPlace(window, lParam)); return 0;
        case WM_ERASEBKGND: {
            // The display is painted black and all at once: an erase would only flash.
            const auto dc = reinterpret_cast<HDC>(wParam);
            const Box& display = scope->layout.display;
            const int saved = SaveDC(dc);
            ExcludeClipRect(dc, display.left, display.top, display.left + display.width,
                            display.top + display.height);
            const LRESULT result = PassOnMessage(&s_component, window, message, wParam, lParam);
            RestoreDC(dc, saved);
            return result;
        }
        case WM_PAINT: PaintScope(scope); return 0;
        }
    return PassOnMessage(&s_component, window, message, wParam, lParam);
}

ComponentThread* ScopeThread() {
    return ComponentThreadOf(&s_component);
}
