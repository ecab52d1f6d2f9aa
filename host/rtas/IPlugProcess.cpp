#include "host/rtas/IPlugProcess.h"

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "editor/IGraphics.h"
#include "host/rtas/IPlugCustomUI.h"
#include "host/rtas/PlugDescription.h"
#include "host/rtas/RtasEditor.h"
#include "plug/IPlugAdaptor.h"

namespace {

constexpr OSType kMasterBypassID = Code("bypa");
constexpr const char* kMasterBypassNames = "Master Bypass\nMastrByp\nMByp\nByp";
constexpr OSType kFirstParamID = 0x206C6420;  // " ld ", one more per parameter
constexpr const char* kDigiViewName = "!IPlugDigiView[('NoID')]";

unsigned char* ChunkData(SFicPlugInChunk* chunk) {
  return reinterpret_cast<unsigned char*>(chunk) + kChunkHeaderSize;
}

// Whole doubles of the data that are not finite numbers: such a state is refused whole.
bool HoldsNonFinite(const unsigned char* data, int32_t size) {
  for (int32_t at = 0; at + 8 <= size; at += 8) {
    double value;
    std::memcpy(&value, data + at, sizeof value);
    if (!std::isfinite(value)) return true;
  }
  return false;
}

}  // namespace

IPlugProcess::IPlugProcess(OSType chunkID)
    : mPlug(MakePlug(RtasInstanceInfo())), mChunkID(chunkID) {}

// The editor interface first: it refers to the plug-in's editor.
IPlugProcess::~IPlugProcess() {
  delete mCustomUI;
  delete mPlug;
}

void IPlugProcess::EffectInit() {
  if (!mPlug) return;
  AddControl(new CPluginControl_OnOff(kMasterBypassID, kMasterBypassNames, false, true));
  DefineMasterBypassControlIndex(1);
  for (int i = 0; i < mPlug->NParams(); ++i) AddParamControl(i, kFirstParamID + i);
  mPlug->SetIO(GetNumInputs(), GetNumOutputs());
  mPlug->SetSampleRate(GetSampleRate());
  mPlug->Reset();
}

// A parameter of no type gets no control but still uses up its ID.
void IPlugProcess::AddParamControl(int paramIdx, OSType id) {
  const IParam* p = mPlug->GetParam(paramIdx);
  const char* name = p->GetNameForHost();
  const bool automate = p->GetCanAutomate();
  switch (p->Type()) {
    case IParam::kTypeBool:
    case IParam::kTypeEnum: {
      std::vector<std::string> texts;
      for (int k = 0; k < p->GetNDisplayTexts(); ++k) texts.push_back(p->GetDisplayTextAtIdx(k));
      AddControl(new CPluginControl_List(id, name, texts, int(p->GetDefault()), automate));
      break;
    }
    case IParam::kTypeInt:
      AddControl(new CPluginControl_Discrete(id, name, int(p->GetMin()), int(p->GetMax()),
                                             int(p->GetDefault()), automate));
      break;
    case IParam::kTypeDouble:
      AddControl(new CPluginControl_Linear(id, name, p->GetMin(), p->GetMax(), p->GetStep(),
                                           p->GetDefault(), automate,
                                           ValueDisplay::kStandardPrefixes));
      break;
    default:
      break;
  }
}

void IPlugProcess::UpdateControlValueInAlgorithm(int32_t controlIndex) {
  if (mPlug && IsValidControlIndex(controlIndex) && controlIndex != GetMasterBypassControlIndex())
    mPlug->SetParameter(controlIndex);
}

ComponentResult IPlugProcess::GetNumChunks(int32_t* count) { return *count = 1, kNoErr; }

ComponentResult IPlugProcess::GetIndexedChunkID(int32_t index, OSType* id) {
  if (index != 1) return kUnknownChunkErr;
  return *id = mChunkID, kNoErr;
}

ComponentResult IPlugProcess::GetChunkSize(OSType id, int32_t* size) {
  ByteChunk state;
  if (id != mChunkID || !mPlug->SerializeState(&state)) return kUnknownChunkErr;
  return *size = state.Size() + kChunkHeaderSize, kNoErr;
}

ComponentResult IPlugProcess::GetChunk(OSType id, SFicPlugInChunk* chunk) {
  ByteChunk state;
  if (id != mChunkID || !mPlug->SerializeState(&state)) return kUnknownChunkErr;
  chunk->fSize = state.Size() + kChunkHeaderSize;
  std::memcpy(ChunkData(chunk), state.GetBytes(), state.Size());
  return kNoErr;
}

