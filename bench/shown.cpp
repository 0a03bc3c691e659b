// What showing the sound costs: processor time of the program with the Waves engine alone, with
// each of its displays, and with all of them, while music plays in another process; the same with
// the windows hidden, which leaves out the painting; what is left behind after many frames; and the
// open mixer.
//
//   bench_shown          20 s a row
//   bench_shown brief    5 s a row
#include "tests/support/driver_win.h"
#include "tests/support/measure_win.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <mmsystem.h>

constexpr const char* kProgram = "tonvista.exe";
constexpr UINT_PTR kFrameTimer = 799;
constexpr double kPi = 3.14159265358979323846;

// Chords that change every fifth of a second, left and right apart, so that every frame differs.
static DWORD WINAPI PlayChords(void*) {
    constexpr int kFrames = 8820;
    static int16_t samples[4][2 * kFrames];
    const WAVEFORMATEX format = {WAVE_FORMAT_PCM, 2, 44100, 176400, 4, 16, 0};
    HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    HWAVEOUT device = nullptr;
    WAVEHDR headers[4] = {};
    if (waveOutOpen(&device, WAVE_MAPPER, &format, reinterpret_cast<DWORD_PTR>(event), 0,
                    CALLBACK_EVENT))
        return 1;
    for (int i = 0; i < 4; ++i) {
        headers[i].lpData = reinterpret_cast<char*>(samples[i]);
        headers[i].dwBufferLength = sizeof samples[i];
        waveOutPrepareHeader(device, &headers[i], sizeof headers[i]);
        headers[i].dwFlags |= WHDR_DONE;
    }
    for (int chord = 0;; ++chord) {
        const int slot = chord % 4;
        while (!(headers[slot].dwFlags & WHDR_DONE))
            WaitForSingleObject(event, INFINITE);
        for (int i = 0; i < 2 * kFrames; ++i) {
            double sum = 0;
            for (int k = 1; k <= 4; ++k) {
                const double hertz = (110 + 55 * (chord % 7)) * k * (i & 1 ? 1.5 : 1);
                sum += std::sin(2 * kPi * hertz * (i / 2) / 44100) / k;
            }
            samples[slot][i] = static_cast<int16_t>(9000 * sum);
        }
        waveOutWrite(device, &headers[slot], sizeof headers[slot]);
    }
}

static double Measure(const char* name, DWORD milliseconds, double alone) {
    Sleep(1500); // whatever was switched has come to rest
    const double before = CpuSeconds(kProgram);
    Sleep(milliseconds);
    const double used = (CpuSeconds(kProgram) - before) * 60000 / milliseconds;
    std::printf("%-44s %8.2f %8.2f %7.2f%%\n", name, used, used - alone, used / 60 * 100);
    return used;
}

// Frames as fast as they are drawn, asked for from outside.
static void MeasureFrames(const Process& program, const char* title) {
    constexpr int kFrames = 4000, kBatch = 50;
    const HWND window = FindComponent(title);
    const auto draw = [&](int frames) {
        for (int i = 0; i < frames; ++i) {
            PostMessageA(window, WM_TIMER, kFrameTimer, 0);
            if (i % kBatch == kBatch - 1) AnswerTime(window);
        }
    };
    draw(500);
    const int gdi = GdiObjects(program.handle);
    const long memory = PrivateKiB(kProgram);
    draw(kFrames);
    std::printf("%-12s %d frames: GDI objects %+d, private memory %+ld KiB\n", title, kFrames,
                GdiObjects(program.handle) - gdi, PrivateKiB(kProgram) - memory);
}

int main(int argc, char** argv) {
    const DWORD time = argc > 1 && !std::strcmp(argv[1], "brief") ? 5000 : 20000;
    if (!InstallProgram(BuildFolder())) return 1;
    FreshSettings();
    SwitchOn("WaveInEngineOn");
    const struct {
        const char* name;
        UINT command;
    } displays[] = {{"spectrum analyzer", kConsoleSpectrum},
                    {"oscilloscope", kConsoleScope},
                    {"volume meter", kConsoleVolumeIcon}};
    CreateThread(nullptr, 0, PlayChords, nullptr, 0, nullptr);
    Process program("");
    if (!WaitUntil([] { return FindConsole() && IsWindowVisible(FindConsole()); })) return 1;
    const HWND console = FindConsole();
    std::printf("%-44s %8s %8s %8s\n", "CPU seconds a minute", "all", "added", "of a core");
    const double alone = Measure("Waves engine alone", time, 0);
    for (const auto& display : displays) {
        Command(console, display.command);
        Measure(display.name, time, alone);
        Command(console, display.command);
    }
    for (const auto& display : displays)
        Command(console, display.command);
    const double all = Measure("all three", time, alone);
    const double meter = Measure("all three, once more", time, alone);
    Command(console, kConsoleMinimizeAll);
    const double hidden = Measure("all three, windows hidden", time, alone);
    std::printf("painting: %.2f s a minute of %.2f\n", (all + meter) / 2 - hidden,
                (all + meter) / 2);
    ShowWindow(console, SW_RESTORE);
    MeasureFrames(program, "SpectrumUI");
    MeasureFrames(program, "ScopeUI");
    Command(console, kConsoleWavesEngine);
    const double quiet = Measure("nothing but the console", time, 0);
    Command(console, kConsoleMixer);
    Measure("mixer open and idle", time, quiet);
    PostMessageA(console, WM_CLOSE, 0, 0);
    return program.WaitEnd(15000) == 0 ? 0 : 1;
}
