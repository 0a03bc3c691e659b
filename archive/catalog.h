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

// A row: track 0 stands for the whole disc, 1..N for that track; a disc without tracks has a row of
// track 0 in the track view, too. In the artist view there is one row for each distinct artist of a
// disc; `artist` is the first track (1..N) that has it, 0 for a disc without tracks. In the other
// views `artist` is 0.
struct RowKey {
    uint32_t identity = 0;
    uint8_t track = 0;
    uint8_t artist = 0;
    bool operator==(const RowKey&) const = default;
};

// The platform's way to compare texts, locale-aware and case-sensitive: bytes whose order by memcmp
// is the order of the texts (text_key_win.h).
using TextKey = void (*)(const char* text, std::string* key);

struct Catalog;
// lower: the small letter of each of the 256 characters, for searching; null: A to Z alone. It must
// outlive the catalog.
Catalog* CreateCatalog(TextKey textKey, const uint8_t* lower = nullptr);
void FreeCatalog(Catalog* catalog);

// ---- discs. Each of them leaves the rows as they are until CatalogArrange; a row whose disc or
// track has gone meanwhile has empty cells.
void CatalogClear(Catalog* catalog);
// Adds at the end, or replaces in place. Rows that compare equal stand in this order.
void CatalogPut(Catalog* catalog, const CDInfoRecord& record);
void CatalogRemove(Catalog* catalog, uint32_t identity);
size_t CatalogDiscCount(const Catalog* catalog);
std::vector<uint32_t> CatalogDiscs(const Catalog* catalog); // identities, in no order
// The whole record again (device data excepted); 0 when there is no such disc.
int CatalogRecord(const Catalog* catalog, uint32_t identity, CDInfoRecord* record);
// Memory that it holds just now, roughly.
size_t CatalogBytes(const Catalog* catalog);

// ---- rows
struct CatalogOrder {
    CatalogView view = kCdView;
    SortKey key = kByCd;
    int ascending = 1;
    // Narrows to rows whose texts contain all of these words (parted by blanks), in any case and
    // any order; empty: all rows. What belongs to a row: in the CD view every text of the disc; in
    // the track view the track's texts and the disc's own; in the artist view the artist, the
    // disc's own texts and those of the tracks that this artist plays.
    std::string words;
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
