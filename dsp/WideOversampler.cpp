#include "dsp/WideOversampler.h"

#if !defined(__x86_64__)
bool WideLanesAvailable() { return false; }
#else

#include <immintrin.h>

#include "dsp/AsymSat.h"
#include "dsp/CAllPassFilterCascade.h"

// Only this file uses 256-bit instructions, and only in functions marked for them, so the rest
// of the program runs on any x86-64. "fma" is deliberately not among the targets: a fused
// multiply-add rounds once where the two-lane path rounds twice.
#define TARN_WIDE __attribute__((target("avx2")))

namespace {

// Frame-sized groups of sub-samples: even left, even right, odd left, odd right.
using Quad = __m256d;
constexpr int kSections = CAllPassFilterCascade::kStagesPerPath;

TARN_WIDE inline Quad LoadFrame(const LanePair* pair) {
  return _mm256_loadu_pd(reinterpret_cast<const double*>(pair));
}
TARN_WIDE inline void StoreFrame(Quad v, LanePair* pair) {
  _mm256_storeu_pd(reinterpret_cast<double*>(pair), v);
}
TARN_WIDE inline Quad Broadcast(double v) { return _mm256_set1_pd(v); }
TARN_WIDE inline double Lane(Quad v, int i) {
  alignas(32) double lanes[4];
  _mm256_store_pd(lanes, v);
  return lanes[i];
}
// The odd lanes of one frame followed by the even lanes of the next: for each sub-sample, the
// value of the sub-sample before it.
TARN_WIDE inline Quad PreviousSubSample(Quad before, Quad now) {
  return _mm256_permute2f128_pd(before, now, 0x21);
}

// A section member's even (newest-but-one) and odd (newest) values of both channels.
TARN_WIDE inline Quad Gather(const AllPassStage& l, const AllPassStage& r,
                             double AllPassStage::*even, double AllPassStage::*odd) {
  return _mm256_setr_pd(l.*even, r.*even, l.*odd, r.*odd);
}

// At a frame boundary, a section's newest sub-sample is odd; the state keeps the newest three
// inputs and outputs, i.e. the last frame's odd and even values and the odd one of the frame
// before.
TARN_WIDE inline void Scatter(Quad last, Quad before, AllPassStage& l, AllPassStage& r,
                              double AllPassStage::*newest, double AllPassStage::*second,
                              double AllPassStage::*third) {
  l.*newest = Lane(last, 2);
  r.*newest = Lane(last, 3);
  l.*second = Lane(last, 0);
  r.*second = Lane(last, 1);
  l.*third = Lane(before, 2);
  r.*third = Lane(before, 3);
}

// Six all-pass sections of two cascades side by side, kept in registers while a chunk runs: the
// same six sections of a left and a right filter (stereo), or path A and path B of one filter
// (mono). Each section is y0 = (v − y2)·a + x2 per parity. A section's input is the output of
// the section before it, so its previous input is that section's previous output: a frame needs
// only the previous outputs, plus the previous input for the first section.
struct Path {
  Quad a[kSections], y[kSections];
  Quad yBefore[kSections];  // the outputs before the chunk's last frame

  // The coefficients of the first and the second cascade's sections.
  TARN_WIDE void load(const AllPassStage* first, const AllPassStage* second,
                      const double (&firstCoefficients)[kSections],
                      const double (&secondCoefficients)[kSections]) {
    for (int s = 0; s < kSections; ++s) {
      a[s] = _mm256_setr_pd(firstCoefficients[s], secondCoefficients[s], firstCoefficients[s],
                            secondCoefficients[s]);
      y[s] = Gather(first[s], second[s], &AllPassStage::y1, &AllPassStage::y0);
    }
  }

  // One frame with input v, whose previous input was x; returns the path's output.
  TARN_WIDE Quad step(Quad v, Quad x) {
#pragma GCC unroll 6
    for (int s = 0; s < kSections; ++s) {
      const Quad previous = y[s];
      y[s] = _mm256_add_pd(_mm256_mul_pd(_mm256_sub_pd(v, previous), a[s]), x);
      x = previous;
      v = y[s];
    }
    return v;
  }

  TARN_WIDE void keepBefore() {
    for (int s = 0; s < kSections; ++s) yBefore[s] = y[s];
  }

