// Changes of a list by marks and places. See moves.h.
#include "media/moves.h"

#include "core/text.h"
#include "media/lengths.h"

#include <algorithm>
#include <numeric>

using Order = std::vector<size_t>; // the old numbers of the entries, in their new order

static Order PresentOrder(const Playlist& list) {
    Order order(list.entries.size());
    std::iota(order.begin(), order.end(), size_t{0});
    return order;
}

static void TakeOrder(Playlist* list, const Order& order) {
    std::vector<std::string> entries;
    entries.reserve(order.size());
    for (const size_t from : order)
        entries.push_back(std::move(list->entries[from]));
    list->entries = std::move(entries);
    const auto current = std::find(order.begin(), order.end(), list->position);
    if (current != order.end()) list->position = static_cast<uint32_t>(current - order.begin());
}

int MoveEntries(Playlist* list, EntryMarks* marks, int step) {
    Order order = PresentOrder(*list);
    const size_t count = order.size();
    int moved = 0;
    marks->resize(count);
    for (size_t i = 1; i < count; ++i) {
        const size_t to = step < 0 ? i - 1 : count - i;
        const size_t from = step < 0 ? i : to - 1;
        if (!(*marks)[from] || (*marks)[to]) continue;
        std::swap(order[from], order[to]);
        std::swap((*marks)[from], (*marks)[to]);
        moved = 1;
    }
    if (moved) TakeOrder(list, order);
    return moved;
}

int DropEntries(Playlist* list, EntryMarks* marks, int gap) {
    Order order = PresentOrder(*list);
    const Order before = order;
    marks->resize(order.size());
    const auto isMarked = [&](size_t i) { return (*marks)[i] != 0; };
    const auto middle = order.begin() + std::clamp<long long>(gap, 0, order.size());
    const auto first =
        std::stable_partition(order.begin(), middle, [&](size_t i) { return !isMarked(i); });
    const auto last = std::stable_partition(middle, order.end(), isMarked);
    if (order == before) return 0;
    marks->assign(order.size(), 0);
    std::fill(marks->begin() + (first - order.begin()), marks->begin() + (last - order.begin()), 1);
    TakeOrder(list, order);
    return 1;
}

int RemoveEntries(Playlist* list, const EntryMarks& marks) {
    Order order;
    uint32_t before = 0; // kept ones before the position
    const size_t count = list->entries.size();
    for (size_t i = 0; i < count; ++i) {
        if (i < marks.size() && marks[i]) continue;
        before += i < list->position;
        order.push_back(i);
    }
    if (order.size() == count) return 0;
    if (list->position < count) list->position = before;
    const uint32_t position = list->position;
    TakeOrder(list, order);
    const uint32_t last = order.empty() ? 0 : static_cast<uint32_t>(order.size() - 1);
    list->position = std::min(position, last);
    return 1;
}

InsertTally InsertPaths(Playlist* list, const std::vector<std::string>& paths, int index) {
    const size_t count = list->entries.size();
    const bool inside = index >= 0 && static_cast<size_t>(index) < count;
    InsertTally tally = {};
    for (const std::string& path : paths) {
        if (path.empty()) continue;
        if (path.size() > kMediaPathMax)
            ++tally.tooLong;
        else if (InsertEntry(list, path, inside ? index + tally.added : -1))
            ++tally.added;
        else
            ++tally.full;
    }
    if (inside && list->position >= static_cast<uint32_t>(index) && list->position < count)
        list->position += tally.added;
    return tally;
}

Playlist ListForFile(const Playlist& list, const std::string& path) {
    Playlist moved = list;
    if (!SameText(FolderOf(list.name).c_str(), FolderOf(path).c_str())) {
        for (std::string& entry : moved.entries) {
            const std::string whole = ResolveEntry(list, entry);
            if (whole.size() <= kMediaPathMax) entry = whole;
        }
    }
    moved.name = path;
    return moved;
}
