// The spectrum in its plain form, a channel at a time: what waves/spectrum.cpp has to equal to the
// last bit.
#pragma once
#include <cmath>
#include <vector>

#include "waves/spectrum.h"

// In: samples. Out: at even positions the magnitude of that bin, at odd ones still the sample.
inline void PlainTransform(std::vector<float>& values) {
    const size_t n = values.size();
    std::vector<double> re(n), im(n, 0.0);
    for (size_t i = 0; i < n; ++i) {
        size_t reversed = 0;
        for (size_t bit = 1; bit < n; bit *= 2)
            reversed = reversed * 2 + ((i & bit) != 0);
        re[reversed] = values[i];
    }
    for (size_t length = 2; length <= n; length *= 2) {
        const double angle = -6.283185307179586 / static_cast<double>(length);
        const double sine = std::sin(angle), cosine = std::cos(angle);
        for (size_t block = 0; block < n; block += length) {
            double c2 = cosine * cosine - sine * sine, c1 = cosine;
            double s2 = -2 * sine * cosine, s1 = -sine;
            for (size_t top = block; top < block + length / 2; ++top) {
                const double c = 2 * cosine * c1 - c2, s = 2 * cosine * s1 - s2;
                c2 = c1, c1 = c;
                s2 = s1, s1 = s;
                const size_t bottom = top + length / 2;
                const double r = c * re[bottom] - s * im[bottom];
                const double i = c * im[bottom] + s * re[bottom];
                re[bottom] = re[top] - r, im[bottom] = im[top] - i;
                re[top] += r, im[top] += i;
            }
        }
    }
    for (size_t i = 0; i < n; i += 2)
        values[i] = static_cast<float>(std::sqrt(re[i] * re[i] + im[i] * im[i]));
}

// What each band sums up of the first half of the positions.
inline void PlainBands(const std::vector<float>& values, const float edges[kBands],
                       float bands[kBands]) {
    const int count = static_cast<int>(values.size()) / 2;
    for (int i = 0; i < kBands; ++i)
        bands[i] = 0;
    for (int i = 0, band = 0; i < count; ++i) {
        const float frequency =
            static_cast<float>(i) * edges[kBands - 1] / static_cast<float>(count);
        if (edges[band] < frequency) ++band;
        bands[band] += values[static_cast<size_t>(i)];
    }
}
