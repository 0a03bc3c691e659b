// Trace words and the range of a seek. See engine.h.
#include "media/engine.h"

#include "core/text.h"

#include <cmath>

struct TraceNames {
    const char* name;
    const char* success; // support people have known "TogglePayse" for years: it stays
};
// In the order of MediaOperation.
static constexpr TraceNames kTraceNames[] = {
    {"LoadFile", "LoadFile"},       {"BeginPlay", "BeginPlay"},       {"StopPlay", "StopPlay"},
    {"TogglePause", "TogglePayse"}, {"SeekToSecond", "SeekToSecond"}, {"GCPI", "GCPI"},
};

void MediaTraceWord(MediaOperation operation, int step, char (&word)[kTraceMax]) {
    const TraceNames& names = kTraceNames[operation];
    if (step)
        FormatText(word, sizeof word, "%s%d", names.name, step);
    else
        FormatText(word, sizeof word, "%s Success", names.success);
}

int SeekTarget(double second, double duration, double* target) {
    if (!std::isfinite(second) || second < 0) return 0;
    *target = duration > 0 && second > duration ? duration : second;
    return 1;
}
