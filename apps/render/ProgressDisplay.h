#pragma once

#include <functional>
#include <ostream>

namespace render {

// A one-line progress bar on a terminal, redrawn at most ten times a second. Nothing is drawn
// in the first tenth of a second, so short renders stay silent; when disabled (--quiet, or the
// stream is not a terminal) nothing is drawn at all.
class ProgressDisplay {
public:
  using Clock = std::function<double()>;  // seconds from any fixed origin

  ProgressDisplay(std::ostream& out, long long totalFrames, bool enabled, Clock clock = SteadySeconds);

  void Update(long long doneFrames);
  // Erases the bar, if one was drawn, so that what follows starts on a clean line.
  void Finish();

  static double SteadySeconds();
  static constexpr double kRedrawInterval = 0.1;
  static constexpr int kBarWidth = 40;

private:
  void Draw(long long doneFrames);

  std::ostream& mOut;
  long long mTotalFrames;
  bool mEnabled;
  Clock mClock;
  double mLastDraw;
  bool mDrawn = false;
};

}  // namespace render
