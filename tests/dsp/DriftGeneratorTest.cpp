#include "dsp/DriftGenerator.h"

#include <gtest/gtest.h>

#include <cmath>

// A NaN distance to the target counts as "not close": the target stays and nothing is drawn.
TEST(DriftGenerator, NaNValueKeepsTheTarget) {
  DriftGenerator d;
  d.step = 0.25;
  d.coef = 0.9;
  d.coefInv = 1.0 - 0.9;
  d.value = std::nan("");
  d.target = 0.5;
  SystemRand used, untouched;
  d.advance(used);
  EXPECT_EQ(d.target, 0.5);
  EXPECT_EQ(used.next(), untouched.next());
}

TEST(DriftGenerator, GlidesTowardsTheTarget) {
  DriftGenerator d;
  d.step = 0.25;
  d.coef = 0.9;
  d.coefInv = 1.0 - 0.9;
  SystemRand random;
  const double first = d.advance(random);  // value 1.0 sits on the target: a new one is drawn
  const double target = d.target;
  EXPECT_EQ(first, target * (1.0 - 0.9) + 1.0 * 0.9);
  EXPECT_TRUE(target == 0.25 || target == 0.5 || target == 0.75 || target == 1.0);
}
