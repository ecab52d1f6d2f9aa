// The LV2 binding through its C interface. Its sound against the effect's is host.sh's part.
#include <gtest/gtest.h>
#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/options/options.h>

#include <algorithm>
#include <cmath>

#include "AllocationCounter.h"
#include "Lv2Descriptor.h"
#include "Lv2Instance.h"
#include "TurtleWriter.h"
#include "dsp/Tarn.h"

namespace {

using Channels = std::vector<std::vector<float>>;
using Bytes = std::vector<unsigned char>;
using Names = std::vector<std::string>;
constexpr int kMono = 0, kStereo = 1;
enum Offers { kMap = 1, kBounded = 2, kPromised = kMap | kBounded };

// Tones with a loud burst, different per channel: saturator, crosstalk and clamp all work. A
// stretch of the first channel and one sample of the last are silent, or NaN and infinities.
Channels Signal(int nChannels, int n, bool nonFinite = false) {
  Channels signal(nChannels, std::vector<float>(n));
  for (int i = 0; i < n * nChannels; ++i)
    signal[i % nChannels][i / nChannels] =
        std::sin(0.031f * i) * (std::abs(2 * i / nChannels - n) < n / 4 ? 2.5f : 0.4f);
  for (int i = 3000; i < 3100; ++i) signal[0][i] = nonFinite ? (i % 2 ? NAN : -INFINITY) : 0;
  signal[nChannels - 1][5000] = nonFinite ? INFINITY : 0;
  return signal;
}

// The state holding `values`: one double per parameter in index order, little-endian here.
Bytes StateOf(std::vector<double> values) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(values.data());
  return Bytes(bytes, bytes + values.size() * sizeof(double));
}

// One URID map for the process, as a host has, so that states move between instances.
Names gUris;
LV2_URID Map(const char* uri) {
  if (std::find(gUris.begin(), gUris.end(), uri) == gUris.end()) gUris.push_back(uri);
  return std::find(gUris.begin(), gUris.end(), uri) - gUris.begin() + 1;
}

// A small host: the features it offers, a log that keeps what it is told, one float per control
// port (0-7 the parameters at their defaults, 8 "enabled", 9 latency, 10 needle), a state store.
struct Host {
  Host(int variant, double rate = 48e3, int offers = kMap, int32_t bound = 0) : maxBlock(bound) {
    const LV2_URID key = bound ? Map(LV2_BUF_SIZE__maxBlockLength) : 0;
    options[0] = {LV2_OPTIONS_INSTANCE, 0, key, sizeof(int32_t), Map(LV2_ATOM__Int), &maxBlock};
    features = {&logFeature, &optionsFeature};
    if (offers & kMap) features.push_back(&mapFeature);
    if (offers & kBounded) features.push_back(&boundedFeature);
    features.push_back(nullptr);
    d = tarnlv2::Descriptor(variant);
    handle = d->instantiate(d, rate, "", features.data());
    state = static_cast<const LV2_State_Interface*>(d->extension_data(LV2_STATE__interface));
    for (uint32_t port = 0; handle && port < 11; ++port)
      d->connect_port(handle, port, &control[port]);
  }
  ~Host() { handle ? d->cleanup(handle) : void(); }
  void Step() { d->run(handle, 0); }  // takes the controls, renders nothing
  // All of `in` into `out` (the same buffers: in place) in runs of `run` frames.
  void Run(Channels& in, Channels& out, int run) {
    const int n = in[0].size(), nChannels = in.size();
    for (int done = 0; done < n; done += run) {
      for (int c = 0; c < nChannels; ++c) {
        d->connect_port(handle, 11 + c, &in[c][done]);
        d->connect_port(handle, 11 + nChannels + c, &out[c][done]);
      }
      d->run(handle, std::min(run, n - done));
    }
  }
  Bytes Saved() {  // empty when nothing is saved
    const auto store = [](void* out, uint32_t, const void* value, size_t size, uint32_t, uint32_t) {
      const auto* bytes = static_cast<const unsigned char*>(value);
      static_cast<Bytes*>(out)->assign(bytes, bytes + size);
      return LV2_STATE_SUCCESS;
    };
    Bytes saved;
    return state->save(handle, store, &saved, 0, features.data()) ? Bytes() : saved;
  }
  LV2_State_Status Restore(Bytes bytes, const char* key = tarnlv2::kStateKeyUri,
                           const char* type = LV2_ATOM__Chunk) {
    stored = {Map(key), Map(type), bytes};
    const auto retrieve = [](void* host, uint32_t key, size_t* size, uint32_t* type, uint32_t*) {
      const auto& [storedKey, storedType, bytes] = static_cast<Host*>(host)->stored;
      *size = bytes.size();
      *type = storedType;
      return key == storedKey ? static_cast<const void*>(bytes.data()) : nullptr;
    };
    return state->restore(handle, retrieve, this, 0, features.data());
  }
  static int Print(void* host, LV2_URID type, const char* format, va_list args) {
    char text[256];
    std::vsnprintf(text, sizeof text, format, args);
    static_cast<Host*>(host)->log.push_back(
        (type == Map(LV2_LOG__Error) ? "error: " : "warning: ") + std::string(text));
    return 0;
  }

