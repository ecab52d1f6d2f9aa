// The RTAS adaptor in a simulated host: registration, controls, automation both ways, settings
// chunks, the editor's view, host identification, and renders equal to tarn-render's.
#include <gtest/gtest.h>
#include <sndfile.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "AllocationCounter.h"
#include "ScratchFolder.h"
#include "dsp/Tarn.h"
#include "editor/HeadlessGraphics.h"
#include "editor/IControl.h"
#include "host/rtas/IPlugCustomUI.h"
#include "host/rtas/IPlugGroup.h"
#include "host/rtas/IPlugProcessRTAS.h"
#include "plug/FourCharCode.h"

using namespace std::string_literals;
using Signal = std::vector<std::vector<float>>;

namespace {

OSType Code(const char (&code)[5]) { return static_cast<OSType>(FourCharCode(code)); }
const OSType kTarn = Code("Tarn");

// The host application, playing the vendor's SDK too: it loads the plug-in's group, inserts a
// process of the type whose stems fit a track, renders blocks of its block size and logs what
// the plug-in tells it: "c=value" for a control moved, "+c" and "-c" for touch and release.
struct SimulatedHost : HostServices {
  SimulatedHost() { ConnectHostServices(this), group.Initialize(), group.CreateEffectTypes(); }
  ~SimulatedHost() { ConnectHostServices(nullptr); }
  std::unique_ptr<IPlugProcessRTAS> Insert(int channels) {
    const int32_t stem = channels == 1 ? kStemMono : kStemStereo;
    for (int k = 0; k < group.NumTypes(); ++k)
      if (const CEffectType* type = group.GetType(k); type->GetInputStem() == stem) {
        auto* process = dynamic_cast<IPlugProcessRTAS*>(type->CreateProcess(channels, channels));
        process->EffectInit();
        return std::unique_ptr<IPlugProcessRTAS>(process);
      }
    return nullptr;
  }
  Signal Render(IPlugProcessRTAS& process, Signal in) {
    Signal out = in;
    for (size_t at = 0; at < in[0].size(); at += blockSize) {
      float *ins[2], *outs[2];
      for (size_t c = 0; c < in.size(); ++c) ins[c] = &in[c][at], outs[c] = &out[c][at];
      AllocationScope scope;
      process.RenderAudio(ins, outs, std::min<int>(blockSize, in[0].size() - at));
      EXPECT_EQ(scope.Count(), 0);
    }
    return out;
  }
  int32_t Version() override { return version; }
  double SampleRate() override { return 48000.0; }
  int32_t BlockSize() override { return blockSize; }
  HostTime Time() override { return {}; }
  void ControlChanged(CProcess*, int32_t index, int32_t value) override {
    log += std::to_string(index) + "=" + std::to_string(value) + " ";
  }
  void ControlTouched(CProcess*, int32_t index, bool touched) override {
    log += (touched ? "+" : "-") + std::to_string(index) + " ";
  }
  void WindowResized(CProcess*, int w, int h) override {
    log += "resize " + std::to_string(w) + " " + std::to_string(h) + " ";
  }
  IPlugGroup group;
  int32_t version = 0x0801, blockSize = 100;
  std::string log;
};

// A settings chunk as the host keeps it: the header (the total size the doubles take, unless
// given), then the doubles.
struct Chunk {
  explicit Chunk(std::vector<double> values, OSType id = kTarn, int32_t size = -1) {
    get()->fSize = size < 0 ? kChunkHeaderSize + 8 * int32_t(values.size()) : size;
    get()->fChunkID = id;
    std::copy_n(reinterpret_cast<unsigned char*>(values.data()), 8 * values.size(),
                data + kChunkHeaderSize);
  }
  SFicPlugInChunk* get() { return reinterpret_cast<SFicPlugInChunk*>(data); }
  alignas(8) unsigned char data[256] = {};
};

std::vector<double> Values(IPlugRTAS& plug) {
  std::vector<double> values;
  for (int i = 0; i < plug.NParams(); ++i) values.push_back(plug.GetParam(i)->Value());
  return values;
}

Signal Tones(int channels, int n) {
  Signal s(channels, std::vector<float>(n));
  for (int i = 0; i < n * channels; ++i)
    s[i % channels][i / channels] = float(std::sin(0.013 * i) * (i % 9000 < 3000 ? 1.8 : 0.3));
  return s;
}

}  // namespace

