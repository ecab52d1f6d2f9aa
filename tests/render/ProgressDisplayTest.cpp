#include "ProgressDisplay.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

using render::ProgressDisplay;

namespace {

struct FakeClock {
  double now = 100.0;
  ProgressDisplay::Clock Get() {
    return [this] { return now; };
  }
};

int Redraws(const std::string& text) { return static_cast<int>(std::count(text.begin(), text.end(), '%')); }

}  // namespace

TEST(ProgressDisplay, RedrawsAtMostTenTimesASecond) {
  std::ostringstream out;
  FakeClock clock;
  ProgressDisplay progress(out, 1000, true, clock.Get());
  for (int i = 1; i <= 200; ++i) {  // two seconds, one update every 10 ms
    clock.now += 0.01;
    progress.Update(i * 5);
  }
  EXPECT_LE(Redraws(out.str()), 20);
  EXPECT_GE(Redraws(out.str()), 15);
}

TEST(ProgressDisplay, ShowsThePercentageAndABar) {
  std::ostringstream out;
  FakeClock clock;
  ProgressDisplay progress(out, 400, true, clock.Get());
  clock.now += 0.5;
  progress.Update(100);
  EXPECT_NE(out.str().find(" 25%"), std::string::npos) << out.str();
  EXPECT_NE(out.str().find("[" + std::string(10, '#') + std::string(30, ' ') + "]"), std::string::npos) << out.str();
  EXPECT_EQ(out.str()[0], '\r');
  EXPECT_EQ(out.str().find('\n'), std::string::npos);  // stays on one line
}

TEST(ProgressDisplay, ShortRendersAndDisabledDisplaysStaySilent) {
  std::ostringstream shortRender;
  FakeClock clock;
  ProgressDisplay quick(shortRender, 100, true, clock.Get());
  clock.now += 0.05;
  quick.Update(100);
  quick.Finish();
  EXPECT_EQ(shortRender.str(), "");

  std::ostringstream disabledOut;
  ProgressDisplay disabled(disabledOut, 100, false, clock.Get());
  clock.now += 5.0;
  disabled.Update(50);
  disabled.Finish();
  EXPECT_EQ(disabledOut.str(), "");
}

TEST(ProgressDisplay, FinishClearsTheLine) {
  std::ostringstream out;
  FakeClock clock;
  ProgressDisplay progress(out, 100, true, clock.Get());
  clock.now += 1.0;
  progress.Update(50);
  const std::size_t drawn = out.str().size();
  progress.Finish();
  const std::string tail = out.str().substr(drawn);
  EXPECT_EQ(tail.front(), '\r');
  EXPECT_EQ(tail.back(), '\r');
  EXPECT_EQ(tail.find_first_not_of(" \r"), std::string::npos);
  EXPECT_GE(tail.size(), drawn - 1);  // blanks at least what was drawn
}
