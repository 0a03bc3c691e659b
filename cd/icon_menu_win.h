// The CD icon's menu.
#pragma once
#include "core/platform.h"

#include <cstdint>

// At the cursor, from what the engine says now; what is chosen arrives as WM_COMMAND. Runs a
// message loop: the window may be gone afterwards.
void ShowCdIconMenu(HWND window);
// The play flag (CdPlayFlag) that the entry turns over, 0 for any other entry.
uint32_t CdIconMode(UINT id);
