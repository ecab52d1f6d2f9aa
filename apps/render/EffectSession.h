#pragma once

#include <memory>

#include "RenderEffect.h"
#include "plug/IPlugAdaptor.h"

class Tarn;

namespace render {

// The Tarn plug-in driven as an offline host drives it: made by the plug-in's own factory,
// parameters and state through the base's table and state calls, audio through the host's
// single-precision path (ProcessAudio, which widens to double, runs the effect and narrows back).
class EffectSession : public RenderEffect {
 public:
  explicit EffectSession(bool withEditor = false);

  std::vector<ParamInfo> Params() override;
  std::vector<unsigned char> SaveState() override;
  std::string RestoreState(const std::vector<unsigned char>& state) override;
  void SetParameter(int index, double value) override;
  void Prepare(double sampleRate, int nChannels, int maxBlockFrames) override;
  void Process(float** inputs, float** outputs, int nFrames) override;
  double Needle() const override;
  std::vector<unsigned char> EditorSnapshot(std::vector<std::string>* missingImages) override;

 private:
  std::unique_ptr<IPlugAdaptor> mPlug;
  Tarn* mTarn;  // the same object as mPlug, seen as the effect
};

}  // namespace render
