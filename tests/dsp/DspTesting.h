#pragma once
// Helpers of the dsp tests: an instance run through the host float path, and tables of checks.
#include <gtest/gtest.h>

#include <algorithm>
#include <complex>
#include <functional>
#include <memory>
#include <tuple>
#include <vector>

#include "AllocationCounter.h"
#include "Signals.h"
#include "dsp/Tarn.h"

constexpr double kRate = 48000.0, kTwoPi = 6.283185307179586;
using Signal = std::vector<std::vector<float>>;

// One instance driven as an offline host drives it.
struct Host {
  explicit Host(int channels, bool reset = true) : plug(MakePlug()), nCh(channels) {
    plug->SetIO(channels, channels);
    plug->SetSampleRate(kRate);
    if (reset) plug->Reset();
  }
  Host& Set(int idx, double value) { return plug->SetParameter(idx, value), *this; }
  // Blocks of `block` frames; with `every`, change(k) runs at frame k·every and splits the block
  // there, as a host splits blocks at automation points. Neither may allocate.
  Signal Run(const Signal& in, int block = 512, int every = 1 << 30,
             std::function<void(int)> change = nullptr) {
    const int n = static_cast<int>(in[0].size());
    Signal out(nCh, std::vector<float>(n));
    plug->SetBlockSize(block);
    for (int start = 0, len = 0; start < n; start += len) {
      AllocationScope scope;
      if (change && start % every == 0) change(start / every);
      len = std::min({block, n - start, every - start % every});
      float *ins[2] = {}, *outs[2] = {};
      for (int c = 0; c < nCh; ++c)
        ins[c] = const_cast<float*>(&in[c][start]), outs[c] = &out[c][start];
      plug->ProcessAudio(ins, outs, len);
      EXPECT_EQ(scope.Count(), 0) << "block at " << start;
    }
    return out;
  }
  Tarn& effect() { return *static_cast<Tarn*>(plug.get()); }
  std::unique_ptr<IPlugAdaptor> plug;
  int nCh;
};

inline void ExpectNear(std::vector<double> got, std::vector<double> want, double tolerance) {
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], want[i], tolerance) << "#" << i;
}