  TARN_WIDE void store(AllPassStage* first, AllPassStage* second, Quad input,
                       Quad inputBefore) const {
    for (int s = 0; s < kSections; ++s) {
      Scatter(s == 0 ? input : y[s - 1], s == 0 ? inputBefore : yBefore[s - 1], first[s], second[s],
              &AllPassStage::x0, &AllPassStage::x1, &AllPassStage::x2);
      Scatter(y[s], yBefore[s], first[s], second[s], &AllPassStage::y0, &AllPassStage::y1,
              &AllPassStage::y2);
    }
  }
};

// The half-band filter over the chunk in place: out = (A + B of the previous sub-sample)·0.5.
// Both paths step in the same loop, so that each waits on its own recursions while the other
// computes.
TARN_WIDE void RunHalfBand(HalfBandFilter& left, HalfBandFilter& right, LanePair* sub,
                           int nFrames) {
  AllPassStage *l = left.cascade.stages, *r = right.cascade.stages;
  Path pathA, pathB;
  pathA.load(l, r, CAllPassFilterCascade::kPathA, CAllPassFilterCascade::kPathA);
  pathB.load(l + kSections, r + kSections, CAllPassFilterCascade::kPathB,
             CAllPassFilterCascade::kPathB);
  // Both paths take the same input.
  Quad input =
      Gather(left.cascade.stages[0], right.cascade.stages[0], &AllPassStage::x1, &AllPassStage::x0);
  Quad inputBefore = input;
  const Quad half = Broadcast(0.5);
  Quad bBefore = _mm256_setr_pd(0.0, 0.0, left.oldOut, right.oldOut);
  for (int f = 0; f < nFrames; ++f) {
    if (f + 1 == nFrames) {
      inputBefore = input;
      pathA.keepBefore();
      pathB.keepBefore();
    }
    const Quad v = LoadFrame(sub + 2 * f);
    const Quad a = pathA.step(v, input);
    const Quad b = pathB.step(v, input);
    input = v;
    StoreFrame(_mm256_mul_pd(_mm256_add_pd(a, PreviousSubSample(bBefore, b)), half), sub + 2 * f);
    bBefore = b;
  }
  pathA.store(l, r, input, inputBefore);
  pathB.store(l + kSections, r + kSections, input, inputBefore);
  left.oldOut = Lane(bBefore, 2);
  right.oldOut = Lane(bBefore, 3);
}

// The curve over the chunk in place, as AsymSat::curveStep computes it. Only the memory runs
// sub-sample by sub-sample, two lanes wide; the rest takes whole frames.
TARN_WIDE void RunCurve(AsymSat& sat, LanePair* sub, int nFrames) {
  const Quad memIn = Broadcast(sat.memIn);
  const __m128d memFb = _mm_set1_pd(sat.memFb);
  const Quad posKnee = Broadcast(sat.posKnee), posKneeInv = Broadcast(sat.posKneeInv);
  const Quad negKnee = Broadcast(sat.negKnee), negKneeInv = Broadcast(sat.negKneeInv);
  const Quad evenWeight = Broadcast(sat.evenWeight), postFb = Broadcast(sat.postFb);
  const Quad postScale = Broadcast(sat.postScale), one = Broadcast(1.0), zero = _mm256_setzero_pd();
  __m128d mem = _mm_setr_pd(sat.memL, sat.memR);
  Quad before = _mm256_setr_pd(0.0, 0.0, sat.curvePrevL, sat.curvePrevR);
  for (int f = 0; f < nFrames; ++f) {
    const Quad x = LoadFrame(sub + 2 * f);
    const Quad weighted = _mm256_mul_pd(memIn, x);
    const __m128d even = _mm_add_pd(_mm256_castpd256_pd128(weighted), _mm_mul_pd(memFb, mem));
    mem = _mm_add_pd(_mm256_extractf128_pd(weighted, 1), _mm_mul_pd(memFb, even));
    const Quad s = _mm256_setr_m128d(even, mem);

    // Blends take their second operand where the mask is set: the positive half-wave.
    const Quad positive = _mm256_cmp_pd(x, zero, _CMP_GT_OQ);
    const Quad square = _mm256_mul_pd(s, s);
    const Quad u = _mm256_mul_pd(_mm256_mul_pd(negKnee, s), s);
    const Quad oddIn = _mm256_blendv_pd(s, _mm256_mul_pd(posKnee, s), positive);
    const Quad oddGain = _mm256_blendv_pd(one, posKneeInv, positive);
    const Quad evenIn = _mm256_blendv_pd(u, square, positive);
    const Quad evenSquare =
        _mm256_blendv_pd(_mm256_mul_pd(u, u), _mm256_mul_pd(_mm256_mul_pd(square, s), s), positive);
    const Quad evenGain = _mm256_blendv_pd(negKneeInv, one, positive);
    const Quad oddRoot = _mm256_sqrt_pd(_mm256_add_pd(_mm256_mul_pd(oddIn, oddIn), one));
    const Quad evenRoot = _mm256_sqrt_pd(_mm256_add_pd(evenSquare, one));
    const Quad oddPart = _mm256_mul_pd(_mm256_div_pd(oddIn, oddRoot), oddGain);
    const Quad evenPart = _mm256_mul_pd(_mm256_div_pd(evenIn, evenRoot), evenGain);
    const Quad y = _mm256_sub_pd(oddPart, _mm256_mul_pd(evenWeight, evenPart));
    const Quad out = _mm256_mul_pd(
        _mm256_sub_pd(y, _mm256_mul_pd(postFb, PreviousSubSample(before, y))), postScale);
    StoreFrame(out, sub + 2 * f);
    before = y;
  }
  sat.memL = mem[0];
  sat.memR = mem[1];
  sat.curvePrevL = Lane(before, 2);
  sat.curvePrevR = Lane(before, 3);
}

}  // namespace

