// A small window with a bar that shows how far something is which keeps its thread: nothing is
// dispatched meanwhile, so it paints itself at every step.
#pragma once
#include "core/platform.h"

#include <cstddef>

// textId 0: "Reading CD Information...". Null when it could not be made, which the others take.
HWND ShowProgress(HWND owner, UINT textId, size_t range, int step);
void StepProgress(HWND progress);
void CloseProgress(HWND progress);
