#pragma once

// The sample rates Tarn is made for. Its filter designs leave their stable region a little
// below 8 kHz (at 6 kHz the output sits at the clamp or turns to NaN), and 768 kHz is the
// highest rate interfaces offer. Hosts and files outside this range are refused, not processed.
constexpr double kMinSampleRate = 8000.0;
constexpr double kMaxSampleRate = 768000.0;

// False for NaN too.
inline bool IsSupportedSampleRate(double rate) {
  return rate >= kMinSampleRate && rate <= kMaxSampleRate;
}
