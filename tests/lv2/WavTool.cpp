// tarn-lv2-wavtool: the host tests' sound files.
//   make OUT CHANNELS FRAMES RATE   writes a 32-bit float WAV of a fixed test signal
//   compare A B                     exit 0 when both hold the same rate, channels, frames and
//                                   bit-identical samples; otherwise names the first difference
#include <sndfile.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Sound {
  int rate = 0;
  int channels = 0;
  std::vector<float> samples;  // interleaved
};

bool Read(const char* path, Sound* sound) {
  SF_INFO info{};
  SNDFILE* file = sf_open(path, SFM_READ, &info);
  if (!file) {
    std::fprintf(stderr, "wavtool: cannot read '%s': %s\n", path, sf_strerror(nullptr));
    return false;
  }
  sound->rate = info.samplerate;
  sound->channels = info.channels;
  sound->samples.resize(static_cast<size_t>(info.frames) * info.channels);
  const sf_count_t got = sf_readf_float(file, sound->samples.data(), info.frames);
  sf_close(file);
  return got == info.frames;
}

// Tones on each channel, a burst loud enough to clip, and a stretch of silence.
int Make(const char* path, int channels, int frames, int rate) {
  std::vector<float> samples(static_cast<size_t>(frames) * channels);
  for (int i = 0; i < frames; ++i) {
    for (int c = 0; c < channels; ++c) {
      const double t = static_cast<double>(i) / rate;
      double v = 0.3 * std::sin(2.0 * M_PI * (110.0 + 55.0 * c) * t) + 0.05 * std::sin(2.0 * M_PI * 3100.0 * t);
      if (i > frames / 4 && i < frames / 2) v *= 4.0;
      if (i > 3 * frames / 4) v = 0.0;
      samples[static_cast<size_t>(i) * channels + c] = static_cast<float>(v);
    }
  }
  SF_INFO info{};
  info.samplerate = rate;
  info.channels = channels;
  info.format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  SNDFILE* file = sf_open(path, SFM_WRITE, &info);
  if (!file) {
    std::fprintf(stderr, "wavtool: cannot write '%s': %s\n", path, sf_strerror(nullptr));
    return 1;
  }
  const bool ok = sf_writef_float(file, samples.data(), frames) == frames;
  return sf_close(file) == 0 && ok ? 0 : 1;
}

int Compare(const char* pathA, const char* pathB) {
  Sound a, b;
  if (!Read(pathA, &a) || !Read(pathB, &b)) return 2;
  if (a.rate != b.rate || a.channels != b.channels || a.samples.size() != b.samples.size()) {
    std::fprintf(stderr, "wavtool: '%s' is %d Hz x %d x %zu samples, '%s' is %d Hz x %d x %zu samples\n", pathA,
                 a.rate, a.channels, a.samples.size(), pathB, b.rate, b.channels, b.samples.size());
    return 1;
  }
  for (size_t i = 0; i < a.samples.size(); ++i) {
    if (std::memcmp(&a.samples[i], &b.samples[i], sizeof(float)) != 0) {
      std::fprintf(stderr, "wavtool: first difference at frame %zu, channel %zu: %.9g against %.9g\n",
                   i / a.channels, i % a.channels, a.samples[i], b.samples[i]);
      return 1;
    }
  }
  std::printf("identical: %zu frames x %d channels at %d Hz\n", a.samples.size() / a.channels, a.channels, a.rate);
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "make" && argc == 6) return Make(argv[2], std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5]));
  if (command == "compare" && argc == 4) return Compare(argv[2], argv[3]);
  std::fprintf(stderr, "usage: tarn-lv2-wavtool make OUT CHANNELS FRAMES RATE | compare A B\n");
  return 2;
}
