// See player.h.
#include "media/player.h"

#include <algorithm>

#include "core/text.h"
#include "media/lengths.h"
#include "media/player_layout.h"

// ---- texts

std::string FileTitle(const std::string& path) {
    const std::string file = FileOf(path);
    return file.empty() ? path : file;
}

std::string CurrentEntry(const Playlist& list) {
    return list.position < list.entries.size() ? list.entries[list.position] : std::string();
}

std::string MediaCaption(const Playlist& list, int playing,
                         int (*Fits)(void* context, const std::string& text), void* context) {
    const std::string entry = CurrentEntry(list);
    if (entry.empty()) return "No File Loaded";
    if (!playing || list.name.empty()) {
        const std::string path = playing || list.name.empty() ? entry : list.name;
        return Fits(context, path) ? path : FileTitle(path);
    }
    std::string caption = list.name;
    caption.append(" :: ").append(entry);
    if (Fits(context, caption)) return caption;
    caption = FileTitle(list.name).append(" :: ");
    const size_t title = caption.size();
    caption.append(entry);
    if (Fits(context, caption)) return caption;
    return caption.replace(title, std::string::npos, FileTitle(entry));
}

void MediaTimeText(char* text, size_t size, int position, int duration) {
    FormatText(text, size, "%02d:%02d / %02d:%02d", position / 60, position % 60, duration / 60,
               duration % 60);
}

std::string MediaMenuText(int index, const std::string& entry) {
    std::string text = std::to_string(index + 1) + "  ";
    for (const char c : FileTitle(entry)) {
        if (c == '&') text += c;
        text += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return text;
}

// ---- times

SeekSlider SeekSliderAt(double duration, double position) {
    constexpr int kLongest = 0xFFFF;
    const int maximum = std::clamp(WholeSeconds(duration), 1, kLongest);
    return {maximum, std::clamp(WholeSeconds(position), 1, maximum)};
}

int IsAtEnd(double duration, double position) {
    return duration > 0 && position >= duration;
}

// ---- entries

uint32_t NextRandom(uint32_t* seed) {
    *seed = *seed * 1103515245u + 12345u;
    return *seed >> 16 & kRandomMax;
}

static int RandomEntry(int count, uint32_t number) {
    const int entry = static_cast<int>(number * static_cast<uint32_t>(count) / kRandomMax);
    return entry < count ? entry : 0;
}

int EntryAfterEnd(const Playlist& list, int repeat, int random, uint32_t number) {
    const int count = static_cast<int>(list.entries.size());
    if (!count) return -1;
    const int last = list.position >= list.entries.size() - 1;
    if (last && !repeat) return -1;
    if (random) return RandomEntry(count, number);
    return last ? 0 : static_cast<int>(list.position) + 1;
}

int EntryBeside(const Playlist& list, int step, int random, uint32_t number) {
    const int count = static_cast<int>(list.entries.size());
    if (!count) return -1;
    if (random && step > 0) return RandomEntry(count, number);
    const int position = list.position < list.entries.size() ? static_cast<int>(list.position) : 0;
    return (position + step + count) % count;
}

// The nearest one, since a list may hold an entry more than once.
uint32_t PositionAfterEdit(const Playlist& before, const Playlist& after) {
    const std::string entry = CurrentEntry(before);
    const auto count = static_cast<uint32_t>(after.entries.size());
    const uint32_t position = std::min(before.position, count ? count - 1 : 0);
    for (uint32_t away = 0; away < count; ++away)
        for (const uint32_t at : {position - away, position + away})
            if (at < count && after.entries[at] == entry) return at;
    return position;
}

// ---- commands

int MediaCommandActs(int command, const Playlist& list, int playing) {
    const size_t count = list.entries.size();
    if (command >= kMediaEntryFirst && command < kMediaEntryFirst + kPlaylistMax)
        return static_cast<size_t>(command - kMediaEntryFirst) < count;
    switch (command) {
    case kMediaPlay: return !CurrentEntry(list).empty();
    case kMediaPrevious:
    case kMediaNext: return count > 0;
    case kMediaPause:
    case kMediaSeek:
    case kMediaEnded: return playing;
    case kMediaStop:
    case kMediaRefresh: return 1;
    default: return 0;
    }
}
