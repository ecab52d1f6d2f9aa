#include "dsp/SystemRand.h"

SystemRand::SystemRand() {
  // Park-Miller "minimal standard" steps from the seed 1, computed without overflow by
  // Schrage's decomposition of 2^31 - 1 = 16807·127773 + 2836.
  std::int32_t word = 1;
  mState[0] = word;
  for (int i = 1; i < kWords; ++i) {
    const std::int32_t hi = word / 127773;
    const std::int32_t lo = word % 127773;
    word = 16807 * lo - 2836 * hi;
    if (word < 0) word += kMax;
    mState[i] = word;
  }
  // The first outputs still echo the linear seeding; they are stepped over.
  for (int i = 0; i < 10 * kWords; ++i) next();
}

int SystemRand::next() {
  // The sum wraps modulo 2^32; the lowest bit is the least random and is dropped.
  const std::uint32_t sum = static_cast<std::uint32_t>(mState[mFront]) + static_cast<std::uint32_t>(mState[mRear]);
  mState[mFront] = static_cast<std::int32_t>(sum);
  mFront = mFront + 1 == kWords ? 0 : mFront + 1;
  mRear = mRear + 1 == kWords ? 0 : mRear + 1;
  return static_cast<int>(sum >> 1);
}