// The maker, the plug-in and a mono and a stereo type with their stated codes and attributes.
TEST(RtasGroup, DescribesThePlugInAndOneTypePerChannelLayout) {
  SimulatedHost host;
  const IPlugGroup& g = host.group;
  EXPECT_EQ(std::tuple(g.GetManufacturerNames(), g.GetManufacturerID(), g.GetPlugInNames(),
                       g.GetVersion(), g.GetGroupAttributes(), g.NumTypes()),
            std::tuple("Tessmoral\nTessmoral\nTsMr"s, 0x54734D72u, "Tarn\nTarn"s, 1,
                       std::vector<int32_t>{14}, 2));
  for (int k = 0; k < g.NumTypes(); ++k) {
    const CEffectType* t = g.GetType(k);
    EXPECT_EQ(std::tuple(t->GetTypeID(), t->GetProductID(), t->GetCategory(), t->GetTypeNames(),
                         t->GetSampleRateSupport(), t->GetInputStem(), t->GetOutputStem(),
                         t->GetSideChainStem(), t->GetTypeAttributes(), t->GetCreator()),
              std::tuple(0x54524E31u + k, 0x5461726Eu, 64, "Tarn\nTarn"s, 6, k, k, 0,
                         std::vector<int32_t>{8, 48, 55}, &NewProcessRTAS));
  }
  std::string stems;
  for (int n = 0; n <= 9; ++n) stems += std::to_string(StemFormatForChannels(n)) + " ";
  EXPECT_EQ(stems, "-1 0 1 2 3 5 6 8 12 -1 ");
}

// Control 1 is the master bypass; parameter i is control i + 2 with ID " ld " + i: linear for
// doubles (range spread over 0 ... 2^31 - 1), lists of the display texts for the others.
TEST(RtasControls, MasterBypassThenOneControlPerParameter) {
  SimulatedHost host;
  auto p = host.Insert(2);
  ASSERT_EQ(std::pair(p->GetNumControls(), p->GetMasterBypassControlIndex()), std::pair(9, 1));
  const auto* bypass = dynamic_cast<CPluginControl_OnOff*>(p->GetControl(1));
  ASSERT_TRUE(bypass);
  EXPECT_EQ(std::tuple(bypass->GetID(), bypass->GetNames(), bypass->GetDefaultValue(),
                       bypass->IsAutomatable()),
            std::tuple(0x62797061u, "Master Bypass\nMastrByp\nMByp\nByp"s, 0, true));
  const int32_t half = 1073741824;  // lround(0.5 · (2^31 - 1))
  const int32_t defaults[] = {half, 0, half, half, half, half, 0, 0};
  for (int i = 0; i < 8; ++i) {
    const CPluginControl* c = p->GetControl(i + 2);
    const IParam* param = p->GetPlug()->GetParam(i);
    EXPECT_EQ(std::tuple(c->GetID(), c->GetNames(), c->GetDefaultValue(), c->GetValue()),
              std::tuple(0x206C6420u + i, std::string(param->GetNameForHost()), defaults[i],
                         defaults[i]));
    const auto* linear = dynamic_cast<const CPluginControl_Linear*>(c);
    const auto* list = dynamic_cast<const CPluginControl_List*>(c);
    EXPECT_TRUE(i < 6 ? linear && linear->GetStep() == param->GetStep() : !!list) << i;
  }
  const auto* mode = dynamic_cast<const CPluginControl_List*>(p->GetControl(8));
  EXPECT_EQ(mode->GetTexts(),
            (std::vector<std::string>{"Input", "RMS Difference Out-In", "Output"}));
  int16_t automatable[11];
  int32_t latency;
  for (int c = 0; c < 11; ++c) p->IsControlAutomatable(c, &automatable[c]);
  p->GetDelaySamplesLong(&latency);
  EXPECT_EQ(std::string(automatable, automatable + 11), std::string("\0\1\1\1\1\1\1\1\1\1\0", 11));
  EXPECT_EQ(std::tuple(latency, p->GetPlug()->GetSampleRate(), p->GetPlug()->GetBlockSize()),
            std::tuple(6, 48000.0, 100));
  auto mono = host.Insert(1);
  EXPECT_TRUE(p->GetPlug()->IsInChannelConnected(1) && !mono->GetPlug()->IsInChannelConnected(1));
}

