// The manager's memory: every disc of the database in a compact copy, and the rows that a list
// shows of them, in one of three views, sorted, and narrowed to those that contain what was typed
// into the search field. No window and no file; made for tens of thousands of discs.
//
// A row is named by its key, which stands through sorting, searching and refreshing: that is how a
// list keeps selection and focus with their rows.
#pragma once
#include "cdinfo/record.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

enum CatalogView { kCdView, kTrackView, kArtistView };
enum SortKey { kByCd, kByArtist, kByTime, kByComment, kByTrack, kByTrackNumber };
enum CatalogColumn {
    kTitleColumn,
    kArtistColumn,
    kTimeColumn,
    kCommentColumn,
    kTrackTitleColumn, // track view alone
    kTrackNumberColumn // track view alone
};
constexpr int kCatalogColumns = 4;
constexpr int kTrackViewColumns = 6;

// A row: track 0 stands for the whole disc, 1..N for that track. In the artist view there is one
// row for each distinct artist of a disc; `artist` is the first track that has it.
struct RowKey {
    uint32_t identity = 0;
    uint8_t track = 0;
    uint8_t artist = 0;
};

// The platform's way to compare texts, locale-aware and case-sensitive: bytes whose order by memcmp
// is the order of the texts.
using TextKey = void (*)(const char* text, std::string* key);

struct Catalog;
Catalog* CreateCatalog(TextKey textKey);
void FreeCatalog(Catalog* catalog);

// ---- discs. Each of them leaves the rows as they are until CatalogArrange.
void CatalogClear(Catalog* catalog);
void CatalogPut(Catalog* catalog, const CDInfoRecord& record); // adds or replaces
void CatalogRemove(Catalog* catalog, uint32_t identity);
size_t CatalogDiscCount(const Catalog* catalog);
// The whole record again (device data excepted); 0 when there is no such disc.
int CatalogRecord(const Catalog* catalog, uint32_t identity, CDInfoRecord* record);

// ---- rows
struct CatalogOrder {
    CatalogView view = kCdView;
    SortKey key = kByCd;
    int ascending = 1;
    std::string words; // narrows to rows whose texts contain all of them, in any case; empty: all
};
void CatalogArrange(Catalog* catalog, const CatalogOrder& order);
size_t CatalogRowCount(const Catalog* catalog);
RowKey CatalogRow(const Catalog* catalog, size_t row); // zeros past the end
// Row of a key as arranged now; -1 when it is not shown.
long CatalogFind(const Catalog* catalog, RowKey key);
// A cell's text; the buffer has room for every text, comments included.
void CatalogCell(const Catalog* catalog, size_t row, CatalogColumn column,
                 char (&text)[kCommentSize]);

// The summary pane's text of one disc, lines ended by "\r\n".
std::string DiscSummary(const CDInfoRecord& record);
