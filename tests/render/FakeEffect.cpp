#include "FakeEffect.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace render_test {

namespace {

std::string Call(const char* format, double a, double b = 0, double c = 0) {
  char text[128];
  std::snprintf(text, sizeof text, format, a, b, c);
  return text;
}

}  // namespace

render::ParamInfo FakeParam(const std::string& name, double min, double max,
                            std::vector<std::string> texts) {
  render::ParamInfo info;
  info.name = name;
  info.min = min;
  info.max = max;
  info.displayTexts = texts;
  info.mapDisplayText = [texts](const char* text, int* value) {
    for (std::size_t i = 0; i < texts.size(); ++i) {
      if (texts[i] == text) {
        *value = static_cast<int>(i);
        return true;
      }
    }
    return false;
  };
  return info;
}

std::vector<render::ParamInfo> FakeEffect::Params() {
  return {FakeParam("Output Gain", 0.0, 2.0), FakeParam("Mode", 0.0, 2.0, {"A", "B", "C"})};
}

std::vector<unsigned char> FakeEffect::State(double gain, double mode) {
  std::vector<unsigned char> bytes(16);
  std::memcpy(bytes.data(), &gain, 8);
  std::memcpy(bytes.data() + 8, &mode, 8);
  return bytes;
}

std::vector<unsigned char> FakeEffect::SaveState() { return State(mValues[0], mValues[1]); }

std::string FakeEffect::RestoreState(const std::vector<unsigned char>& state) {
  if (state.size() != 16)
    return "is " + std::to_string(state.size()) + " bytes; a state is 16 bytes";
  double values[2];
  std::memcpy(values, state.data(), 16);
  for (int i = 0; i < 2; ++i) {
    if (std::isfinite(values[i])) continue;
    const char* what = std::isnan(values[i]) ? "NaN" : values[i] > 0 ? "+infinity" : "-infinity";
    return std::string("holds ") + what + " for \"" + Params()[i].name + "\"";
  }
  std::memcpy(mValues, values, 16);
  mLog->calls.push_back(Call("restore %g %g", mValues[0], mValues[1]));
  return std::string();
}

void FakeEffect::SetParameter(int index, double value) {
  mLog->calls.push_back(Call("set %g %g", index, value));
  const render::ParamInfo param = Params()[index];
  mValues[index] = std::clamp(value, param.min, param.max);
}

void FakeEffect::Prepare(double sampleRate, int nChannels, int maxBlockFrames) {
  mLog->calls.push_back(Call("prepare %g %g %g", sampleRate, nChannels, maxBlockFrames));
  mChannels = nChannels;
}

void FakeEffect::Process(float** inputs, float** outputs, int nFrames) {
  mLog->blocks.push_back(nFrames);
  const float gain = static_cast<float>(mValues[0]);
  for (int c = 0; c < mChannels; ++c) {
    for (int i = 0; i < nFrames; ++i) outputs[c][i] = inputs[c][i] * gain;
  }
}

}  // namespace render_test
