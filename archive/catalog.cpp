// The catalog's discs and rows. See catalog.h.
#include "archive/catalog.h"

#include "archive/catalog_parts.h"
#include "core/text.h"

#include <algorithm>
#include <array>

constexpr size_t kWasteAllowed = 1000; // texts

static const uint8_t* LowerAscii() {
    static const std::array<uint8_t, 256> lower = [] {
        std::array<uint8_t, 256> made;
        for (unsigned i = 0; i < made.size(); ++i)
            made[i] = static_cast<uint8_t>(i >= 'A' && i <= 'Z' ? i + 'a' - 'A' : i);
        return made;
    }();
    return lower.data();
}

Catalog* CreateCatalog(TextKey textKey, const uint8_t* lower) {
    auto catalog = std::make_unique<Catalog>();
    catalog->pool.textKey = textKey;
    catalog->lower = lower ? lower : LowerAscii();
    ClearTextPool(&catalog->pool);
    return catalog.release();
}

void FreeCatalog(Catalog* catalog) {
    delete catalog;
}

// ---- discs

void CatalogClear(Catalog* catalog) {
    for (CatalogPlace& place : catalog->places)
        place.disc.reset();
    catalog->byIdentity.clear();
    ClearTextPool(&catalog->pool);
    catalog->discBytes = catalog->wasted = 0;
    catalog->isChanged = 1;
}

static const Disc* DiscOf(const Catalog& catalog, uint32_t identity) {
    const auto at = catalog.byIdentity.find(identity);
    return at == catalog.byIdentity.end() ? nullptr : catalog.places[at->second].disc.get();
}

static void DropDisc(Catalog* catalog, CatalogPlace* place) {
    if (!place->disc) return;
    catalog->discBytes -= DiscBytes(*place->disc);
    catalog->wasted += TextCount(*place->disc);
    place->disc.reset();
}

void CatalogPut(Catalog* catalog, const CDInfoRecord& record) {
    DiscPointer disc = MakeDisc(record, &catalog->pool);
    if (!disc) return;
    const auto next = static_cast<uint32_t>(catalog->places.size());
    const auto [at, isNew] = catalog->byIdentity.try_emplace(record.identity, next);
    if (isNew) catalog->places.push_back({nullptr, record.identity, kNoRow});
    CatalogPlace* place = &catalog->places[at->second];
    DropDisc(catalog, place);
    catalog->discBytes += DiscBytes(*disc);
    place->disc = std::move(disc);
    catalog->isChanged = 1;
}

void CatalogRemove(Catalog* catalog, uint32_t identity) {
    const auto at = catalog->byIdentity.find(identity);
    if (at == catalog->byIdentity.end()) return;
    DropDisc(catalog, &catalog->places[at->second]);
    catalog->byIdentity.erase(at);
    catalog->isChanged = 1;
}

size_t CatalogDiscCount(const Catalog* catalog) {
    return catalog->byIdentity.size();
}

std::vector<uint32_t> CatalogDiscs(const Catalog* catalog) {
    std::vector<uint32_t> discs;
    discs.reserve(catalog->byIdentity.size());
    for (const auto& [identity, place] : catalog->byIdentity)
        discs.push_back(identity);
    return discs;
}

int CatalogRecord(const Catalog* catalog, uint32_t identity, CDInfoRecord* record) {
    const Disc* disc = DiscOf(*catalog, identity);
    if (disc) ExpandDisc(*disc, catalog->pool, record);
    return disc != nullptr;
}

size_t CatalogBytes(const Catalog* catalog) {
    // An allocation costs some 8 bytes, a node of the map some 24.
    return catalog->discBytes + TextPoolBytes(catalog->pool) +
           catalog->places.capacity() * (sizeof(CatalogPlace) + 8) +
           catalog->byIdentity.size() * 24 + catalog->base.capacity() * sizeof(CatalogBaseRow) +
           (catalog->sorted.capacity() + catalog->shown.capacity() + catalog->position.capacity()) *
               sizeof(uint32_t);
}

// ---- making the rows

// Texts that no disc has any more go when they may be more than half of all.
static void DropWaste(Catalog* catalog) {
    TextPool* pool = &catalog->pool;
    if (catalog->wasted < kWasteAllowed || catalog->wasted < pool->texts.size() / 2) return;
    TextPool kept;
    kept.textKey = pool->textKey;
    ClearTextPool(&kept);
    for (const CatalogPlace& place : catalog->places) {
        uint32_t* texts = TextsOf(*place.disc);
        for (size_t i = 0; i < TextCount(*place.disc); ++i)
            texts[i] = PoolText(&kept, pool->texts[texts[i]].text);
    }
    *pool = std::move(kept);
    catalog->wasted = 0;
}

static void CloseGaps(Catalog* catalog) {
    std::erase_if(catalog->places, [](const CatalogPlace& place) { return !place.disc; });
    for (uint32_t i = 0; i < catalog->places.size(); ++i)
        catalog->byIdentity[catalog->places[i].identity] = i;
}

