// The manager's memory: what each view lists, in which order, and what a search leaves of it.
#include "archive/catalog.h"

#include "core/text.h"
#include "tests/support/big_archive.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <random>

// A comparison in which some distinct texts are equal, as the platform's has them, too: hyphens
// don't count.
static void PlainKey(const char* text, std::string* key) {
    *key = text;
    std::erase(*key, '-');
}

static int Compare(const char* a, const char* b) {
    std::string keyA, keyB;
    PlainKey(a, &keyA);
    PlainKey(b, &keyB);
    return keyA.compare(keyB);
}

// Small letters as in Western code pages.
static const std::vector<uint8_t> kLower = [] {
    std::vector<uint8_t> lower(256);
    for (int i = 0; i < 256; ++i)
        lower[i] =
            static_cast<uint8_t>((i >= 'A' && i <= 'Z') || (i >= 0xC0 && i < 0xDF) ? i + 32 : i);
    return lower;
}();

struct CatalogTest : testing::Test {
    Catalog* catalog = CreateCatalog(PlainKey, kLower.data());
    ~CatalogTest() override { FreeCatalog(catalog); }

    std::vector<RowKey> Rows() const {
        std::vector<RowKey> rows;
        for (size_t i = 0; i < CatalogRowCount(catalog); ++i) {
            rows.push_back(CatalogRow(catalog, i));
            EXPECT_EQ(CatalogFind(catalog, rows.back()), static_cast<long>(i));
        }
        return rows;
    }
    std::string Cell(size_t row, int column) const {
        char text[kCommentSize];
        CatalogCell(catalog, row, static_cast<CatalogColumn>(column), text);
        return text;
    }
    std::string Line(size_t row) const {
        std::string line;
        for (int column = 0; column < kTrackViewColumns; ++column)
            line += (column ? "|" : "") + Cell(row, column);
        return line;
    }
    std::vector<std::string> Lines(const CatalogOrder& order) {
        CatalogArrange(catalog, order);
        std::vector<std::string> lines;
        for (size_t i = 0; i < CatalogRowCount(catalog); ++i)
            lines.push_back(Line(i));
        return lines;
    }
};

struct TestTrack {
    std::string artist, title, comment;
    uint16_t seconds;
};

static CDInfoRecord MakeRecord(uint32_t identity, const std::string& title,
                               const std::string& comment, const std::vector<TestTrack>& tracks) {
    CDInfoRecord record;
    SetIdentity(&record, identity);
    record.trackCount = static_cast<uint16_t>(tracks.size());
    CopyText(record.title, title.c_str());
    CopyText(record.comment, comment.c_str());
    record.trackStarts[0] = 150;
    for (size_t i = 0; i < tracks.size(); ++i) {
        CopyText(record.trackArtists[i], tracks[i].artist.c_str());
        CopyText(record.trackTitles[i], tracks[i].title.c_str());
        CopyText(record.trackComments[i], tracks[i].comment.c_str());
        record.trackStarts[i + 1] = record.trackStarts[i] + 75u * tracks[i].seconds;
    }
    DeriveTrackSeconds(&record);
    DeriveTotalTime(&record);
    DeriveDiscArtist(&record);
    return record;
}

static const CDInfoRecord kSolo =
    MakeRecord(1, "Beta", "live", {{"Ann", "One", "", 59}, {"Ann", "Two", "loud", 61}});
static const CDInfoRecord kSampler = MakeRecord(
    2, "Alpha", "",
    {{"Ann", "Sun", "", 3000}, {"Bob", "\"MOON\" \xD6", "", 700}, {"Ann", "Sea", "", 1}});
static const CDInfoRecord kEmpty = MakeRecord(3, "Nothing", "no tracks", {});

