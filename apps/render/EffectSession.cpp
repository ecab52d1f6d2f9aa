#include "EffectSession.h"

#include "dsp/Tarn.h"
#include "editor/HeadlessGraphics.h"
#include "lice/LICE_PNG.h"
#include "lice/LICE_SysBitmap.h"
#include "plug/ByteChunk.h"
#include "plug/IParam.h"
#include "plug/IPlugOffline.h"
#include "plug/StateCheck.h"

namespace render {

namespace {

ParamInfo DescribeParam(IParam* param) {
  ParamInfo info;
  info.name = param->GetNameForHost();
  info.min = param->GetMin();
  info.max = param->GetMax();
  info.value = param->Value();
  char display[128];
  param->GetDisplayForHost(display);
  info.display = display;
  info.unit = param->GetLabelForHost();
  const int nTexts = static_cast<int>(param->GetNDisplayTexts());
  for (int i = 0; i < nTexts; ++i)
    info.displayTexts.push_back(param->GetDisplayTextAtIdx(i, nullptr));
  info.mapDisplayText = [param](const char* text, int* value) {
    return param->MapDisplayText(text, value);
  };
  return info;
}

}  // namespace

// MakePlug always makes a Tarn; it hands it over as the adaptor it derives from.
EffectSession::EffectSession(bool withEditor)
    : mPlug(MakePlug(withEditor ? IPlugInstanceInfo{MakeHeadlessEditor} : IPlugInstanceInfo{})),
      mTarn(static_cast<Tarn*>(mPlug.get())) {}

std::vector<ParamInfo> EffectSession::Params() {
  std::vector<ParamInfo> table;
  for (int i = 0; i < mPlug->NParams(); ++i) table.push_back(DescribeParam(mPlug->GetParam(i)));
  return table;
}

std::vector<unsigned char> EffectSession::SaveState() {
  ByteChunk chunk;
  mPlug->SerializeState(&chunk);
  const unsigned char* bytes = chunk.GetBytes();
  return std::vector<unsigned char>(bytes, bytes + chunk.Size());
}

std::string EffectSession::RestoreState(const std::vector<unsigned char>& state) {
  return RestoreWholeState(*mPlug, state.data(), state.size());
}

void EffectSession::SetParameter(int index, double value) { mPlug->SetParameter(index, value); }

void EffectSession::Prepare(double sampleRate, int nChannels, int maxBlockFrames) {
  mPlug->SetSampleRate(sampleRate);
  mPlug->Reset();
  mPlug->SetIO(nChannels, nChannels);
  mPlug->SetBlockSize(maxBlockFrames);
}

void EffectSession::Process(float** inputs, float** outputs, int nFrames) {
  mPlug->ProcessAudio(inputs, outputs, nFrames);
}

double EffectSession::Needle() const { return mTarn->GetNeedle(); }

std::vector<unsigned char> EffectSession::EditorSnapshot(std::vector<std::string>* missingImages) {
  auto* editor = static_cast<HeadlessGraphics*>(mPlug->GetGUI());
  std::vector<unsigned char> png;
  if (!editor) return png;
  editor->Tick();
  *missingImages = editor->MissingImages();
  LICE_EncodePNG(editor->GetDrawBitmap(), false, &png);
  return png;
}

std::unique_ptr<RenderEffect> MakeTarnEffect(bool withEditor, std::string*) {
  return std::make_unique<EffectSession>(withEditor);
}

}  // namespace render
