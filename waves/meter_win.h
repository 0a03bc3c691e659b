// The volume meter in the notification area, on a thread of its own.
#pragma once
#include "core/component_win.h"

constexpr const char* kMeterClass = "MeterHiddenWindowClassName";
constexpr const char* kMeterTitle = "VolumeMeter";

// Commands of its hidden window: the entries of the icon's menu, and the icon's mouse messages
// (in lParam).
enum MeterCommand {
    kMeterLeftRight = 700,
    kMeterCenter = 701,
    kMeterConfigure = 702,
    kMeterIconCallback = 798
};

ComponentThread* MeterThread();
