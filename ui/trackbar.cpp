// Range, position and pixels of a track bar. See trackbar.h.
#include "ui/trackbar.h"

#include <algorithm>

int32_t ClampTrackPos(const TrackBarModel& bar, int64_t pos) {
    return static_cast<int32_t>(std::clamp<int64_t>(pos, bar.Min, bar.Max));
}

void SetTrackRange(TrackBarModel* bar, int32_t minimum, int32_t maximum) {
    bar->Min = minimum;
    bar->Max = std::max(minimum, maximum);
    bar->Pos = ClampTrackPos(*bar, bar->Pos);
}

static int64_t Range(const TrackBarModel& bar) {
    return static_cast<int64_t>(bar.Max) - bar.Min;
}

int32_t TrackPageStep(const TrackBarModel& bar) {
    const int64_t step = Range(bar) / 8;
    return static_cast<int32_t>(std::min<int64_t>(step < 1 ? Range(bar) : step, INT32_MAX));
}

// Signed step of a key: upwards is towards the minimum on a vertical bar, towards the maximum on a
// horizontal one; left and right are the same on both.
static int64_t KeyStep(const TrackBarModel& bar, TrackKey key) {
    const int up = bar.vertical ? -1 : 1;
    switch (key) {
    case kTrackPageUp: return static_cast<int64_t>(up) * TrackPageStep(bar);
    case kTrackPageDown: return -static_cast<int64_t>(up) * TrackPageStep(bar);
    case kTrackUp: return up;
    case kTrackDown: return -up;
    case kTrackLeft: return -1;
    case kTrackRight: return 1;
    default: return 0;
    }
}

int32_t TrackPosAfterKey(const TrackBarModel& bar, TrackKey key) {
    if (key == kTrackEnd) return bar.Max;
    if (key == kTrackHome) return bar.Min;
    return ClampTrackPos(bar, bar.Pos + KeyStep(bar, key));
}

int32_t TrackLength(const TrackBarModel& bar, int32_t extent) {
    const int64_t length = static_cast<int64_t>(extent) - bar.ThumbSize - 2;
    return static_cast<int32_t>(std::clamp<int64_t>(length, 1, INT32_MAX));
}

int32_t ThumbStart(const TrackBarModel& bar, int32_t extent) {
    const int64_t range = Range(bar);
    if (range <= 0) return 1;
    const int64_t done = static_cast<int64_t>(bar.Pos) - bar.Min;
    return 1 + static_cast<int32_t>((done * TrackLength(bar, extent) + range / 2) / range);
}

int32_t TrackPosAt(const TrackBarModel& bar, int32_t start, int32_t extent) {
    const int64_t length = TrackLength(bar, extent);
    const int64_t place = std::clamp<int64_t>(static_cast<int64_t>(start) - 1, 0, length);
    return ClampTrackPos(bar, bar.Min + (place * Range(bar) + length / 2) / length);
}
