// What the media player window shows and decides: captions, times, which entry comes next, and when
// a command has something to act on. Seconds are exact where they are double, else whole.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>

#include "media/playlist.h"

// As published in the shared block: for 526 and 529 the reverse of the platform's own mode numbers.
enum MediaState : uint32_t { kMediaStopped = 525, kMediaPaused = 526, kMediaPlaying = 529 };

constexpr size_t kMediaTitleMax = 63; // characters of the published title

// ---- texts
// The name without its folder; the whole of a path that has none.
std::string FileTitle(const std::string& path);
// Text of the current entry; empty when there is none.
std::string CurrentEntry(const Playlist& list);
// The longest form for which Fits gives 1, or the shortest one.
std::string MediaCaption(const Playlist& list, int playing,
                         int (*Fits)(void* context, const std::string& text), void* context);
// "%02d:%02d / %02d:%02d" in minutes and seconds.
void MediaTimeText(char* text, size_t size, int position, int duration);
// A menu reads "&" as a mark for the next letter and a tab as a column.
std::string MediaMenuText(int index, const std::string& entry);

// ---- times
// The slider counts from 1; its range and position travel in 16 bits.
struct SeekSlider {
    int maximum, position;
};
SeekSlider SeekSliderAt(double duration, double position);
int IsAtEnd(double duration, double position);

// ---- entries
uint32_t NextRandom(uint32_t* seed); // 0 to kRandomMax
constexpr uint32_t kRandomMax = 32767;
// After the end of the current entry; -1: the list is over.
int EntryAfterEnd(const Playlist& list, int repeat, int random, uint32_t number);
// What the buttons for next (1) and previous (-1) choose, round the ends of the list. Random play
// has no order to go back in: there previous keeps the list's. -1 without entries.
int EntryBeside(const Playlist& list, int step, int random, uint32_t number);
// Where an edited list stands: at the entry that was current, if it still has it.
uint32_t PositionAfterEdit(const Playlist& before, const Playlist& after);

// ---- commands
// 1 when there is something for it to act on; a command that is none of the player's: 0.
int MediaCommandActs(int command, const Playlist& list, int playing);
