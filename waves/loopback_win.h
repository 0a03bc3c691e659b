// Capturing what an output device plays: WASAPI shared-mode loopback, polled. Where the platform
// lacks it there are no devices. Everything runs on the engine's thread but CountLoopback and
// LoopbackName, which a dialog's thread calls.
#pragma once
#include "core/platform.h"
#include "waves/format.h"

// Device numbers, as "InDevice" and kWavesReconfigure carry them: below are wave-input devices.
constexpr uint16_t kLoopbackDefault = 32768; // the default output, followed when it changes
constexpr uint16_t kLoopbackFirst = 32769;   // + n: output n

// How many entries the device list gets (the default output counts as one); 0 without loopback.
int CountLoopback();
// Name and device number of entry `index`; 0 when there is none.
int LoopbackName(int index, char* name, int size, uint16_t* device);

struct LoopbackStream;
// Opens and starts; null when it can't be had.
LoopbackStream* OpenLoopback(uint16_t device, const SoundFormatRecord& format);
// Takes what has come since the last poll. Whenever kSoundBufferBytes are together, Filled gets
// them; it must not close the stream. In silence the buffers come at the format's pace all the
// same. `now`: milliseconds. A device that was lost is opened again within a second. Always cheap;
// never waits.
void PollLoopback(LoopbackStream* stream, uint32_t now, void (*Filled)(const uint8_t* bytes));
// Forgets what has been gathered; stalled streams start anew. 0 when that fails.
int RestartLoopback(LoopbackStream* stream);
void CloseLoopback(LoopbackStream* stream);
