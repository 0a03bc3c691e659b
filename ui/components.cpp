// Orders and look-ups over the component table's rows.
#include "ui/components.h"

#include <algorithm>

static constexpr uint16_t kSlotIds[kWindowSlots] = {
    kCdPlayerWindowId, kSpectrumWindowId, kVisualsWindowId,  kMixerWindowId,
    kLayoutsWindowId,  kMediaWindowId,    kDatabaseWindowId, kScopeWindowId};

int RowOfRestoreRank(const ComponentTraits* rows, int count, int rank) {
    for (int i = 0; i < count; ++i)
        if (rank > 0 && rows[i].restoreRank == rank) return i;
    return -1;
}

// Rows of equal rank keep their table order.
template <typename Rank> static void SortRows(int* order, int count, Rank rank) {
    std::stable_sort(order, order + count, [&](int a, int b) { return rank(a) < rank(b); });
}

int ShutdownOrder(const ComponentTraits* rows, int count, int order[kMaxComponents]) {
    count = std::min(count, kMaxComponents);
    for (int i = 0; i < count; ++i)
        order[i] = i;
    SortRows(order, count, [&](int i) { return rows[i].stopRank; });
    return count;
}

int DependantOrder(const ComponentTraits* rows, int count, int engine, int order[kMaxComponents]) {
    int found = 0;
    for (int i = 0; i < count && found < kMaxComponents; ++i)
        if (engine && rows[i].engine == engine) order[found++] = i;
    SortRows(order, found, [&](int i) { return rows[i].withEngineRank; });
    return found;
}

int WindowSlot(int windowId) {
    for (int slot = 0; slot < kWindowSlots; ++slot)
        if (kSlotIds[slot] == windowId) return slot;
    return -1;
}

int ClosedNoticeCounts(int windowId) {
    return WindowSlot(windowId) >= 0;
}

int ClosedNoticeSaves(int windowId) {
    switch (windowId) {
    case kCdPlayerWindowId:
    case kSpectrumWindowId:
    case kMixerWindowId:
    case kScopeWindowId:
    case kMediaWindowId: return 1;
    default: return 0;
    }
}
