// The console: the program's main window, owned by the main thread. It holds a button for each
// component, a lamp for each engine and the volume bar, is the owner of every component window,
// and executes the commands of core/commands.h.
#pragma once
#include "ui/components_win.h"

struct ConsoleStart {
    HINSTANCE instance;
    const ComponentTable* table; // lives as long as the program
    int noEngines;               // "/noeng": every component off
    int openMediaFile;           // a media file was asked for: its player is restored in any case
    UINT taskbarCreated;         // registered message
};

// Reads the console's settings, makes the window and restores the components that were on. With
// UIOptions.PPlay nothing is shown and engines alone are restored. Null when the window could not
// be made. Its destruction stops every component and posts WM_QUIT.
HWND CreateConsole(const ConsoleStart& start);