// Host automation reaches the parameters converted (held to the control's range) and moves the
// editor; the master bypass never does, and sends the input through the pass-through delay.
// Edits in the editor reach the host as control values between touch and release.
TEST(RtasControls, AutomationAndEditsCrossBothWays) {
  SimulatedHost host;
  auto p = host.Insert(2);
  IPlugRTAS& plug = *p->GetPlug();
  const std::pair<int, int32_t> moves[] = {{3, kControlMax}, {2, -5}, {8, 2}, {9, 7}, {1, 1}};
  for (auto [control, value] : moves) p->HostSetsControlValue(control, value);
  EXPECT_EQ(Values(plug), (std::vector<double>{-20, 10, 0, 5, 0, -90, 2, 1}));
  EXPECT_EQ(plug.GetGUI()->GetControl(6)->GetValue(), 1.0);  // the Drive knob
  p->HostSetsControlValue(4, kControlMax / 2);
  EXPECT_NEAR(plug.GetParam(kOutputComp)->Value(), 0.0, 1e-7);  // never rounded to the step
  const Signal in = Tones(2, 300), out = host.Render(*p, in);
  for (int c = 0; c < 2; ++c)
    EXPECT_TRUE(std::equal(in[c].begin(), in[c].end() - 2, out[c].begin() + 2) && out[c][1] == 0);
  host.log.clear();
  plug.BeginInformHostOfParamChange(kDrive), plug.SetParameterFromGUI(kDrive, 0.5);
  plug.EndInformHostOfParamChange(kDrive);
  plug.SetParameterFromGUI(kVuMode, 0.5), plug.SetParameterFromGUI(kBypass, 0.0);
  plug.BeginInformHostOfParamChange(8), plug.InformHostOfParamChange(-3, 0.5);
  EXPECT_EQ(host.log, "+3 3=1073741824 -3 8=1 9=0 ");
  host.log.clear(), plug.InformHostOfProgramChange();
  EXPECT_EQ(host.log.substr(0, 39), "+2 2=0 -2 +3 3=1073741824 -3 +4 4=10737");
  EXPECT_EQ(host.log.substr(host.log.size() - 20), "+8 8=1 -8 +9 9=0 -9 ");
}

