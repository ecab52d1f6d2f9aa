#pragma once

#include <vector>

#include "plug/FourCharCode.h"
#include "plug/IPlugOffline.h"

// A small plug-in on the offline adaptor for exercising the base. With `scale` set, its effect
// writes every input sample times `scale` to the matching output; without it, the base's default
// processing runs. It records every OnParamChange.
class TestPlug : public IPlugOffline {
public:
  explicit TestPlug(const char* channelIO = "1-1 2-2", int nParams = 3, int latency = 6,
                    int nPresets = 1)
      : IPlugOffline(IPlugInstanceInfo{}, nParams, channelIO, nPresets, "Test", "", "Maker",
                     0x10203, FourCharCode("Test"), FourCharCode("Mkr1"), latency, false, false, false, 0) {
    for (int i = 0; i < nParams; ++i) GetParam(i)->InitDouble("p", 0.0, -10.0, 10.0, 0.1, "dB");
  }

  void OnParamChange(int paramIdx) override {
    IPlugOffline::OnParamChange(paramIdx);
    changes.push_back(paramIdx);
  }

  void ProcessDoubleReplacing(double** inputs, double** outputs, int nFrames) override {
    if (scale == 0.0) {
      IPlugOffline::ProcessDoubleReplacing(inputs, outputs, nFrames);
      return;
    }
    lastFrames = nFrames;
    int n = NInChannels() < NOutChannels() ? NInChannels() : NOutChannels();
    for (int c = 0; c < n; ++c) {
      for (int s = 0; s < nFrames; ++s) outputs[c][s] = inputs[c][s] * scale;
    }
  }

  double scale = 0.0;
  int lastFrames = -1;
  std::vector<int> changes;
};
