#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "HostBuffers.h"
#include "plug/IPlugOffline.h"

// Offline plug-in, parameters over -10 ... 10 (step 0.1), recording every OnParamChange; its
// effect scales each input into the matching output, or is the base's default when scale is 0.
struct TestPlug : IPlugOffline {
  explicit TestPlug(const char* io = "1-1 2-2", int nParams = 3, int latency = 6, int nPresets = 1)
      : IPlugOffline(IPlugInstanceInfo{}, nParams, io, nPresets, "Test", "", "Maker", 0x10203,
                     0x54657374, 0x4D6B7231, latency, false, false, false, 0) {
    for (int i = 0; i < nParams; ++i) GetParam(i)->InitDouble("p", 0.0, -10.0, 10.0, 0.1, "dB");
  }
  void OnParamChange(int idx) override { IPlugOffline::OnParamChange(idx), changes.push_back(idx); }
  void ProcessDoubleReplacing(double** in, double** out, int n) override {
    if (scale == 0.0) return IPlugOffline::ProcessDoubleReplacing(in, out, n);
    for (int c = 0; c < std::min(NInChannels(), NOutChannels()); ++c)
      for (int s = 0; s < n; ++s) out[c][s] = in[c][s] * scale;
  }
  std::vector<double> Values() const {
    std::vector<double> v;
    for (int i = 0; i < NParams(); ++i) v.push_back(GetParam(i)->Value());
    return v;
  }
  double scale = 0.0;
  std::vector<int> changes;
};
