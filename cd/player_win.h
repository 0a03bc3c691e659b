// The CD player window ("CDPlayerUI", id 2): the user's face of the CD engine. It holds no play
// state; it reads snapshots and posts commands.
#pragma once
#include "core/component_win.h"

// The window as a component, for the console's table. Its start fails when the engine takes no
// more windows or the timer can't be had.
ComponentThread* CdPlayerThread();
