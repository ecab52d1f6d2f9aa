#include <atomic>
#include <thread>

#include "TestPlug.h"

// Reads a parameter on every sample, so that a change landing inside a block would show.
struct ParamReadingPlug : TestPlug {
  void ProcessDoubleReplacing(double** in, double** out, int n) override {
    const double first = GetParam(0)->Value();
    for (int s = 0; s < n; ++s) torn |= GetParam(0)->Value() != first, out[0][s] = in[0][s];
  }
  bool torn = false;  // written only under the mutex
};

// Blocks, editor edits and automation at once: none lands inside a block (TSan in CI).
TEST(Threads, ParameterChangesNeverLandInsideABlock) {
  ParamReadingPlug plug;
  std::atomic<bool> stop{false};
  std::thread audio([&] {
    HostBuffers in(2, 256, 0.5f), out(2, 256, 0.f);
    for (int i = 0; i < 400; ++i) {
      if (i % 3)
        plug.ProcessAudio(in.get(), out.get(), 256);
      else
        plug.ProcessAudioBypassed(in.get(), out.get(), 256);
    }
    stop = true;
  });
  std::thread editor([&] {
    for (int i = 0; !stop; ++i)
      plug.SetParameterFromGUI(0, i % 10 / 10.0), plug.SetParameter(1, i % 7);
  });
  audio.join();
  editor.join();
  WDL_MutexLock lock(&plug.GetMutex());
  EXPECT_FALSE(plug.torn);
}
