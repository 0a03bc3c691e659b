// The spectrum analyzer, a component window.
#pragma once
#include "core/component_win.h"

ComponentThread* AnalyzerThread();
