// The slots of the history. Entries go round 21 slots of which 20 are listed: what users have on
// their machines was written so.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

constexpr uint32_t kHistoryListed = 20;
constexpr uint32_t kHistorySlots = 21;

struct HistorySlots {
    uint32_t count;                   // slots listed
    uint32_t next;                    // the slot that the next entry goes to
    std::string paths[kHistorySlots]; // empty: missing
};

// Numbers from outside into their ranges.
void BoundHistory(HistorySlots* history);
// The listed slot of path, whatever its case; -1 when there is none.
int FindHistorySlot(const HistorySlots& history, const std::string& path);
// The slot that was written; -1 when the path is listed already and nothing changes.
int AddHistorySlot(HistorySlots* history, const std::string& path);
std::vector<std::string> ListedHistory(const HistorySlots& history);
