// The transform and the bands. See spectrum.h.
//
// It is a plain radix-2 transform, decimation in time, of which only what the bands read is done:
// the bins of even number below points / 2. A block of n points at any stage then keeps n / 2
// points, its even bins. Each value is still the outcome of the same operations in the same order,
// so it is the plain transform's to the last bit (tests/logic/waves/spectrum_test.cpp). What may
// be left out without a trace: products with an exact 1 and sums with an exact 0, which make up the
// first stages. Left and right sit in the two halves of SSE2 registers.
#include "waves/spectrum.h"

#include <cmath>
#include <cstring>
#include <emmintrin.h>

constexpr double kTwoPi = 6.283185307179586;
constexpr int kFirstStage = 8; // the shorter blocks' twiddles are exactly 1

namespace {
struct Complex {
    __m128d re, im;
};
} // namespace

static __m128d Load(const Spectrum::Pair& from) {
    return _mm_load_pd(&from.left);
}
static Complex Load(const Spectrum::Point& from) {
    return {Load(from.re), Load(from.im)};
}
static void Store(Spectrum::Point* to, const Complex& value) {
    _mm_store_pd(&to->re.left, value.re);
    _mm_store_pd(&to->im.left, value.im);
}
static Complex Add(const Complex& a, const Complex& b) {
    return {_mm_add_pd(a.re, b.re), _mm_add_pd(a.im, b.im)};
}
static Complex Subtract(const Complex& a, const Complex& b) {
    return {_mm_sub_pd(a.re, b.re), _mm_sub_pd(a.im, b.im)};
}
static Complex Multiply(const Complex& w, const Complex& b) {
    return {_mm_sub_pd(_mm_mul_pd(w.re, b.re), _mm_mul_pd(w.im, b.im)),
            _mm_add_pd(_mm_mul_pd(w.re, b.im), _mm_mul_pd(w.im, b.re))};
}

// ---- tables

// Twiddles of the even bins of blocks of `length`, each from the two before it. The stage of each
// length has length / 4 of them, which start behind those of the shorter ones.
static Spectrum::Point* Twiddles(Spectrum* s, int length) {
    return s->twiddles + (length - kFirstStage) / 4;
}