  const LV2_Descriptor* d = nullptr;
  LV2_Handle handle = nullptr;
  const LV2_State_Interface* state;
  float control[11] = {0, 0, 0, 5, 0, -90, 0, 0, 1, 0, 0};
  Names log;
  std::tuple<LV2_URID, LV2_URID, Bytes> stored;
  int32_t maxBlock;
  LV2_Options_Option options[2] = {};
  LV2_URID_Map map{nullptr, [](void*, const char* uri) { return Map(uri); }};
  LV2_Log_Log logger{this, nullptr, Print};
  LV2_Feature logFeature{LV2_LOG__log, &logger}, optionsFeature{LV2_OPTIONS__options, options};
  LV2_Feature mapFeature{LV2_URID__map, &map},
      boundedFeature{LV2_BUF_SIZE__boundedBlockLength, nullptr};
  std::vector<const LV2_Feature*> features;
};

}  // namespace

// Whatever the run length, in-place buffers or bound on runs (the host's if promised with a URID
// map, at most 65536), the sound is the same, NaN and infinities silent, and as new reactivated.
TEST(Lv2Run, RunLengthsBoundsInPlaceBuffersAndNonFiniteInputSoundTheSame) {
  // Run length, in place (with NaN and infinities), features offered, bound, longest stretch.
  const int cases[][5] = {{512, 0, kPromised, 0, 8192},
                          {1, 0, kPromised, 64, 64},
                          {7, 1, kMap, 64, 8192},
                          {10000, 0, kBounded, 64, 8192},
                          {10000, 1, kPromised, 4096, 4096},
                          {1000, 0, kPromised, -5, 8192},
                          {10000, 0, kPromised, 16777216, 65536}};
  for (int variant : {kMono, kStereo}) {
    const Channels in = Signal(variant + 1, 10000);
    Channels reference;
    for (const auto& [run, inPlace, offers, bound, longest] : cases) {
      Host host(variant, 48e3, offers, bound);
      host.control[kDrive] = 6.5;  // trim, output and bypass at the restored defaults
      Channels input = inPlace ? Signal(variant + 1, 10000, true) : in, out = in;
      if (inPlace) {
        host.Run(out, out, 700);
        ASSERT_EQ(host.Restore(StateOf({0, 6.5, 0, 5, 0, -90, 0, 0})), LV2_STATE_SUCCESS);
        host.d->deactivate(host.handle), host.d->activate(host.handle);
      }
      host.Run(input, inPlace ? input : out, run);
      if (reference.empty()) reference = out;
      EXPECT_EQ(inPlace ? input : out, reference) << variant << ", runs of " << run;
      EXPECT_EQ(static_cast<tarnlv2::Lv2Instance*>(host.handle)->MaxBlock(), longest);
    }
  }
}

// The host's bypass ("enabled" 0), its 5 ms fade over, sends the input out delayed by the
// latency, NaN and infinities as silence (its exactness: HostBypassTest). No run allocates.
TEST(Lv2Run, BypassPassesNonFiniteInputAsSilenceAndRunsAllocateNothing) {
  for (int variant : {kMono, kStereo}) {
    const Channels silent = Signal(variant + 1, 8192);
    Channels in = Signal(variant + 1, 8192, true), out[2] = {silent, silent};
    Host host(variant, 48e3, kPromised, 4096);
    AllocationScope scope;
    const int moves[][3] = {{kDrive, 9, 1}, {8, 0, 8192}, {8, 1, 8192}, {kVuMode, 1, 4096}};
    for (const auto& [port, value, run] : moves) {
      host.control[port] = value;
      host.Run(in, out[port == 8 && value == 0], run);
    }
    EXPECT_EQ(scope.Count(), 0) << "variant " << variant;
    for (int c = 0; c <= variant; ++c)
      EXPECT_TRUE(
          std::equal(silent[c].begin() + 234, silent[c].end() - 6, out[1][c].begin() + 240));
  }
}

// The needle output is the needle's place on the meter's scale, not the meter's raw level: a
// steady 0.5 reads 0.5 · e^2.07 on the input meter, far past the scale's end at 0.98.
TEST(Lv2Run, TheNeedlePortGivesThePlaceOnTheScale) {
  Host host(kStereo);
  Channels in(2, std::vector<float>(48000, 0.5f)), out = in;
  host.Run(in, out, 4800);
  EXPECT_EQ(host.control[10], 0.98f);
}

