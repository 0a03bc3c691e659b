// The stages of the transform, left and right at once. Included by spectrum.cpp and
// spectrum_avx.cpp, each with its own Complex (a complex number of either channel) and Load, Store,
// Add, Subtract, Multiply and Magnitude before it. Everything here is the includer's own.
#pragma once
#include <cstddef>
#include <cstring>
#include <emmintrin.h>

#include "waves/spectrum.h"

// Bins 0 and 2 of blocks of four samples, whole numbers; of two blocks, as left, right, left,
// right.
namespace {
struct Four {
    __m128i bin0, bin2;
};
} // namespace

static inline __m128i LoadTwo(const StereoFrame* frames) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(frames));
}

static inline __m128i AddTwo(const StereoFrame* a, const StereoFrame* b) {
    return _mm_madd_epi16(_mm_unpacklo_epi16(LoadTwo(a), LoadTwo(b)), _mm_set1_epi16(1));
}

// Two neighbours, each of four samples that lie `apart` frames from one another. The twiddles up
// to here are exactly 1: samples are only added and subtracted.
static inline Four FirstTwoStages(const StereoFrame* at, int apart) {
    const __m128i even = AddTwo(at, at + 2 * apart), odd = AddTwo(at + apart, at + 3 * apart);
    return {_mm_add_epi32(even, odd), _mm_sub_epi32(even, odd)};
}

// Two blocks of eight, from the blocks of their even and of their odd samples. Bins 0 and 4 are
// real; twiddle 0 is real, too, but not quite 1.
static inline void ThirdStage(const Spectrum::Twiddle* w, Spectrum::Point* to, Spectrum::Point* to2,
                              const Four& even, const Four& odd) {
    const Two zero = Convert(_mm_setzero_si128()), odd2 = Convert(odd.bin2);
    const Two re0 = Convert(even.bin0), t0 = Multiply(w[0].re, Convert(odd.bin0));
    const Two re2 = Convert(even.bin2), t2 = Multiply(w[1].re, odd2);
    const Two im2 = Multiply(w[1].im, odd2);
    StoreTwo(to, to2, Add(re0, t0), zero);
    StoreTwo(to + 1, to2 + 1, Add(re2, t2), im2);
    StoreTwo(to + 2, to2 + 2, Subtract(re0, t0), zero);
    StoreTwo(to + 3, to2 + 3, Subtract(re2, t2), Subtract(zero, im2));
}

// Blocks of 2, 4 and 8 points. Two neighbours are done together; their blocks of eight lie far
// apart.
static void FirstStages(Spectrum* s, const StereoFrame* frames) {
    const int eighth = s->points / 8;
    const Spectrum::Twiddle* w = Twiddles(s, 8);
    for (int i = 0; i < eighth; i += 2)
        ThirdStage(w, s->work + 4 * s->order[i], s->work + 4 * s->order[i + 1],
                   FirstTwoStages(frames + i, 2 * eighth),
                   FirstTwoStages(frames + i + eighth, 2 * eighth));
}

static inline void Butterfly(const Twiddle& w, Complex& a, Complex& b) {
    const Complex product = Multiply(w, b);
    b = Subtract(a, product);
    a = Add(a, product);
}

static void OneStage(Spectrum* s, int length) {
    const int half = length / 4;
    const Spectrum::Twiddle* w = Twiddles(s, length);
    Spectrum::Point* const end = s->work + s->points / 2;
    for (Spectrum::Point* at = s->work; at < end; at += 2 * half) {
        for (int k = 0; k < half; ++k) {
            Complex a = Load(at[k]), b = Load(at[k + half]);
            Butterfly(LoadTwiddle(w[k]), a, b);
            Store(at + k, a);
            Store(at + k + half, b);
        }
    }
}

// The stages of `length` and twice that in one go: half the loads and stores.
static void TwoStages(Spectrum* s, int length) {
    const int half = length / 4;
    const Spectrum::Twiddle *w = Twiddles(s, length), *v = Twiddles(s, 2 * length);
    Spectrum::Point* const end = s->work + s->points / 2;
    for (Spectrum::Point* at = s->work; at < end; at += 4 * half) {
        for (int k = 0; k < half; ++k) {
            Complex a = Load(at[k]), b = Load(at[k + half]);
            Complex c = Load(at[k + 2 * half]), d = Load(at[k + 3 * half]);
            const Twiddle w0 = LoadTwiddle(w[k]);
            Butterfly(w0, a, b);
            Butterfly(w0, c, d);
            Butterfly(LoadTwiddle(v[k]), a, c);
            Butterfly(LoadTwiddle(v[k + half]), b, d);
            Store(at + k, a);
            Store(at + k + half, b);
            Store(at + k + 2 * half, c);
            Store(at + k + 3 * half, d);
        }
    }
}

