// Which slot a path goes to. See history.h.
#include "media/history.h"

#include "core/text.h"

void BoundHistory(HistorySlots* history) {
    if (history->count > kHistoryListed) history->count = kHistoryListed;
    if (history->next >= kHistorySlots) history->next = 0;
}

int FindHistorySlot(const HistorySlots& history, const std::string& path) {
    for (uint32_t slot = 0; slot < history.count; ++slot) {
        if (SameText(history.paths[slot].c_str(), path.c_str())) return static_cast<int>(slot);
    }
    return -1;
}

int AddHistorySlot(HistorySlots* history, const std::string& path) {
    if (FindHistorySlot(*history, path) >= 0) return -1;
    const uint32_t slot = history->next;
    history->paths[slot] = path;
    history->next = (slot + 1) % kHistorySlots;
    if (history->count < kHistoryListed) ++history->count;
    return static_cast<int>(slot);
}

std::vector<std::string> ListedHistory(const HistorySlots& history) {
    std::vector<std::string> listed;
    for (uint32_t slot = 0; slot < history.count; ++slot) {
        if (!history.paths[slot].empty()) listed.push_back(history.paths[slot]);
    }
    return listed;
}
