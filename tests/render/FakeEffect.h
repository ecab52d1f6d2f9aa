#pragma once

// A stand-in for the plug-in, simple enough that what the renderer does with it can be
// predicted by hand: two parameters, "Output Gain" (0 to 2, default 1) and "Mode" (texts "A",
// "B", "C"), a state of their two values as doubles, and processing that multiplies by the gain.

#include <string>
#include <vector>

#include "ParamLookup.h"
#include "RenderEffect.h"

namespace render_test {

// A parameter description whose texts map to their positions, exact text only.
render::ParamInfo FakeParam(const std::string& name, double min, double max,
                            std::vector<std::string> texts = {});

class FakeEffect : public render::RenderEffect {
 public:
  // Everything the renderer asks of the effect, in order: "restore 1 0", "set 0 0.5",
  // "prepare 44100 1 512"; block lengths go to `blocks`.
  struct Log {
    std::vector<std::string> calls;
    std::vector<int> blocks;
  };

  explicit FakeEffect(Log* log) : mLog(log) {}

  std::vector<render::ParamInfo> Params() override;
  std::vector<unsigned char> SaveState() override;
  std::string RestoreState(const std::vector<unsigned char>& state) override;
  void SetParameter(int index, double value) override;
  void Prepare(double sampleRate, int nChannels, int maxBlockFrames) override;
  void Process(float** inputs, float** outputs, int nFrames) override;
  double Needle() const override { return 0.125; }

  static std::vector<unsigned char> State(double gain, double mode);

 private:
  Log* mLog;
  int mChannels = 0;
  double mValues[2] = {1.0, 0.0};
};

}  // namespace render_test