// The mono half-band filter over a chunk of frames, each an (even, odd) pair of sub-samples, in
// place. One register holds a frame's even and odd sub-sample through path A and path B at once,
// so a frame takes one step through six sections where the two-lane form takes two.
TARN_WIDE void RunMonoHalfBandWide(HalfBandFilter& filter, LanePair* frames, int nFrames) {
  AllPassStage *a = filter.cascade.stages, *b = a + kSections;
  Path paths;
  paths.load(a, b, CAllPassFilterCascade::kPathA, CAllPassFilterCascade::kPathB);
  // Both paths take the same input: (even, even, odd, odd).
  Quad input = Gather(a[0], b[0], &AllPassStage::x1, &AllPassStage::x0);
  Quad inputBefore = input;
  const __m128d half = _mm_set1_pd(0.5);
  __m128d bBefore = _mm_setr_pd(0.0, filter.oldOut);  // path B's (even, odd) of the frame before
  for (int f = 0; f < nFrames; ++f) {
    if (f + 1 == nFrames) {
      inputBefore = input;
      paths.keepBefore();
    }
    double* frame = reinterpret_cast<double*>(frames + f);
    const Quad v = _mm256_permute4x64_pd(_mm256_castpd128_pd256(_mm_loadu_pd(frame)), 0x50);
    const Quad out = paths.step(v, input);
    input = v;
    const __m128d evens = _mm256_castpd256_pd128(out), odds = _mm256_extractf128_pd(out, 1);
    const __m128d pathA = _mm_unpacklo_pd(evens, odds), pathB = _mm_unpackhi_pd(evens, odds);
    // out = (A + B of the previous sub-sample)·0.5
    const __m128d previousB = _mm_shuffle_pd(bBefore, pathB, 0x1);
    _mm_storeu_pd(frame, _mm_mul_pd(_mm_add_pd(pathA, previousB), half));
    bBefore = pathB;
  }
  paths.store(a, b, input, inputBefore);
  filter.oldOut = bBefore[1];
}

bool WideLanesAvailable() {
  __builtin_cpu_init();
  return __builtin_cpu_supports("avx2");
}

TARN_WIDE void OversampleStereoChunkWide(AsymSat& sat, const LanePair* work, LanePair* kept,
                                         int n) {
  LanePair sub[2 * AsymSat::kChunkFrames] = {};
  for (int i = 0; i < n; ++i) {
    sub[2 * i] = 2.0 * work[i];
    sub[2 * i + 1] = LanePair{0.0, 0.0};
  }
  RunHalfBand(sat.upL, sat.upR, sub, n);
  RunCurve(sat, sub, n);
  RunHalfBand(sat.downL, sat.downR, sub, n);
  for (int i = 0; i < n; ++i) kept[i] = sub[2 * i];
  sat.osL = sub[2 * n - 1][0];
  sat.osR = sub[2 * n - 1][1];
}

#endif  // x86-64
