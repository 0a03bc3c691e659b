// See fader.h.
#include "mixer/fader.h"

#include <algorithm>

static int HasRange(const FaderRange& range) {
    return range.maximum > range.minimum;
}

int FaderDetails(uint32_t channels, uint32_t items) {
    const uint64_t count = uint64_t{channels} * items;
    return count <= kMaxDetails ? static_cast<int>(count) : 0;
}

int FaderPercent(const uint32_t* details, int count, const FaderRange& range) {
    if (count <= 0 || !HasRange(range)) return 0;
    uint64_t sum = 0;
    for (int i = 0; i < count; ++i)
        sum += details[i];
    const uint64_t average =
        std::clamp<uint64_t>(sum / static_cast<uint64_t>(count), range.minimum, range.maximum);
    return static_cast<int>((average - range.minimum) * 100 / (range.maximum - range.minimum));
}

uint32_t FaderValue(int percent, const FaderRange& range) {
    const auto wanted = static_cast<uint64_t>(std::clamp(percent, 0, 100));
    if (!HasRange(range)) return range.minimum;
    return static_cast<uint32_t>((range.maximum - range.minimum) * wanted / 100 + range.minimum);
}

int SetFader(uint32_t* details, int count, const FaderRange& range, int percent) {
    if (!HasRange(range)) return 0;
    const uint32_t value = FaderValue(percent, range);
    int changed = 0;
    for (int i = 0; i < count; ++i) {
        changed |= details[i] != value;
        details[i] = value;
    }
    return changed;
}

int SelectItem(int32_t* items, int count, int item, int on, int oneOnly) {
    int changed = 0;
    for (int i = 0; i < count; ++i) {
        if (i != item && !oneOnly) continue;
        const int32_t wanted = (i == item) == (on != 0);
        changed |= (items[i] != 0) != wanted;
        items[i] = wanted;
    }
    return changed;
}

int MuteAfterSelection(const SwitchStep& selection, int request) {
    const int on = selection.worked ? selection.before : request;
    return on == 0 || on == 1 ? !on : -1;
}

int SourceWasOn(const SwitchStep& selection, const SwitchStep& mute) {
    if (!selection.worked && !mute.worked) return 0;
    return (!selection.worked || selection.before) && (!mute.worked || !mute.before);
}

int PercentOfScalar(float scalar) {
    if (!(scalar > 0)) return 0; // also what is no number
    return scalar < 1 ? static_cast<int>(scalar * 100 + 0.5f) : 100;
}
