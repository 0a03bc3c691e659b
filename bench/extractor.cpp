// What the extractor costs: how long it holds the streaming thread up for each sample, and
// processor time of a graph that plays a file with and without it. Needs TONVExtr.dll of the same
// build.
//
//   bench_extractor          20 s of sound a row
//   bench_extractor brief    5 s a row
#include "tests/support/measure_win.h"
#include "tests/windows/extractor/fake_pins.h"

#include <cstdio>
#include <cstring>

constexpr const char* kSelf = "bench_extractor"; // process names end after 15 characters

// Paused, when nothing is published, or running without a clock, when everything is at once, by the
// other thread.
static void TimeSamples(const SoundFormatRecord& format, bool shown) {
    FakeGraph graph(format);
    std::vector<uint8_t> sound(format.bytesPerSecond / 25);
    std::vector<double> times;
    if (shown)
        graph.filter->Run(0);
    else
        graph.filter->Pause();
    for (int i = 0; i < 1000; ++i) {
        if (!(i % 100)) { // room in the queue
            graph.in->BeginFlush();
            graph.in->EndFlush();
            Sleep(5);
        }
        const double before = Now();
        graph.Send(sound);
        times.push_back((Now() - before) * 1000);
    }
    std::sort(times.begin(), times.end());
    std::printf("%6u Hz, %u x %2u, %5u bytes, %-10s %8.1f %8.1f %8.1f\n",
                static_cast<unsigned>(format.rate), format.channels, format.bits,
                static_cast<unsigned>(sound.size()), shown ? "shown" : "left", times[500],
                times[990], times.back());
}

static void Play(const std::string& path, const char* name, DWORD milliseconds, bool withIt) {
    MediaGraph graph(path, withIt);
    graph.control->Run();
    Sleep(1500); // it has come to an even flow
    const double before = CpuSeconds(kSelf);
    Sleep(milliseconds);
    const double used = CpuSeconds(kSelf) - before;
    std::printf("%-42s %8.2f\n", name, used * 1000 * 1000 / milliseconds);
}

int main(int count, char** arguments) {
    const DWORD milliseconds = count > 1 && !std::strcmp(arguments[1], "brief") ? 5000 : 20000;
    CoInitialize(nullptr);
    SharedControlBlock* block = OpenSharedBlock();
    if (!block || !ExtractorModule()) return 1;
    std::printf("streaming thread, microseconds a sample of 40 ms:    median      99%%     most\n");
    for (const SoundFormatRecord& format :
         {PcmFormat(44100, 2, 16), PcmFormat(44100, 1, 8), PcmFormat(192000, 2, 16)})
        for (const bool shown : {false, true})
            TimeSamples(format, shown);
    const SoundFormatRecord format = PcmFormat(44100, 2, 16);
    std::vector<uint8_t> sound;
    AppendTone(sound, format, static_cast<int>(milliseconds / 1000 + 4) * 44100, 1000, 0.5);
    const std::string path = WriteWav(format, sound);
    std::printf("processor, milliseconds a second of sound (44.1 kHz, 16 bit, stereo)\n");
    for (int i = 0; i < 4; ++i)
        Play(path, i % 2 ? "with it" : "without it", milliseconds, i % 2);
    CloseSharedBlock(block);
    Play(path, "with it, and no block to show in", milliseconds, true);
    return 0;
}
