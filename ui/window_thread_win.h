// A component window on a component thread: everything that all of them do alike. A component
// declares one ComponentWindow and gives what is its own; docs/windows.md shows a whole one.
#pragma once
#include "core/component_win.h"
#include "ui/framework_win.h"
#include "ui/geometry.h"

// Functions may be null but for `procedure` and OnCreateControls. All run on the window's thread.
struct ComponentWindow {
    const char* title = nullptr;                    // window title, and what "LastException" names
    uint16_t windowId = 0;                          // selects the settings section
    WNDPROC procedure = nullptr;                    // GuardedProc<...>; passes on to PassOnMessage
    int (*OnCreateControls)(HWND window) = nullptr; // settings, children, timers; 1 when ready
    void (*OnLayout)(HWND window, int width, int height) = nullptr; // client size; place and fonts
    // Timers, fonts, registrations; the children still live. Also after a failed OnCreateControls
    // and after a fault, so it copes with what was not made.
    void (*OnDestroy)(HWND window) = nullptr;
    void (*OnSave)() = nullptr; // after the loop: settings that were not yet written
    void (*Forget)() = nullptr; // on the console's thread after a kill: clear the module's globals
    ComponentThread thread = {};
};

// The component for the console's table; fills what the thread needs.
ComponentThread* ComponentThreadOf(ComponentWindow* component);

// What a component's procedure does with every message that it does not fully handle: WM_SIZE,
// kLookChanged and kFontChanged lay out, WM_CLOSE destroys, WM_DESTROY runs OnDestroy and ends the
// loop, SC_SCREENSAVE is swallowed while the saver is held off; then the framework's procedure.
// The commands of layouts go on to the owner.
LRESULT PassOnMessage(ComponentWindow* component, HWND window, UINT message, WPARAM wParam,
                      LPARAM lParam);

// Subclasses a framework window: the framework's procedure is kept in the window's user data.
// CallKeptProcedure passes a message on to it. (The console uses these two alone.)
int SubclassUIWindow(HWND window, WNDPROC procedure);
LRESULT CallKeptProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

// Places many controls at once, without repainting in between. Ids that are no child are skipped.
struct ControlPlace {
    int id;
    Box box;
};
void PlaceControls(HWND window, const ControlPlace* places, int count);
