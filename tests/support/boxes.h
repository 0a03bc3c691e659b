// What layouts are held to: boxes that lie within their place and clear of each other.
#pragma once
#include "ui/geometry.h"

#include <cstddef>
#include <vector>

inline bool Inside(const Box& inner, const Box& outer) {
    return inner.width >= 0 && inner.height >= 0 && inner.left >= outer.left &&
           inner.top >= outer.top && inner.left + inner.width <= outer.left + outer.width &&
           inner.top + inner.height <= outer.top + outer.height;
}

inline bool Apart(const Box& a, const Box& b, int gap) {
    return a.left + a.width + gap <= b.left || b.left + b.width + gap <= a.left ||
           a.top + a.height + gap <= b.top || b.top + b.height + gap <= a.top;
}

// All that have a size lie in `outer`, `gap` pixels from each other at least.
inline bool Tidy(const std::vector<Box>& boxes, const Box& outer, int gap) {
    for (size_t i = 0; i < boxes.size(); ++i) {
        const Box& box = boxes[i];
        if (box.width < 0 || box.height < 0) return false;
        if (!box.width || !box.height) continue;
        if (!Inside(box, outer)) return false;
        for (size_t k = 0; k < i; ++k)
            if (boxes[k].width && boxes[k].height && !Apart(box, boxes[k], gap)) return false;
    }
    return true;
}
