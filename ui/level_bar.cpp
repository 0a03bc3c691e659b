// See level_bar.h.
#include "ui/level_bar.h"

#include <algorithm>
#include <cstdlib>

// Percent between two steps of the coarsest device. One that stays further away, and has not moved
// at all, does not obey.
constexpr int kCoarsest = 34;

int AskByLevel(LevelBar* bar, int pos) {
    if (pos < 0 || pos > kLevelMax || pos == bar->pos) return kLevelNone;
    *bar = {pos, kLevelNone};
    return kLevelMax - pos;
}

void SettleLevel(LevelBar* bar, int before, int after) {
    const int obeyed = after != before || std::abs(kLevelMax - bar->pos - after) < kCoarsest;
    bar->settled = obeyed ? after : kLevelNone;
}

int FollowLevel(LevelBar* bar, int percent) {
    percent = std::clamp(percent, 0, kLevelMax);
    if (percent != bar->settled) *bar = {kLevelMax - percent, kLevelNone};
    return bar->pos;
}
