#include "ProgressDisplay.h"

#include <chrono>
#include <string>

namespace render {

ProgressDisplay::ProgressDisplay(std::ostream& out, long long totalFrames, bool enabled,
                                 Clock clock, const char* label)
    : mOut(out),
      mTotalFrames(totalFrames),
      mEnabled(enabled),
      mClock(std::move(clock)),
      mLabel(label),
      mLastDraw(mEnabled ? mClock() : 0.0) {}

double ProgressDisplay::SteadySeconds() {
  using namespace std::chrono;
  return duration<double>(steady_clock::now().time_since_epoch()).count();
}

void ProgressDisplay::Update(long long doneFrames) {
  if (!mEnabled) return;
  const double now = mClock();
  if (now - mLastDraw < kRedrawInterval) return;
  mLastDraw = now;
  Draw(mOffset + doneFrames);
}

void ProgressDisplay::Draw(long long doneFrames) {
  const double fraction = mTotalFrames > 0 ? static_cast<double>(doneFrames) / mTotalFrames : 1.0;
  const int filled = static_cast<int>(fraction * kBarWidth);
  const int percent = static_cast<int>(fraction * 100.0);
  mOut << "\r" << mLabel << " [" << std::string(filled, '#') << std::string(kBarWidth - filled, ' ')
       << "] " << percent << "%" << std::flush;
  mDrawn = true;
}

void ProgressDisplay::Finish() {
  if (!mDrawn) return;
  mOut << "\r" << std::string(kBarWidth + 20, ' ') << "\r" << std::flush;
  mDrawn = false;
}

}  // namespace render
