// Online help: the manual that stands beside the program.
#pragma once
#include "core/platform.h"

// Opens it in the browser. Says so when it is not there.
void ShowHelp(HWND owner);
