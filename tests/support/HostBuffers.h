#pragma once

#include <cstddef>
#include <vector>

// Float buffers as a host hands them to a plug-in: `channels` buffers of `frames` samples, each
// filled with `fill`, and the array of their pointers (get(), current even after a channel's
// vector was reassigned) for the processing calls.
struct HostBuffers {
  HostBuffers(int channels, int frames, float fill)
      : data(channels, std::vector<float>(frames, fill)), ptrs(channels) {}
  float** get() {
    for (std::size_t c = 0; c < data.size(); ++c) ptrs[c] = data[c].data();
    return ptrs.data();
  }
  std::vector<float>& operator[](int channel) { return data[channel]; }

  std::vector<std::vector<float>> data;
  std::vector<float*> ptrs;
};

// 1, 2, ... n: every sample distinct, so a shift or a dropped frame shows.
inline std::vector<float> Ramp(int n) {
  std::vector<float> v(n);
  for (int i = 0; i < n; ++i) v[i] = static_cast<float>(i + 1);
  return v;
}

// `x` delayed by `delay` frames (silence before) and scaled by `gain`: what a delay line that
// starts silent must put out.
inline std::vector<float> Delayed(const std::vector<float>& x, int delay, float gain = 1.f) {
  std::vector<float> y(x.size(), 0.f);
  for (std::size_t s = delay; s < x.size(); ++s) y[s] = x[s - delay] * gain;
  return y;
}
