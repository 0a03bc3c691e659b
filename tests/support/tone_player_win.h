// Plays a sine on each channel at half scale, for as long as it lives: what a sound card hears.
#pragma once
#include "core/platform.h"
#include <mmsystem.h>

#include <atomic>
#include <cmath>
#include <cstdint>

class TonePlayer {
public:
    TonePlayer() { thread = CreateThread(nullptr, 0, Run, this, 0, nullptr); }
    ~TonePlayer() {
        quit = true;
        WaitForSingleObject(thread, INFINITE);
        CloseHandle(thread);
    }
    TonePlayer(const TonePlayer&) = delete;
    TonePlayer& operator=(const TonePlayer&) = delete;
    // Hz; 0 is silence. Heard within about a fifth of a second.
    void Play(double leftHertz, double rightHertz) {
        hertz[0] = leftHertz;
        hertz[1] = rightHertz;
    }

private:
    static constexpr int kBuffers = 6, kFrames = 1024;
    static constexpr double kTurn = 6.283185307179586;
    void Fill(int16_t* samples) {
        for (int i = 0; i < kFrames * 2; ++i) {
            double& angle = angles[i & 1];
            samples[i] = static_cast<int16_t>(std::lround(16384 * std::sin(angle)));
            angle = std::fmod(angle + kTurn * hertz[i & 1] / 44100, kTurn);
        }
    }
    static DWORD WINAPI Run(void* argument) {
        static_cast<TonePlayer*>(argument)->Loop();
        return 0;
    }
    void Loop() {
        const WAVEFORMATEX format = {WAVE_FORMAT_PCM, 2, 44100, 176400, 4, 16, 0};
        HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
        HWAVEOUT device = nullptr;
        if (waveOutOpen(&device, WAVE_MAPPER, &format, reinterpret_cast<DWORD_PTR>(event), 0,
                        CALLBACK_EVENT) != MMSYSERR_NOERROR)
            return;
        static int16_t s_samples[kBuffers][kFrames * 2];
        WAVEHDR headers[kBuffers] = {};
        for (int i = 0; i < kBuffers; ++i) {
            headers[i].lpData = reinterpret_cast<char*>(s_samples[i]);
            headers[i].dwBufferLength = sizeof s_samples[i];
            waveOutPrepareHeader(device, &headers[i], sizeof headers[i]);
        }
        for (int next = 0; !quit; WaitForSingleObject(event, 100))
            for (; !(headers[next].dwFlags & WHDR_INQUEUE); next = (next + 1) % kBuffers) {
                Fill(s_samples[next]);
                waveOutWrite(device, &headers[next], sizeof headers[next]);
            }
        waveOutReset(device);
        for (WAVEHDR& header : headers)
            waveOutUnprepareHeader(device, &header, sizeof header);
        waveOutClose(device);
        CloseHandle(event);
    }

    std::atomic<double> hertz[2] = {0, 0};
    double angles[2] = {};
    std::atomic<bool> quit{false};
    HANDLE thread;
};
