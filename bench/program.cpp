// The running program in figures, each beside an empty one-window program started in the same
// prefix: time to painted windows, private memory, GDI and kernel handles, CPU seconds a minute
// while a disc plays and while idle, and what 200 openings of the CD player leave behind.
//
//   bench_program            the whole table
//   bench_program brief      without the parts that take minutes
//   bench_program empty      the empty program (started by the table)
#include "tests/support/driver_win.h"
#include "tests/support/measure_win.h"
#include "tests/support/tone_disc.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>
#include <mmsystem.h>

constexpr COLORREF kBackground = 0x404040;
constexpr const char* kEmptyTitle = "TonvistaEmptyProgram";

// ---- the empty program

static LRESULT CALLBACK EmptyProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_CLOSE) PostQuitMessage(0);
    return DefWindowProcA(window, message, wParam, lParam);
}

// Silence through waveOut as the disc drive plays it: what sound alone costs this platform. The
// program has the drive, and so the sound, in its own process.
static DWORD WINAPI PlaySilence(void*) {
    static char silence[4][35280]; // 0.2 s each
    const WAVEFORMATEX format = {WAVE_FORMAT_PCM, 2, 44100, 176400, 4, 16, 0};
    HANDLE event = CreateEventA(nullptr, FALSE, FALSE, nullptr);
    HWAVEOUT device = nullptr;
    WAVEHDR headers[4] = {};
    if (waveOutOpen(&device, WAVE_MAPPER, &format, reinterpret_cast<DWORD_PTR>(event), 0,
                    CALLBACK_EVENT))
        return 1;
    for (int i = 0; i < 4; ++i) {
        headers[i].lpData = silence[i];
        headers[i].dwBufferLength = sizeof silence[i];
        waveOutPrepareHeader(device, &headers[i], sizeof headers[i]);
        headers[i].dwFlags |= WHDR_DONE;
    }
    for (;;) {
        for (auto& header : headers)
            if (header.dwFlags & WHDR_DONE) waveOutWrite(device, &header, sizeof header);
        WaitForSingleObject(event, INFINITE);
    }
}

static int RunEmpty(bool sound) {
    if (sound) CreateThread(nullptr, 0, PlaySilence, nullptr, 0, nullptr);
    WNDCLASSA windowClass = {};
    windowClass.lpfnWndProc = EmptyProc;
    windowClass.hbrBackground = CreateSolidBrush(kBackground);
    windowClass.lpszClassName = kEmptyTitle;
    RegisterClassA(&windowClass);
    CreateWindowA(kEmptyTitle, kEmptyTitle, WS_POPUP | WS_VISIBLE, 20, 700, 500, 120, nullptr,
                  nullptr, nullptr, nullptr);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
    return 0;
}

// ---- counters

namespace {
struct Started {
    HANDLE process;
    DWORD id;
    double milliseconds; // to painted windows
    double toConsole;    // to the painted console; 0 when it came with the others
};
} // namespace

// A window is painted when its background stands on the screen, just inside the raised edge.
static bool Painted(HWND window) {
    if (!window || !IsWindowVisible(window)) return false;
    HDC dc = GetDC(window);
    const bool painted = GetPixel(dc, 4, 4) == kBackground;
    ReleaseDC(window, dc);
    return painted;
}

static Started Launch(const std::string& line, bool (*ready)()) {
    STARTUPINFOA startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION info = {};
    std::string command = line;
    const double start = Now();
    if (!CreateProcessA(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &startup, &info)) {
        std::printf("cannot start %s\n", line.c_str());
        std::exit(1);
    }
    double console = 0;
    while (!ready() && Now() - start < 20000) {
        if (!console && Painted(FindConsole())) console = Now() - start;
        Sleep(1);
    }
    CloseHandle(info.hThread);
    return {info.hProcess, info.dwProcessId, Now() - start, console};
}

static void End(Started& started, HWND window) {
    PostMessageA(window, WM_CLOSE, 0, 0);
    if (WaitForSingleObject(started.process, 15000) != WAIT_OBJECT_0) {
        std::printf("it did not end\n");
        TerminateProcess(started.process, 1);
    }
    CloseHandle(started.process);
}

static bool EmptyReady() {
    return Painted(FindWindowA(kEmptyTitle, kEmptyTitle));
}
static bool ProgramReady() {
    return Painted(FindConsole()) && Painted(FindComponent("CDPlayerUI"));
}

static Started LaunchEmpty(const char* kind = "empty") {
    char self[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, self, MAX_PATH);
    return Launch(std::string("\"") + self + "\" " + kind, EmptyReady);
}
static Started LaunchProgram() {
    return Launch("\"" + ProgramPath() + "\"", ProgramReady);
}

// ---- the table

static void Row(const char* name, double ours, double empty, const char* unit) {
    if (empty > 0)
        std::printf("%-46s %10.2f %10.2f %8.2f  %s\n", name, ours, empty, ours / empty, unit);
    else
        std::printf("%-46s %10.2f %10s %8s  %s\n", name, ours, "-", "-", unit);
}

