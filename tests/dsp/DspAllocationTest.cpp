#include "dsp/AsymSat.h"
#include "dsp/HalfBandFilter.h"
#include "dsp/RBJ.h"

#include "AllocationCounter.h"

#include <gtest/gtest.h>

#include <cmath>

// Everything the audio thread runs, per sample and per block, must stay off the heap.
TEST(DspAllocation, RunningTheBlocksAllocatesNothing) {
  RBJ biquad;
  HalfBandFilter halfBand;
  AsymSat sat;
  AsymSat mono;
  AsymSat stereoBlocks;
  AsymSat monoBlocks;
  double left[4096], right[4096];
  for (int n = 0; n < 4096; ++n) {
    left[n] = std::sin(0.05 * n) * 1.5;
    right[n] = -left[n];
  }

  AllocationScope scope;
  for (int block = 0; block < 8; ++block) {
    biquad.setup(block % 9, 1000.0, 48000.0, 0.7, 3.0, block % 2 == 0);
    sat.init_all(48000.0, 6.0 * block - 40.0, block - 4.0, 0.01 * block + 0.2, 0.1 * block);
    mono.init_all(48000.0, 6.0 * block - 40.0, block - 4.0, 0.4, 0.1 * block);
    for (int n = 0; n < 512; ++n) {
      const double x = std::sin(0.05 * n) * 1.5;
      biquad.filter(x);
      halfBand.process(x);
      sat.process_Stereo(x, -x);
      mono.process_Mono(x);
    }
    stereoBlocks.init_all(48000.0, 6.0 * block - 40.0, block - 4.0, 0.4, 0.1 * block);
    monoBlocks.init_all(48000.0, 6.0 * block - 40.0, block - 4.0, 0.4, 0.1 * block);
    const int n = block == 0 ? 4096 : 7 * block;
    stereoBlocks.process_StereoBlock(left, right, left, right, n);
    monoBlocks.process_MonoBlock(left, left, n);
  }
  EXPECT_EQ(scope.Count(), 0);
}
