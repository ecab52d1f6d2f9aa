#include "plug/WDL_Mutex.h"

namespace {

bool IsCaller(pthread_t owner) { return owner != 0 && pthread_equal(owner, pthread_self()); }

}  // namespace

WDL_Mutex::WDL_Mutex() { pthread_mutex_init(&mMutex, nullptr); }

WDL_Mutex::~WDL_Mutex() { pthread_mutex_destroy(&mMutex); }

void WDL_Mutex::Enter() {
  if (IsCaller(mOwner.load(std::memory_order_relaxed))) {
    ++mEnterCount;
    return;
  }
  pthread_mutex_lock(&mMutex);
  mOwner.store(pthread_self(), std::memory_order_relaxed);
  mEnterCount = 0;
}

void WDL_Mutex::Leave() {
  // A Leave from a thread that does not hold the mutex would release someone else's lock.
  if (!IsCaller(mOwner.load(std::memory_order_relaxed))) return;
  if (--mEnterCount < 0) {
    mOwner.store(0, std::memory_order_relaxed);
    pthread_mutex_unlock(&mMutex);
  }
}
