#pragma once

// Counts heap allocations made by the calling thread while a scope is open. Linking the
// "tarn_alloc_counter" library into a test program replaces the global operator new family
// (and, in builds without a sanitizer, malloc, calloc and realloc) with counting forwards.
class AllocationScope {
 public:
  AllocationScope();
  ~AllocationScope();
  AllocationScope(const AllocationScope&) = delete;
  AllocationScope& operator=(const AllocationScope&) = delete;
  long Count() const;  // allocations on this thread since the scope opened

 private:
  long mStart;
  bool mWasArmed;
};
