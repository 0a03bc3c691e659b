// See manager_settings.h.
#include "archive/manager_settings.h"

#include <algorithm>

static constexpr int kWidest = 4000;     // pixels of a column
static constexpr int kHighest = 0x10000; // pixels of a pane
static constexpr int kViews = 3;
// The key of each column.
static constexpr SortKey kColumnKeys[kTrackViewColumns] = {kByCd,      kByArtist, kByTime,
                                                           kByComment, kByTrack,  kByTrackNumber};

int ViewColumns(CatalogView view) {
    return view == kTrackView ? kTrackViewColumns : kCatalogColumns;
}

int ViewKeys(CatalogView view) {
    return ViewColumns(view); // one a column, in their order
}

void SetManagerView(ManagerSettings* settings, CatalogView view) {
    settings->view = view;
    if (settings->key >= ViewKeys(view)) settings->key = kByCd;
}

CatalogView NextView(CatalogView view) {
    return static_cast<CatalogView>((view + 1) % kViews);
}

int ColumnOfKey(SortKey key) {
    return static_cast<int>(std::find(kColumnKeys, kColumnKeys + kTrackViewColumns, key) -
                            kColumnKeys);
}

void SortByColumn(ManagerSettings* settings, int column) {
    if (column < 0 || column >= ViewColumns(settings->view)) return;
    settings->ascending = settings->key == kColumnKeys[column] ? !settings->ascending : 1;
    settings->key = kColumnKeys[column];
}

static int IsOrder(const int* order, int count) {
    unsigned seen = 0;
    for (int i = 0; i < count; ++i)
        if (order[i] >= 0 && order[i] < count) seen |= 1u << order[i];
    return seen == (1u << count) - 1;
}

void ShownOrder(const ManagerSettings& settings, int count, int* shown) {
    for (const int column : settings.order)
        if (column < count) *shown++ = column;
}

void KeepShownOrder(ManagerSettings* settings, int count, const int* shown) {
    if (count > kTrackViewColumns || !IsOrder(shown, count)) return;
    for (int& column : settings->order)
        if (column < count) column = *shown++;
}

ManagerSettings CheckedManagerSettings(const StoredManagerSettings& stored) {
    ManagerSettings settings = {};
    const uint32_t columns = kTrackViewColumns;
    for (int i = 0; i < kTrackViewColumns; ++i) {
        settings.order[i] = static_cast<int>(std::min(stored.order[i], columns));
        settings.widths[i] = stored.widths[i] > 0 && stored.widths[i] <= kWidest
                                 ? static_cast<int>(stored.widths[i])
                                 : 0;
    }
    if (!IsOrder(settings.order, kTrackViewColumns))
        for (int i = 0; i < kTrackViewColumns; ++i)
            settings.order[i] = i;
    if (stored.sortOrder < columns) settings.key = static_cast<SortKey>(stored.sortOrder);
    const auto view =
        stored.viewType < kViews ? static_cast<CatalogView>(stored.viewType) : kCdView;
    SetManagerView(&settings, view);
    settings.ascending = stored.sortDirection != 0;
    if (stored.listHeight <= kHighest) settings.listHeight = static_cast<int>(stored.listHeight);
    return settings;
}

StoredManagerSettings StoredFormOf(const ManagerSettings& settings) {
    StoredManagerSettings stored;
    std::copy_n(settings.order, kTrackViewColumns, stored.order);
    std::copy_n(settings.widths, kTrackViewColumns, stored.widths);
    stored.sortOrder = settings.key;
    stored.sortDirection = static_cast<uint32_t>(settings.ascending);
    stored.viewType = settings.view;
    stored.listHeight = static_cast<uint32_t>(std::max(settings.listHeight, 0));
    return stored;
}
