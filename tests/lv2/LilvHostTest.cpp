// The built bundle in lilv, the LV2 host library: the plug-in is instantiated from its
// description, its controls set through its ports, and its state saved with
// lilv_state_new_from_instance and restored into a new instance with lilv_state_restore,
// directly and through lilv's Turtle form. The restored instance holds the same 64 bytes and
// control values and renders what a fresh instance with the same controls renders. And what
// hosts throw at a plug-in: NaN and infinite samples, reactivation, broken saved states and
// sample rates the effect is not made for.
#include <gtest/gtest.h>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/log/log.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <cmath>
#include <cstring>
#include <map>
#include <string>
#include <vector>

namespace {

class UridMap {
 public:
  LV2_URID Map(const char* uri) {
    for (size_t i = 0; i < mUris.size(); ++i) {
      if (mUris[i] == uri) return static_cast<LV2_URID>(i + 1);
    }
    mUris.push_back(uri);
    return static_cast<LV2_URID>(mUris.size());
  }
  const char* Unmap(LV2_URID urid) const {
    return urid && urid <= mUris.size() ? mUris[urid - 1].c_str() : nullptr;
  }

  LV2_URID_Map map{this, [](LV2_URID_Map_Handle h, const char* uri) {
                     return static_cast<UridMap*>(h)->Map(uri);
                   }};
  LV2_URID_Unmap unmap{
      this, [](LV2_URID_Unmap_Handle h, LV2_URID u) { return static_cast<UridMap*>(h)->Unmap(u); }};

 private:
  std::vector<std::string> mUris;
};

// One lilv world with only the built bundle in it.
class LilvHostTest : public ::testing::Test {
 protected:
  void SetUp() override {
    mWorld = lilv_world_new();
    LilvNode* bundle = lilv_new_file_uri(mWorld, nullptr, TARN_LV2_BUNDLE "/");
    lilv_world_load_bundle(mWorld, bundle);
    lilv_node_free(bundle);
    mFeatures = {&mMapFeature, &mUnmapFeature, nullptr};
  }

  void TearDown() override { lilv_world_free(mWorld); }

  const LilvPlugin* Plugin(const char* uri) {
    LilvNode* node = lilv_new_uri(mWorld, uri);
    const LilvPlugin* plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(mWorld), node);
    lilv_node_free(node);
    return plugin;
  }

  LilvWorld* mWorld = nullptr;
  UridMap mUrids;
  LV2_Feature mMapFeature{LV2_URID__map, &mUrids.map};
  LV2_Feature mUnmapFeature{LV2_URID__unmap, &mUrids.unmap};
  std::vector<const LV2_Feature*> mFeatures;
};

// An instance with a buffer for every port: controls at their described defaults.
class Instance {
 public:
  Instance(const LilvPlugin* plugin, LilvWorld* world, const LV2_Feature* const* features,
           double rate = 48000.0)
      : mPlugin(plugin), mWorld(world) {
    mInstance = lilv_plugin_instantiate(plugin, rate, features);
    if (!mInstance) return;
    const uint32_t nPorts = lilv_plugin_get_num_ports(plugin);
    mControls.assign(nPorts, NAN);
    std::vector<float> defaults(nPorts, NAN);
    lilv_plugin_get_port_ranges_float(plugin, nullptr, nullptr, defaults.data());
    LilvNode* audioClass = lilv_new_uri(world, LILV_URI_AUDIO_PORT);
    LilvNode* inputClass = lilv_new_uri(world, LILV_URI_INPUT_PORT);
    for (uint32_t i = 0; i < nPorts; ++i) {
      const LilvPort* port = lilv_plugin_get_port_by_index(plugin, i);
      if (lilv_port_is_a(plugin, port, audioClass)) {
        (lilv_port_is_a(plugin, port, inputClass) ? mAudioIn : mAudioOut).push_back(i);
      } else {
        mControls[i] = std::isnan(defaults[i]) ? 0.0f : defaults[i];
        lilv_instance_connect_port(mInstance, i, &mControls[i]);
      }
    }
    lilv_node_free(audioClass);
    lilv_node_free(inputClass);
  }
  ~Instance() {
    if (mInstance) lilv_instance_free(mInstance);
  }

