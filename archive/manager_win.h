// The database manager: the component window in which all discs are browsed, edited and carried.
#pragma once
#include "core/component_win.h"

// Its start record, for the console's table.
ComponentThread* DatabaseThread();