TEST_F(CatalogTest, EachViewHasItsRowsAndTexts) {
    for (const CDInfoRecord* record : {&kSolo, &kSampler, &kEmpty})
        CatalogPut(catalog, *record);
    using Texts = std::vector<std::string>;
    EXPECT_EQ(Lines({kCdView, kByCd, 1, ""}),
              (Texts{"Alpha|Various|1:01:41|||CD", "Beta|Ann|2:00|live||CD",
                     "Nothing||0:00|no tracks||CD"}));
    EXPECT_EQ(Lines({kTrackView, kByTrackNumber, 1, ""}),
              (Texts{"Nothing||0:00|no tracks||CD", "Alpha|Ann|50:00||Sun|1",
                     "Beta|Ann|0:59||One|1", "Beta|Ann|1:01|loud|Two|2",
                     "Alpha|Bob|11:40||\"MOON\" \xD6|2", "Alpha|Ann|0:01||Sea|3"}));
    EXPECT_EQ(Lines({kArtistView, kByArtist, 0, ""}),
              (Texts{"Alpha|Bob|1:01:41|||CD", "Beta|Ann|2:00|live||CD", "Alpha|Ann|1:01:41|||CD",
                     "Nothing||0:00|no tracks||CD"}));
    const RowKey bob = {2, 0, 2};
    EXPECT_EQ(Rows()[0], bob);
    EXPECT_EQ(CatalogFind(catalog, {2, 0, 3}), -1) << "Ann's row is that of track 1";
    EXPECT_EQ(CatalogFind(catalog, {2, 1, 0}), -1) << "a row of another view";
    EXPECT_EQ(Line(99), "|||||");
    EXPECT_EQ(CatalogRow(catalog, 99), RowKey());
}

TEST_F(CatalogTest, ASearchLeavesTheRowsThatHaveAllWords) {
    for (const CDInfoRecord* record : {&kSolo, &kSampler, &kEmpty})
        CatalogPut(catalog, *record);
    struct {
        CatalogView view;
        const char* words;
        std::vector<RowKey> rows;
    } cases[] = {
        {kCdView, "moon", {{2, 0, 0}}},                    // a track's title finds the disc
        {kCdView, "  ann\tTWO ", {{1, 0, 0}}},             // words of different texts, in any case
        {kCdView, "ann", {{2, 0, 0}, {1, 0, 0}}},          // still sorted
        {kCdView, "various", {{2, 0, 0}}},                 // as the cell says
        {kCdView, "\xF6 N\"", {{2, 0, 0}}},                // a quote is a letter like others
        {kCdView, "annone", {}},                           // texts don't run together
        {kCdView, "no", {{3, 0, 0}}},                      //
        {kTrackView, "sun", {{2, 1, 0}}},                  //
        {kTrackView, "alpha ann", {{2, 1, 0}, {2, 3, 0}}}, // the disc's words and the track's
        {kTrackView, "tracks", {{3, 0, 0}}},               //
        {kArtistView, "sea", {{2, 0, 1}}},                 // Ann's track, not Bob's
        {kArtistView, "alpha", {{2, 0, 1}, {2, 0, 2}}},
        {kArtistView, "loud live", {{1, 0, 1}}},
    };
    for (const auto& c : cases) {
        CatalogArrange(catalog, {c.view, kByCd, 1, c.words});
        EXPECT_EQ(Rows(), c.rows) << c.view << " " << c.words;
    }
    CatalogArrange(catalog, {kCdView, kByCd, 1, "moon"});
    EXPECT_EQ(CatalogFind(catalog, {1, 0, 0}), -1) << "a row that is not shown";
}

// ---- order: against a comparison of records, written down plainly

struct Model {
    std::map<uint32_t, CDInfoRecord> records;
    std::vector<uint32_t> places; // identities in the order in which they came

