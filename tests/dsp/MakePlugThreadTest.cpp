#include <gtest/gtest.h>

#include <thread>

#include "dsp/Tarn.h"

// Hosts may insert two instances from two threads at once: each gets its own, complete instance.
TEST(MakePlugThreads, ConcurrentFactoryCallsMakeIndependentInstances) {
  for (int round = 0; round < 20; ++round) {
    IPlugAdaptor* made[2] = {nullptr, nullptr};
    std::thread first([&] { made[0] = MakePlug(); }), second([&] { made[1] = MakePlug(); });
    first.join(), second.join();
    made[0]->SetParameter(kDrive, 3.0);
    EXPECT_EQ(made[1]->GetParam(kDrive)->Value(), 0.0);
    for (IPlugAdaptor* plug : made) {
      EXPECT_EQ(plug->NParams(), 8);
      EXPECT_STREQ(plug->GetPreset(0)->mName, "-");
      delete plug;
    }
  }
}
