// Where a saved window may stand: geometry only.
#pragma once
#include "core/settings.h"

constexpr int32_t kPlacementMargin = 20; // pixels of a window that stay in sight

struct Bounds {
    int32_t left, top, right, bottom;
};

// The placement that holds when nothing is saved.
WindowPlacement DefaultPlacement(uint32_t windowId);

// Moves the rectangle until at least kPlacementMargin pixels lie within the bounds on each axis.
// The size is never changed; sums that would overflow are taken as far away.
void ClampPlacement(WindowPlacement* placement, Bounds bounds);
