// The window in which layouts are chosen, recalled and stored.
#pragma once
#include "core/component_win.h"

ComponentThread* LayoutsThread();
