#pragma once

#include <algorithm>

// A rectangle of editor pixels: left and top inclusive, right and bottom exclusive, origin at the
// editor's top left, y growing downward. All four zero is the empty rectangle, which dirty unions,
// redraws and hit tests skip.
struct IRECT {
  int L = 0, T = 0, R = 0, B = 0;

  bool Empty() const { return L == 0 && T == 0 && R == 0 && B == 0; }
  int W() const { return R - L; }
  int H() const { return B - T; }
  bool Contains(int x, int y) const { return L <= x && x < R && T <= y && y < B; }
  // The smallest rectangle holding both; an empty one adds nothing.
  IRECT Union(const IRECT& o) const {
    if (Empty()) return o;
    if (o.Empty()) return *this;
    return {std::min(L, o.L), std::min(T, o.T), std::max(R, o.R), std::max(B, o.B)};
  }
  bool operator==(const IRECT& o) const { return L == o.L && T == o.T && R == o.R && B == o.B; }
};

// Whether a reaches b, for redraws. Deliberately not symmetric: a's left and top edges may touch
// b's right and bottom edges, b's may not touch a's. Each caller keeps its argument order.
inline bool Meets(const IRECT& a, const IRECT& b) {
  return a.L <= b.R && b.L < a.R && a.T <= b.B && b.T < a.B;
}
