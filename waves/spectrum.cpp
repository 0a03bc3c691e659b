// The transform and the bands. See spectrum.h.
//
// It is a plain radix-2 transform, decimation in time, of which only what the bands read is done:
// the bins of even number below points / 2. A block of n points at any stage then keeps n / 2
// points, its even bins. Each value is still the outcome of the same operations in the same order,
// so it is the plain transform's to the last bit (tests/logic/waves/spectrum_test.cpp). What may
// be left out without a trace: products with an exact 1 and sums with an exact 0, which make up the
// first stages. Left and right sit in the two halves of SSE2 registers.
#include "waves/spectrum.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <emmintrin.h>

constexpr double kTwoPi = 6.283185307179586;
#ifdef _WIN64
constexpr bool kMayUseAvx = false; // GCC does not align its registers on the stack there
#else
constexpr bool kMayUseAvx = true;
#endif

namespace {
struct Complex {
    __m128d re, im; // left and right
};
using Twiddle = Complex; // the same in both halves
struct Two {             // numbers of two blocks
    __m128d first, second;
};
} // namespace

static Complex Load(const Spectrum::Point& from) {
    return {_mm_load_pd(&from.reLeft), _mm_load_pd(&from.imLeft)};
}
static Twiddle LoadTwiddle(const Spectrum::Twiddle& from) {
    return {_mm_set1_pd(from.re), _mm_set1_pd(from.im)};
}
static void Store(Spectrum::Point* to, const Complex& value) {
    _mm_store_pd(&to->reLeft, value.re);
    _mm_store_pd(&to->imLeft, value.im);
}
static Complex Add(const Complex& a, const Complex& b) {
    return {_mm_add_pd(a.re, b.re), _mm_add_pd(a.im, b.im)};
}
static Complex Subtract(const Complex& a, const Complex& b) {
    return {_mm_sub_pd(a.re, b.re), _mm_sub_pd(a.im, b.im)};
}
static Complex Multiply(const Twiddle& w, const Complex& b) {
    return {_mm_sub_pd(_mm_mul_pd(w.re, b.re), _mm_mul_pd(w.im, b.im)),
            _mm_add_pd(_mm_mul_pd(w.re, b.im), _mm_mul_pd(w.im, b.re))};
}
static __m128 Magnitude(const Complex& value) {
    const __m128d square =
        _mm_add_pd(_mm_mul_pd(value.re, value.re), _mm_mul_pd(value.im, value.im));
    return _mm_cvtpd_ps(_mm_sqrt_pd(square));
}

static Two Convert(__m128i numbers) {
    return {_mm_cvtepi32_pd(numbers), _mm_cvtepi32_pd(_mm_unpackhi_epi64(numbers, numbers))};
}
static Two Add(const Two& a, const Two& b) {
    return {_mm_add_pd(a.first, b.first), _mm_add_pd(a.second, b.second)};
}
static Two Subtract(const Two& a, const Two& b) {
    return {_mm_sub_pd(a.first, b.first), _mm_sub_pd(a.second, b.second)};
}
static Two Multiply(double w, const Two& b) {
    const __m128d both = _mm_set1_pd(w);
    return {_mm_mul_pd(both, b.first), _mm_mul_pd(both, b.second)};
}
static void StoreTwo(Spectrum::Point* to, Spectrum::Point* to2, const Two& re, const Two& im) {
    Store(to, {re.first, im.first});
    Store(to2, {re.second, im.second});
}

#include "waves/spectrum_stages.h"

// ---- tables

static void MakeTwiddles(Spectrum* s, int length) {
    const double angle = -kTwoPi / length, sine = std::sin(angle), cosine = std::cos(angle);
    const double twice = 2 * cosine;
    double cosBefore = cosine * cosine - sine * sine, cosLast = cosine;
    double sinBefore = -2 * sine * cosine, sinLast = -sine;
    Spectrum::Twiddle* to = Twiddles(s, length);
    for (int k = 0; k < length / 2; ++k) {
        const double cosNow = twice * cosLast - cosBefore, sinNow = twice * sinLast - sinBefore;
        if (k % 2 == 0) to[k / 2] = {cosNow, sinNow};
        cosBefore = cosLast, cosLast = cosNow;
        sinBefore = sinLast, sinLast = sinNow;
    }
}

// The walk: a position above its band's edge moves one band on, never more.
static void MakeBandEnds(Spectrum* s, int count) {
    int band = 0;
    for (int i = 0; i < count; ++i) {
        const float frequency = static_cast<float>(i) * s->edges[kBands - 1] / count;
        if (band < kBands - 1 && s->edges[band] < frequency) s->bandEnds[band++] = i;
    }
    for (; band < kBands; ++band)
        s->bandEnds[band] = count;
}

static void MakeTables(Spectrum* s, int points, const float edges[kBands]) {
    std::memcpy(s->edges, edges, sizeof s->edges);
    MakeBandEnds(s, points / 2);
    if (s->points == points) return;
    for (int length = kFirstStage; length <= points; length *= 2)
        MakeTwiddles(s, length);
    const int blocks = points / kFirstStage; // block i takes the samples from order[i] on
    for (int i = 0, reversed = 0; i < blocks; ++i) {
        s->order[i] = static_cast<uint16_t>(reversed);
        int bit = blocks / 2;
        for (; reversed & bit; bit /= 2)
            reversed -= bit;
        reversed += bit;
    }
    s->points = points;
}

void ComputeBands(Spectrum* s, const StereoFrame* frames, int points, const float edges[kBands],
                  StereoValue bands[kBands]) {
    if (s->points != points || !std::equal(edges, edges + kBands, s->edges))
        MakeTables(s, points, edges);
    if (s->withoutAvx || !kMayUseAvx || !__builtin_cpu_supports("avx"))
        AllStages(s, frames, bands);
    else
        AllStagesAvx(s, frames, bands);
}
