// The wave-input device. See wave_in_win.h.
#include "waves/wave_in_win.h"

#include "core/text.h"

#include <mmsystem.h>

#include <cstdlib>
#include <cstring>

constexpr int kBuffers = 3;
constexpr int kQueueAttempts = 32;
constexpr DWORD kAfterResetMs = 100; // lets the driver's own thread finish with the buffers

namespace {
struct Buffer {
    WAVEHDR header; // dwUser: the generation in which it was last queued
    alignas(16) uint8_t bytes[kSoundBufferBytes];
};
struct WaveIn {
    HWAVEIN device;
    Buffer* buffers;      // made once and used by every open
    DWORD_PTR generation; // one more with each open and restart
};
} // namespace
static WaveIn s_waveIn;

static_assert(sizeof(WAVEFORMATEX) == sizeof(SoundFormatRecord));

// ---- what there is

int CountWaveIn() {
    const UINT count = waveInGetNumDevs();
    return count < kMaxWaveIn ? static_cast<int>(count) : kMaxWaveIn;
}

static int Capabilities(int device, WAVEINCAPSA* caps) {
    *caps = {};
    return device >= 0 &&
           waveInGetDevCapsA(static_cast<UINT_PTR>(device), caps, sizeof *caps) == MMSYSERR_NOERROR;
}

int WaveInName(int device, char* name, int size) {
    WAVEINCAPSA caps;
    if (size <= 0 || !Capabilities(device, &caps)) return 0;
    caps.szPname[sizeof caps.szPname - 1] = 0;
    CopyText(name, static_cast<size_t>(size), caps.szPname);
    return 1;
}

uint32_t WaveInFormats(int device) {
    WAVEINCAPSA caps;
    return Capabilities(device, &caps) ? caps.dwFormats : 0;
}

// ---- buffers

static int QueueBuffer(Buffer* buffer) {
    buffer->header.dwUser = s_waveIn.generation;
    buffer->header.dwFlags &= ~static_cast<DWORD>(WHDR_DONE);
    buffer->header.dwBytesRecorded = 0;
    return waveInAddBuffer(s_waveIn.device, &buffer->header, sizeof buffer->header) ==
           MMSYSERR_NOERROR;
}

static int PrepareBuffer(Buffer* buffer) {
    buffer->header = {};
    buffer->header.lpData = reinterpret_cast<char*>(buffer->bytes);
    buffer->header.dwBufferLength = sizeof buffer->bytes;
    return waveInPrepareHeader(s_waveIn.device, &buffer->header, sizeof buffer->header) ==
           MMSYSERR_NOERROR;
}

static int QueueAllAndStart() {
    ++s_waveIn.generation;
    for (int i = 0; i < kBuffers; ++i)
        if (!QueueBuffer(&s_waveIn.buffers[i])) return 0;
    return waveInStart(s_waveIn.device) == MMSYSERR_NOERROR;
}

static Buffer* BufferOf(LPARAM header) {
    if (!s_waveIn.device || !s_waveIn.buffers) return nullptr;
    for (int i = 0; i < kBuffers; ++i)
        if (reinterpret_cast<LPARAM>(&s_waveIn.buffers[i].header) == header)
            return &s_waveIn.buffers[i];
    return nullptr;
}

const uint8_t* FullWaveInBuffer(LPARAM header) {
    const Buffer* buffer = BufferOf(header);
    if (!buffer || buffer->header.dwUser != s_waveIn.generation) return nullptr;
    // A late message for a buffer that is queued again since: its own is still to come.
    if (!(buffer->header.dwFlags & WHDR_DONE)) return nullptr;
    // A device that is being taken away gives all of them back at once, empty, as often as they are
    // queued: they are left out, so that the watchdog comes.
    return buffer->header.dwBytesRecorded ? buffer->bytes : nullptr;
}

int QueueWaveInAgain(LPARAM header) {
    Buffer* buffer = BufferOf(header);
    for (int attempt = 0; buffer && attempt < kQueueAttempts; ++attempt)
        if (QueueBuffer(buffer)) return 1;
    return 0;
}

// ---- the device

int OpenWaveIn(uint16_t device, const SoundFormatRecord& format, HWND window) {
    if (!CloseWaveIn()) return 0;
    if (!s_waveIn.buffers)
        s_waveIn.buffers = static_cast<Buffer*>(std::calloc(kBuffers, sizeof(Buffer)));
    if (!s_waveIn.buffers) return 0;
    WAVEFORMATEX wanted;
    std::memcpy(&wanted, &format, sizeof wanted);
    if (waveInOpen(&s_waveIn.device, device, &wanted, reinterpret_cast<DWORD_PTR>(window), 0,
                   CALLBACK_WINDOW) != MMSYSERR_NOERROR) {
        s_waveIn.device = nullptr; // some drivers leave something there all the same
        return 0;
    }
    int good = 1;
    for (int i = 0; i < kBuffers; ++i)
        good &= PrepareBuffer(&s_waveIn.buffers[i]);
    if (good && QueueAllAndStart()) return 1;
    CloseWaveIn();
    return 0;
}

int RestartWaveIn() {
    if (!s_waveIn.device) return 0;
    waveInStop(s_waveIn.device);
    if (waveInReset(s_waveIn.device) != MMSYSERR_NOERROR) return 0;
    for (int i = 0; i < kBuffers; ++i)
        if (s_waveIn.buffers[i].header.dwFlags & WHDR_INQUEUE) return 0; // it keeps one
    return QueueAllAndStart();
}

int CloseWaveIn() {
    if (!s_waveIn.device) return 1;
    ++s_waveIn.generation; // from here on nothing that comes back counts
    waveInStop(s_waveIn.device);
    waveInReset(s_waveIn.device);
    Sleep(kAfterResetMs);
    for (int i = 0; i < kBuffers; ++i)
        waveInUnprepareHeader(s_waveIn.device, &s_waveIn.buffers[i].header, sizeof(WAVEHDR));
    // Any other failure means that there is nothing left to close.
    if (waveInClose(s_waveIn.device) == WAVERR_STILLPLAYING) return 0;
    s_waveIn.device = nullptr;
    return 1;
}

void AbandonWaveIn() {
    if (!s_waveIn.device) return;
    s_waveIn.device = nullptr;
    s_waveIn.buffers = nullptr;
}