  bool Ok() const { return mInstance != nullptr; }
  LilvInstance* Get() { return mInstance; }

  uint32_t PortIndex(const char* symbol) const {
    LilvNode* node = lilv_new_string(mWorld, symbol);
    const LilvPort* port = lilv_plugin_get_port_by_symbol(mPlugin, node);
    lilv_node_free(node);
    return lilv_port_get_index(mPlugin, port);
  }
  float& Control(const char* symbol) { return mControls[PortIndex(symbol)]; }
  float& ControlAt(uint32_t index) { return mControls[index]; }
  std::vector<float> InputControls() const {
    std::vector<float> values;
    for (uint32_t i = 0; i < PortIndex("enabled") + 1; ++i) values.push_back(mControls[i]);
    return values;
  }

  // Renders `in` (planar) in runs of `run` frames; returns the outputs.
  std::vector<std::vector<float>> Render(std::vector<std::vector<float>> in, int run) {
    const int nFrames = static_cast<int>(in[0].size());
    std::vector<std::vector<float>> out(mAudioOut.size(), std::vector<float>(nFrames));
    for (int done = 0; done < nFrames; done += run) {
      for (size_t c = 0; c < mAudioIn.size(); ++c)
        lilv_instance_connect_port(mInstance, mAudioIn[c], &in[c][done]);
      for (size_t c = 0; c < mAudioOut.size(); ++c)
        lilv_instance_connect_port(mInstance, mAudioOut[c], &out[c][done]);
      lilv_instance_run(mInstance, static_cast<uint32_t>(std::min(run, nFrames - done)));
    }
    return out;
  }

  // The bytes the plug-in itself stores under its state key.
  std::vector<unsigned char> Chunk() {
    const auto* state = static_cast<const LV2_State_Interface*>(
        lilv_instance_get_extension_data(mInstance, LV2_STATE__interface));
    std::vector<unsigned char> bytes;
    if (!state) return bytes;
    state->save(
        lilv_instance_get_handle(mInstance),
        [](LV2_State_Handle h, uint32_t, const void* value, size_t size, uint32_t, uint32_t) {
          const auto* p = static_cast<const unsigned char*>(value);
          static_cast<std::vector<unsigned char>*>(h)->assign(p, p + size);
          return LV2_STATE_SUCCESS;
        },
        &bytes, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, nullptr);
    return bytes;
  }

  // Hands `bytes` to the plug-in's own state restore, as a host does with a saved session.
  LV2_State_Status RestoreChunk(const std::vector<unsigned char>& bytes, LV2_URID key,
                                LV2_URID type) {
    const auto* state = static_cast<const LV2_State_Interface*>(
        lilv_instance_get_extension_data(mInstance, LV2_STATE__interface));
    struct Saved {
      const std::vector<unsigned char>& bytes;
      LV2_URID key, type;
    } saved{bytes, key, type};
    return state->restore(
        lilv_instance_get_handle(mInstance),
        [](LV2_State_Handle h, uint32_t key, size_t* size, uint32_t* type, uint32_t* flags) {
          const auto* saved = static_cast<const Saved*>(h);
          if (key != saved->key) return static_cast<const void*>(nullptr);
          *size = saved->bytes.size();
          *type = saved->type;
          *flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
          return static_cast<const void*>(saved->bytes.data());
        },
        &saved, 0, nullptr);
  }

  static const void* GetValue(const char* symbol, void* self, uint32_t* size, uint32_t* type) {
    auto* instance = static_cast<Instance*>(self);
    *size = sizeof(float);
    *type = instance->mFloatType;
    return &instance->Control(symbol);
  }
  static void SetValue(const char* symbol, void* self, const void* value, uint32_t size,
                       uint32_t type) {
    auto* instance = static_cast<Instance*>(self);
    if (size == sizeof(float) && type == instance->mFloatType) {
      std::memcpy(&instance->Control(symbol), value, sizeof(float));
    }
  }

