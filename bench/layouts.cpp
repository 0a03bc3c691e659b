// A layout with six windows: milliseconds from the command until all stand at their places, beside
// six plain windows of as many threads that are moved one after the other, in the same run.
#include "core/text.h"
#include "tests/support/driver_win.h"
#include "tests/support/measure_win.h"
#include "ui/layouts_win.h"

#include <cstdio>
#include <vector>

constexpr int kWindows = 6, kRounds = 41;
constexpr struct {
    int id;
    const char *title, *onValue;
} kMembers[kWindows] = {{1, "Tonvista", nullptr},        {2, "CDPlayerUI", "CDPlayerUI"},
                        {3, "SpectrumUI", "SpectrumIU"}, {4, "MixerUI", "MixerUI"},
                        {7, "ScopeUI", "ScopeUI"},       {9, "MediaUI", "MediaPlayerOn"}};

// Where a window stands in the arrangement 0 or 1: other places, other sizes.
static RECT PlaceIn(int arrangement, int window) {
    const int x = 10 + window % 2 * 620, y = 10 + window / 2 * 300 + arrangement * 40;
    return {x, y, x + 560 + arrangement * 30, y + 200 + arrangement * 30};
}

static bool Stands(HWND window, const RECT& wanted) {
    const RECT r = PlaceOf(window);
    return EqualRect(&r, &wanted);
}

template <typename Condition> static double TimeUntil(double start, const Condition& holds) {
    while (!holds()) {
        if (Now() - start > 20000) {
            std::printf("it never came about\n");
            ExitProcess(1);
        }
        Sleep(0);
    }
    return Now() - start;
}

// ---- the reference

static HWND s_plain[kWindows];

static DWORD WINAPI PlainThread(void* argument) {
    HWND* const slot = static_cast<HWND*>(argument);
    *slot = CreateWindowExA(WS_EX_TOOLWINDOW, "STATIC", "plain",
                            WS_POPUP | WS_BORDER | WS_THICKFRAME | WS_VISIBLE, 10, 10, 560, 200,
                            nullptr, nullptr, nullptr, nullptr);
    MSG message;
    while (GetMessageA(&message, nullptr, 0, 0) > 0)
        DispatchMessageA(&message);
    return 0;
}

static double MovePlain(int arrangement) {
    const double start = Now();
    for (int i = 0; i < kWindows; ++i) {
        const RECT r = PlaceIn(arrangement, i);
        SetWindowPos(s_plain[i], nullptr, r.left, r.top, r.right - r.left, r.bottom - r.top,
                     SWP_NOZORDER | SWP_NOACTIVATE);
    }
    return TimeUntil(start, [=] {
        for (int i = 0; i < kWindows; ++i)
            if (!Stands(s_plain[i], PlaceIn(arrangement, i))) return false;
        return true;
    });
}

// ---- the program

static double Apply(int arrangement) {
    const double start = Now();
    Command(FindConsole(), kLayoutFirst + arrangement);
    return TimeUntil(start, [=] {
        for (int i = 0; i < kWindows; ++i)
            if (!Stands(FindComponent(kMembers[i].title), PlaceIn(arrangement, i))) return false;
        return true;
    });
}

int main() {
    if (!InstallProgram(BuildFolder())) return 1;
    FreshSettings();
    for (const auto& member : kMembers)
        if (member.onValue) SwitchOn(member.onValue);
    for (int arrangement = 0; arrangement < 2; ++arrangement)
        for (int i = 0; i < kWindows; ++i) {
            const RECT r = PlaceIn(arrangement, i);
            WriteLayoutEntry(arrangement, kMembers[i].id - 1, r.left, r.top, r.right - r.left,
                             r.bottom - r.top, 1);
        }
    Process program("");
    if (!WaitUntil([] { return FindComponent("MediaUI") && ReadLastOk() == 1; }, 30000)) return 1;
    for (HWND& slot : s_plain) {
        CloseHandle(CreateThread(nullptr, 0, PlainThread, &slot, 0, nullptr));
        WaitUntil([&] { return slot != nullptr; });
    }
    std::vector<double> ours, plain;
    for (int i = 0; i < kRounds; ++i) { // interleaved; the first ones warm up
        const double reference = MovePlain(i & 1), layout = Apply(i & 1);
        if (i < 3) continue;
        plain.push_back(reference);
        ours.push_back(layout);
    }
    std::printf("%-46s %10s %10s %8s\n", "", "layout", "plain", "ratio");
    std::printf("%-46s %10.1f %10.1f %8.2f  ms\n", "six windows to other places", Median(ours),
                Median(plain), Median(ours) / Median(plain));
    Command(FindConsole(), kConsoleClose);
    program.WaitEnd(15000);
    ExitProcess(0);
}