// The same with the stage of four times `length`.
static void ThreeStages(Spectrum* s, int length) {
    const int half = length / 4;
    const Spectrum::Twiddle *w = Twiddles(s, length), *v = Twiddles(s, 2 * length);
    const Spectrum::Twiddle* u = Twiddles(s, 4 * length);
    Spectrum::Point* const end = s->work + s->points / 2;
    for (Spectrum::Point* at = s->work; at < end; at += 8 * half) {
        for (int k = 0; k < half; ++k) {
            Spectrum::Point *const low = at + k, *const high = low + 4 * half;
            Complex a = Load(low[0]), b = Load(low[half]);
            Complex c = Load(low[2 * half]), d = Load(low[3 * half]);
            const Twiddle w0 = LoadTwiddle(w[k]);
            Butterfly(w0, a, b);
            Butterfly(w0, c, d);
            Complex e = Load(high[0]), f = Load(high[half]);
            Complex g = Load(high[2 * half]), h = Load(high[3 * half]);
            Butterfly(w0, e, f);
            Butterfly(w0, g, h);
            const Twiddle v0 = LoadTwiddle(v[k]), v1 = LoadTwiddle(v[k + half]);
            Butterfly(v0, a, c);
            Butterfly(v0, e, g);
            Butterfly(v1, b, d);
            Butterfly(v1, f, h);
            Butterfly(LoadTwiddle(u[k]), a, e);
            Store(low, a);
            Store(high, e);
            Butterfly(LoadTwiddle(u[k + half]), b, f);
            Store(low + half, b);
            Store(high + half, f);
            Butterfly(LoadTwiddle(u[k + 2 * half]), c, g);
            Store(low + 2 * half, c);
            Store(high + 2 * half, g);
            Butterfly(LoadTwiddle(u[k + 3 * half]), d, h);
            Store(low + 3 * half, d);
            Store(high + 3 * half, h);
        }
    }
}

// ---- the last stage, and the bands

static void StorePair(StereoValue* to, __m128 value) {
    _mm_storel_pi(reinterpret_cast<__m64*>(to), value);
}

// Odd positions keep the sample that came there.
static inline __m128 SampleAt(const StereoFrame* frame) {
    int both;
    std::memcpy(&both, frame, sizeof both);
    const __m128i one = _mm_cvtsi32_si128(both);
    return _mm_cvtepi32_ps(_mm_srai_epi32(_mm_unpacklo_epi16(one, one), 16));
}

// Goes through the positions two by two, 2 k with a magnitude and 2 k + 1 with a sample. A band may
// begin and end between them.
static void LastStage(Spectrum* s, const StereoFrame* frames, StereoValue bands[kBands]) {
    const Spectrum::Twiddle* const w = Twiddles(s, s->points);
    const Spectrum::Point *const a = s->work, *const b = a + s->points / 4;
    StereoValue* const magnitudes = s->magnitudes;
    const auto magnitude = [=](ptrdiff_t k) {
        const Complex bin = Add(Load(a[k]), Multiply(LoadTwiddle(w[k]), Load(b[k])));
        const __m128 value = Magnitude(bin);
        StorePair(magnitudes + k, value);
        return value;
    };
    ptrdiff_t k = 0;
    bool halfDone = false; // position 2 k went to the band before
    for (int band = 0; band < kBands; ++band) {
        const ptrdiff_t end = s->bandEnds[band];
        __m128 sum = _mm_setzero_ps();
        if (halfDone && 2 * k + 1 < end) {
            sum = _mm_add_ps(sum, SampleAt(frames + 2 * k++ + 1));
            halfDone = false;
        }
        for (; 2 * k + 1 < end; ++k)
            sum = _mm_add_ps(_mm_add_ps(sum, magnitude(k)), SampleAt(frames + 2 * k + 1));
        if (!halfDone && 2 * k < end) {
            sum = _mm_add_ps(sum, magnitude(k));
            halfDone = true;
        }
        StorePair(bands + band, sum);
    }
}

static void AllStages(Spectrum* s, const StereoFrame* frames, StereoValue bands[kBands]) {
    FirstStages(s, frames);
    int length = 2 * kFirstStage;
    for (; 4 * length < s->points; length *= 8)
        ThreeStages(s, length);
    if (2 * length < s->points)
        TwoStages(s, length);
    else if (length < s->points)
        OneStage(s, length);
    LastStage(s, frames, bands);
}
