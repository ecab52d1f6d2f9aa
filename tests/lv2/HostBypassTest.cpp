// The host's bypass (lv2:enabled) through a real load of the built bundle with lilv, as a host
// does it: controls and audio on ports, the switch between runs.
#include <gtest/gtest.h>
#include <lilv/lilv.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "AllocationCounter.h"

namespace {

using Signal = std::vector<std::vector<float>>;
constexpr int kRate = 48000, kLatency = 6, kFade = 240;  // 5 ms at 48 kHz

// 220 Hz left and 330 Hz right at -6 dBFS: loud enough at Drive 6 for the saturator to bend them.
Signal Tones(int n) {
  Signal s(2, std::vector<float>(n));
  for (int i = 0; i < n; ++i)
    for (int c = 0; c < 2; ++c)
      s[c][i] = float(0.5 * std::sin(6.283185307179586 * 110 * (c + 2) * i / kRate));
  return s;
}

// Tarn stereo at Drive 6, loaded from the bundle in the build tree.
struct LoadedTarn {
  LoadedTarn() {
    LilvNode* bundle = lilv_new_file_uri(world, nullptr, TARN_LV2_BUNDLE_DIR "/");
    lilv_world_load_bundle(world, bundle);
    lilv_node_free(bundle);
    LilvNode* uri = lilv_new_uri(world, "urn:tessmoral:tarn#stereo");
    const LilvPlugin* plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world), uri);
    lilv_node_free(uri);
    const LV2_Feature* none[] = {nullptr};
    instance = plugin ? lilv_plugin_instantiate(plugin, kRate, none) : nullptr;
    if (!instance) return;
    controls.resize(lilv_plugin_get_num_ports(plugin));
    lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, controls.data());
    controls[Port(plugin, "drive")] = 6.0f;
    for (uint32_t p = 0; p < Port(plugin, "in_l"); ++p)
      lilv_instance_connect_port(instance, p, &controls[p]);
    enabled = &controls[Port(plugin, "enabled")], latency = &controls[Port(plugin, "latency")];
    audio = Port(plugin, "in_l");
    lilv_instance_activate(instance);
  }
  ~LoadedTarn() {
    if (instance) lilv_instance_deactivate(instance), lilv_instance_free(instance);
    lilv_world_free(world);
  }
  uint32_t Port(const LilvPlugin* plugin, const char* symbol) {
    LilvNode* name = lilv_new_string(world, symbol);
    const uint32_t index =
        lilv_port_get_index(plugin, lilv_plugin_get_port_by_symbol(plugin, name));
    return lilv_node_free(name), index;
  }
  // `in` in runs of `run` frames, the host's bypass on from frame `off` to frame `on`; no run
  // may allocate.
  Signal Render(Signal in, int run, int off, int on) {
    Signal out(2, std::vector<float>(in[0].size()));
    for (size_t at = 0; at < in[0].size(); at += run) {
      *enabled = at >= size_t(off) && at < size_t(on) ? 0.0f : 1.0f;
      for (uint32_t c = 0; c < 2; ++c) {
        lilv_instance_connect_port(instance, audio + c, &in[c][at]);
        lilv_instance_connect_port(instance, audio + 2 + c, &out[c][at]);
      }
      AllocationScope scope;
      lilv_instance_run(instance, run);
      EXPECT_EQ(scope.Count(), 0) << "the run at " << at;
    }
    return out;
  }
  LilvWorld* world = lilv_world_new();
  LilvInstance* instance = nullptr;
  std::vector<float> controls;
  float *enabled = nullptr, *latency = nullptr;
  uint32_t audio = 0;
};

}  // namespace

// Bypassed, once the fade is over, the output is the input delayed by the latency reported, bit
// for bit; no step at either switch exceeds what a 5 ms crossfade of the two signals makes; back
// from bypass, the output is a never-bypassed instance's once the fade is over; runs of 1, 64 or
// 4096 frames give the same.
TEST(Lv2HostBypass, AlignedCrossfadedAndWarm) {
  const int n = 32768, off = 8192, on = 20480;
  const Signal in = Tones(n);
  LoadedTarn never;
  ASSERT_TRUE(never.instance) << "the bundle in " TARN_LV2_BUNDLE_DIR " does not load";
  const Signal wet = never.Render(in, 64, n, n);
  Signal out;
  for (int run : {4096, 64, 1}) {
    LoadedTarn tarn;
    const Signal rendered = tarn.Render(in, run, off, on);
    EXPECT_EQ(*tarn.latency, float(kLatency));
    if (out.empty()) out = rendered;
    EXPECT_TRUE(rendered == out) << "runs of " << run;
  }
  for (int c = 0; c < 2; ++c) {
    const auto dry = [&](int i) { return in[c][i - kLatency]; };
    for (int i = 1; i < n; ++i) {
      const bool bypassed = i >= off + kFade && i < on,
                 fading = !bypassed && i >= off && i < on + kFade;
      if (!fading) {
        ASSERT_EQ(out[c][i], bypassed ? dry(i) : wet[c][i]) << i;
        continue;
      }
      const double most =
          std::max(std::fabs(wet[c][i] - wet[c][i - 1]), std::fabs(dry(i) - dry(i - 1))) +
          std::fabs(wet[c][i - 1] - dry(i - 1)) / kFade;
      ASSERT_LE(std::fabs(out[c][i] - out[c][i - 1]), most + 1e-6) << i;
    }
  }
}
