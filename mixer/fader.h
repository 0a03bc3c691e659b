// The sums of a mixer's controls: what a fader's numbers mean in percent, which items of a
// selection change, and what follows for the mute. Drivers' numbers are taken as they come: nothing
// here divides by an empty range or counts beyond kMaxDetails.
#pragma once
#include <cstdint>

constexpr int kMaxDetails = 1024; // channels times items of one control

struct FaderRange {
    uint32_t minimum, maximum;
};

// How many numbers a fader has; 0 where its channels or items make no sense.
int FaderDetails(uint32_t channels, uint32_t items);

// The average of all channels and items, 0 to 100. An empty range or no details read 0. Both this
// and FaderValue cut off the fraction, so that a percent may read back lower than it was set.
int FaderPercent(const uint32_t* details, int count, const FaderRange& range);
uint32_t FaderValue(int percent, const FaderRange& range);

// Sets all to the percent, so that the balance is lost; 1 when that changed any. Nothing happens to
// an empty range.
int SetFader(uint32_t* details, int count, const FaderRange& range, int percent);

// Sets an item; of a list that knows one at a time, every other item gets the opposite. 1 when that
// changed any.
int SelectItem(int32_t* items, int count, int item, int on, int oneOnly);

// What was found in one step, and what it left.
struct SwitchStep {
    int worked;
    int before; // 0 or 1
    int changed;
};

// The mute that a source gets after its selection was asked for or set: 0 or 1, or below 0 where it
// is only to be read.
int MuteAfterSelection(const SwitchStep& selection, int request);
// The source as it was before both steps.
int SourceWasOn(const SwitchStep& selection, const SwitchStep& mute);

// A volume of 0.0 to 1.0, rounded; what is no number counts as 0.
int PercentOfScalar(float scalar);
