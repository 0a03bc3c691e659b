// What the mixer window decides without a window: where its bars stand, and how a name is cut that
// its column has no room for.
#pragma once

constexpr int kMixerBarMax = 100;  // bars are vertical: position 0, at the top, is 100 percent
constexpr int kMixerBarStart = 40; // until a value was read
constexpr int kMixerNotAsked = -1;

// A bar as the window knows it: its position, and the percent that the user last asked for there.
struct MixerBar {
    int pos, asked;
};

// Percent asked for by a bar that arrived at `pos`; kMixerNotAsked when that is where it stood, or
// no position at all.
int AskByMixerBar(MixerBar* bar, int pos);
// The position that shows `percent`, as read from the device. A value that was asked for may read
// back one lower, since devices count in other steps; the bar then stays where the user put it.
int FollowMixerBar(MixerBar* bar, int percent);

// Width in pixels of the first `length` characters.
using MeasureName = int (*)(const char* text, int length, void* context);
// Cuts `name` to fit `room` pixels, with dots at the end; where they would leave fewer than four
// letters, without them.
void FitMixerName(const char* name, int room, MeasureName measure, void* context, char* fitted,
                  int size);