// One chunk 'Tarn' of 56 + 64 bytes holding the state; restored, it moves the controls without
// gestures and counts as a change. Wrong IDs, sizes short of the header and values that are not
// finite are refused, changing nothing; a short state is applied as far as it goes.
TEST(RtasChunks, StateRoundTripsAndBadChunksChangeNothing) {
  SimulatedHost host;
  auto a = host.Insert(2), b = host.Insert(1);
  int32_t count, size;
  OSType id;
  EXPECT_EQ(std::tuple(a->GetNumChunks(&count), count, a->GetIndexedChunkID(1, &id), id),
            std::tuple(0, 1, 0, kTarn));
  EXPECT_EQ(std::tuple(a->GetIndexedChunkID(0, &id), a->GetIndexedChunkID(2, &id),
                       a->GetChunkSize(Code("TRN1"), &size), a->GetChunkSize(kTarn, &size), size),
            std::tuple(-7157, -7157, -7157, 0, 120));
  const std::vector<double> state = {-3, 6.5, 2, 1, -4, -70, 1, 1};
  host.log.clear();
  EXPECT_EQ(a->SetChunk(kTarn, Chunk(state).get()), 0);
  EXPECT_EQ(host.log,
            "2=912680550 3=1395864371 4=1181116006 5=214748365 6=644245094 "
            "7=1789569706 8=1 9=1 ");
  Chunk saved({});
  EXPECT_EQ(std::tuple(a->GetChunk(kTarn, saved.get()), saved.get()->fSize, a->GetChangeCounter()),
            std::tuple(0, 120, 1));
  EXPECT_EQ(std::memcmp(saved.data + 56, state.data(), 64), 0);
  unsigned char equal[3];
  b->CompareActiveChunk(saved.get(), &equal[0]);
  EXPECT_EQ(b->SetChunk(kTarn, saved.get()), 0);
  b->CompareActiveChunk(saved.get(), &equal[1]);
  b->HostSetsControlValue(3, 0), b->CompareActiveChunk(saved.get(), &equal[2]);
  EXPECT_EQ(std::string(equal, equal + 3), std::string("\0\1\0", 3));
  EXPECT_EQ(b->CompareActiveChunk(Chunk(state, Code("TRN1")).get(), equal), -7157);
  const std::vector<double> before = Values(*b->GetPlug());
  host.log.clear();
  for (Chunk bad : {Chunk(state, Code("Tarm")), Chunk(state, kTarn, 55), Chunk({1, 2, NAN}),
                    Chunk({INFINITY}), Chunk({1, -INFINITY, 3, 4})}) {
    EXPECT_EQ(b->SetChunk(bad.get()->fChunkID, bad.get()), -7157);
    EXPECT_TRUE(Values(*b->GetPlug()) == before && b->GetChangeCounter() == 1 && host.log.empty());
  }
  EXPECT_EQ(b->SetChunk(kTarn, Chunk({1, 2, 3, 7}, kTarn, 56 + 28).get()), 0);  // three and a half
  EXPECT_EQ(Values(*b->GetPlug()), (std::vector<double>{1, 2, 3, 0, -4, -70, 1, 1}));
}

// The view: the editor's size, one custom view in a view of that size; the host's port opens the
// editor in its window at the port's negated origin (kept from the first), all of it redrawn;
// drawing goes to the editor while open; the control last clicked is what the host automates.
TEST(RtasEditor, TheViewPutsTheEditorInTheHostsWindow) {
  SimulatedHost host;
  auto p = host.Insert(2);
  Rect rect;
  p->GetViewRect(&rect);
  EXPECT_EQ(std::tuple(rect.top, rect.left, rect.bottom, rect.right), std::tuple(0, 0, 416, 304));
  std::unique_ptr<CPlugInView> view(p->CreateCPlugInView());
  auto* frame = dynamic_cast<CNoResourceView*>(view.get());
  ASSERT_TRUE(frame && frame->NumViews() == 1 && frame->GetBounds().right == 304);
  auto* digi = dynamic_cast<IPlugDigiView*>(frame->GetView(0));
  ASSERT_TRUE(digi && static_cast<IPlugCustomUI*>(digi->GetCustomUI())->GetProcess() == p.get());
  const Rect placed = digi->GetBounds();  // at 0, 0 with the editor's size
  EXPECT_EQ(std::tuple(placed.top, placed.left, placed.bottom, placed.right),
            std::tuple(0, 0, 416, 304));
  auto& gui = *static_cast<HeadlessGraphics*>(p->GetPlug()->GetGUI());
  int window = 0, other = 0;
  OpaqueGrafPtr port{&window, {-10, -20, 406, 284}}, later{&other, {-1, -1, 415, 303}};
  p->SetViewPort(&port);
  EXPECT_TRUE(gui.GetWindow() == &window && gui.mWindowLeft == 20 && gui.mWindowTop == 10);
  EXPECT_EQ(gui.Tick(), (IRECT{0, 0, 304, 416}));
  digi->DrawContents({0, 0, 10, 10});
  EXPECT_EQ(gui.mLastScreenUpdate, (IRECT{0, 0, 10, 10}));
  int32_t chosen[2];
  gui.GetParamIdxForPTAutomation(84, 168);  // the Drive knob
  p->ChooseControl({}, &chosen[0]), p->ChooseControl({}, &chosen[1]);
  EXPECT_EQ(std::pair(chosen[0], chosen[1]), std::pair(3, 0));
  p->SetViewPort(nullptr);
  digi->DrawContents({0, 0, 20, 20});
  EXPECT_TRUE(!gui.WindowIsOpen() && gui.mLastScreenUpdate == (IRECT{0, 0, 10, 10}));
  p->SetViewPort(&later);
  EXPECT_TRUE(gui.GetWindow() == &other && gui.mWindowLeft == 20 && gui.mWindowTop == 10);
  host.log.clear(), p->GetPlug()->ResizeGraphics(300, 400);
  EXPECT_EQ(host.log, "resize 300 400 ");
}

