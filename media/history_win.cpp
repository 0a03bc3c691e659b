// The history's slots in the settings of the media player. See history_win.h.
#include "media/history_win.h"

#include "core/settings.h"
#include "core/text.h"
#include "media/history.h"
#include "media/playlist.h"
#include "ui/components.h"

constexpr const char* kCountValue = "HistoryCount";
constexpr const char* kNextValue = "HistoryPtr";

namespace {
struct SlotName {
    explicit SlotName(int slot) { FormatText(text, sizeof text, "History%03d", slot); }
    char text[16];
};
} // namespace

static HistorySlots ReadSlots() {
    HistorySlots history = {.count = ReadWindowDword(kMediaWindowId, kCountValue, 0),
                            .next = ReadWindowDword(kMediaWindowId, kNextValue, 0),
                            .paths = {}};
    BoundHistory(&history);
    for (uint32_t slot = 0; slot < history.count; ++slot) {
        char path[kMediaPathMax + 1] = ""; // stays empty where the value is too long for a path
        ReadWindowSetting(kMediaWindowId, SlotName(slot).text, kRegSz, sizeof path, path);
        history.paths[slot] = path;
    }
    return history;
}

static void WritePlace(const HistorySlots& history) {
    WriteWindowDword(kMediaWindowId, kNextValue, history.next);
    WriteWindowDword(kMediaWindowId, kCountValue, history.count);
}

static void RemoveSlot(int slot) {
    char section[64];
    FormatText(section, sizeof section, "%s\\UIWindow%d", kSettingsRoot, kMediaWindowId);
    DeleteRegValue(kUserRoot, section, SlotName(slot).text);
}

void AddHistory(const std::string& path) {
    if (path.empty() || path.size() > kMediaPathMax) return;
    HistorySlots history = ReadSlots();
    const int slot = AddHistorySlot(&history, path);
    if (slot < 0) return;
    WriteWindowSetting(kMediaWindowId, SlotName(slot).text, kRegSz,
                       static_cast<uint32_t>(path.size() + 1), path.c_str());
    WritePlace(history);
}

std::vector<std::string> ListHistory() {
    return ListedHistory(ReadSlots());
}

void RemoveHistory(const std::string& path) {
    const int slot = path.empty() ? -1 : FindHistorySlot(ReadSlots(), path);
    if (slot >= 0) RemoveSlot(slot);
}

void ClearHistory() {
    HistorySlots history = ReadSlots();
    for (uint32_t slot = 0; slot <= history.count; ++slot)
        RemoveSlot(slot);
    history.count = history.next = 0;
    WritePlace(history);
}
