// The database manager with many discs: milliseconds from the console's command until the first
// rows stand in its list and until all do, beside a plain list window that is given rows of ready
// texts, in the same run; and how long the window kept anybody waiting meanwhile.
#include "archive/manager_layout.h"
#include "tests/support/big_archive.h"
#include "tests/support/list_peer.h"
#include "tests/support/measure_win.h"

#include <algorithm>
#include <cstdio>
#include <fstream>

constexpr int kRounds = 5;

static void WriteDatabase(uint32_t discs) {
    const std::vector<uint8_t> bytes = BigArchive(discs);
    std::ofstream(DatabasePath(), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

// Milliseconds until the condition holds; *slowest is the longest that the window took to answer
// meanwhile.
template <typename Condition>
static double TimeUntil(double start, HWND window, double* slowest, const Condition& holds) {
    for (;;) {
        const double asked = Now();
        if (holds()) return Now() - start;
        if (window) Ask(window, WM_NULL, 0, 0);
        *slowest = std::max(*slowest, Now() - asked);
        if (Now() - start > 60000) {
            std::printf("it never came about\n");
            ExitProcess(1);
        }
        Sleep(1);
    }
}

// ---- the reference

static double FillPlain(uint32_t discs) {
    const double start = Now();
    const HWND list = CreateWindowExA(0, WC_LISTVIEWA, "", WS_POPUP | WS_VISIBLE | LVS_REPORT, 20,
                                      300, 700, 300, nullptr, nullptr, nullptr, nullptr);
    LVCOLUMNA column = {};
    column.mask = LVCF_WIDTH | LVCF_SUBITEM;
    column.cx = 150;
    for (column.iSubItem = 0; column.iSubItem < 4; ++column.iSubItem)
        SendMessageA(list, LVM_INSERTCOLUMNA, static_cast<WPARAM>(column.iSubItem),
                     reinterpret_cast<LPARAM>(&column));
    SendMessageA(list, WM_SETREDRAW, FALSE, 0);
    for (uint32_t row = 0; row < discs; ++row) {
        char text[] = "A title of usual length";
        LVITEMA item = {};
        item.mask = LVIF_TEXT;
        item.iItem = static_cast<int>(row);
        item.pszText = text;
        SendMessageA(list, LVM_INSERTITEMA, 0, reinterpret_cast<LPARAM>(&item));
        for (item.iSubItem = 1; item.iSubItem < 4; ++item.iSubItem)
            SendMessageA(list, LVM_SETITEMA, 0, reinterpret_cast<LPARAM>(&item));
    }
    SendMessageA(list, WM_SETREDRAW, TRUE, 0);
    UpdateWindow(list);
    const double passed = Now() - start;
    DestroyWindow(list);
    return passed;
}

// ---- the manager

namespace {
struct Times {
    std::vector<double> window, first, all, slowest;
    long memory = 0;
};
} // namespace

static void MeasureOnce(uint32_t discs, Times* times) {
    HWND manager = nullptr;
    double slowest = 0, ignored = 0;
    const double start = Now();
    Command(FindConsole(), kConsoleDatabase);
    times->window.push_back(TimeUntil(start, nullptr, &ignored, [&] {
        manager = FindComponent("CDInfoUI");
        return manager && Child(manager, kManagerList);
    }));
    const ListPeer list(Child(manager, kManagerList));
    const int wanted = static_cast<int>(discs);
    times->first.push_back(TimeUntil(start, manager, &slowest, [&] { return list.Count() > 0; }));
    times->all.push_back(
        TimeUntil(start, manager, &slowest, [&] { return list.Count() == wanted; }));
    times->slowest.push_back(slowest);
    times->memory = PrivateKiB("tonvista.exe");

    Command(manager, kManagerPower);
    TimeUntil(Now(), nullptr, &ignored, [] { return !FindComponent("CDInfoUI"); });
    Sleep(300); // the console takes notice
    DeleteRegTree(kUserRoot, "Software\\Tonvista\\CDInfoUI");
}

int main() {
    if (!InstallProgram(BuildFolder())) return 1;
    std::printf("%7s %8s %8s %8s %8s %9s %8s %6s\n", "discs", "window", "first", "all", "slowest",
                "KiB", "plain", "ratio");
    for (const uint32_t discs : {3u, 1000u, 10000u, 50000u}) {
        FreshSettings();
        WriteDatabase(discs);
        if (ReadLastOk() != 1) WriteLastOk(1);
        Process program("");
        double ignored = 0;
        TimeUntil(Now(), nullptr, &ignored, [] { return FindConsole() != nullptr; });
        Sleep(2000);
        Times times;
        std::vector<double> plain;
        for (int round = 0; round < kRounds; ++round) {
            MeasureOnce(discs, &times);
            plain.push_back(FillPlain(discs));
        }
        std::printf("%7u %8.0f %8.0f %8.0f %8.0f %9ld %8.0f %6.2f\n", discs, Median(times.window),
                    Median(times.first), Median(times.all), Median(times.slowest), times.memory,
                    Median(plain), Median(times.all) / Median(plain));
        std::fflush(stdout);
        Command(FindConsole(), kConsoleClose);
        program.WaitEnd(15000);
    }
    return 0;
}
