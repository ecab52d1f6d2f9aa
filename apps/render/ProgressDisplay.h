#pragma once

#include <functional>
#include <ostream>

namespace render {

// A one-line progress bar on a terminal, redrawn at most ten times a second. Nothing is drawn
// in the first tenth of a second, so short renders stay silent; when disabled (--quiet, or the
// stream is not a terminal) nothing is drawn at all. A job of several runs (the analysis) counts
// its frames as one: each run's frames are counted from the offset it starts at.
class ProgressDisplay {
 public:
  using Clock = std::function<double()>;  // seconds from any fixed origin

  ProgressDisplay(std::ostream& out, long long totalFrames, bool enabled,
                  Clock clock = SteadySeconds, const char* label = "rendering");

  void Update(long long doneFrames);
  // Frames done before the run that the next Updates count.
  void SetOffset(long long frames) { mOffset = frames; }
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
  const char* mLabel;
  long long mOffset = 0;
  double mLastDraw;
  bool mDrawn = false;
};

}  // namespace render
