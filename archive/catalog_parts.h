// What the files of the catalog share among themselves.
#pragma once
#include "archive/catalog.h"
#include "archive/catalog_disc.h"
#include "archive/text_pool.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

constexpr uint32_t kNoRow = 0xFFFFFFFFu;

struct CatalogPlace {
    DiscPointer disc; // null: removed, until the rows are made anew
    uint32_t identity;
    uint32_t firstRow; // among the base rows; kNoRow when it came after them
};

// Base rows stand in the order of the discs and their tracks.
struct CatalogBaseRow {
    uint32_t place;
    uint8_t track, artist;
};

struct Catalog {
    TextPool pool;
    const uint8_t* lower = nullptr;
    std::vector<CatalogPlace> places;
    std::unordered_map<uint32_t, uint32_t> byIdentity;
    size_t discBytes = 0;
    size_t wasted = 0; // texts of discs that went, at most

    CatalogOrder order; // as arranged
    int isChanged = 1;  // discs are not as arranged
    std::vector<CatalogBaseRow> base;
    std::vector<uint32_t> sorted;   // all base rows
    std::vector<uint32_t> shown;    // those that contain the words
    std::vector<uint32_t> position; // of each base row among the shown ones, or kNoRow
};

// The texts and numbers of a row, as views show, compare and search them.
uint32_t RowArtist(const Catalog& catalog, const CatalogBaseRow& row, const Disc& disc);
uint32_t RowSeconds(const Catalog& catalog, const CatalogBaseRow& row, const Disc& disc);
uint32_t RowComment(const CatalogBaseRow& row, const Disc& disc);
uint32_t RowTrackTitle(const CatalogBaseRow& row, const Disc& disc);

// Orders all base rows; their discs are all there.
void SortCatalog(Catalog* catalog);
// Takes those of the sorted rows that contain the words.
void NarrowCatalog(Catalog* catalog);
