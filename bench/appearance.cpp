// What a repaint costs with bitmaps against plain colours: a window of 600 x 400 with buttons,
// track bars and lamps, painted whole again and again; medians of batches, taken by turns.
#include "tests/support/measure_win.h"
#include "ui/appearance_win.h"
#include "ui/button_win.h"
#include "ui/framework_win.h"
#include "ui/indicator_win.h"
#include "ui/picture_reader_win.h"
#include "ui/trackbar_win.h"

#include <cstdio>
#include <fstream>

constexpr int kBatch = 40, kRounds = 7;
constexpr const char* kPhoto = "C:\\photo.bmp";

static void WritePhoto(LONG width, LONG height) {
    const BITMAPFILEHEADER file = {0x4D42, 0, 0, 0, 54};
    const BITMAPINFOHEADER info = {sizeof info, width, height, 1, 24, 0, 0, 0, 0, 0, 0};
    std::ofstream out(kPhoto, std::ios::binary);
    out.write(reinterpret_cast<const char*>(&file), sizeof file);
    out.write(reinterpret_cast<const char*>(&info), sizeof info);
    out << std::string(static_cast<size_t>(width) * height * 3, 'x');
}

static HWND MakeWindow() {
    SetSavedPlacement(70, 100, 100, 600, 400);
    const HWND window = CreateUIWindow(GetModuleHandleA(nullptr), 70, "BenchUI", 0, nullptr);
    for (int i = 0; i < 20; ++i)
        CreateTNVButton("Label", WS_VISIBLE, 20 + i % 5 * 80, 20 + i / 5 * 50, 70, 40, window, 700,
                        nullptr);
    for (int x = 20; x < 500; x += 120) {
        CreateTNVTrackBar(WS_VISIBLE, x, 280, 110, 60, window, 700, nullptr);
        CreateTNVIndicator(0, WS_VISIBLE, x, 230, 110, 30, window, 700, nullptr);
    }
    return window;
}

static double Repaint(HWND window) {
    const double before = Now();
    for (int i = 0; i < kBatch; ++i)
        RedrawWindow(window, nullptr, nullptr,
                     RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
    GdiFlush();
    return (Now() - before) / kBatch;
}

int main() {
    WritePhoto(4000, 3000);
    PictureFiles.waitMs = INFINITE; // no built-in bitmap in the photograph's place
    const struct {
        const char* name;
        BitmapSettings settings;
    } rows[] = {{"plain colours", {}},
                {"built-in, tiled", {1, 1, 0, kAlignScreen, {}}},
                {"built-in, stretched", {1, 1, 1, 0, {}}},
                {"4000 x 3000, tiled", {1, 0, 0, kAlignScreen, "C:\\photo.bmp"}},
                {"4000 x 3000, stretched", {1, 0, 1, 0, "C:\\photo.bmp"}}};
    std::vector<double> times[std::size(rows)];
    const HWND window = MakeWindow();
    for (int round = 0; round < kRounds; ++round)
        for (size_t i = 0; i < std::size(rows); ++i) {
            UseBackground(rows[i].settings);
            UseButtonFace(rows[i].settings);
            Repaint(window); // the copy of this thread and the caches
            times[i].push_back(Repaint(window));
        }
    for (size_t i = 0; i < std::size(rows); ++i)
        std::printf("%-32s %7.3f ms %6.2f x plain\n", rows[i].name, Median(times[i]),
                    Median(times[i]) / Median(times[0]));
    DestroyWindow(window);
    DeleteFileA(kPhoto);
    return 0;
}
