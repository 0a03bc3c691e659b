// The database manager's geometry and what it remembers of its list.
#include "archive/manager_layout.h"
#include "archive/manager_settings.h"
#include "tests/support/boxes.h"

#include <gtest/gtest.h>

#include <iterator>
#include <string>

static Box BoxOf(const ManagerLayout& layout, int id) {
    return layout.boxes[ManagerControlIndex(id)];
}

TEST(ManagerLayout, IsTidyAtEverySizeAndAlwaysHasItsList) {
    for (const int large : {0, 1})
        for (int width = 0; width <= 1300; width += 13)
            for (int height = 0; height <= 700; height += 11)
                for (const int wish : {0, 1, 70, 5000}) {
                    const ManagerLayout layout = LayOutManager(width, height, {large, wish});
                    const Box list = BoxOf(layout, kManagerList);
                    ASSERT_TRUE(Tidy({std::begin(layout.boxes), std::end(layout.boxes)},
                                     {0, 0, width, height}, 0))
                        << width << "x" << height;
                    ASSERT_TRUE(width <= 20 || height <= 20 || (list.width && list.height))
                        << width << "x" << height;
                }
}

TEST(ManagerLayout, HasEverythingAtItsFirstSizeAndFollowsTheDivider) {
    for (const int larger : {0, 1}) { // of a window of 500 by 200
        const ManagerLayout first = LayOutManager(490, 190, {larger, 0});
        for (const int id : kManagerControlIds)
            EXPECT_TRUE(BoxOf(first, id).width > 0 && BoxOf(first, id).height > 0) << id;
    }
    const ManagerLayout large = LayOutManager(890, 630, {0, 200});
    EXPECT_EQ(200, BoxOf(large, kManagerList).height);
    EXPECT_EQ(BoxOf(large, kManagerDivider).top,
              BoxOf(large, kManagerList).top + BoxOf(large, kManagerList).height);
    // One that was dragged beyond the ends leaves both panes something.
    for (const int wish : {1, 5000}) {
        const ManagerLayout layout = LayOutManager(890, 630, {0, wish});
        EXPECT_GE(BoxOf(layout, kManagerList).height, 40) << wish;
        EXPECT_GE(BoxOf(layout, kManagerSummary).height, 20) << wish;
    }
}

static std::string OrderText(const int* order, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += std::to_string(order[i]);
    return text;
}

TEST(ManagerSettings, NonsenseGivesTheDefaultAndSoundValuesComeBack) {
    static const struct {
        uint32_t order[6];
        const char* taken;
    } kOrders[] = {{{5, 4, 3, 2, 1, 0}, "543210"},
                   {{0, 1, 2, 3, 4, 4}, "012345"},
                   {{1, 0, 2, 3, 4, 6}, "012345"},
                   {{0x80000000u, 1, 2, 3, 4, 5}, "012345"}};
    for (const auto& row : kOrders) {
        StoredManagerSettings stored;
        std::copy(std::begin(row.order), std::end(row.order), stored.order);
        EXPECT_EQ(row.taken, OrderText(CheckedManagerSettings(stored).order, 6));
    }
    StoredManagerSettings stored;
    stored.widths[0] = -5, stored.widths[1] = INT32_MAX, stored.widths[2] = 90;
    stored.sortOrder = 6, stored.viewType = 3, stored.listHeight = 0xFFFFFFFF;
    stored.sortDirection = 0x100;
    ManagerSettings settings = CheckedManagerSettings(stored);
    EXPECT_EQ("0 0 90", std::to_string(settings.widths[0]) + " " +
                            std::to_string(settings.widths[1]) + " " +
                            std::to_string(settings.widths[2]));
    EXPECT_TRUE(settings.key == kByCd && settings.view == kCdView && settings.ascending == 1);
    EXPECT_EQ(0, settings.listHeight);
    stored.sortOrder = kByTrack, stored.viewType = kArtistView;
    EXPECT_EQ(kByCd, CheckedManagerSettings(stored).key) << "a key that this view does not have";
    stored.viewType = kTrackView, stored.sortDirection = 0, stored.listHeight = 123;
    settings = CheckedManagerSettings(stored);
    EXPECT_TRUE(settings.key == kByTrack && !settings.ascending && settings.listHeight == 123);
    settings = CheckedManagerSettings(StoredFormOf(settings));
    EXPECT_TRUE(settings.key == kByTrack && settings.view == kTrackView && !settings.ascending);
    EXPECT_EQ(123, settings.listHeight);
}

TEST(ManagerSettings, ViewsAndColumnHeadsChangeTheOrderOfRows) {
    ManagerSettings settings = CheckedManagerSettings({});
    SortByColumn(&settings, kTrackTitleColumn);
    EXPECT_EQ(kByCd, settings.key) << "the CD view has no such column";
    SetManagerView(&settings, kTrackView);
    SortByColumn(&settings, kTrackTitleColumn);
    SortByColumn(&settings, kTrackTitleColumn);
    EXPECT_TRUE(settings.key == kByTrack && !settings.ascending);
    SortByColumn(&settings, kCommentColumn);
    EXPECT_TRUE(settings.key == kByComment && settings.ascending);
    SetManagerView(&settings, NextView(settings.view));
    EXPECT_TRUE(settings.view == kArtistView && settings.key == kByComment);
    EXPECT_EQ(kCdView, NextView(kArtistView));
}

TEST(ManagerSettings, ColumnsThatAreNotShownKeepTheirPlaces) {
    ManagerSettings settings = CheckedManagerSettings({{5, 3, 2, 4, 1, 0}});
    int shown[kTrackViewColumns];
    ShownOrder(settings, kCatalogColumns, shown);
    EXPECT_EQ("3210", OrderText(shown, 4));
    const int moved[] = {0, 3, 2, 1}, doubled[] = {0, 0, 2, 1}, outside[] = {0, 1, 2, 4};
    KeepShownOrder(&settings, kCatalogColumns, moved);
    EXPECT_EQ("503421", OrderText(settings.order, 6));
    KeepShownOrder(&settings, kCatalogColumns, doubled);
    KeepShownOrder(&settings, kCatalogColumns, outside);
    EXPECT_EQ("503421", OrderText(settings.order, 6));
}
