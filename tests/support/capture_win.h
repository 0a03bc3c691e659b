// What the sound server plays, recorded through wave input: 44.1 kHz, 16 bit, stereo.
#pragma once
#include "core/platform.h"
#include <mmsystem.h>

#include "tests/support/measure_win.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

class Capture {
public:
    Capture() {
        const WAVEFORMATEX format = {WAVE_FORMAT_PCM, 2, 44100, 176400, 4, 16, 0};
        event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
        good = waveInOpen(&device, WAVE_MAPPER, &format, reinterpret_cast<DWORD_PTR>(event), 0,
                          CALLBACK_EVENT) == MMSYSERR_NOERROR;
        for (int i = 0; good && i < kBuffers; ++i) {
            headers[i] = {};
            headers[i].lpData = data[i];
            headers[i].dwBufferLength = sizeof data[i];
            waveInPrepareHeader(device, &headers[i], sizeof headers[i]);
            waveInAddBuffer(device, &headers[i], sizeof headers[i]);
        }
        thread = good ? CreateThread(nullptr, 0, Run, this, 0, nullptr) : nullptr;
        if (good) waveInStart(device);
        Sleep(500); // the stream is up before anything plays
    }
    ~Capture() { Stop(); }

    // Ends the recording and gives it: left, right, ...
    const std::vector<int16_t>& Stop() {
        if (!thread) return samples;
        Sleep(500); // what was played last is still on its way
        quit = 1;
        SetEvent(event);
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
        thread = nullptr;
        waveInReset(device);
        for (auto& header : headers)
            waveInUnprepareHeader(device, &header, sizeof header);
        waveInClose(device);
        CloseHandle(event);
        return samples;
    }

    // Milliseconds by Now() at which a sample had come at the latest: the server's own delay and up
    // to a period of it are still in that.
    double TimeOf(size_t index) const {
        for (const auto& [end, time] : arrivals)
            if (index < end) return time - static_cast<double>(end - index) / 2 / 44.1;
        return 0;
    }

private:
    static constexpr int kBuffers = 16;
    static DWORD WINAPI Run(void* argument) {
        auto* self = static_cast<Capture*>(argument);
        for (int next = 0; !self->quit;) {
            WaitForSingleObject(self->event, 100);
            for (; self->headers[next].dwFlags & WHDR_DONE; next = (next + 1) % kBuffers) {
                WAVEHDR& header = self->headers[next];
                const auto* from = reinterpret_cast<const int16_t*>(header.lpData);
                self->samples.insert(self->samples.end(), from,
                                     from + header.dwBytesRecorded / sizeof(int16_t));
                self->arrivals.push_back({self->samples.size(), Now()});
                header.dwFlags &= ~static_cast<DWORD>(WHDR_DONE);
                waveInAddBuffer(self->device, &header, sizeof header);
            }
        }
        return 0;
    }

    HWAVEIN device = nullptr;
    HANDLE event = nullptr, thread = nullptr;
    WAVEHDR headers[kBuffers];
    alignas(4) char data[kBuffers][8192];
    std::vector<int16_t> samples;
    std::vector<std::pair<size_t, double>> arrivals; // how many there were then
    volatile int quit = 0;
    int good = 0;
};

// How many of wanted's first samples stand in `sound`, one after the other and equal, from the
// place where their first 16 occur: 0 when they don't occur at all.
inline size_t MatchLength(const std::vector<int16_t>& sound, const int16_t* wanted, size_t count) {
    constexpr size_t kPattern = 16;
    if (count < kPattern) return 0;
    auto at = std::search(sound.begin(), sound.end(), wanted, wanted + kPattern);
    size_t matched = 0;
    while (matched < count && at != sound.end() && *at == wanted[matched]) {
        ++at;
        ++matched;
    }
    return matched;
}

// How a recording differs from these samples with silence around them; empty: it does not. A server
// on a busy machine puts silence in between now and then: a fault of ours comes each time, so
// callers try a few times.
inline std::string Difference(const std::vector<int16_t>& sound,
                              const std::vector<int16_t>& wanted) {
    const auto audible = [](int16_t sample) { return sample != 0; };
    const auto begin = std::find_if(sound.begin(), sound.end(), audible);
    const auto from = std::find_if(wanted.begin(), wanted.end(), audible);
    const auto end = std::find_if(sound.rbegin(), sound.rend(), audible).base();
    const auto [at, other] = std::mismatch(begin, sound.end(), from, wanted.end());
    if (other != wanted.end()) return "differs at sample " + std::to_string(other - wanted.begin());
    return at < end ? "something after it" : "";
}