  LV2_URID mFloatType = 0;

 private:
  const LilvPlugin* mPlugin;
  LilvWorld* mWorld;
  LilvInstance* mInstance = nullptr;
  std::vector<float> mControls;
  std::vector<uint32_t> mAudioIn, mAudioOut;
};

std::vector<std::vector<float>> Signal(int nChannels, int nFrames) {
  std::vector<std::vector<float>> signal(nChannels, std::vector<float>(nFrames));
  for (int c = 0; c < nChannels; ++c) {
    for (int i = 0; i < nFrames; ++i)
      signal[c][i] = static_cast<float>(0.7 * std::sin(0.013 * i * (c + 2)));
  }
  return signal;
}

void SetNonDefaults(Instance& instance) {
  instance.Control("input_trim") = 3.5f;
  instance.Control("drive") = 7.25f;
  instance.Control("output_compensation") = -4.0f;
  instance.Control("asymmetry") = 8.0f;
  instance.Control("freq_response") = -2.5f;
  instance.Control("crosstalk_level") = -65.0f;
  instance.Control("vu_mode") = 1.0f;
}

int NChannels(const char* uri) {
  return std::string(uri).find("stereo") != std::string::npos ? 2 : 1;
}

double StoredValue(const std::vector<unsigned char>& chunk, int index) {
  double value = 0.0;
  std::memcpy(&value, chunk.data() + 8 * index, sizeof value);
  return value;
}

}  // namespace

TEST_F(LilvHostTest, BothPluginsInstantiate) {
  for (const char* uri : {"urn:tessmoral:tarn#mono", "urn:tessmoral:tarn#stereo"}) {
    const LilvPlugin* plugin = Plugin(uri);
    ASSERT_NE(plugin, nullptr) << uri;
    Instance instance(plugin, mWorld, mFeatures.data());
    ASSERT_TRUE(instance.Ok()) << uri;
    lilv_instance_activate(instance.Get());
    instance.Render(Signal(NChannels(uri), 1000), 100);
    EXPECT_EQ(instance.Control("latency"), 6.0f) << uri;
    lilv_instance_deactivate(instance.Get());
  }
}

TEST_F(LilvHostTest, RoundTripKeepsValuesAndSound) {
  for (const char* uri : {"urn:tessmoral:tarn#mono", "urn:tessmoral:tarn#stereo"}) {
    SCOPED_TRACE(uri);
    const int nChannels = NChannels(uri);
    const LilvPlugin* plugin = Plugin(uri);
    ASSERT_NE(plugin, nullptr);
    const LV2_URID floatType = mUrids.Map(LV2_ATOM__Float);

    Instance saved(plugin, mWorld, mFeatures.data());
    ASSERT_TRUE(saved.Ok());
    saved.mFloatType = floatType;
    SetNonDefaults(saved);
    lilv_instance_activate(saved.Get());
    saved.Render(Signal(nChannels, 4000), 256);
    const std::vector<unsigned char> savedChunk = saved.Chunk();
    ASSERT_EQ(savedChunk.size(), 64u);
    EXPECT_EQ(StoredValue(savedChunk, 1), 7.25);
    EXPECT_EQ(StoredValue(savedChunk, 5), -65.0);

    LilvState* state = lilv_state_new_from_instance(
        plugin, saved.Get(), &mUrids.map, nullptr, nullptr, nullptr, nullptr, Instance::GetValue,
        &saved, LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, mFeatures.data());
    ASSERT_NE(state, nullptr);

    // Restored directly, and through lilv's Turtle text of the state.
    char* text = lilv_state_to_string(mWorld, &mUrids.map, &mUrids.unmap, state,
                                      "urn:tessmoral:tarn-test#state", nullptr);
    ASSERT_NE(text, nullptr);
    LilvState* reread = lilv_state_new_from_string(mWorld, &mUrids.map, text);
    ASSERT_NE(reread, nullptr);

    for (LilvState* source : {state, reread}) {
      Instance restored(plugin, mWorld, mFeatures.data());
      ASSERT_TRUE(restored.Ok());
      restored.mFloatType = floatType;
      lilv_state_restore(source, restored.Get(), Instance::SetValue, &restored, 0,
                         mFeatures.data());
      EXPECT_EQ(restored.Chunk(), savedChunk) << "the effect's own 64 bytes, before any run";
      EXPECT_EQ(restored.InputControls(), saved.InputControls());

      // A fresh instance given the same controls through its ports sounds the same, whatever
      // the run lengths of either host.
      Instance fresh(plugin, mWorld, mFeatures.data());
      ASSERT_TRUE(fresh.Ok());
      SetNonDefaults(fresh);
      lilv_instance_activate(restored.Get());
      lilv_instance_activate(fresh.Get());
      const auto input = Signal(nChannels, 6000);
      const auto restoredSound = restored.Render(input, 64);
      EXPECT_EQ(restoredSound, fresh.Render(input, 1000));

      Instance plain(plugin, mWorld, mFeatures.data());
      lilv_instance_activate(plain.Get());
      EXPECT_NE(restoredSound, plain.Render(input, 1000)) << "the restored settings must matter";
    }
    lilv_state_free(reread);
    lilv_free(text);
    lilv_state_free(state);
  }
}

