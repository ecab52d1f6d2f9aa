#include <gtest/gtest.h>

#include <vector>

#include "AllocationCounter.h"
#include "TestPlug.h"

// The audio path must not touch the heap, whatever the block size up to the configured one.
TEST(RealTime, ProcessingAndBypassAllocateNothing) {
  constexpr int kMaxBlock = 2048;
  for (bool ownEffect : {false, true}) {
    TestPlug plug("1-1 2-2", 3, 6);
    plug.scale = ownEffect ? 0.5 : 0.0;
    plug.SetBlockSize(kMaxBlock);
    plug.changes.reserve(16);  // the recorder itself must not allocate inside the scope
    std::vector<float> l(kMaxBlock, 0.25f), r(kMaxBlock, -0.25f), ol(kMaxBlock), orr(kMaxBlock);
    float* in[] = {l.data(), r.data()};
    float* out[] = {ol.data(), orr.data()};
    for (int n : {1, 7, 64, 512, kMaxBlock}) {
      AllocationScope scope;
      plug.AttachInputBuffers(0, 2, in, n);
      plug.AttachOutputBuffers(0, 2, out);
      plug.ProcessBuffers(0.f, n);
      plug.PassThroughBuffers(0.f, n);
      plug.PassThroughBuffers(0.0, n);
      plug.ProcessAudio(in, out, n);
      plug.ProcessAudioBypassed(in, out, n);
      plug.SetParameter(1, 3.0);
      plug.SetParameterFromGUI(2, 0.5);
      EXPECT_EQ(scope.Count(), 0) << "block " << n;
      plug.changes.clear();
    }
  }
}
