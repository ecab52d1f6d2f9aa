#include <gtest/gtest.h>

#include <thread>

#include "dsp/Tarn.h"

// Hosts may insert two instances from two threads at once: each gets its own, complete instance.
TEST(MakePlugThreads, ConcurrentFactoryCallsMakeIndependentInstances) {
  for (int round = 0; round < 20; ++round) {
    std::unique_ptr<IPlugAdaptor> a, b;
    std::thread first([&] { a.reset(MakePlug()); }), second([&] { b.reset(MakePlug()); });
    first.join(), second.join();
    a->SetParameter(kDrive, 3.0);
    EXPECT_EQ(std::tuple(b->GetParam(kDrive)->Value(), a->NParams(), b->NParams(),
                         std::string(a->GetPreset(0)->mName) + b->GetPreset(0)->mName),
              std::tuple(0.0, 8, 8, "--"));
  }
}
