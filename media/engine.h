// What the media engine decides without a graph: its trace words, and where a seek may go.
#pragma once

// What can be traced; step 0 is success, 1 to 4 is the step that failed.
enum MediaOperation { kTraceLoad, kTracePlay, kTraceStop, kTracePause, kTraceSeek, kTracePosition };
constexpr int kTraceMax = 32;

void MediaTraceWord(MediaOperation operation, int step, char (&word)[kTraceMax]);

// Seconds. A position beyond the end is the end; 0 for what is no position. A duration that is not
// above 0 is not known, and limits nothing.
int SeekTarget(double second, double duration, double* target);
