// Orders that come from the component table, and the stretching that would go too far.
#include "ui/components.h"
#include "ui/console_group.h"

#include <gtest/gtest.h>

#include <vector>

static ComponentTraits Row(uint16_t command, uint16_t engine, uint8_t restore, uint8_t stop,
                           uint8_t withEngine) {
    ComponentTraits t = {};
    t.command = command;
    t.engine = engine;
    t.restoreRank = restore;
    t.stopRank = stop;
    t.withEngineRank = withEngine;
    return t;
}

// In the order of their buttons.
static const ComponentTraits s_rows[] = {
    Row(719, 0, 1, 20, 0),  Row(720, 0, 2, 21, 0),  Row(702, 719, 4, 2, 1), Row(706, 719, 9, 30, 2),
    Row(703, 720, 5, 1, 2), Row(709, 720, 6, 8, 3), Row(712, 720, 10, 4, 1)};
constexpr int kRows = 7;

static std::vector<int> Commands(const int* order, int count) {
    std::vector<int> commands;
    for (int i = 0; i < count; ++i)
        commands.push_back(s_rows[order[i]].command);
    return commands;
}

TEST(ComponentRows, OrdersComeFromTheTable) {
    int order[kMaxComponents];
    EXPECT_EQ(Commands(order, ShutdownOrder(s_rows, kRows, order)),
              (std::vector<int>{703, 702, 712, 709, 719, 720, 706}));
    EXPECT_EQ(Commands(order, DependantOrder(s_rows, kRows, 720, order)),
              (std::vector<int>{712, 703, 709}));
    EXPECT_EQ(DependantOrder(s_rows, kRows, 0, order), 0) << "engines depend on nothing";
    EXPECT_EQ(RowOfRestoreRank(s_rows, kRows, 5), 4);
    EXPECT_EQ(RowOfRestoreRank(s_rows, kRows, 3), -1);
}

// A window wholly right of the reference can't reach its right edge.
TEST(WindowGroup, StretchingLeavesAWindowThatWouldVanish) {
    const Edges beside = {600, 200, 700, 260};
    const Edges after = StretchEdges(beside, {40, 50, 500, 240}, kRightSide, 20, 20);
    EXPECT_TRUE(after.left == 600 && after.right == 700);
}
