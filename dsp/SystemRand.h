#pragma once

#include <cstdint>

// The C library's rand() as it behaves on Linux in a process that never seeds it, kept per
// instance: an additive lagged-Fibonacci generator over 31 words (r[i] = r[i-31] + r[i-3]),
// filled from the seed 1 by the Park-Miller recurrence and run 310 steps before the first
// output. Drift targets drawn from it make a render reproducible and equal to that of a fresh
// process, and one instance's draws never shift another's.
class SystemRand {
public:
  static constexpr int kMax = 2147483647;

  SystemRand();

  // Next value in [0, kMax].
  int next();

private:
  static constexpr int kWords = 31;
  static constexpr int kSeparation = 3;

  std::int32_t mState[kWords];
  int mFront = kSeparation;
  int mRear = 0;
};
