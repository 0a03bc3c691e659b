// The CD engine in the notification area: tooltip, click and menu.
#pragma once
#include "core/component_win.h"

// Its start record, for the console's table.
ComponentThread* CdIconThread();
// "CDIconShowOptions": sets the five bits and saves them, -1 only reads. The bits in force.
uint32_t CdIconOptions(int bits);
