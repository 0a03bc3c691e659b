// The media engine: plays one sound file at a time through the platform's filter graph. A set of
// operations, all called on the media player window's thread; each leaves a trace word in
// "LastLogLocation". While a graph runs the Waves engine's capture is off.
#pragma once
#include "core/platform.h"

int InitMediaGraph();
void ReleaseMediaGraph(); // capture comes back
// For a ComponentThread's Forget: the thread of the graph was killed, and cannot release it.
void ForgetMediaGraph();
int LoadMediaFile(const char* path);
int BeginMediaPlay();
int StopMediaPlay();
// These two also start a stopped graph: they are for while it plays or is paused. A seek plays on,
// also where the place is refused.
int ToggleMediaPause();
int SeekMediaToSecond(double second);
// Seconds; both 0 without a graph.
int GetMediaPosition(double* duration, double* position);
// Tells `window` by `message` that the graph has something to say (then call MediaHasEnded). Kept
// for every graph to come.
void NotifyMediaWindow(HWND window, UINT message);
// 1 when the file has been played to its end. Empties the graph's event queue.
int MediaHasEnded();

// From any thread, on a graph of its own: seconds, 0 on any failure. It takes no lock and writes no
// trace word.
double MediaFileDuration(const char* path);
int CheckMediaSupport(); // 0 when the platform can play media files
