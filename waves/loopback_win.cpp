// Capturing what an output device plays.
#include "waves/loopback_win.h"

int CountLoopback() { return 0; }

int LoopbackName(int, char*, int, uint16_t*) { return 0; }

LoopbackStream* OpenLoopback(uint16_t, const SoundFormatRecord&) { return nullptr; }

void PollLoopback(LoopbackStream*, uint32_t, void (*)(const uint8_t* bytes)) {}

int RestartLoopback(LoopbackStream*) { return 0; }

void CloseLoopback(LoopbackStream*) {}
