// A vertical bar that shows a percent of a device and sets it: position 0, at the top, is 100.
// Devices count in other steps, and cut off fractions both ways: what is read after a set is not
// what was asked for. The bar stays where the user put it as long as the device reads what it read
// right after that, or each step would begin lower than the one before has ended.
#pragma once

constexpr int kLevelMax = 100;
constexpr int kLevelNone = -1;

struct LevelBar {
    int pos = 0;
    int settled =
        kLevelNone; // percent read after the user's own set; or none: pos shows what was read
};

// Percent asked for by a bar that arrived at `pos`; kLevelNone when that is where it stood, or no
// position at all. Nothing is to be set then: a set makes a device's channels equal, and a mere
// click would lose the balance.
int AskByLevel(LevelBar* bar, int pos);
// What the device read before and after that was set.
void SettleLevel(LevelBar* bar, int before, int after);
// The position that shows `percent`, as read at any later time.
int FollowLevel(LevelBar* bar, int percent);
