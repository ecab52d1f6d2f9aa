// Blitting an editor-sized image (304 × 416, the whole editor) once per frame, per combine
// mode, reported as frames per second.

#include <benchmark/benchmark.h>

#include "lice/LICE_Blit.h"
#include "lice/LICE_MemBitmap.h"
#include "lice/LICE_SysBitmap.h"

namespace
{
constexpr int kWidth = 304;
constexpr int kHeight = 416;

void PaintVaried(LICE_IBitmap* bmp, unsigned seed)
{
  LICE_pixel* bits = bmp->getBits();
  for (int y = 0; y < bmp->getHeight(); ++y)
    for (int x = 0; x < bmp->getWidth(); ++x)
    {
      seed = seed * 1664525u + 1013904223u;
      bits[y * bmp->getRowSpan() + x] = seed;
    }
}

void BM_Blit(benchmark::State& state, int mode, float alpha)
{
  LICE_MemBitmap src(kWidth, kHeight, 4);
  LICE_SysBitmap dest(kWidth, kHeight);
  PaintVaried(&src, 1);
  PaintVaried(&dest, 2);
  for (auto _ : state)
  {
    LICE_Blit(&dest, &src, 0, 0, nullptr, alpha, mode);
    benchmark::DoNotOptimize(dest.getBits());
    benchmark::ClobberMemory();
  }
  state.counters["frames"] = benchmark::Counter((double)state.iterations(), benchmark::Counter::kIsRate);
}

BENCHMARK_CAPTURE(BM_Blit, copy_full, LICE_BLIT_MODE_COPY, 1.0f);
BENCHMARK_CAPTURE(BM_Blit, copy_half, LICE_BLIT_MODE_COPY, 0.5f);
BENCHMARK_CAPTURE(BM_Blit, copy_weighted, LICE_BLIT_MODE_COPY, 0.3f);
BENCHMARK_CAPTURE(BM_Blit, add, LICE_BLIT_MODE_ADD, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, dodge, LICE_BLIT_MODE_DODGE, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, mul, LICE_BLIT_MODE_MUL, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, overlay, LICE_BLIT_MODE_OVERLAY, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, hsv_adjust, LICE_BLIT_MODE_HSVADJ, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, copy_source_alpha_full, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA, 1.0f);
BENCHMARK_CAPTURE(BM_Blit, copy_source_alpha, LICE_BLIT_MODE_COPY | LICE_BLIT_USE_ALPHA, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, add_source_alpha, LICE_BLIT_MODE_ADD | LICE_BLIT_USE_ALPHA, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, dodge_source_alpha, LICE_BLIT_MODE_DODGE | LICE_BLIT_USE_ALPHA, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, mul_source_alpha, LICE_BLIT_MODE_MUL | LICE_BLIT_USE_ALPHA, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, overlay_source_alpha, LICE_BLIT_MODE_OVERLAY | LICE_BLIT_USE_ALPHA, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, hsv_adjust_source_alpha, LICE_BLIT_MODE_HSVADJ | LICE_BLIT_USE_ALPHA, 0.75f);
BENCHMARK_CAPTURE(BM_Blit, channel_copy, LICE_BLIT_MODE_CHANCOPY | (1 << 2) | 3, 1.0f);
} // namespace
