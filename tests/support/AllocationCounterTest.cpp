#include "AllocationCounter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

// The counter is what every real-time test relies on, so it must itself see allocations.
TEST(AllocationCounter, SeesNewAndMallocOnThisThreadOnly) {
  AllocationScope scope;
  EXPECT_EQ(scope.Count(), 0);
  auto p = std::make_unique<int>(3);
  EXPECT_EQ(scope.Count(), 1);
  std::vector<double> v(100);
  EXPECT_EQ(scope.Count(), 2);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  void* volatile raw = std::malloc(16);  // volatile: the pair must not be optimised away
  EXPECT_EQ(scope.Count(), 3);
  std::free(raw);
#endif
  long before = scope.Count();
  std::thread([] {
    for (int i = 0; i < 20; ++i) std::vector<int> elsewhere(10);
  }).join();
  EXPECT_LT(scope.Count() - before, 20);  // only the thread's own start-up records, if any
}

TEST(AllocationCounter, NestedScopesCountIndependently) {
  AllocationScope outer;
  auto a = std::make_unique<int>(1);
  {
    AllocationScope inner;
    auto b = std::make_unique<int>(2);
    EXPECT_EQ(inner.Count(), 1);
  }
  EXPECT_EQ(outer.Count(), 2);
}
