// What the hotkeys do, whichever program the user is in.
#include "ui/console_state_win.h"
#include "ui/hotkeys_win.h"

// In the order of storage.
static const struct {
    int windowId; // 0: a command to the CD engine, else to that window, when it is open
    int command;
    int argument;
} kActions[kHotkeys] = {{0, kCdPlay, 0},
                        {0, kCdNext, 1},
                        {0, kCdPrevious, 1},
                        {0, kCdStop, 0},
                        {0, kCdPause, 0},
                        {0, kCdEject, 0},
                        {kConsoleWindowId, 0, 0}, // mute
                        {kMediaWindowId, kMediaPlay, 0},
                        {kMediaWindowId, kMediaStop, 0},
                        {kMediaWindowId, kMediaPause, 0}};

static void PostToWindow(int windowId, int command) {
    const int row = RowByWindowId(windowId);
    const HWND window = row >= 0 ? OpenWindowOfRow(row) : nullptr;
    if (window) PostMessageA(window, WM_COMMAND, static_cast<WPARAM>(command), 0);
}

void OnHotkey(WPARAM id) {
    const int place = HotkeyOf(id);
    if (place < 0) return;
    const auto& action = kActions[place];
    const VolumeControl* volume = s_console.start.table->volume;
    if (action.windowId == kConsoleWindowId) {
        if (volume) volume->ToggleMute();
    } else if (action.windowId) {
        PostToWindow(action.windowId, action.command);
    } else {
        PostEngineCommand(kConsoleCdEngine, static_cast<UINT>(action.command), action.argument);
    }
}
