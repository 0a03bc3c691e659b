// The components that this build has.
#pragma once
#include "ui/components_win.h"

const ComponentTable* Components();
