#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <vector>

#include "AllocationCounter.h"

// Every real-time test relies on the counter: it must see new and malloc, in nested scopes.
TEST(AllocationCounter, SeesNewAndMallocInNestedScopes) {
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
}
