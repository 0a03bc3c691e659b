// The Waves engine: captures what the sound card hears, or what it plays, on a thread of its own,
// and publishes it in the shared block (waves/published_win.h). Windows never touch the device.
#pragma once
#include "core/component_win.h"

constexpr const char* kWavesEngineClass = "WavesHiddenWindowClassName";
constexpr const char* kWavesEngineTitle = "WavesWindow";

ComponentThread* WavesEngineThread();

// A command of core/commands.h (kWaves...). From any thread; 0 when the engine is off.
int PostWavesCommand(UINT command, LPARAM argument);
// The same, done when it returns: for who must know that the device is free. Waits 3 s at most.
int SendWavesCommand(UINT command, LPARAM argument);

// The configuration dialog, modal to owner. Works with the engine off, too.
void ConfigureWaves(HWND owner);

// At installation: what to capture from, where nobody has chosen yet.
void SeedWavesDefaults();