bool AllFinite(const std::vector<std::vector<float>>& channels) {
  for (const auto& channel : channels) {
    for (float x : channel) {
      if (!std::isfinite(x)) return false;
    }
  }
  return true;
}

// A NaN or infinite sample goes in as silence: the output is what zeros in its place give,
// through the effect and through the host's bypass, and the instance stays usable.
TEST_F(LilvHostTest, NonFiniteInputSoundsLikeSilence) {
  for (const char* uri : {"urn:tessmoral:tarn#mono", "urn:tessmoral:tarn#stereo"}) {
    SCOPED_TRACE(uri);
    const int nChannels = NChannels(uri);
    auto zeros = Signal(nChannels, 12000);
    auto broken = zeros;
    for (int i = 3000; i < 3100; ++i) {
      zeros[0][i] = 0.0f;
      broken[0][i] = i % 2 ? NAN : -INFINITY;
    }
    zeros[nChannels - 1][7000] = 0.0f;
    broken[nChannels - 1][7000] = INFINITY;
    std::vector<std::vector<std::vector<float>>> outputs;
    for (const auto* input : {&zeros, &broken}) {
      Instance instance(Plugin(uri), mWorld, mFeatures.data());
      ASSERT_TRUE(instance.Ok());
      SetNonDefaults(instance);
      lilv_instance_activate(instance.Get());
      auto out = instance.Render(*input, 512);
      instance.Control("enabled") = 0.0f;
      const auto bypassed = instance.Render(*input, 512);
      out.insert(out.end(), bypassed.begin(), bypassed.end());
      outputs.push_back(out);
    }
    EXPECT_TRUE(AllFinite(outputs[1]));
    EXPECT_EQ(outputs[1], outputs[0]);
  }
}

// After deactivate and activate the instance sounds exactly like a fresh one with the same
// controls and state, whatever it went through before.
TEST_F(LilvHostTest, ActivateForgetsAllHistory) {
  const LV2_URID key = mUrids.Map("urn:tessmoral:tarn#state");
  const LV2_URID chunkType = mUrids.Map(LV2_ATOM__Chunk);
  const std::vector<double> values = {-2.0, 9.0, 1.5, 6.0, 7.0, -75.0, 2.0, 0.0};
  std::vector<unsigned char> state(sizeof(double) * values.size());
  std::memcpy(state.data(), values.data(), state.size());
  for (const char* uri : {"urn:tessmoral:tarn#mono", "urn:tessmoral:tarn#stereo"}) {
    SCOPED_TRACE(uri);
    const int nChannels = NChannels(uri);
    Instance used(Plugin(uri), mWorld, mFeatures.data());
    Instance fresh(Plugin(uri), mWorld, mFeatures.data());
    ASSERT_TRUE(used.Ok() && fresh.Ok());
    SetNonDefaults(used);
    SetNonDefaults(fresh);
    lilv_instance_activate(used.Get());
    auto loud = Signal(nChannels, 5000);
    for (auto& channel : loud) {
      for (float& x : channel) x *= 4.0f;
    }
    used.Render(loud, 256);
    lilv_instance_deactivate(used.Get());
    // A session reloaded while inactive: the state and the ports disagree until the first run.
    ASSERT_EQ(used.RestoreChunk(state, key, chunkType), LV2_STATE_SUCCESS);
    ASSERT_EQ(fresh.RestoreChunk(state, key, chunkType), LV2_STATE_SUCCESS);
    lilv_instance_activate(used.Get());
    lilv_instance_activate(fresh.Get());
    const auto input = Signal(nChannels, 5000);
    EXPECT_EQ(used.Render(input, 256), fresh.Render(input, 256));
  }
}

