// A media file in figures: time from the play command to a running graph for a WAV and an MP3,
// beside a bare graph that renders the same file, and processor time of the program while it plays
// the MP3, with its analyzers and without. Run from the root of the sources.
//
//   bench_media          20 s a row
//   bench_media brief    5 s a row
#include "media/engine_win.h"
#include "media/graph_win.h"
#include "media/player.h"
#include "tests/support/driver_win.h"
#include "tests/support/measure_win.h"
#include "tests/support/tones.h"
#include "tests/support/wave_file.h"

#include <fstream>
#include <iterator>

constexpr const char* kProgram = "tonvista.exe";
static const std::string kWav = "C:\\bench.wav", kMp3 = "C:\\bench.mp3";
static const MediaPlatform kPlatform = TheMediaPlatform;
static IGraphBuilder* s_graph; // the engine's

static bool WriteFiles() {
    const SoundFormatRecord format = FormatOfCode(kDefaultFormatCode);
    std::vector<uint8_t> sound;
    AppendTone(sound, format, 60 * 44100, 441, 0.4);
    WriteWaveFile(kWav, format, sound);
    std::ifstream tone("tests\\windows\\media\\tone.mp3", std::ios::binary);
    const std::string frames((std::istreambuf_iterator<char>(tone)), {});
    std::string all;
    for (int i = 0; i < 240; ++i) // of 0.9 s
        all += frames;
    WriteFileBytes(kMp3, all.data(), all.size());
    return !frames.empty();
}

static void WaitRunning(IGraphBuilder* graph) {
    IMediaControl* control = nullptr;
    OAFilterState state;
    graph->QueryInterface(IID_IMediaControl, reinterpret_cast<void**>(&control));
    control->GetState(static_cast<long>(INFINITE), &state);
    ReleaseCom(&control);
}

static double TimeEngine(const std::string& path) {
    const double before = Now();
    LoadMediaFile(path.c_str());
    BeginMediaPlay();
    WaitRunning(s_graph);
    const double time = Now() - before;
    StopMediaPlay();
    ReleaseMediaGraph();
    return time;
}

static double TimeBare(const std::string& path) {
    const double before = Now();
    IGraphBuilder* graph = nullptr;
    IMediaControl* control = nullptr;
    kPlatform.CreateGraph(&graph);
    RenderMediaFile(graph, path.c_str());
    graph->QueryInterface(IID_IMediaControl, reinterpret_cast<void**>(&control));
    control->Run();
    WaitRunning(graph);
    const double time = Now() - before;
    control->Stop();
    ReleaseCom(&control);
    ReleaseCom(&graph);
    return time;
}

static void Measure(const char* name, DWORD milliseconds) {
    Sleep(1500); // whatever was switched has come to rest
    const double before = CpuSeconds(kProgram);
    Sleep(milliseconds);
    std::printf("%-40s %8.2f\n", name, (CpuSeconds(kProgram) - before) * 60000 / milliseconds);
}

static int MeasureProgram(DWORD milliseconds) {
    FreshSettings();
    for (const char* component : {"WaveInEngineOn", "MediaPlayerOn"})
        SwitchOn(component);
    Process program("");
    if (!WaitUntil([] { return FindComponent("MediaUI") != nullptr; })) return 1;
    const HWND console = FindConsole();
    std::printf("processor, seconds a minute\n");
    Measure("stopped, the capture on", milliseconds);
    Process(kMp3).WaitEnd();
    const SharedPeer peer;
    const auto plays = [&] { return peer.block && peer.block->MediaState == kMediaPlaying; };
    if (!WaitUntil(plays)) return 1;
    for (int i = 0; i < 2; ++i) {
        Measure("MP3 plays", milliseconds);
        for (const UINT command : {kConsoleSpectrum, kConsoleScope, kConsoleVolumeIcon})
            Command(console, command);
        Measure("MP3 plays, spectrum, scope and meter on", milliseconds);
        for (const UINT command : {kConsoleSpectrum, kConsoleScope, kConsoleVolumeIcon})
            Command(console, command);
    }
    if (!plays()) return 1;
    PostMessageA(console, WM_CLOSE, 0, 0);
    return program.WaitEnd(15000) == 0 ? 0 : 1;
}

int main(int argc, char** argv) {
    if (!WriteFiles() || !InstallProgram(BuildFolder())) return 1;
    const std::string self = argv[0], folder = self.substr(0, self.rfind('\\') + 1);
    CopyFileA((BuildFolder() + "\\TONVExtr.dll").c_str(), (folder + "TONVExtr.dll").c_str(), FALSE);
    CoInitialize(nullptr);
    SharedControlBlock* block = OpenSharedBlock();
    TheMediaPlatform.CreateGraph = [](IGraphBuilder** graph) {
        const HRESULT result = kPlatform.CreateGraph(graph);
        s_graph = *graph;
        return result;
    };
    std::printf("ms from play to running: engine, bare graph (medians of 15, after one of each)\n");
    for (const std::string& path : {kWav, kMp3}) {
        std::vector<double> engine, bare;
        TimeEngine(path), TimeBare(path);
        for (int i = 0; i < 15; ++i) {
            engine.push_back(TimeEngine(path));
            bare.push_back(TimeBare(path));
        }
        std::printf("%-14s %8.1f %8.1f\n", path.c_str(), Median(engine), Median(bare));
    }
    CloseSharedBlock(block);
    return MeasureProgram(argc > 1 && !std::strcmp(argv[1], "brief") ? 5000 : 20000);
}
