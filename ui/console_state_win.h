// What the console's files share. The main thread alone touches any of it.
#pragma once
#include "core/commands.h"
#include "ui/components_win.h"
#include "ui/console_layout.h"
#include "ui/console_win.h"
#include "ui/level_bar.h"
#include "ui/look_win.h"
#include "ui/tray_win.h"

struct ConsoleState {
    ConsoleStart start;
    HWND window;

    // Options with no home in UIOptions.
    int TaskBarIcon;
    int TaskBarOnly;
    int AlwaysOnTop;

    HWND controls[kMaxComponents]; // button or lamp of each row
    int lit[kMaxComponents];       // its colours are those of "on"
    HWND brand, minimize, close, volume;
    HWND tooltips;
    LevelBar level; // the volume bar's
    ConsoleLayout layout;
    CachedFont font;

    int shuttingDown;
    int switching; // a component is being switched: switches sent meanwhile are dropped
    TrayIcon icon;
    int hiddenByMinimize[kWindowSlots];
    HMODULE iconLibrary;
    HHOOK shellHook;
};
extern ConsoleState s_console;

// ---- rows of the table
int RowCount();
const ComponentEntry& Row(int row);
int RowByCommand(int command);
int RowByWindowId(int windowId);
int RowIsOn(int row);
// Window of an open component window, else null.
HWND OpenWindowOfRow(int row);
// The open component windows in the order of the slots, null where closed.
void OpenSlotWindows(HWND windows[kWindowSlots]);

// ---- console_components_win.cpp: switching components
void ToggleComponent(int row);
void SwitchRow(int row); // the toggle itself, for those who hold s_console.switching
// A notice or the timer: gives up what has ended by itself. Does nothing while it still runs.
void NoticeEnded(int row);
void NoticeAllEnded();
void RestoreComponents();
void StopAllComponents();
// Posts a command to an engine (by its console command); 0 when it is off or not there.
int PostEngineCommand(int engineCommand, UINT command, LPARAM argument);

// ---- console_hotkeys_win.cpp
void OnHotkey(WPARAM id); // WM_HOTKEY: what that hotkey does

// ---- console_controls_win.cpp: what is seen
int CreateConsoleControls();
void LayOutControls();
void ShowConsoleColors(); // all controls in the colours in force
void PaintConsole(HDC dc);
void SetRowLook(int row, int on);
void ShowRowState(int row); // button or lamp in the colours of the component's state
void RefreshVolumeBar();
void OnVolumeScroll(int position);
void ChangeVolume(int delta); // percent, within 1 to 99
void JoinMixer();             // its engine may have started: hears of changes, and shows the volume
// Row of the lamp at a client point, -1 none.
int LampAt(POINT point);

// ---- console_layouts_win.cpp
// raise: a window that is to lie on top afterwards, or 0.
void OnLayoutCommand(int layout, LPARAM raise);

// ---- console_group_win.cpp: the windows as a group
void MoveGroup(int senderId, int dx, int dy);
void RaiseGroup(HWND window);
void AlignGroup(int senderId, int key);
void StretchGroup(int senderId, int key);
void ForwardKey(int senderId, int key);
void ApplyAlwaysOnTop(HWND window);
void HideGroup(); // minimize all: component windows out of sight
void ShowGroup(); // those that HideGroup hid

// ---- console_menu_win.cpp: menus and the notification icon
void ShowContextMenu(POINT screen);
void ShowIconMenu();
void AddNotifyIcon();
void RemoveNotifyIcon();
