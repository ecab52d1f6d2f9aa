#pragma once
// Helpers of the dsp tests (Tarn.h brings in every dsp header): host runs and tables of checks.
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
    plug->SetIO(channels, channels), plug->SetSampleRate(kRate);
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

// `in` rendered with every control moving each 1500 frames, the crosstalk switching between off
// and xt; the needle's last value follows as one more channel of one frame.
inline Signal Automated(const Signal& in, int channels, int block, double xt) {
  Host host(channels);
  Signal out = host.Run(in, block, 1500, [&](int k) {
    host.Set(kDrive, 2.0 + 2.5 * (k % 4)).Set(kInputTrim, 4.0 * (k % 3) - 6).Set(kAsymmetry, 2 * k);
    host.Set(kFreqResponse, k % 2 ? -7 : 4).Set(kBypass, k == 3).Set(kCrosstalk, k % 3 ? xt : -120);
  });
  out.push_back({float(host.effect().GetNeedle())});
  return out;
}

inline void ExpectNear(std::vector<double> got, std::vector<double> want, double tolerance) {
  for (std::size_t i = 0; i < got.size(); ++i) EXPECT_NEAR(got[i], want[i], tolerance) << "#" << i;
}
