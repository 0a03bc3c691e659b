// The dialog "CD Engine Configuration".
#pragma once
#include "core/platform.h"

// Modal to owner (a window of the calling thread).
void ConfigureCd(HWND owner);
