#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "TestPlug.h"

namespace {

// Reads a parameter on every sample, so that a change landing inside a block would show.
class ParamReadingPlug : public TestPlug {
public:
  ParamReadingPlug() : TestPlug("1-1 2-2", 2, 6) {}
  void OnParamChange(int) override { WDL_MutexLock lock(&GetMutex()); }
  void ProcessDoubleReplacing(double** inputs, double** outputs, int nFrames) override {
    double first = GetParam(0)->Value();
    for (int s = 0; s < nFrames; ++s) {
      if (GetParam(0)->Value() != first) torn = true;
      outputs[0][s] = inputs[0][s] * GetParam(1)->Value();
      outputs[1][s] = inputs[1][s];
    }
  }
  bool torn = false;  // written only under the mutex
};

}  // namespace

TEST(Threads, BlocksParameterChangesAndNestedLocksDoNotInterleave) {
  ParamReadingPlug plug;
  plug.SetBlockSize(256);
  std::atomic<bool> stop{false};
  long sharedCounter = 0;  // touched only with the mutex held

  std::thread audio([&] {
    std::vector<float> l(256, 0.5f), r(256, 0.5f), ol(256), orr(256);
    float* in[] = {l.data(), r.data()};
    float* out[] = {ol.data(), orr.data()};
    for (int i = 0; i < 400; ++i) {
      if (i % 3) plug.ProcessAudio(in, out, 256);
      else plug.ProcessAudioBypassed(in, out, 256);
    }
  });
  std::thread editor([&] {
    for (int i = 0; !stop.load(); ++i) {
      plug.SetParameterFromGUI(0, (i % 10) / 10.0);
      plug.SetParameter(1, (i % 7) - 3.0);
    }
  });
  std::thread locker([&] {
    WDL_Mutex& mutex = plug.GetMutex();
    while (!stop.load()) {
      mutex.Enter();
      mutex.Enter();
      long before = ++sharedCounter;
      double value = plug.GetParam(0)->Value();
      std::this_thread::yield();
      EXPECT_EQ(plug.GetParam(0)->Value(), value);  // nobody changes it while we hold the lock
      EXPECT_EQ(sharedCounter, before);
      mutex.Leave();
      mutex.Leave();
    }
  });

  audio.join();
  stop = true;
  editor.join();
  locker.join();

  WDL_MutexLock lock(&plug.GetMutex());
  EXPECT_FALSE(plug.torn);
}

TEST(Threads, MutexIsReentrantForItsOwnerOnly) {
  WDL_Mutex mutex;
  mutex.Enter();
  mutex.Enter();
  mutex.Leave();
  std::atomic<bool> acquired{false};
  std::thread other([&] {
    mutex.Enter();
    acquired = true;
    mutex.Leave();
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_FALSE(acquired.load());  // still held once
  mutex.Leave();
  other.join();
  EXPECT_TRUE(acquired.load());
}
