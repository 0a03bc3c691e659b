// What makes a copy of the program an installed one: settings with their defaults, and the
// registrations with the shell.
#pragma once
#include "core/command_line.h"
#include "core/platform.h"

// Writes all of it and says in a message box how it went. 1 when installed.
int InstallProgram(const StartRequest& request);

// App Paths and the ".cdp" association, for the executable that runs; remembered as
// "Saved\Module". Machine-wide, or for the user where that is refused. 1 when all were written.
int WriteShellRegistrations();
// Writes them again when the executable has moved since.
void RefreshShellRegistrations();