static void MakeTwiddles(Spectrum* s, int length) {
    const double angle = -kTwoPi / length, sine = std::sin(angle), cosine = std::cos(angle);
    const double twice = 2 * cosine;
    double cosBefore = cosine * cosine - sine * sine, cosLast = cosine;
    double sinBefore = -2 * sine * cosine, sinLast = -sine;
    Spectrum::Point* to = Twiddles(s, length);
    for (int k = 0; k < length / 2; ++k) {
        const double cosNow = twice * cosLast - cosBefore, sinNow = twice * sinLast - sinBefore;
        if (k % 2 == 0) to[k / 2] = {{cosNow, cosNow}, {sinNow, sinNow}};
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

// ---- stages

static __m128i LoadTwo(const StereoFrame* frames) { // as left, right, left, right
    const __m128i two = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(frames));
    return _mm_srai_epi32(_mm_unpacklo_epi16(two, two), 16);
}

// One block of eight, from the sums of its blocks of four: those of the even samples (bins 0 and
// 2), and of the odd ones.
static void FinishEight(Spectrum* s, Spectrum::Point* to, __m128i even0, __m128i even2,
                        __m128i odd0, __m128i odd2) {
    const __m128d a0 = _mm_cvtepi32_pd(even0), a2 = _mm_cvtepi32_pd(even2);
    const __m128d b0 = _mm_cvtepi32_pd(odd0), b2 = _mm_cvtepi32_pd(odd2);
    const Complex w0 = Load(s->twiddles[0]), w2 = Load(s->twiddles[1]);
    const Complex t0 = {_mm_mul_pd(w0.re, b0), _mm_mul_pd(w0.im, b0)};
    const Complex t2 = {_mm_mul_pd(w2.re, b2), _mm_mul_pd(w2.im, b2)};
    const __m128d zero = _mm_setzero_pd();
    Store(to, Add({a0, zero}, t0));
    Store(to + 1, Add({a2, zero}, t2));
    Store(to + 2, Subtract({a0, zero}, t0));
    Store(to + 3, Subtract({a2, zero}, t2));
}

// Blocks of 2, 4 and 8 points. The first two stages are whole numbers: samples added and
// subtracted. Two neighbours are done together; their blocks of eight lie far apart.
static void FirstStages(Spectrum* s, const StereoFrame* frames) {
    const int n = s->points, eighth = n / 8;
    for (int i = 0; i < eighth; i += 2) {
        __m128i sums[2], differences[2];
        for (int odd = 0; odd < 2; ++odd) {
            const StereoFrame* from = frames + i + odd * eighth;
            const __m128i a = _mm_add_epi32(LoadTwo(from), LoadTwo(from + n / 2));
            const __m128i b = _mm_add_epi32(LoadTwo(from + n / 4), LoadTwo(from + 3 * n / 4));
            sums[odd] = _mm_add_epi32(a, b);
            differences[odd] = _mm_sub_epi32(a, b);
        }
        FinishEight(s, s->work + 4 * s->order[i], sums[0], differences[0], sums[1], differences[1]);
        FinishEight(s, s->work + 4 * s->order[i + 1], _mm_unpackhi_epi64(sums[0], sums[0]),
                    _mm_unpackhi_epi64(differences[0], differences[0]),
                    _mm_unpackhi_epi64(sums[1], sums[1]),
                    _mm_unpackhi_epi64(differences[1], differences[1]));
    }
}

static void OneStage(Spectrum* s, int length) {
    const Spectrum::Point* w = Twiddles(s, length);
    const int half = length / 4;
    for (Spectrum::Point* at = s->work; at < s->work + s->points / 2; at += 2 * half) {
        for (int k = 0; k < half; ++k) {
            const Complex a = Load(at[k]), b = Multiply(Load(w[k]), Load(at[k + half]));
            Store(at + k, Add(a, b));
            Store(at + k + half, Subtract(a, b));
        }
    }
}

// The stages of `length` and twice that in one go: half the loads and stores.
static void TwoStages(Spectrum* s, int length) {
    const Spectrum::Point *w = Twiddles(s, length), *v = Twiddles(s, 2 * length);
    const int half = length / 4;
    for (Spectrum::Point* at = s->work; at < s->work + s->points / 2; at += 4 * half) {
        for (int k = 0; k < half; ++k) {
            const Complex w0 = Load(w[k]);
            const Complex a = Load(at[k]), b = Multiply(w0, Load(at[k + half]));
            const Complex c = Load(at[k + 2 * half]), d = Multiply(w0, Load(at[k + 3 * half]));
            const Complex e = Multiply(Load(v[k]), Add(c, d)), g = Add(a, b);
            Store(at + k, Add(g, e));
            Store(at + k + 2 * half, Subtract(g, e));
            const Complex f = Multiply(Load(v[k + half]), Subtract(c, d)), h = Subtract(a, b);
            Store(at + k + half, Add(h, f));
            Store(at + k + 3 * half, Subtract(h, f));
        }
    }
}

// ---- the last stage, and the bands

static __m128 Magnitude(const Complex& value) {
    const __m128d square =
        _mm_add_pd(_mm_mul_pd(value.re, value.re), _mm_mul_pd(value.im, value.im));
    return _mm_cvtpd_ps(_mm_sqrt_pd(square));
}

static __m128 SampleOf(const StereoFrame* frame) {
    int both;
    std::memcpy(&both, frame, sizeof both);
    const __m128i one = _mm_cvtsi32_si128(both);
    return _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(one, one), 16));
}

// Even positions get the magnitude of their bin, odd ones keep the sample that came there.
static __m128 FinishPosition(Spectrum* s, const StereoFrame* frames, int i) {
    if (i % 2) return SampleOf(frames + i);
    const int k = i / 2, half = s->points / 4;
    return Magnitude(
        Add(Load(s->work[k]), Multiply(Load(Twiddles(s, s->points)[k]), Load(s->work[k + half]))));
}

static void LastStage(Spectrum* s, const StereoFrame* frames, StereoValue bands[kBands]) {
    int i = 0;
    for (int band = 0; band < kBands; ++band) {
        __m128 sum = _mm_setzero_ps();
        for (; i < s->bandEnds[band]; ++i) {
            const __m128 value = FinishPosition(s, frames, i);
            _mm_storel_pi(reinterpret_cast<__m64*>(s->positions + i), value);
            sum = _mm_add_ps(sum, value);
        }
        _mm_storel_pi(reinterpret_cast<__m64*>(bands + band), sum);
    }
}

void ComputeBands(Spectrum* s, const StereoFrame* frames, int points, const float edges[kBands],
                  StereoValue bands[kBands]) {
    if (s->points != points || std::memcmp(s->edges, edges, sizeof s->edges) != 0)
        MakeTables(s, points, edges);
    FirstStages(s, frames);
    int length = 2 * kFirstStage;
    int stages = 0;
    for (int l = length; l < points; l *= 2)
        ++stages;
    if (stages % 2) {
        OneStage(s, length);
        length *= 2;
    }
    for (; length < points; length *= 4)
        TwoStages(s, length);
    LastStage(s, frames, bands);
}
