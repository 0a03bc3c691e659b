// The one class of all component windows and of the console: borderless popups that are dragged by
// their background, keep their placement and background colour, and act as a group through commands
// to their owner, the console (core/commands.h, kGroup...).
//
// The owner is a stored handle, not a Win32 owner window; a window made without one is its own.
// Every function here is called on the window's own thread, unless told otherwise.
#pragma once
#include "core/platform.h"

#include <cstdint>

constexpr const char* kUIWindowClass = "TNVUIWindowClass";

// Options of the whole program. The console sets them; all windows read them at any time.
struct WindowOptions {
    volatile LONG LockMovement;   // windows can't be dragged
    volatile LONG LockWindows;    // dragging one drags all
    volatile LONG WheelIsNative;  // the wheel message is WM_MOUSEWHEEL
    volatile UINT WheelMessage;   // 0 until RegisterWheelMessage
    volatile LONG PPlay;          // play without user interface: windows are made hidden
    volatile LONG PreventSS;      // the screen saver is held off
    volatile LONG Use3dLook;      // sunken edges round groups of controls
    volatile LONG DoubleFontSize; // "Large Font Size"
};
extern WindowOptions UIOptions;

// Made at its saved placement, shown unless PPlay is set. The console alone has a taskbar button.
// Null on failure.
HWND CreateUIWindow(HINSTANCE instance, uint32_t windowId, const char* title, int isConsole,
                    HWND owner);

// Stores the colour, saves the placement (which holds it) and repaints; returns the colour before
// (0 for a window that is not of the class).
COLORREF SetWindowBkColor(HWND window, COLORREF color);
COLORREF WindowBkColor(HWND window);

// From any thread, whether the window is open or not. Set keeps the stored background colour.
int GetSavedPlacement(uint32_t windowId, int* x, int* y, int* width, int* height);
int SetSavedPlacement(uint32_t windowId, int x, int y, int width, int height);
// Moves the window to what is saved for it, Z order unchanged.
int RestoreWindowPlacement(HWND window);
// Writes the normal rectangle and background colour. A record that this window has just written is
// not written again, unless a placement was set since.
int SaveWindowPlacement(HWND window);

void DestroyChildWindows(HWND window);

// Fills WheelMessage and WheelIsNative; returns the message id.
UINT RegisterWheelMessage();

// From any thread of the program; 0 for windows that are not of the class.
int IsUIWindow(HWND window);
uint32_t WindowIdOf(HWND window);
