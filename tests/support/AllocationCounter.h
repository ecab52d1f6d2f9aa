#pragma once

// Counts heap allocations made by the calling thread while a scope is open. Linking the
// "tarn_alloc_counter" library into a test binary replaces the global operator new family
// (and, in builds without a sanitizer, malloc, calloc and realloc) with counting forwards.
//
//   AllocationScope scope;
//   plug.ProcessBuffers(0.f, n);
//   EXPECT_EQ(scope.Count(), 0);

class AllocationScope {
public:
  AllocationScope();
  ~AllocationScope();
  AllocationScope(const AllocationScope&) = delete;
  AllocationScope& operator=(const AllocationScope&) = delete;

  // Allocations seen on this thread since the scope opened.
  long Count() const;

private:
  long mStart;
  bool mWasArmed;
};
