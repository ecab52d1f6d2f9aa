#include "analysis/MeasureFile.h"

#include <cmath>
#include <memory>
#include <vector>

#include "RenderLoop.h"
#include "analysis/AveragedPower.h"
#include "analysis/FrequencyResponse.h"

namespace render {

namespace {

// The power spectra of interleaved channels, one per channel.
class ChannelSpectra {
 public:
  ChannelSpectra(int nChannels, double rate) : mRate(rate) {
    for (int c = 0; c < nChannels; ++c)
      mChannels.push_back(std::make_unique<AveragedPower>(FftSizeForBins(rate, 6.0)));
  }

  void Add(const float* interleaved, long long nFrames) {
    const int nChannels = static_cast<int>(mChannels.size());
    std::vector<float> channel(nFrames);
    for (int c = 0; c < nChannels; ++c) {
      for (long long i = 0; i < nFrames; ++i) {
        const float sample = interleaved[i * nChannels + c];
        channel[i] = std::isfinite(sample) ? sample : 0.0f;
      }
      mChannels[c]->Add(channel.data(), nFrames);
    }
  }

  BandSpectrum Bands() {
    std::vector<double> average;
    for (auto& channel : mChannels) {
      const std::vector<double> bins = channel->Bins();
      average.resize(bins.size());
      for (std::size_t k = 0; k < bins.size(); ++k) average[k] += bins[k] / mChannels.size();
    }
    return BandLevels(average, mChannels[0]->BinHz(mRate), LogBands(6, 20.0, TopHz(mRate)));
  }

 private:
  double mRate;
  std::vector<std::unique_ptr<AveragedPower>> mChannels;
};

// The file as the render loop reads it, its samples taken into a spectrum on the way.
class TappedSource : public AudioSource {
 public:
  TappedSource(AudioSource& source, ChannelSpectra& spectra) : mSource(source), mSpectra(spectra) {}

  int NChannels() const override { return mSource.NChannels(); }
  int SampleRate() const override { return mSource.SampleRate(); }
  long long NFrames() const override { return mSource.NFrames(); }
  std::string Describe() const override { return mSource.Describe(); }
  long long Read(float* interleaved, long long nFrames, std::string* error) override {
    const long long got = mSource.Read(interleaved, nFrames, error);
    if (got > 0) mSpectra.Add(interleaved, got);
    return got;
  }

 private:
  AudioSource& mSource;
  ChannelSpectra& mSpectra;
};

// The effect's output taken into a spectrum and let go.
class SpectrumSink : public AudioSink {
 public:
  explicit SpectrumSink(ChannelSpectra& spectra) : mSpectra(spectra) {}
  bool Write(const float* interleaved, long long nFrames, std::string*) override {
    mSpectra.Add(interleaved, nFrames);
    return true;
  }

 private:
  ChannelSpectra& mSpectra;
};

}  // namespace

bool MeasureFile(AudioSource& file, RenderEffect& effect, int blockFrames,
                 ProgressDisplay& progress, const std::function<bool()>& interrupted,
                 FileBeforeAfter* spectra, std::string* error) {
  ChannelSpectra before(file.NChannels(), file.SampleRate());
  ChannelSpectra after(file.NChannels(), file.SampleRate());
  TappedSource source(file, before);
  SpectrumSink sink(after);
  if (!RenderAudio(source, effect, sink, blockFrames, progress, interrupted, &spectra->report,
                   error))
    return false;
  spectra->name = file.Describe();
  spectra->before = before.Bands();
  spectra->after = after.Bands();
  return true;
}

}  // namespace render