static void MeasureStart() {
    std::vector<double> ours, console, empty;
    for (int i = 0; i < 11; ++i) { // interleaved; the first pair warms the prefix
        Started e = LaunchEmpty();
        End(e, FindWindowA(kEmptyTitle, kEmptyTitle));
        Started p = LaunchProgram();
        End(p, FindConsole());
        if (!i) continue;
        empty.push_back(e.milliseconds);
        ours.push_back(p.milliseconds);
        console.push_back(p.toConsole > 0 ? p.toConsole : p.milliseconds);
    }
    Row("start to painted console (median of 10)", Median(console), Median(empty), "ms");
    Row("start to painted console and CD player", Median(ours), Median(empty), "ms");
}

static void MeasureCpu(const char* name, DWORD milliseconds) {
    const double ours = CpuSeconds("tonvista.exe"), empty = CpuSeconds("bench_program");
    Sleep(milliseconds);
    const double scale = 60000.0 / milliseconds;
    Row(name, (CpuSeconds("tonvista.exe") - ours) * scale,
        (CpuSeconds("bench_program") - empty) * scale, "CPU s a minute");
}

static void MeasureReopening(const Started& p) {
    const HWND console = FindConsole();
    const auto toggle = [&](bool on) {
        Command(console, kConsoleCdPlayer);
        WaitUntil([&] { return (FindComponent("CDPlayerUI") != nullptr) == on; });
        AnswerTime(console);
    };
    const auto rounds = [&](int count) {
        for (int i = 0; i < count; ++i) {
            toggle(false);
            toggle(true);
        }
        Sleep(500);
    };
    rounds(50); // what is made once and kept, Wine's own caches among it
    const int handles = KernelHandles(p.id), gdi = GdiObjects(p.process);
    const long memory = PrivateKiB("tonvista.exe");
    rounds(200);
    Row("200 openings: growth of kernel handles", KernelHandles(p.id) - handles, 0, "");
    Row("200 openings: growth of GDI objects", GdiObjects(p.process) - gdi, 0, "");
    Row("200 openings: growth of private memory",
        static_cast<double>(PrivateKiB("tonvista.exe") - memory), 0, "KiB");
}

// Every call to the drive takes 15 s: how long windows take to answer meanwhile. The empty
// program's window tells what the machine and the platform add: Wine stands still for moments when
// it writes its registry out.
static void MeasureSlowDrive() {
    Started e = LaunchEmpty();
    const HWND console = FindConsole(), player = FindComponent("CDPlayerUI");
    const HWND empty = FindWindowA(kEmptyTitle, kEmptyTitle);
    constexpr UINT kRepeatButton = 730;
    const auto answer = [](HWND window) {
        const double start = Now();
        AnswerTime(window);
        return Now() - start;
    };
    std::vector<double> ours, theirs;
    SetDrive("StallMs", 15000);
    Command(FindCdEngine(), kCdPlay, 1);
    for (int i = 0; i < 200; ++i) {
        Command(player, kRepeatButton);
        theirs.push_back(answer(empty));
        ours.push_back(std::max(answer(console), answer(player)));
        Sleep(50);
    }
    SetDrive("StallMs", 0);
    End(e, empty);
    Row("answer while the drive stalls 15 s, median", Median(ours), Median(theirs), "ms");
    Row("answer while the drive stalls 15 s, slowest", *std::max_element(ours.begin(), ours.end()),
        *std::max_element(theirs.begin(), theirs.end()), "ms");
}

int main(int argc, char** argv) {
    if (argc > 1 && !std::strcmp(argv[1], "empty")) return RunEmpty(false);
    if (argc > 1 && !std::strcmp(argv[1], "sound")) return RunEmpty(true);
    if (!InstallProgram(BuildFolder())) return 1;
    FreshSettings();
    SwitchOn("CDEngineOn");
    SwitchOn("CDPlayerUI");
    PutImage(MakeToneDisc(kProgramFolder, "bench", {{440, 9000}, {660, 9000}}).cue);
    WindowPlacement place = {20, 20, 616, 146, kBackground, 2};
    WriteWindowPlacement(place);
    place = {20, 400, 616, 110, kBackground, 1};
    WriteWindowPlacement(place);

    std::printf("%-46s %10s %10s %8s\n", "", "Tonvista", "empty", "ratio");
    const bool brief = argc > 1 && !std::strcmp(argv[1], "brief"); // what takes no minutes
    if (!brief) MeasureStart();
    Started e = LaunchEmpty();
    Sleep(1000);
    Started p = LaunchProgram();
    Sleep(4000);
    Row("private memory after start", static_cast<double>(PrivateKiB("tonvista.exe")),
        static_cast<double>(PrivateKiB("bench_program")), "KiB");
    Row("kernel handles after start", KernelHandles(p.id), KernelHandles(e.id), "");
    Row("GDI objects after start", GdiObjects(p.process), GdiObjects(e.process), "");
    MeasureCpu("idle, console and CD player open", brief ? 5000 : 30000);
    End(e, FindWindowA(kEmptyTitle, kEmptyTitle));
    e = LaunchEmpty("sound");
    Command(FindCdEngine(), kCdPlay, 1);
    Sleep(3000);
    MeasureCpu("a disc plays (beside it: waveOut alone)", brief ? 10000 : 60000);
    End(e, FindWindowA(kEmptyTitle, kEmptyTitle));
    Command(FindCdEngine(), kCdStop);
    Sleep(1000);
    if (!brief) MeasureReopening(p);
    MeasureSlowDrive();
    TerminateProcess(p.process, 0); // it would wait for the drive
    return 0;
}