    void Put(const CDInfoRecord& record) {
        if (!records.count(record.identity)) places.push_back(record.identity);
        records[record.identity] = record;
    }
    void Remove(uint32_t identity) {
        records.erase(identity);
        std::erase(places, identity);
    }
    const char* Artist(CatalogView view, const RowKey& row) const {
        const CDInfoRecord& r = records.at(row.identity);
        if (view == kTrackView && row.track) return r.trackArtists[row.track - 1];
        if (view == kArtistView && row.artist) return r.trackArtists[row.artist - 1];
        return r.discArtist;
    }
    std::vector<int> Parts(const CatalogOrder& order, const RowKey& a, const RowKey& b) const {
        const CDInfoRecord &ra = records.at(a.identity), &rb = records.at(b.identity);
        const int tracks = order.view == kTrackView;
        const auto time = [&](const RowKey& row, const CDInfoRecord& r) {
            return tracks && row.track ? r.trackSeconds[row.track - 1]
                                       : r.totalMinutes * 60 + r.totalSeconds;
        };
        const int title = Compare(ra.title, rb.title);
        const int artist = Compare(Artist(order.view, a), Artist(order.view, b));
        const int comment = Compare(a.track ? ra.trackComments[a.track - 1] : ra.comment,
                                    b.track ? rb.trackComments[b.track - 1] : rb.comment);
        const int track = Compare(a.track ? ra.trackTitles[a.track - 1] : "",
                                  b.track ? rb.trackTitles[b.track - 1] : "");
        const int number = a.track - b.track;
        switch (order.key) {
        case kByCd: return {title, artist, tracks ? number : 0};
        case kByArtist: return {artist, tracks ? track : title};
        case kByTime: return {time(a, ra) - time(b, rb), tracks ? track : title};
        case kByComment: return {comment};
        case kByTrack: return {track, title};
        case kByTrackNumber: return {number, artist, title};
        }
        return {};
    }
    std::vector<RowKey> Rows(const CatalogOrder& order) const {
        std::vector<RowKey> rows;
        for (const uint32_t identity : places) {
            const CDInfoRecord& r = records.at(identity);
            std::vector<std::string> artists;
            for (uint8_t k = 1; k <= r.trackCount; ++k) {
                const char* artist = r.trackArtists[k - 1];
                const int isNew =
                    std::find(artists.begin(), artists.end(), artist) == artists.end();
                artists.push_back(artist);
                if (order.view == kTrackView) rows.push_back({identity, k, 0});
                if (order.view == kArtistView && isNew) rows.push_back({identity, 0, k});
            }
            if (order.view == kCdView || !r.trackCount) rows.push_back({identity, 0, 0});
        }
        std::stable_sort(rows.begin(), rows.end(), [&](const RowKey& a, const RowKey& b) {
            for (const int part : Parts(order, a, b)) {
                if (part) return order.ascending ? part < 0 : part > 0;
            }
            return false;
        });
        return rows;
    }
};

static CDInfoRecord RandomRecord(std::mt19937* random, uint32_t identity, uint32_t spread) {
    const auto text = [&](uint32_t range) {
        std::string made = (*random)() % 2 ? "" : "a beginning of many ";
        for (uint32_t n = (*random)() % range; n; n /= 3)
            made += "a-B"[n % 3];
        return made;
    };
    std::vector<TestTrack> tracks((*random)() % 5);
    for (TestTrack& track : tracks)
        track = {text(9), text(spread), text(9), static_cast<uint16_t>((*random)() % 4)};
    return MakeRecord(identity, text(spread), text(9), tracks);
}

// Changes of a few and of many discs, so that ranks are made anew as well as put in between.
TEST_F(CatalogTest, OrderIsThatOfAPlainComparison) {
    std::mt19937 random(7);
    Model model;
    for (int round = 0; round < 240; ++round) {
        const uint32_t changes = round % 8 ? random() % 3 : 150;
        for (uint32_t i = 0; i < changes; ++i) {
            const uint32_t identity = 1 + random() % 400;
            if (random() % 4) {
                const CDInfoRecord record = RandomRecord(&random, identity, 2000);
                model.Put(record);
                CatalogPut(catalog, record);
            } else {
                model.Remove(identity);
                CatalogRemove(catalog, identity);
            }
        }
        const CatalogOrder order = {static_cast<CatalogView>(random() % 3),
                                    static_cast<SortKey>(random() % 6),
                                    static_cast<int>(random() % 2), ""};
        CatalogArrange(catalog, order);
        ASSERT_EQ(Rows(), model.Rows(order))
            << round << ": view " << order.view << " key " << order.key << " " << order.ascending;
        ASSERT_EQ(CatalogDiscCount(catalog), model.records.size());
    }
}

