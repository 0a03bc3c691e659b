// Sums of a track bar: range, position, thumb and pixels, along one axis.
#pragma once
#include <cstdint>

struct TrackBarModel {
    int32_t Min, Max, Pos;
    int32_t ThumbSize; // pixels along the track
    int vertical;      // minimum at the top; else at the left
};

// What a key does. The names are the keys'.
enum TrackKey {
    kTrackPageUp,
    kTrackPageDown,
    kTrackEnd,
    kTrackHome,
    kTrackLeft,
    kTrackUp,
    kTrackRight,
    kTrackDown
};

int32_t ClampTrackPos(const TrackBarModel& bar, int64_t pos);
// A range whose Max lies below its Min is taken as empty, at Min. The position is clamped into it.
void SetTrackRange(TrackBarModel* bar, int32_t minimum, int32_t maximum);
// (Max - Min) / 8, or the whole range when that is below 1.
int32_t TrackPageStep(const TrackBarModel& bar);
int32_t TrackPosAfterKey(const TrackBarModel& bar, TrackKey key);

// Pixels between the thumb's first and last place in a client area `extent` long; at least 1.
int32_t TrackLength(const TrackBarModel& bar, int32_t extent);
// First pixel of the thumb along the track.
int32_t ThumbStart(const TrackBarModel& bar, int32_t extent);
// The position whose thumb starts nearest to `start` (any value).
int32_t TrackPosAt(const TrackBarModel& bar, int32_t start, int32_t extent);