// Controls act as automation (clamped, never rounded, NaN ignored) when moved, at a first run when
// unlike the instance. Only a whole, finite state of 64 bytes is restored; others warn and fail.
TEST(Lv2State, ControlsStatesAndRefusals) {
  Host host(kMono, 48e3, kMap), first(kStereo), unmapped(kMono, 48e3, 0);
  const float moved[] = {50, 2.75, 0, 0, 0, -200, 1.5, 0.25};
  std::copy(moved, moved + 8, host.control);
  host.Step();
  host.control[kDrive] = NAN;
  host.Step();
  const Bytes saved = host.Saved(), good = StateOf({1, 7, -3, 2, 4, -100, 2, 0});
  EXPECT_EQ(saved, StateOf({20, 2.75, 0, 0, 0, -120, 1.5, 0.25}));
  std::vector<Bytes> bad = {StateOf({1, 2}), Bytes(good.begin(), good.end() - 1), good};
  bad[2].push_back(0);
  for (double x : {NAN, INFINITY, -INFINITY}) bad.push_back(StateOf({1, 2, 3, 4, 5, -80, 1, x}));
  for (const Bytes& state : bad) EXPECT_EQ(host.Restore(state), LV2_STATE_ERR_UNKNOWN);
  ASSERT_EQ(host.log.size(), bad.size());
  EXPECT_EQ(host.log[0].rfind("warning: ", 0), 0u) << host.log[0];
  EXPECT_EQ(host.Restore(good, tarnlv2::kStateKeyUri, LV2_ATOM__String), LV2_STATE_ERR_BAD_TYPE);
  EXPECT_EQ(host.Restore(good, "urn:other#state"), LV2_STATE_ERR_NO_PROPERTY);
  EXPECT_EQ(host.Saved(), saved);
  for (Host* h : {&host, &first}) {
    h->control[kFreqResponse] = -4;
    ASSERT_EQ(h->Restore(good), LV2_STATE_SUCCESS);
    h->Step();
  }
  EXPECT_EQ(host.Saved(), StateOf({1, 7, -3, 2, -4, -100, 2, 0}));
  EXPECT_EQ(first.Saved(), StateOf({0, 0, 0, 5, -4, -90, 0, 0}));
  EXPECT_TRUE(unmapped.Saved().empty());
  EXPECT_EQ(unmapped.Restore(good), LV2_STATE_ERR_NO_FEATURE);
}

// Outside 8000 to 768000 Hz the filters are unstable: no instance, and the host's log says why.
TEST(Lv2Instantiate, RefusesSampleRatesOutsideItsRange) {
  const std::pair<double, std::string> cases[] = {{7999, "7999"},     {8000, ""},   {768000, ""},
                                                  {768001, "768001"}, {NAN, "nan"}, {0, "0"}};
  for (const auto& [rate, shown] : cases) {
    const std::string error = "error: Tarn: cannot run at " + shown + " Hz; it runs at 8000 to";
    Host host(kStereo, rate, kMap);
    EXPECT_EQ(!host.handle, !shown.empty()) << rate;
    EXPECT_EQ(host.log, shown.empty() ? Names{} : Names{error + " 768000 Hz\n"});
  }
  EXPECT_EQ(tarnlv2::Descriptor(2), nullptr);  // two plug-ins: mono and stereo
}

// Metadata spelling: symbols never start with a digit, numbers always carry a fraction or an
// exponent, strings escape quotes, units outside the LV2 vocabulary are described in place.
TEST(Lv2Metadata, SpellsSymbolsNumbersStringsAndUnits) {
  using namespace tarnlv2;
  EXPECT_EQ(SymbolFromName("  Out-In  (dB) ") + SymbolFromName("3 Band") + SymbolFromName(""),
            "out_in_dbp3_bandp");
  EXPECT_EQ(TurtleNumber(-20) + TurtleNumber(0.1) + TurtleNumber(1e-05) + TurtleString("a\"\\"),
            "-20.00.11e-05\"a\\\"\\\\\"");
  EXPECT_EQ(UnitStatement("Hz") + UnitStatement(nullptr) + UnitStatement("ticks"),
            "units:unit units:hzunits:unit [ a units:Unit ; rdfs:label \"ticks\" ; units:symbol "
            "\"ticks\" ; units:render \"%f ticks\" ]");
  // The parameters, "enabled", latency and needle, then the audio inputs and outputs.
  EXPECT_EQ(std::pair(PortLayout(8, 2).NPorts(), PortLayout(8, 1).NPorts()), std::pair(15u, 13u));
}
