// See fake_input.h. The calls replace the imported ones of the whole test program.
#include "fake_input.h"

#include <cstring>

FakeInput TheInput;
DWORD TheClockAhead;

static HWAVEIN const s_handle = reinterpret_cast<HWAVEIN>(77);

static void GiveBack(WAVEHDR* header) {
    header->dwFlags = (header->dwFlags & ~static_cast<DWORD>(WHDR_INQUEUE)) | WHDR_DONE;
    PostMessageA(TheInput.window, MM_WIM_DATA, reinterpret_cast<WPARAM>(s_handle),
                 reinterpret_cast<LPARAM>(header));
}

void DeliverBuffer(int level, DWORD recorded) {
    if (TheInput.queue.empty()) return;
    WAVEHDR* header = TheInput.queue.front();
    TheInput.queue.erase(TheInput.queue.begin());
    std::memset(header->lpData, level, header->dwBufferLength);
    header->dwBytesRecorded = recorded;
    GiveBack(header);
}

static UINT WINAPI Count() {
    return static_cast<UINT>(TheInput.devices);
}
static MMRESULT WINAPI Caps(UINT_PTR device, LPWAVEINCAPSA caps, UINT) {
    if (device >= Count()) return MMSYSERR_BADDEVICEID;
    std::memcpy(caps->szPname, "Input A", 8);
    caps->szPname[6] = static_cast<char>('A' + device);
    caps->dwFormats = device ? 0x400 : TheInput.formats; // the second: 44 kHz mono 16 bit
    return MMSYSERR_NOERROR;
}
static MMRESULT WINAPI Open(LPHWAVEIN handle, UINT device, LPCWAVEFORMATEX format, DWORD_PTR window,
                            DWORD_PTR, DWORD) {
    ++TheInput.opens;
    TheInput.wrong += TheInput.open;
    if (TheInput.gone || device >= Count() || format->nSamplesPerSec == TheInput.refusedRate)
        return MMSYSERR_NODRIVER;
    TheInput.device = device;
    TheInput.format = *format;
    TheInput.window = reinterpret_cast<HWND>(window);
    TheInput.open = 1;
    *handle = s_handle;
    return MMSYSERR_NOERROR;
}
static MMRESULT WINAPI Close(HWAVEIN) {
    TheInput.wrong += !TheInput.open;
    if (!TheInput.gone) TheInput.wrong += TheInput.prepared.size() || TheInput.queue.size();
    TheInput.prepared.clear();
    TheInput.queue.clear();
    TheInput.open = 0;
    return MMSYSERR_NOERROR;
}
static MMRESULT WINAPI Prepare(HWAVEIN, LPWAVEHDR header, UINT) {
    TheInput.everSeen.insert(header);
    TheInput.wrong += !TheInput.prepared.insert(header).second;
    header->dwFlags |= WHDR_PREPARED;
    return MMSYSERR_NOERROR;
}
static MMRESULT WINAPI Unprepare(HWAVEIN, LPWAVEHDR header, UINT) {
    TheInput.prepared.erase(header);
    return MMSYSERR_NOERROR;
}
static MMRESULT WINAPI Queue(HWAVEIN, LPWAVEHDR header, UINT) {
    if (TheInput.gone || (TheInput.refuseQueueing > 0 && TheInput.refuseQueueing--))
        return MMSYSERR_ERROR;
    TheInput.wrong += header->dwFlags & WHDR_INQUEUE || !TheInput.prepared.count(header);
    header->dwFlags = (header->dwFlags & ~static_cast<DWORD>(WHDR_DONE)) | WHDR_INQUEUE;
    TheInput.queue.push_back(header);
    return MMSYSERR_NOERROR;
}
static MMRESULT WINAPI Simple(HWAVEIN) {
    return TheInput.gone ? MMSYSERR_ERROR : MMSYSERR_NOERROR;
}
static MMRESULT WINAPI Reset(HWAVEIN) {
    if (TheInput.stuckMs) SleepEx(TheInput.stuckMs, FALSE);
    if (TheInput.gone) return MMSYSERR_ERROR;
    for (WAVEHDR* header : TheInput.queue)
        GiveBack(header);
    TheInput.queue.clear();
    return MMSYSERR_NOERROR;
}

static DWORD WINAPI Clock() {
    return static_cast<DWORD>(GetTickCount64()) + TheClockAhead;
}
static void WINAPI Wait(DWORD ms) {
    if (ms != 100) SleepEx(ms, FALSE); // the one after a reset would make days last
}

#define REPLACE(name, bytes, mine)                                           \
    extern "C" const void* const imp_##name asm("__imp__" #name "@" #bytes); \
    extern "C" const void* const imp_##name = reinterpret_cast<const void*>(mine);
REPLACE(waveInGetNumDevs, 0, Count)
REPLACE(waveInGetDevCapsA, 12, Caps)
REPLACE(waveInOpen, 24, Open)
REPLACE(waveInClose, 4, Close)
REPLACE(waveInPrepareHeader, 12, Prepare)
REPLACE(waveInUnprepareHeader, 12, Unprepare)
REPLACE(waveInAddBuffer, 12, Queue)
REPLACE(waveInStart, 4, Simple)
REPLACE(waveInStop, 4, Simple)
REPLACE(waveInReset, 4, Reset)
REPLACE(GetTickCount, 0, Clock)
REPLACE(Sleep, 4, Wait)