// The host's 16-bit version v (sign-extended) is kept as (v & 0xFF)·16 + (v & 0xFF00)·160.
TEST(RtasHost, IdentifiesProToolsWithItsVersionPacked) {
  for (auto [version, packed] :
       {std::pair(0x0801, 327696), {0x8102, 5283872}, {0x1FF00, 10444800}}) {
    SimulatedHost host;
    host.version = version;
    auto p = host.Insert(1);
    const int code = p->GetPlug()->GetHost();  // identified on the first question
    EXPECT_EQ(std::tuple(p->GetHostVersion(), code, p->GetPlug()->GetHostVersion(false)),
              std::tuple(packed, 2, packed));
  }
}

namespace {

void WriteWav(const char* path, const Signal& s) {
  SF_INFO info{0, 48000, int(s.size()), SF_FORMAT_WAV | SF_FORMAT_FLOAT, 0, 0};
  std::vector<float> frames;
  for (size_t i = 0; i < s[0].size(); ++i)
    for (const auto& channel : s) frames.push_back(channel[i]);
  SNDFILE* file = sf_open(path, SFM_WRITE, &info);
  sf_writef_float(file, frames.data(), s[0].size());
  sf_close(file);
}

Signal ReadWav(const char* path) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path, SFM_READ, &info);
  std::vector<float> frames(info.frames * info.channels);
  sf_readf_float(file, frames.data(), info.frames);
  sf_close(file);
  Signal s(info.channels, std::vector<float>(info.frames));
  for (size_t i = 0; i < frames.size(); ++i) s[i % info.channels][i / info.channels] = frames[i];
  return s;
}

}  // namespace

// Blocks rendered through the simulated host, settings restored from a chunk, equal what
// tarn-render makes of the same input and state to the bit: mono and stereo, Bypass off and on.
TEST(RtasRender, BlocksThroughTheHostEqualTheRenderersFile) {
  test_files::ScratchFolder here;
  for (int channels : {1, 2})
    for (double bypass : {0.0, 1.0}) {
      const std::vector<double> state = {-3, 6.5, 2, 1, -4, -70, 1, bypass};
      const Signal in = Tones(channels, 20000);
      WriteWav("in.wav", in);
      test_files::WriteBytes("s.state", test_files::Bytes((unsigned char*)state.data(),
                                                          (unsigned char*)state.data() + 64));
      ASSERT_EQ(std::system(TARN_RENDER " in.wav --load-state s.state -q > /dev/null"), 0);
      SimulatedHost host;
      auto p = host.Insert(channels);
      ASSERT_EQ(p->SetChunk(kTarn, Chunk(state).get()), 0);
      EXPECT_TRUE(host.Render(*p, in) == ReadWav("in-tarn.wav")) << channels << " " << bypass;
    }
}
