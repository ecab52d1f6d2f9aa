#include "RenderLoop.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include "Quoted.h"

namespace render {

namespace {

// Planar single-precision channels of one block, with the pointer array the effect takes.
class PlanarBlock {
 public:
  PlanarBlock(int nChannels, int nFrames) : mData(nChannels, std::vector<float>(nFrames)) {
    for (std::vector<float>& channel : mData) mPointers.push_back(channel.data());
  }

  float** Pointers() { return mPointers.data(); }

  void Deinterleave(const float* interleaved, int nFrames) {
    const int nChannels = static_cast<int>(mData.size());
    for (int c = 0; c < nChannels; ++c) {
      for (int i = 0; i < nFrames; ++i) mData[c][i] = interleaved[i * nChannels + c];
    }
  }

  void Interleave(float* interleaved, int nFrames) const {
    const int nChannels = static_cast<int>(mData.size());
    for (int c = 0; c < nChannels; ++c) {
      for (int i = 0; i < nFrames; ++i) interleaved[i * nChannels + c] = mData[c][i];
    }
  }

 private:
  std::vector<std::vector<float>> mData;
  std::vector<float*> mPointers;
};

}  // namespace

bool RenderAudio(AudioSource& source, RenderEffect& effect, AudioSink& sink, int blockFrames,
                 ProgressDisplay& progress, const std::function<bool()>& interrupted,
                 RenderReport* report, std::string* error) {
  const int nChannels = source.NChannels();
  const long long total = source.NFrames();
  std::vector<float> interleaved(static_cast<std::size_t>(blockFrames) * nChannels);
  PlanarBlock in(nChannels, blockFrames);
  PlanarBlock out(nChannels, blockFrames);
  report->input = LevelStats(nChannels);
  report->output = LevelStats(nChannels);
  report->nonFinite = NonFiniteInput();

  long long done = 0;
  while (done < total) {
    if (interrupted()) {
      *error = "interrupted";
      return false;
    }
    const long long got =
        source.Read(interleaved.data(), std::min<long long>(blockFrames, total - done), error);
    if (got < 0) return false;
    if (got == 0) {
      *error = "input " + Quoted(source.Describe()) + " ended after " + std::to_string(done) +
               " of its " + std::to_string(total) + " frames";
      return false;
    }
    const int n = static_cast<int>(got);
    report->nonFinite.Replace(interleaved.data(), n, nChannels, done);
    in.Deinterleave(interleaved.data(), n);
    report->input.Add(in.Pointers(), n);
    const auto start = std::chrono::steady_clock::now();
    effect.Process(in.Pointers(), out.Pointers(), n);
    report->processSeconds +=
        std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    report->output.Add(out.Pointers(), n);
    out.Interleave(interleaved.data(), n);
    if (!sink.Write(interleaved.data(), n, error)) return false;
    done += n;
    progress.Update(done);
  }

  report->nChannels = nChannels;
  report->fileRate = source.SampleRate();
  report->nFrames = done;
  report->needle = effect.Needle();
  return true;
}

}  // namespace render