// A saved state with a non-finite value is refused whole: the settings stay, and the sound
// stays finite; a good state afterwards is taken as usual.
TEST_F(LilvHostTest, StatesWithNonFiniteValuesAreRefused) {
  const LV2_URID key = mUrids.Map("urn:tessmoral:tarn#state");
  const LV2_URID chunkType = mUrids.Map(LV2_ATOM__Chunk);
  for (const char* uri : {"urn:tessmoral:tarn#mono", "urn:tessmoral:tarn#stereo"}) {
    SCOPED_TRACE(uri);
    Instance instance(Plugin(uri), mWorld, mFeatures.data());
    ASSERT_TRUE(instance.Ok());
    lilv_instance_activate(instance.Get());
    const auto before = instance.Chunk();
    std::vector<double> values = {1.0, 7.0, -3.0, 2.0, 4.0, -100.0, NAN, 0.0};
    std::vector<unsigned char> bytes(sizeof(double) * values.size());
    std::memcpy(bytes.data(), values.data(), bytes.size());
    EXPECT_NE(instance.RestoreChunk(bytes, key, chunkType), LV2_STATE_SUCCESS);
    EXPECT_EQ(instance.Chunk(), before);
    EXPECT_TRUE(AllFinite(instance.Render(Signal(NChannels(uri), 2000), 500)));

    values[6] = 2.0;
    std::memcpy(bytes.data(), values.data(), bytes.size());
    EXPECT_EQ(instance.RestoreChunk(bytes, key, chunkType), LV2_STATE_SUCCESS);
    EXPECT_EQ(instance.Chunk(), bytes);
  }
}

// Outside 8000 to 768000 Hz the filters are not stable: instantiation fails and says why in
// the host's log.
TEST_F(LilvHostTest, RefusesSampleRatesOutsideItsRange) {
  struct Log {
    std::vector<std::string> errors;
    LV2_URID error;
  } log{{}, mUrids.Map(LV2_LOG__Error)};
  LV2_Log_Log logFeature{&log, nullptr,
                         [](LV2_Log_Handle h, LV2_URID type, const char* format, va_list args) {
                           char text[256];
                           std::vsnprintf(text, sizeof text, format, args);
                           auto* log = static_cast<Log*>(h);
                           if (type == log->error) log->errors.push_back(text);
                           return 0;
                         }};
  LV2_Feature logged{LV2_LOG__log, &logFeature};
  const LV2_Feature* features[] = {&mMapFeature, &logged, nullptr};
  for (const auto& [rate, runs] : {std::pair{7999.0, false},
                                   {8000.0, true},
                                   {768000.0, true},
                                   {768001.0, false},
                                   {NAN, false},
                                   {0.0, false}}) {
    log.errors.clear();
    Instance instance(Plugin("urn:tessmoral:tarn#stereo"), mWorld, features, rate);
    EXPECT_EQ(instance.Ok(), runs) << rate;
    EXPECT_EQ(log.errors.size(), runs ? 0u : 1u) << rate;
  }
  EXPECT_NE(log.errors.at(0).find("8000 to 768000 Hz"), std::string::npos) << log.errors[0];
}
