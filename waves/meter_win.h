// The volume meter in the notification area, on a thread of its own.
#pragma once
#include "core/component_win.h"

ComponentThread* MeterThread();
// When the shell has come back: the icon is put there again. From the console's thread.
void ReAddMeterIcon();
