// What makes a copy of the program an installed one, and takes that back.
#pragma once
#include "core/command_line.h"
#include "core/platform.h"

// "/install" and "/installui": files, settings with their defaults, registrations, as the request
// asks. Says in a message box how it went.
void InstallProgram(const StartRequest& request);

// "/uninstall": the same taken back, after a dialog that asks what of the user's goes, too.
void UninstallProgram();

// "/reg": what the shell is to know of the executable that runs. Machine-wide, or for the user
// where that is refused. 1 when all was written.
int WriteShellRegistrations();
// Writes it again when the executable has moved since.
void RefreshShellRegistrations();
