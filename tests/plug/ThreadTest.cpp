#include <atomic>
#include <chrono>
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
    while (!stop)
      plug.ProcessAudio(in.get(), out.get(), 256),
          plug.ProcessAudioBypassed(in.get(), out.get(), 256);
  });
  std::thread editor([&] {
    for (int i = 0; !stop; ++i)
      plug.SetParameterFromGUI(0, i % 10 / 10.0), plug.SetParameter(1, i % 7);
  });
  for (int i = 0; i < 100; ++i, std::this_thread::yield()) {  // nested, the mutex stays held
    WDL_MutexLock outer(&plug.GetMutex());
    plug.GetMutex().Enter(), plug.GetMutex().Leave();
    const size_t changes = plug.changes.size();  // grows only under the mutex
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    EXPECT_EQ(plug.changes.size(), changes);
  }
  stop = true, audio.join(), editor.join();
  WDL_MutexLock lock(&plug.GetMutex());
  EXPECT_FALSE(plug.torn);
}
