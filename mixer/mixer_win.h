// The mixer window, and the dialog that chooses the device.
#pragma once
#include "core/component_win.h"

ComponentThread* MixerThread();
void ConfigureMixer(HWND owner); // modal to owner; works with the engine off, too
