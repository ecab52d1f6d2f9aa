#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <thread>
#include <vector>

#include "AllocationCounter.h"

// Every real-time test relies on the counter, so it must see new and malloc on its own thread,
// not other threads' allocations, and nested scopes must count independently.
TEST(AllocationCounter, SeesThisThreadsAllocationsInNestedScopes) {
  AllocationScope outer;
  auto p = std::make_unique<int>(3);
  {
    AllocationScope inner;
    std::vector<double> v(100);
    EXPECT_EQ(inner.Count(), 1);
  }
  EXPECT_EQ(outer.Count(), 2);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  void* volatile raw = std::malloc(16);  // volatile: the pair must not be optimised away
  EXPECT_EQ(outer.Count(), 3);
  std::free(raw);
#endif
  const long before = outer.Count();
  std::thread([] {
    for (int i = 0; i < 20; ++i) std::vector<int> elsewhere(10);
  }).join();
  EXPECT_LT(outer.Count() - before, 20);  // only the thread's own start-up records, if any
}
