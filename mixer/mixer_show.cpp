// See mixer_show.h.
#include "mixer/mixer_show.h"

#include <algorithm>
#include <cstring>

void FitMixerName(const char* name, int room, MeasureName measure, void* context, char* fitted,
                  int size) {
    static constexpr char kDots[] = "...";
    constexpr int kDotCount = 3, kFewest = 4;
    const int whole = std::min(static_cast<int>(strlen(name)), size - 1);
    int length = whole, dots = 0;
    if (measure(name, whole, context) > room) {
        const int left = room - measure(kDots, kDotCount, context);
        length = std::max(std::min(whole, size - 1 - kDotCount), 0);
        while (length > 0 && (name[length - 1] == ' ' || measure(name, length, context) > left))
            --length;
        dots = length >= kFewest;
        if (!dots) length = whole;
        while (!dots && length > 1 && measure(name, length, context) > room)
            --length;
    }
    memcpy(fitted, name, length);
    strcpy(fitted + length, dots ? kDots : "");
}
