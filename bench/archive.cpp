// Figures of the database manager's memory and of its exchange with files, for 1,000, 10,000 and
// 50,000 discs of 12 tracks: filling the catalog, sorting by each key, narrowing by search, taking
// one changed disc over, import and export, sizes. One row a figure, one column a size, and how
// much the last column is of the first. bench/archive_sqlite.sh has the same discs in SQLite.
//
//   bench_archive [DISCS...]
#include "archive/catalog.h"
#include "archive/exchange_win.h"
#include "archive/text_key_win.h"
#include "cdinfo/store.h"
#include "cdinfo/store_parts_win.h"
#include "tests/support/big_archive.h"
#include "tests/support/measure_win.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>

constexpr uint32_t kMaxIniDiscs = 500;     // the system writes the whole file anew for each value
constexpr uint32_t kMaxFolderDiscs = 5000; // so many files in one folder are enough
static const char* const kKeys[] = {"CD", "artist", "time", "comment", "track", "track #"};

static struct {
    std::vector<std::string> names; // in the order of the first column
    std::map<std::string, std::vector<double>> rows;
} s_table;

static void Note(const std::string& name, double value) {
    auto& row = s_table.rows[name];
    if (row.empty()) s_table.names.push_back(name);
    row.push_back(value);
    std::fprintf(stderr, "  %-42s %10.1f\n", name.c_str(), value);
}

static double Time(const std::function<void()>& what) {
    const double from = Now();
    what();
    return Now() - from;
}

static double MiB(double bytes) {
    return bytes / (1 << 20);
}

static int PutDisc(const void* data, size_t, uint32_t, void* context) {
    CatalogPut(static_cast<Catalog*>(context), *static_cast<const CDInfoRecord*>(data));
    return 1;
}

// ---- the catalog

static void MeasureSorts(Catalog* catalog, CatalogView view, int keys, const char* name) {
    double slowest = 0;
    for (int key = 0; key < keys; ++key) {
        CatalogOrder order = {view, static_cast<SortKey>(key), 1, ""};
        Note(std::string(name) + ", first sort by " + kKeys[key] + " ms",
             Time([&] { CatalogArrange(catalog, order); }));
        order.ascending = 0;
        slowest = std::max(slowest, Time([&] { CatalogArrange(catalog, order); }));
    }
    Note(std::string(name) + ", slowest later sort ms", slowest);
}

// What the engine does with a disc in the drive, for comparison: the file is read and checked
// whole.
static void MeasureLookUp() {
    auto record = std::make_unique<CDInfoRecord>();
    int found = 0;
    Note("look one disc up, with its tracks, ms",
         Time([&] { found = ReadEntry(nullptr, BigIdentity(77), record.get()); }));
    if (!found) std::printf("not found\n");
}

static void MeasureCatalog(uint32_t discs) {
    Catalog* const catalog = CreateCatalog(PlatformTextKey, PlatformLowerCase());
    Note("read, unpacked and filled ms",
         Time([&] { EnumerateEntries(nullptr, nullptr, PutDisc, catalog, 0, 0); }));
    MeasureSorts(catalog, kCdView, 4, "CD view");
    Note("CD view, bytes a disc", static_cast<double>(CatalogBytes(catalog)) / discs);
    MeasureSorts(catalog, kArtistView, 4, "artist view");
    MeasureSorts(catalog, kTrackView, 6, "track view");
    Note("track view, bytes a disc", static_cast<double>(CatalogBytes(catalog)) / discs);
    for (const CatalogView view : {kCdView, kTrackView}) {
        const std::string name = view == kCdView ? "CD view" : "track view";
        CatalogArrange(catalog, {view, kByCd, 1, ""});
        Note(name + ", narrow by one word ms", Time([&] {
                 CatalogArrange(catalog, {view, kByCd, 1, "winter"});
             }));
        Note(name + ", narrow by two words ms", Time([&] {
                 CatalogArrange(catalog, {view, kByCd, 1, "winter 81"});
             }));
        auto record = BigRecord(1);
        CopyText(record->title, "Changed");
        Note(name + ", one disc changed ms", Time([&] {
                 CatalogPut(catalog, *record);
                 CatalogArrange(catalog, {view, kByCd, 1, ""});
             }));
        CatalogPut(catalog, *BigRecord(1));
    }
    Note("cells of a screen (40 rows) ms", Time([&] {
             char text[kCommentSize];
             for (size_t cell = 0; cell < 40 * kTrackViewColumns; ++cell)
                 CatalogCell(catalog, cell / kTrackViewColumns,
                             static_cast<CatalogColumn>(cell % kTrackViewColumns), text);
         }));
    Note("program's memory, all views seen MiB",
         static_cast<double>(PrivateKiB("bench_archive.e")) / 1024);
    FreeCatalog(catalog);
}

// ---- files

struct Source {
    uint32_t next, last;
};

