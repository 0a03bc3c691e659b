// Sorting and narrowing of the catalog's rows.
//
// Every row becomes three numbers, of which the first decides and the others break ties: ranks of
// texts, seconds, track numbers. So no text is compared during the sort itself, and rows that are
// equal in all three stay in the order of the discs.
#include "archive/catalog_parts.h"

#include <algorithm>
#include <tuple>

uint32_t RowArtist(const Catalog& catalog, const CatalogBaseRow& row, const Disc& disc) {
    const uint8_t track = catalog.order.view == kTrackView ? row.track : row.artist;
    return track ? TrackTextOf(disc, track, kTextArtist) : TextsOf(disc)[kDiscArtist];
}

uint32_t RowSeconds(const Catalog& catalog, const CatalogBaseRow& row, const Disc& disc) {
    return catalog.order.view == kTrackView && row.track ? SecondsOf(disc, row.track)
                                                         : TotalSecondsOf(disc);
}

uint32_t RowComment(const CatalogBaseRow& row, const Disc& disc) {
    return row.track ? TrackTextOf(disc, row.track, kTextComment) : TextsOf(disc)[kDiscComment];
}

uint32_t RowTrackTitle(const CatalogBaseRow& row, const Disc& disc) {
    return row.track ? TrackTextOf(disc, row.track, kTextTitle) : 0;
}

// ---- sorting

namespace {
enum Part { kNoPart, kPartTitle, kPartArtist, kPartTime, kPartComment, kPartTrack, kPartNumber };

constexpr int kParts = 3;
struct Keys {
    Part part[kParts];
};

struct SortItem {
    uint32_t key[kParts];
    uint32_t row;
};
} // namespace

static Keys KeysOf(SortKey key, CatalogView view) {
    const int tracks = view == kTrackView;
    switch (key) {
    case kByCd: return {{kPartTitle, kPartArtist, tracks ? kPartNumber : kNoPart}};
    case kByArtist: return {{kPartArtist, tracks ? kPartTrack : kPartTitle, kNoPart}};
    case kByTime: return {{kPartTime, tracks ? kPartTrack : kPartTitle, kNoPart}};
    case kByComment: return {{kPartComment, kNoPart, kNoPart}};
    case kByTrack: return {{kPartTrack, kPartTitle, kNoPart}};
    case kByTrackNumber: return {{kPartNumber, kPartArtist, kPartTitle}};
    }
    return {};
}

static int IsText(Part part) {
    return part == kPartTitle || part == kPartArtist || part == kPartComment || part == kPartTrack;
}

// A text's number, or the number itself.
static uint32_t ValueOf(const Catalog& catalog, const CatalogBaseRow& row, Part part) {
    const Disc& disc = *catalog.places[row.place].disc;
    switch (part) {
    case kPartTitle: return TextsOf(disc)[kDiscTitle];
    case kPartArtist: return RowArtist(catalog, row, disc);
    case kPartTime: return RowSeconds(catalog, row, disc);
    case kPartComment: return RowComment(row, disc);
    case kPartTrack: return RowTrackTitle(row, disc);
    case kPartNumber: return row.track;
    case kNoPart: break;
    }
    return 0;
}

// Ranks for those of the texts that have none yet, each asked for once.
static void RankValues(TextPool* pool, const std::vector<SortItem>& items, const Keys& keys) {
    constexpr uint32_t kAskedFor = 0xFFFFFFFFu;
    std::vector<uint32_t> wanted;
    for (int i = 0; i < kParts; ++i) {
        if (!IsText(keys.part[i])) continue;
        for (const SortItem& item : items) {
            uint32_t& rank = pool->texts[item.key[i]].rank;
            if (rank != kNoRank) continue;
            rank = kAskedFor;
            wanted.push_back(item.key[i]);
        }
    }
    RankTexts(pool, std::move(wanted));
}

void SortCatalog(Catalog* catalog) {
    const Keys keys = KeysOf(catalog->order.key, catalog->order.view);
    std::vector<SortItem> items(catalog->base.size());
    for (uint32_t i = 0; i < items.size(); ++i) {
        items[i].row = i;
        for (int k = 0; k < kParts; ++k)
            items[i].key[k] = ValueOf(*catalog, catalog->base[i], keys.part[k]);
    }
    RankValues(&catalog->pool, items, keys);
    const uint32_t turned = catalog->order.ascending ? 0 : 0xFFFFFFFFu;
    for (SortItem& item : items) {
        for (int k = 0; k < kParts; ++k) {
            if (IsText(keys.part[k])) item.key[k] = catalog->pool.texts[item.key[k]].rank;
            item.key[k] ^= turned;
        }
    }
    std::sort(items.begin(), items.end(), [](const SortItem& a, const SortItem& b) {
        return std::tie(a.key[0], a.key[1], a.key[2], a.row) <
               std::tie(b.key[0], b.key[1], b.key[2], b.row);
    });
    catalog->sorted.resize(items.size());
    std::transform(items.begin(), items.end(), catalog->sorted.begin(),
                   [](const SortItem& item) { return item.row; });
}

// ---- narrowing

static std::vector<std::string> WordsOf(const std::string& typed, const uint8_t* lower) {
    std::vector<std::string> words(1);
    for (const char c : typed) {
        const auto small = static_cast<char>(lower[static_cast<uint8_t>(c)]);
        if (c && c != ' ' && c != '\t')
            words.back() += small;
        else if (!words.back().empty())
            words.emplace_back();
    }
    if (words.back().empty()) words.pop_back();
    return words;
}

// Calls `visit` with the number of each text that belongs to the row until it gives 1.
template <class Visit>
static int AnyTextOf(const Catalog& catalog, const CatalogBaseRow& row, Visit visit) {
    const Disc& disc = *catalog.places[row.place].disc;
    const uint32_t* texts = TextsOf(disc);
    const uint32_t* end = texts + TextCount(disc);
    if (visit(texts[kDiscTitle]) || visit(texts[kDiscComment])) return 1;
    if (catalog.order.view == kCdView) return std::any_of(texts + kDiscArtist, end, visit);
    if (visit(RowArtist(catalog, row, disc))) return 1;
    const uint32_t* first = texts + kDiscTexts;
    if (catalog.order.view == kTrackView) {
        if (visit(texts[kDiscArtist])) return 1;
        if (!row.track) return 0;
        first += kTrackTexts * (row.track - 1);
        return std::any_of(first, first + kTrackTexts, visit);
    }
    const uint32_t artist = RowArtist(catalog, row, disc);
    for (; first != end; first += kTrackTexts) {
        if (first[kTextArtist] == artist &&
            (visit(first[kTextTitle]) || visit(first[kTextComment])))
            return 1;
    }
    return 0;
}

void NarrowCatalog(Catalog* catalog) {
    catalog->shown = catalog->sorted;
    const auto& texts = catalog->pool.texts;
    std::vector<uint8_t> found(texts.size());
    for (const std::string& word : WordsOf(catalog->order.words, catalog->lower)) {
        std::transform(texts.begin(), texts.end(), found.begin(), [&](const PooledText& text) {
            return static_cast<uint8_t>(ContainsWord(text.text, word, catalog->lower));
        });
        std::erase_if(catalog->shown, [&](uint32_t row) {
            return !AnyTextOf(*catalog, catalog->base[row],
                              [&](uint32_t number) { return found[number]; });
        });
    }
}
