// The stages for processors with AVX: a register holds a whole complex number of both channels, as
// real left, real right, imaginary left, imaginary right. Compiled with -mavx, so nothing in here
// may run, and no inline function of a header may stay behind, where there is no AVX.
#include "waves/spectrum.h"

#include <cstring>
#include <immintrin.h>

namespace {
using Complex = __m256d;
struct Twiddle {
    __m256d re, im; // four times each, the first two of im with the sign changed
};
struct Two { // numbers of two blocks
    __m256d both;
};
} // namespace

static Complex Load(const Spectrum::Point& from) {
    return _mm256_load_pd(&from.reLeft);
}
static Twiddle LoadTwiddle(const Spectrum::Twiddle& from) {
    const __m256d sign = _mm256_set_pd(0.0, 0.0, -0.0, -0.0);
    return {_mm256_broadcast_sd(&from.re), _mm256_xor_pd(_mm256_broadcast_sd(&from.im), sign)};
}
static void Store(Spectrum::Point* to, Complex value) {
    _mm256_store_pd(&to->reLeft, value);
}
static Complex Add(Complex a, Complex b) {
    return _mm256_add_pd(a, b);
}
static Complex Subtract(Complex a, Complex b) {
    return _mm256_sub_pd(a, b);
}
static Complex Multiply(const Twiddle& w, Complex b) {
    const __m256d exchanged = _mm256_permute2f128_pd(b, b, 1); // imaginary, real
    return _mm256_add_pd(_mm256_mul_pd(w.re, b), _mm256_mul_pd(w.im, exchanged));
}
static __m128 Magnitude(Complex value) {
    const __m256d squares = _mm256_mul_pd(value, value);
    const __m128d square =
        _mm_add_pd(_mm256_castpd256_pd128(squares), _mm256_extractf128_pd(squares, 1));
    return _mm_cvtpd_ps(_mm_sqrt_pd(square));
}

static Two Convert(__m128i numbers) {
    return {_mm256_cvtepi32_pd(numbers)};
}
static Two Add(const Two& a, const Two& b) {
    return {_mm256_add_pd(a.both, b.both)};
}
static Two Subtract(const Two& a, const Two& b) {
    return {_mm256_sub_pd(a.both, b.both)};
}
static Two Multiply(double w, const Two& b) {
    return {_mm256_mul_pd(_mm256_set1_pd(w), b.both)};
}
static void StoreTwo(Spectrum::Point* to, Spectrum::Point* to2, const Two& re, const Two& im) {
    Store(to, _mm256_permute2f128_pd(re.both, im.both, 0x20));
    Store(to2, _mm256_permute2f128_pd(re.both, im.both, 0x31));
}

#include "waves/spectrum_stages.h"

void AllStagesAvx(Spectrum* s, const StereoFrame* frames, StereoValue bands[kBands]) {
    AllStages(s, frames, bands);
}