static int NextDisc(CDInfoRecord* record, void* context) {
    auto* source = static_cast<Source*>(context);
    if (source->next > source->last) return 0;
    *record = *BigRecord(source->next++);
    return 1;
}

static double Export(ExchangeForm form, const std::string& path, uint32_t discs) {
    Source source = {1, discs};
    int good = 0;
    const double time = Time([&] {
        good = ExportDiscs(form, path.c_str(), ',', NextDisc, &source, {nullptr, nullptr});
    });
    if (!good) std::printf("the export to %s failed\n", path.c_str());
    return 1000.0 * discs / time;
}

static double Import(ExchangeForm form, const std::string& path, uint32_t discs) {
    size_t taken = 0;
    const double time = Time([&] {
        ImportDiscs(nullptr, form, path.c_str(), {nullptr, nullptr}, &taken);
    });
    if (taken != discs)
        std::printf("%u of %u discs imported\n", static_cast<unsigned>(taken), discs);
    return 1000.0 * discs / time;
}

// A file for each disc. Beside it what the folder alone takes: the same names, empty files.
static void MeasureFolder(ExchangeForm form, const std::string& name, uint32_t discs,
                          const std::wstring& database) {
    char temporary[MAX_PATH];
    GetTempPathA(MAX_PATH, temporary);
    const std::string folder = std::string(temporary) + "bench-folder";
    std::filesystem::remove_all(folder);
    Note("export to " + name + " (5000), discs/s", Export(form, folder, discs));
    DeleteFileW(database.c_str());
    Note("import from " + name + " (5000), discs/s", Import(form, folder, discs));
    std::vector<std::filesystem::path> files;
    for (const auto& file : std::filesystem::directory_iterator(folder))
        files.push_back(file.path());
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
    const double bare = Time([&] {
        for (const auto& file : files)
            CloseHandle(
                CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
    });
    Note("empty files named as " + name + ", files/s", 1000.0 * discs / bare);
    std::filesystem::remove_all(folder);
}

static void MeasureExchange(uint32_t discs, const std::wstring& database,
                            const std::vector<uint8_t>& image) {
    char temporary[MAX_PATH];
    GetTempPathA(MAX_PATH, temporary);
    const std::string folder = temporary, cdp = folder + "bench.cdp", text = folder + "bench.txt",
                      csv = folder + "bench.csv", ini = folder + "bench.ini";
    for (const std::string& path : {cdp, text, csv, ini})
        DeleteFileA(path.c_str());
    Note("export to text, discs/s", Export(kTextForm, text, discs));
    Note("export to delimited, discs/s", Export(kDelimitedForm, csv, discs));
    Note("export to a new CDP file, discs/s", Export(kCdpForm, cdp, discs));
    const uint32_t few = std::min(discs, kMaxIniDiscs);
    Note("export to CDPlayer.ini (500), discs/s", Export(kIniForm, ini, few));
    Note("import from CDPlayer.ini (500), discs/s", Import(kIniForm, ini, few));
    DeleteFileW(database.c_str());
    const std::wstring wide(cdp.begin(), cdp.end());
    SystemFiles().write(wide.c_str(), image);
    Note("import of a CDP file, discs/s", Import(kCdpForm, cdp, discs));
    const uint32_t some = std::min(discs, kMaxFolderDiscs);
    MeasureFolder(kCddbForm, "CDDB files", some, database);
    MeasureFolder(kCueForm, "CUE sheets", some, database);
    for (const std::string& path : {cdp, text, csv, ini})
        DeleteFileA(path.c_str());
    DeleteFileW(database.c_str());
}

static void PrintTable(const std::vector<uint32_t>& sizes) {
    std::printf("%-44s", "discs");
    for (const uint32_t size : sizes)
        std::printf(" %10u", size);
    std::printf("     growth\n");
    for (const std::string& name : s_table.names) {
        const auto& row = s_table.rows[name];
        std::printf("%-44s", name.c_str());
        for (const double value : row)
            std::printf(" %10.1f", value);
        std::printf("  x%8.1f\n", row.front() > 0 ? row.back() / row.front() : 0);
    }
}

int main(int argc, char** argv) {
    std::vector<uint32_t> sizes;
    for (int i = 1; i < argc; ++i)
        sizes.push_back(static_cast<uint32_t>(std::atoi(argv[i])));
    if (sizes.empty()) sizes = {1000, 10000, 50000};
    const std::wstring database = DefaultDatabasePath();
    for (const uint32_t discs : sizes) {
        std::fprintf(stderr, "%u discs\n", discs);
        const auto image = BigArchive(discs);
        SystemFiles().write(database.c_str(), image);
        Note("size of the file MiB", MiB(static_cast<double>(image.size())));
        MeasureLookUp();
        MeasureCatalog(discs);
        MeasureExchange(discs, database, image);
    }
    PrintTable(sizes);
    return 0;
}
