// Figures of the database: look-up and store of one disc among 10, 1,000 and 5,000, how much of
// it is the program's own work and how much the files' and the platform's, and what is left of a
// database when a change is cut off at any point.
//
// Prints "name value unit ratio"; the ratio is to the smallest database.
#include "core/platform.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "cdinfo/compound_win.h"
#include "tests/windows/cdinfo/crash.h"

// ---- times

static double Now() {
    LARGE_INTEGER at, rate;
    QueryPerformanceCounter(&at);
    QueryPerformanceFrequency(&rate);
    return 1000.0 * static_cast<double>(at.QuadPart) / static_cast<double>(rate.QuadPart);
}

// The system's file layer with a clock: what it takes is not the program's own time.
static struct { double spent; } s_files;

struct Timed {
    double from = Now();
    ~Timed() { s_files.spent += Now() - from; }
};

template <auto Call, class Result, class... Arguments>
static void Time(FileLayer& layer, Result (*FileLayer::*)(Arguments...)) {
    layer.*Call = [](Arguments... arguments) -> Result {
        Timed timed;
        return (SystemFiles().*Call)(arguments...);
    };
}

template <auto... Calls> static FileLayer TimedFiles() {
    FileLayer layer = SystemFiles();
    (Time<Calls>(layer, Calls), ...);
    return layer;
}

struct Times {
    double whole = 0, files = 0;
};

// The median of several runs.
template <class Operation> static Times Measure(int runs, Operation operation) {
    std::vector<Times> all;
    for (int i = 0; i < runs; ++i) {
        s_files.spent = 0;
        const double from = Now();
        operation(i);
        all.push_back({Now() - from, s_files.spent});
    }
    std::sort(all.begin(), all.end(), [](auto& a, auto& b) { return a.whole < b.whole; });
    return all[all.size() / 2];
}

static uint32_t DiscId(uint32_t n) {
    return n * 0x01000193u + 1;
}

// The platform's part of a store: opening the image, index, entry, closing.
static double PlatformTime(const std::wstring& path) {
    const auto image = Slurp(path);
    const double from = Now();
    CompoundFile file;
    OpenCompound(Bytes(image), &file);
    WriteStream(file, L"FFFFFFF0", Bytes(1000));
    CloseCompound(&file, nullptr);
    return Now() - from;
}

static void MeasureSize(uint32_t discs, std::vector<double>* smallest) {
    const std::wstring path = DefaultDatabasePath();
    Forget(path);
    const double from = Now();
    StoreBatch* batch = BeginStoreBatch(path.c_str());
    for (uint32_t n = 1; n <= discs; ++n)
        BatchAdd(batch, *MakeTypedRecord(DiscId(n), n));
    if (!CommitStoreBatch(batch)) std::printf("the batch failed\n");
    const double build = Now() - from;
    const Times same =
        Measure(15, [](int) { LookUpDisc(MakeTypedRecord(DiscId(1), 0).get(), nullptr); });
    const Times fresh = Measure(15, [](int i) {
        LookUpDisc(MakeTypedRecord(~DiscId(static_cast<uint32_t>(i)), 0).get(), nullptr);
    });
    const Times store = Measure(15, [&](int i) {
        AddOrReplace(nullptr, *MakeTypedRecord(DiscId(1), 1000u + static_cast<uint32_t>(i)), 0,
                     nullptr);
    });
    const double platform = PlatformTime(path);
    const std::pair<const char*, double> rows[] = {
        {"all in one batch", build},
        {"look-up, unchanged, whole", same.whole},
        {"look-up, unchanged, own", same.whole - same.files},
        {"look-up, new, whole", fresh.whole},
        {"store, whole", store.whole},
        {"store, files", store.files},
        {"store, platform", platform},
        {"store, own", store.whole - store.files - platform},
    };
    for (size_t i = 0; i < sizeof rows / sizeof *rows; ++i) {
        const auto [name, value] = rows[i];
        if (smallest->size() <= i) smallest->push_back(value);
        std::printf("%-28s %6u  %8.2f ms  x%.1f\n", name, discs, value, value / (*smallest)[i]);
    }
    Forget(path);
}

int main(int argc, char** argv) {
    using Layer = FileLayer;
    const Layer timed =
        TimedFiles<&Layer::read, &Layer::write, &Layer::flush, &Layer::size, &Layer::replace,
                   &Layer::move, &Layer::remove, &Layer::lock, &Layer::hold>();
    SetStoreFiles(&timed);
    std::vector<double> smallest;
    for (const uint32_t discs : {10u, 1000u, 5000u})
        MeasureSize(discs, &smallest);
    SetStoreFiles(nullptr);
    const int images = argc > 1 ? std::atoi(argv[1]) : 10000;
    const double from = Now();
    const CrashCount count = CrashEverywhere(Scratch(L"crash.cdp"), images);
    std::printf("%-28s %6d  %8d bad  %.0f s\n", "crash images", count.images, count.bad,
                (Now() - from) / 1000);
    std::printf("%-28s %6d old %6d new\n", "", count.old, count.fresh);
    return count.bad != 0;
}
