// Orders that come from the component table, and the group's alignment.
#include "ui/components.h"
#include "ui/console_group.h"

#include <gtest/gtest.h>

#include <vector>

// A full house, in the order of its buttons.
static std::vector<ComponentTraits> FullHouse() {
    const auto row = [](ComponentKind kind, uint16_t id, uint16_t command, uint16_t engine,
                        uint8_t restore, uint8_t stop, uint8_t withEngine) {
        ComponentTraits t = {};
        t.kind = kind;
        t.windowId = id;
        t.command = command;
        t.engine = engine;
        t.restoreRank = restore;
        t.stopRank = stop;
        t.withEngineRank = withEngine;
        return t;
    };
    return {row(kEngineComponent, 0, 719, 0, 1, 20, 0),
            row(kEngineComponent, 0, 720, 0, 2, 21, 0),
            row(kWindowComponent, kCdPlayerWindowId, 702, 719, 4, 2, 1),
            row(kIconComponent, 0, 706, 719, 9, 30, 2),
            row(kWindowComponent, kSpectrumWindowId, 703, 720, 5, 1, 2),
            row(kWindowComponent, kScopeWindowId, 709, 720, 6, 8, 3),
            row(kWindowComponent, kMediaWindowId, 712, 720, 10, 4, 1)};
}

static std::vector<int> Commands(const std::vector<ComponentTraits>& rows, const int* order,
                                 int count) {
    std::vector<int> commands;
    for (int i = 0; i < count; ++i)
        commands.push_back(rows[order[i]].command);
    return commands;
}

TEST(ComponentRows, OrdersOfStoppingComeFromTheTable) {
    const auto rows = FullHouse();
    const int count = static_cast<int>(rows.size());
    int order[kMaxComponents];
    EXPECT_EQ(Commands(rows, order, ShutdownOrder(rows.data(), count, order)),
              (std::vector<int>{703, 702, 712, 709, 719, 720, 706}));
    EXPECT_EQ(Commands(rows, order, DependantOrder(rows.data(), count, 720, order)),
              (std::vector<int>{712, 703, 709}));
    EXPECT_EQ(Commands(rows, order, DependantOrder(rows.data(), count, 719, order)),
              (std::vector<int>{702, 706}));
    EXPECT_EQ(DependantOrder(rows.data(), count, 0, order), 0) << "engines depend on nothing";
}

TEST(ComponentRows, AbsentRowsAreMinusOne) {
    const auto rows = FullHouse();
    const int count = static_cast<int>(rows.size());
    EXPECT_EQ(RowOfRestoreRank(rows.data(), count, 5), 4);
    EXPECT_EQ(RowOfRestoreRank(rows.data(), count, 3), -1);
    EXPECT_EQ(RowOfCommand(rows.data(), count, 0), -1);
    EXPECT_EQ(RowOfWindowId(rows.data(), count, 0), -1) << "engines and icons have no window id";
    EXPECT_EQ(RowOfWindowId(rows.data(), count, kMediaWindowId), 6);
}

TEST(ComponentRows, NoticesCountForWindowIdsAlone) {
    // id, counts, its on/off value is written
    const int cases[][3] = {{0, 0, 0},  {1, 0, 0},  {2, 1, 1},  {3, 1, 1},
                            {4, 1, 1},  {5, 1, 0},  {6, 1, 0},  {7, 1, 1},
                            {8, 0, 0},  {9, 1, 1},  {10, 0, 0}, {11, 0, 0},
                            {12, 1, 0}, {13, 0, 0}, {-1, 0, 0}, {65538, 0, 0}};
    for (const auto& c : cases) {
        EXPECT_EQ(ClosedNoticeCounts(c[0]), c[1]) << c[0];
        EXPECT_EQ(ClosedNoticeSaves(c[0]), c[2]) << c[0];
    }
}

TEST(WindowGroup, EdgesMeetTheReference) {
    const Edges window = {100, 200, 300, 260}, reference = {40, 50, 500, 240};
    const struct {
        GroupSide side;
        Edges aligned, stretched;
    } cases[] = {
        {kLeftSide, {40, 200, 240, 260}, {40, 200, 300, 260}},
        {kRightSide, {300, 200, 500, 260}, {100, 200, 500, 260}},
        {kTopSide, {100, 50, 300, 110}, {100, 50, 300, 260}},
        {kBottomSide, {100, 180, 300, 240}, {100, 200, 300, 240}},
        {kNoSide, window, window},
    };
    const auto same = [](const Edges& a, const Edges& b) {
        return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
    };
    for (const auto& c : cases) {
        EXPECT_TRUE(same(AlignEdges(window, reference, c.side), c.aligned)) << c.side;
        EXPECT_TRUE(same(StretchEdges(window, reference, c.side, 20, 20), c.stretched)) << c.side;
    }
    // A window wholly right of the reference can't reach its right edge.
    const Edges beside = {600, 200, 700, 260};
    EXPECT_TRUE(same(StretchEdges(beside, reference, kRightSide, 20, 20), beside));
}