TEST_F(CatalogTest, RowsStayUntilTheyAreArrangedAgain) {
    CatalogPut(catalog, kSolo);
    CatalogPut(catalog, kSampler);
    CatalogArrange(catalog, {kTrackView, kByCd, 1, ""});
    ASSERT_EQ(CatalogRowCount(catalog), 5u);
    CatalogRemove(catalog, 2);
    CatalogPut(catalog, MakeRecord(1, "Beta", "", {{"Ann", "Only", "", 5}}));
    CatalogPut(catalog, kEmpty);
    EXPECT_EQ(CatalogRowCount(catalog), 5u);
    EXPECT_EQ(CatalogRow(catalog, 0).identity, 2u);
    EXPECT_EQ(Line(0), "|||||");
    EXPECT_EQ(Line(3), "Beta|Ann|0:05||Only|1");
    EXPECT_EQ(Line(4), "|||||") << "a track that the disc has no more";
    EXPECT_EQ(CatalogFind(catalog, {3, 0, 0}), -1);
    CatalogClear(catalog);
    CatalogPut(catalog, kSolo);
    EXPECT_EQ(Line(3), "|||||");
    CatalogArrange(catalog, {kTrackView, kByCd, 1, ""});
    EXPECT_EQ(CatalogRowCount(catalog), 2u);
}

TEST_F(CatalogTest, ARecordComesBackWhole) {
    auto record = BigRecord(9, 99);
    DefaultProgram(record.get());
    record->revision = 70;
    CatalogPut(catalog, *record);
    auto back = std::make_unique<CDInfoRecord>();
    ASSERT_TRUE(CatalogRecord(catalog, record->identity, back.get()));
    EXPECT_EQ(0, std::memcmp(record.get(), back.get(), sizeof *back));
    EXPECT_FALSE(CatalogRecord(catalog, 1, back.get()));
}

// Editing for years, or taking in database after database, must not fill the memory.
TEST_F(CatalogTest, MemoryOfReplacedDiscsComesBack) {
    const auto fill = [&](uint32_t from) {
        for (uint32_t n = 1; n <= 300; ++n) {
            auto record = BigRecord(from + n);
            SetIdentity(record.get(), n);
            CatalogPut(catalog, *record);
        }
        CatalogArrange(catalog, {kTrackView, kByTrack, 1, ""});
    };
    fill(0);
    const size_t once = CatalogBytes(catalog);
    EXPECT_LT(once, 300u * 2000u);
    for (uint32_t round = 1; round < 20; ++round)
        fill(round * 300);
    EXPECT_LT(CatalogBytes(catalog), 3 * once);
}

TEST(DiscSummary, SaysAllOfADisc) {
    EXPECT_EQ(DiscSummary(kSampler),
              "CD Info Revision: 0\r\nCD Title: [Alpha]\r\n"
              "Track 001 - [Ann] [Sun]\r\nTrack 002 - [Bob] [\"MOON\" \xD6]\r\n"
              "Track 003 - [Ann] [Sea]\r\n"
              "150 225150 277650 277725 277725 ");
    CDInfoRecord solo = kSolo;
    solo.revision = 12;
    solo.program[0] = WholeTrackSegment(solo, 2);
    solo.program[1] = {MakeTmsf(1, 0, 5, 0), MakeTmsf(1, 0, 15, 0)};
    solo.programCount = 2;
    EXPECT_EQ(DiscSummary(solo), "CD Info Revision: 12\r\nCD Title: [Beta] by [Ann]\r\n"
                                 "Track 001 - [One]\r\nTrack 002 - [Two]\r\nProgram:\r\n"
                                 "001: Two (01:01)\r\n"
                                 "002: T001:M000:S005 - T001:M000:S015   (00:10)\r\n"
                                 "150 4575 9150 9150 ");
    EXPECT_EQ(DiscSummary(kEmpty), "CD Info Revision: 0\r\nCD Title: [Nothing] by []\r\n150 150 ");
}
