#include "dsp/SystemRand.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

constexpr int kCount = 5000;

// The C library's sequence as a process that never seeds it sees it. A separate program is
// run so that nothing in this test process can have drawn from or seeded the shared state.
std::vector<int> FreshProcessSequence(int count) {
  std::vector<int> values;
  const std::string command = std::string(TARN_FRESH_RAND) + " " + std::to_string(count);
  FILE* pipe = popen(command.c_str(), "r");
  if (!pipe) return values;
  int v;
  while (static_cast<int>(values.size()) < count && std::fscanf(pipe, "%d", &v) == 1) values.push_back(v);
  pclose(pipe);
  return values;
}

}  // namespace

TEST(SystemRand, MatchesTheCLibraryInAFreshProcess) {
  const std::vector<int> expected = FreshProcessSequence(kCount);
  ASSERT_EQ(static_cast<int>(expected.size()), kCount);
  SystemRand random;
  for (int i = 0; i < kCount; ++i) ASSERT_EQ(random.next(), expected[i]) << "draw " << i;
}

TEST(SystemRand, InstancesDoNotDisturbEachOther) {
  SystemRand alone;
  std::vector<int> reference;
  for (int i = 0; i < 1000; ++i) reference.push_back(alone.next());

  SystemRand a, b;
  for (int i = 0; i < 1000; ++i) {
    ASSERT_EQ(a.next(), reference[i]);
    // b draws at a different pace in between and must still start from the beginning
    if (i % 3 == 0) {
      ASSERT_EQ(b.next(), reference[i / 3]);
    }
  }
}

TEST(SystemRand, ValuesStayInRangeAndFillTheDriftTargetsEvenly) {
  SystemRand random;
  int buckets[4] = {};
  for (int i = 0; i < 40000; ++i) {
    const int v = random.next();
    ASSERT_GE(v, 0);
    ASSERT_LE(v, SystemRand::kMax);
    ++buckets[v % 4];
  }
  for (int n : buckets) EXPECT_NEAR(n, 10000, 500);
}
