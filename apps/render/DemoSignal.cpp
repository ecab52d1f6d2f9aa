#include "DemoSignal.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace render {

namespace {

constexpr double kTwoPi = 6.283185307179586;
constexpr long long kBeatFrames = DemoSignal::kSampleRate / 2;  // 120 beats per minute
constexpr long long kBarFrames = 4 * kBeatFrames;
constexpr long long kEighthFrames = kBeatFrames / 2;

// One chord per bar (A minor, F major, C major) and one bass note per beat, as MIDI notes.
constexpr int kChords[3][3] = {{57, 60, 64}, {53, 57, 60}, {60, 64, 67}};
constexpr int kBassLine[12] = {45, 45, 40, 43, 41, 41, 48, 45, 48, 48, 43, 48};
// Left and right gains of the three chord voices, spread across the stereo field.
constexpr double kVoicePan[3][2] = {{0.9, 0.4}, {0.7, 0.7}, {0.4, 0.9}};

// The parts' amplitudes keep the sum of their worst cases (about 0.77) below full scale.
constexpr double kChordVoiceGain = 0.07;
constexpr double kBassGain = 0.2;
constexpr double kKickGain = 0.27;
constexpr double kSnareNoiseGain = 0.13;
constexpr double kSnareToneGain = 0.07;
constexpr double kHatGain = 0.06;
constexpr double kFadeOutSeconds = 0.3;

double Seconds(long long frames) { return static_cast<double>(frames) / DemoSignal::kSampleRate; }

double MidiToHz(int note) { return 440.0 * std::pow(2.0, (note - 69) / 12.0); }

// A short linear attack, so that no part starts with a click.
double Attack(double t, double seconds) { return std::min(1.0, t / seconds); }

// A linear release over the last 10 ms of a part that must be silent again at `length`.
double Release(double t, double length) { return std::clamp((length - t) / 0.01, 0.0, 1.0); }

// White noise in [-1, 1) from the frame index alone (an integer hash), so any stretch of the
// signal can be produced without producing what comes before it.
double Noise(long long frame) {
  std::uint32_t x = static_cast<std::uint32_t>(frame) * 0x9E3779B1u;
  x ^= x >> 15;
  x *= 0x85EBCA77u;
  x ^= x >> 13;
  x *= 0xC2B2AE3Du;
  x ^= x >> 16;
  return x / 2147483648.0 - 1.0;
}

// A voice with a few harmonics falling off as 1/h, normalised to a peak of at most 1.
double Voice(double hz, double t) {
  return (std::sin(kTwoPi * hz * t) + std::sin(kTwoPi * 2.0 * hz * t) / 2.0 +
          std::sin(kTwoPi * 3.0 * hz * t) / 3.0) /
         (1.0 + 1.0 / 2.0 + 1.0 / 3.0);
}

// Every chord struck so far keeps ringing into the following bars.
void AddChords(long long frame, double* left, double* right) {
  for (long long bar = 0; bar <= frame / kBarFrames; ++bar) {
    const double t = Seconds(frame - bar * kBarFrames);
    const double envelope = kChordVoiceGain * Attack(t, 0.005) * std::exp(-t / 0.9);
    for (int v = 0; v < 3; ++v) {
      const double s = envelope * Voice(MidiToHz(kChords[bar][v]), t);
      *left += kVoicePan[v][0] * s;
      *right += kVoicePan[v][1] * s;
    }
  }
}

double Bass(int beat, double t) {
  const double hz = MidiToHz(kBassLine[beat]);
  const double tone = (std::sin(kTwoPi * hz * t) + 0.3 * std::sin(kTwoPi * 2.0 * hz * t)) / 1.3;
  return kBassGain * Attack(t, 0.005) * std::exp(-t / 0.2) * Release(t, Seconds(kBeatFrames)) * tone;
}

// A sine whose pitch falls from about 145 Hz to 45 Hz within a few tens of milliseconds.
double Kick(double t) {
  const double phase = kTwoPi * (45.0 * t + 100.0 * 0.04 * (1.0 - std::exp(-t / 0.04)));
  return kKickGain * std::exp(-t / 0.18) * Release(t, Seconds(kBeatFrames)) * std::sin(phase);
}

double Snare(long long frame, double t) {
  const double gate = Release(t, Seconds(kBeatFrames));
  return gate * (kSnareNoiseGain * std::exp(-t / 0.07) * Noise(frame) +
                 kSnareToneGain * std::exp(-t / 0.1) * std::sin(kTwoPi * 185.0 * t));
}

// Differenced noise (bright, hiss-like) on the off-beat eighths.
double HiHat(long long frame, double t) {
  const double bright = 0.5 * (Noise(frame) - Noise(frame - 1));
  return kHatGain * std::exp(-t / 0.02) * Release(t, Seconds(kEighthFrames)) * bright;
}

}  // namespace

void DemoSignal::Frame(long long frame, float* left, float* right) {
  double l = 0.0;
  double r = 0.0;
  AddChords(frame, &l, &r);

  const int beat = static_cast<int>(frame / kBeatFrames);
  const double beatTime = Seconds(frame % kBeatFrames);
  const double bass = Bass(beat, beatTime);
  const double drum = beat % 2 == 0 ? Kick(beatTime) : Snare(frame, beatTime);
  l += bass + drum;
  r += bass + drum;

  if ((frame / kEighthFrames) % 2 == 1) {
    const double hat = HiHat(frame, Seconds(frame % kEighthFrames));
    l += 0.5 * hat;
    r += hat;
  }

  const double secondsLeft = Seconds(kFrames - 1 - frame);
  const double fade = std::min(1.0, secondsLeft / kFadeOutSeconds);
  *left = static_cast<float>(l * fade);
  *right = static_cast<float>(r * fade);
}

long long DemoSignal::Read(float* interleaved, long long nFrames, std::string*) {
  const long long n = std::min(nFrames, NFrames() - mPosition);
  for (long long i = 0; i < n; ++i) {
    Frame(mPosition + i, &interleaved[2 * i], &interleaved[2 * i + 1]);
  }
  mPosition += n;
  return n;
}

}  // namespace render
