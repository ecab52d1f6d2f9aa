#pragma once

#include <pthread.h>

#include <atomic>

// A mutex that its owning thread may enter again: a plain system mutex plus the owner and a
// nesting count. Entering from the owner only counts; the system mutex is taken once per
// outermost Enter and released by the matching outermost Leave.
class WDL_Mutex {
public:
  WDL_Mutex();
  ~WDL_Mutex();
  WDL_Mutex(const WDL_Mutex&) = delete;
  WDL_Mutex& operator=(const WDL_Mutex&) = delete;

  void Enter();
  void Leave();

private:
  pthread_mutex_t mMutex;
  // Read without the lock by threads asking "is it me?": only the owner ever stores its own id.
  std::atomic<pthread_t> mOwner{0};
  int mEnterCount = 0;
};

// Holds a mutex for the lifetime of the guard; a null mutex is allowed and does nothing.
class WDL_MutexLock {
public:
  explicit WDL_MutexLock(WDL_Mutex* mutex) : mMutex(mutex) {
    if (mMutex) mMutex->Enter();
  }
  ~WDL_MutexLock() {
    if (mMutex) mMutex->Leave();
  }
  WDL_MutexLock(const WDL_MutexLock&) = delete;
  WDL_MutexLock& operator=(const WDL_MutexLock&) = delete;

private:
  WDL_Mutex* mMutex;
};
