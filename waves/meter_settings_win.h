// The volume meter's settings in the registry, and the dialog that changes them.
#pragma once
#include "core/platform.h"
#include "waves/meter.h"

MeterSettings LoadMeterSettings(); // missing or damaged values: defaults, within their limits
void SaveMeterSettings(const MeterSettings& settings);

// Modal to owner, above all windows when `onTop`; 1 and *settings changed when the user said OK.
// One at a time: asked for again, it brings the open one to the front.
int EditMeterSettings(HWND owner, int onTop, MeterSettings* settings);
