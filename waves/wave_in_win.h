// The wave-input device that the Waves engine captures from: one at a time, with three buffers
// that go round. All of it runs on the engine's thread but the questions for what there is, which
// a dialog's thread may ask.
#pragma once
#include "core/platform.h"
#include "waves/format.h"

constexpr int kMaxWaveIn = 256;
int CountWaveIn();
// Product name; 0 when there is no such device.
int WaveInName(int device, char* name, int size);
// The format codes that it says it can capture, or'ed together.
uint32_t WaveInFormats(int device);

// Opens, queues three buffers and starts; full ones come to the window as MM_WIM_DATA. 0 when the
// device can't be had.
int OpenWaveIn(uint16_t device, const SoundFormatRecord& format, HWND window);
// Takes the buffers back, queues them and starts again. 0: the device has to be opened anew.
int RestartWaveIn();
// 0 when the driver does not let go of it: it is then held until a later call succeeds, and nothing
// else can be opened meanwhile.
int CloseWaveIn();
// For who can't try later. A device that does not close is left to its driver, and the memory of
// the buffers with it.
void AbandonWaveIn();

// The kSoundBufferBytes of the buffer that a MM_WIM_DATA brings. Null for the late ones of an
// earlier open, for empty ones, and for what somebody else has posted.
const uint8_t* FullWaveInBuffer(LPARAM header);
// Gives that buffer back to the device. 0: it won't have it, and has one less from now on.
int QueueWaveInAgain(LPARAM header);
