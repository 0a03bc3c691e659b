// What the database manager remembers of its list, checked: stored values may be anything. Also the
// rules that tie view, order and columns together.
#pragma once
#include "archive/catalog.h"

#include <cstdint>

// As stored, each a value of its own; what is missing stays as it is here.
struct StoredManagerSettings {
    uint32_t order[kTrackViewColumns] = {0, 1, 2, 3, 4, 5}; // column at each place
    int32_t widths[kTrackViewColumns] = {};                 // pixels; 0 or less: the default
    uint32_t sortOrder = kByCd;
    uint32_t sortDirection = 1;
    uint32_t viewType = kCdView;
    uint32_t listHeight = 0; // 0: by rule
};

struct ManagerSettings {
    int order[kTrackViewColumns];  // a permutation
    int widths[kTrackViewColumns]; // 0: the default
    CatalogView view;
    SortKey key; // one of the view's
    int ascending;
    int listHeight; // 0: by rule
};
ManagerSettings CheckedManagerSettings(const StoredManagerSettings& stored);
StoredManagerSettings StoredFormOf(const ManagerSettings& settings);

// Columns of a view, and the keys that it can be sorted by.
int ViewColumns(CatalogView view);
int ViewKeys(CatalogView view);
// Changes the view; keys that only the track view has fall back to the first.
void SetManagerView(ManagerSettings* settings, CatalogView view);
CatalogView NextView(CatalogView view);
// A click on a column's head: by that column, or the other way round if it is so already.
void SortByColumn(ManagerSettings* settings, int column);
int ColumnOfKey(SortKey key);

// The order of the columns below `count`, as the list shows them; and taking over how the user has
// changed it, the others keeping their places. What is no order of these columns changes nothing.
void ShownOrder(const ManagerSettings& settings, int count, int* shown);
void KeepShownOrder(ManagerSettings* settings, int count, const int* shown);
