// The media player, a component window.
#pragma once
#include "core/component_win.h"

ComponentThread* MediaThread();