static void AddArtistRows(uint32_t place, const Disc& disc, std::vector<CatalogBaseRow>* rows) {
    const size_t first = rows->size();
    for (uint8_t track = 1; track <= disc.tracks; ++track) {
        const uint32_t artist = TrackTextOf(disc, track, kTextArtist);
        const auto known =
            std::find_if(rows->begin() + static_cast<ptrdiff_t>(first), rows->end(),
                         [&](const CatalogBaseRow& row) {
                             return TrackTextOf(disc, row.artist, kTextArtist) == artist;
                         });
        if (known == rows->end()) rows->push_back({place, 0, track});
    }
    if (!disc.tracks) rows->push_back({place, 0, 0});
}

static void MakeBaseRows(Catalog* catalog) {
    auto* rows = &catalog->base;
    rows->clear();
    for (uint32_t i = 0; i < catalog->places.size(); ++i) {
        catalog->places[i].firstRow = static_cast<uint32_t>(rows->size());
        const Disc& disc = *catalog->places[i].disc;
        if (catalog->order.view == kArtistView) {
            AddArtistRows(i, disc, rows);
        } else if (catalog->order.view == kTrackView && disc.tracks) {
            for (uint8_t track = 1; track <= disc.tracks; ++track)
                rows->push_back({i, track, 0});
        } else {
            rows->push_back({i, 0, 0});
        }
    }
}

static void NotePositions(Catalog* catalog) {
    catalog->position.assign(catalog->base.size(), kNoRow);
    for (uint32_t i = 0; i < catalog->shown.size(); ++i)
        catalog->position[catalog->shown[i]] = i;
}

void CatalogArrange(Catalog* catalog, const CatalogOrder& order) {
    const CatalogOrder before = catalog->order;
    const int rowsAnew = catalog->isChanged || order.view != before.view;
    catalog->order = order;
    if (rowsAnew) {
        CloseGaps(catalog);
        DropWaste(catalog);
        MakeBaseRows(catalog);
    }
    if (rowsAnew || order.key != before.key || !order.ascending != !before.ascending)
        SortCatalog(catalog);
    NarrowCatalog(catalog);
    NotePositions(catalog);
    catalog->isChanged = 0;
}

// ---- looking at the rows

size_t CatalogRowCount(const Catalog* catalog) {
    return catalog->shown.size();
}

RowKey CatalogRow(const Catalog* catalog, size_t row) {
    if (row >= catalog->shown.size()) return {};
    const CatalogBaseRow& base = catalog->base[catalog->shown[row]];
    return {catalog->places[base.place].identity, base.track, base.artist};
}

long CatalogFind(const Catalog* catalog, RowKey key) {
    const auto known = catalog->byIdentity.find(key.identity);
    if (known == catalog->byIdentity.end()) return -1;
    const uint32_t place = known->second;
    size_t row = catalog->places[place].firstRow;
    if (row == kNoRow) return -1;
    if (key.track) row += key.track - 1u; // tracks stand one behind the other
    for (; row < catalog->base.size() && catalog->base[row].place == place; ++row) {
        const CatalogBaseRow& base = catalog->base[row];
        if (base.track == key.track && base.artist == key.artist)
            return catalog->position[row] == kNoRow ? -1
                                                    : static_cast<long>(catalog->position[row]);
        if (base.track || key.track) break;
    }
    return -1;
}

// Minutes and seconds, from one hour on with the hours.
static void FormatTime(uint32_t seconds, char (&text)[kCommentSize]) {
    const unsigned hours = seconds / 3600, minutes = seconds / 60 % 60, rest = seconds % 60;
    if (hours)
        FormatText(text, sizeof text, "%u:%02u:%02u", hours, minutes, rest);
    else
        FormatText(text, sizeof text, "%u:%02u", minutes, rest);
}

void CatalogCell(const Catalog* catalog, size_t row, CatalogColumn column,
                 char (&text)[kCommentSize]) {
    text[0] = 0;
    if (row >= catalog->shown.size()) return;
    const CatalogBaseRow& base = catalog->base[catalog->shown[row]];
    const Disc* disc = catalog->places[base.place].disc.get();
    if (!disc || std::max(base.track, base.artist) > disc->tracks) return;
    const auto copy = [&](uint32_t number) { CopyText(text, catalog->pool.texts[number].text); };
    switch (column) {
    case kTitleColumn: copy(TextsOf(*disc)[kDiscTitle]); break;
    case kArtistColumn: copy(RowArtist(*catalog, base, *disc)); break;
    case kTimeColumn: FormatTime(RowSeconds(*catalog, base, *disc), text); break;
    case kCommentColumn: copy(RowComment(base, *disc)); break;
    case kTrackTitleColumn: copy(RowTrackTitle(base, *disc)); break;
    case kTrackNumberColumn:
        if (base.track)
            FormatText(text, sizeof text, "%d", base.track);
        else
            CopyText(text, "CD");
        break;
    }
}