// A state shorter than the plug-in's is applied as far as it goes, as the plug-in base restores
// states. A size that leaves no room for the header, or values that are not finite numbers,
// could only come from a damaged session: refused, changing nothing.
ComponentResult IPlugProcess::SetChunk(OSType id, SFicPlugInChunk* chunk) {
  const int32_t size = chunk->fSize - kChunkHeaderSize;
  if (id != mChunkID || size < 0 || HoldsNonFinite(ChunkData(chunk), size)) return kUnknownChunkErr;
  ByteChunk state;
  state.PutBytes(ChunkData(chunk), size);
  mPlug->UnserializeState(&state, 0);
  for (int i = 0; i < mPlug->NParams(); ++i) {
    int value;
    if (mPlug->ControlValueForParam(i, &value)) SetControlValue(i + 2, value);
  }
  IncrementChangeCounter();
  return kNoErr;
}

ComponentResult IPlugProcess::CompareActiveChunk(SFicPlugInChunk* chunk, unsigned char* isEqual) {
  if (chunk->fChunkID != mChunkID) return kUnknownChunkErr;
  *isEqual = mPlug->CompareState(ChunkData(chunk), 0);
  return kNoErr;
}

ComponentResult IPlugProcess::ChooseControl(Point, int32_t* controlIndex) {
  IGraphics* editor = mPlug ? mPlug->GetGUI() : nullptr;
  const int paramIdx = editor ? editor->GetLastClickedParamForPTAutomation() : -1;
  *controlIndex = paramIdx < 0 ? 0 : paramIdx + 2;
  return kNoErr;
}

void IPlugProcess::MakeCustomUI() {
  if (mCustomUI) return;
  mCustomUI = CreateIPlugCustomUI(this);
  mCustomUI->GetRect(&mPlugInRect);
}

CPlugInView* IPlugProcess::CreateCPlugInView() {
  if (!mPlug) return nullptr;
  MakeCustomUI();
  const int w = mPlugInRect.right - mPlugInRect.left, h = mPlugInRect.bottom - mPlugInRect.top;
  auto* view = new CNoResourceView(w, h);
  auto* digiView = static_cast<IPlugDigiView*>(view->AddView(kDigiViewName, 0, 0, w, h));
  if (!digiView) {
    delete view;
    return nullptr;
  }
  digiView->SetCustomUI(mCustomUI);
  mView = view, mDigiView = digiView;
  return view;
}

// A port whose bounds start at or before 0 on both axes gives the editor its offset (the
// negated origin), once.
void IPlugProcess::SetViewPort(OpaqueGrafPtr* port) {
  CProcess::SetViewPort(port);
  if (!port) {
    if (mCustomUI) mCustomUI->Close();
    if (mDigiView) mDigiView->SetCustomUI(nullptr);
    mView = nullptr, mDigiView = nullptr;
    return;
  }
  if (port->bounds.left <= 0 && port->bounds.top <= 0 && !mEditorOffsetSet) {
    mEditorOffset = {static_cast<int16_t>(-port->bounds.top),
                     static_cast<int16_t>(-port->bounds.left)};
    mEditorOffsetSet = true;
  }
  MakeCustomUI();
  mCustomUI->Open(port->window, mEditorOffset.h, mEditorOffset.v);
}

void IPlugProcess::GetViewRect(Rect* rect) {
  MakeCustomUI();
  mCustomUI->GetRect(rect);
}

// The SDK's idle time is the plug-in's.
void IPlugProcess::ProcessDoIdle() {
  if (mPlug) mPlug->OnIdle();
}

void IPlugProcess::ResizeGraphics(int w, int h) {
  if (mCustomUI) mCustomUI->GetRect(&mPlugInRect);
  if (mView) mView->SetBounds(mPlugInRect);
  DispatchWindowResize(w, h);
}

// The 16-bit version's low byte times 16 plus its high byte times 0xA000: the packing hosts'
// versions have always been kept in here, odd as it is.
int IPlugProcess::GetHostVersion() const {
  const int v = static_cast<int16_t>(static_cast<uint16_t>(FicGetVersion()));
  return (v & 0xFF) * 16 + (v & 0xFF00) * 160;
}
