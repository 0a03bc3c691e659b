// The discs of bench/archive.cpp in SQLite: a table of discs and one of tracks, keyed and indexed
// as the program looks them up. Native; see bench/archive_sqlite.sh.
#include "tests/support/big_archive.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <sqlite3.h>

static double Time(const std::function<void()>& what) {
    const auto from = std::chrono::steady_clock::now();
    what();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - from)
        .count();
}

static void Run(sqlite3* db, const char* sql) {
    char* error = nullptr;
    if (sqlite3_exec(db, sql, nullptr, nullptr, &error) != SQLITE_OK) std::printf("%s\n", error);
}

static sqlite3_stmt* Prepare(sqlite3* db, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db, sql, -1, &statement, nullptr) != SQLITE_OK)
        std::printf("%s\n", sqlite3_errmsg(db));
    return statement;
}

static void Text(sqlite3_stmt* s, int at, const char* text) {
    sqlite3_bind_text(s, at, text, -1, SQLITE_TRANSIENT);
}

static void Insert(sqlite3_stmt* discs, sqlite3_stmt* tracks, const CDInfoRecord& r) {
    sqlite3_bind_int64(discs, 1, r.identity);
    Text(discs, 2, r.title);
    Text(discs, 3, r.discArtist);
    Text(discs, 4, r.comment);
    sqlite3_bind_int(discs, 5, r.totalMinutes * 60 + r.totalSeconds);
    sqlite3_bind_int(discs, 6, r.revision);
    sqlite3_step(discs);
    sqlite3_reset(discs);
    for (int i = 0; i < r.trackCount; ++i) {
        sqlite3_bind_int64(tracks, 1, r.identity);
        sqlite3_bind_int(tracks, 2, i + 1);
        Text(tracks, 3, r.trackArtists[i]);
        Text(tracks, 4, r.trackTitles[i]);
        Text(tracks, 5, r.trackComments[i]);
        sqlite3_bind_int64(tracks, 6, r.trackStarts[i]);
        sqlite3_step(tracks);
        sqlite3_reset(tracks);
    }
}

// Reads all rows and all their columns.
static size_t ReadAll(sqlite3_stmt* s) {
    size_t rows = 0;
    volatile size_t length = 0;
    for (; sqlite3_step(s) == SQLITE_ROW; ++rows) {
        for (int i = 0; i < sqlite3_column_count(s); ++i)
            if (sqlite3_column_text(s, i)) length = length + *sqlite3_column_text(s, i);
    }
    sqlite3_reset(s);
    return rows;
}

static void Query(sqlite3* db, const char* name, const char* sql) {
    sqlite3_stmt* s = Prepare(db, sql);
    size_t rows = 0;
    const double time = Time([&] { rows = ReadAll(s); });
    std::printf("  %-42s %10.1f   (%zu rows)\n", name, time, rows);
    sqlite3_finalize(s);
}

static void Measure(uint32_t count) {
    const char* path = "build/results/archive.sqlite";
    std::filesystem::remove(path);
    sqlite3* db = nullptr;
    sqlite3_open(path, &db);
    Run(db, "create table discs(id integer primary key, title text, artist text, comment text,"
            " seconds int, revision int);"
            "create table tracks(disc int, number int, artist text, title text, comment text,"
            " start int, primary key(disc, number)) without rowid;");
    std::printf("%u discs\n", count);
    double insert = 0;
    sqlite3_stmt* discs = Prepare(db, "insert or replace into discs values(?,?,?,?,?,?)");
    sqlite3_stmt* tracks = Prepare(db, "insert or replace into tracks values(?,?,?,?,?,?)");
    Run(db, "begin");
    for (uint32_t n = 1; n <= count; ++n) {
        const auto record = BigRecord(n);
        insert += Time([&] { Insert(discs, tracks, *record); });
    }
    insert += Time([&] { Run(db, "commit"); });
    std::printf("  %-42s %10.1f\n", "insert, one transaction, discs/s", 1000.0 * count / insert);
    const auto record = BigRecord(count / 2);
    CopyText(record->title, "Changed");
    std::printf("  %-42s %10.2f\n", "replace one disc ms", Time([&] {
                    Run(db, "begin");
                    Insert(discs, tracks, *record);
                    Run(db, "commit");
                }));
    sqlite3_finalize(discs);
    sqlite3_finalize(tracks);
    sqlite3_stmt* find = Prepare(db, "select * from discs join tracks on disc = id where id = ?");
    const double look = Time([&] {
        for (uint32_t n = 1; n <= 1000; ++n) {
            sqlite3_bind_int64(find, 1, BigIdentity(1 + n * 7919 % count));
            if (ReadAll(find) != 12) std::printf("not found\n");
        }
    });
    sqlite3_finalize(find);
    std::printf("  %-42s %10.4f\n", "look one disc up, with its tracks, ms", look / 1000);
    Query(db, "list all discs by title ms", "select * from discs order by title, artist");
    Query(db, "list all discs with tracks ms", "select * from discs join tracks on disc = id");
    Query(db, "list all tracks by track title ms",
          "select * from tracks join discs on id = disc order by tracks.title, discs.title");
    Query(db, "discs with a word ms",
          "select * from discs where title like '%winter%' or artist like '%winter%' or comment"
          " like '%winter%' or id in (select disc from tracks where title like '%winter%' or"
          " artist like '%winter%' or comment like '%winter%') order by title");
    sqlite3_close(db);
    std::printf("  %-42s %10.1f\n", "size of the file MiB",
                static_cast<double>(std::filesystem::file_size(path)) / (1 << 20));
    std::filesystem::remove(path);
}

int main() {
    for (const uint32_t count : {1000u, 10000u, 50000u})
        Measure(count);
    return 0;
}
