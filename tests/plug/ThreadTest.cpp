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

// Blocks, edits, automation and nested locks at once: no change lands inside a block or a held
// lock (CI runs this under ThreadSanitizer).
TEST(Threads, ParameterChangesNeverLandInsideABlockOrHeldLock) {
  ParamReadingPlug plug;
  std::atomic<bool> stop{false};
  std::thread audio([&] {
    HostBuffers in(2, 256, 0.5f), out(2, 256, 0.f);
    for (int i = 0; i < 200; ++i)
      plug.ProcessAudio(in.get(), out.get(), 256),
          plug.ProcessAudioBypassed(in.get(), out.get(), 256);
    stop = true;
  });
  std::thread editor([&] {
    for (int i = 0; !stop; ++i)
      plug.SetParameterFromGUI(0, i % 10 / 10.0), plug.SetParameter(1, i % 7);
  });
  while (!stop) {  // a nested lock's Leave must not release the mutex
    WDL_MutexLock outer(&plug.GetMutex());
    plug.GetMutex().Enter(), plug.GetMutex().Leave();
    const double value = plug.GetParam(0)->Value();
    std::this_thread::yield();
    EXPECT_EQ(plug.GetParam(0)->Value(), value);
  }
  audio.join();
  editor.join();
  WDL_MutexLock lock(&plug.GetMutex());
  EXPECT_FALSE(plug.torn);
}
