#include "AllocationCounter.h"

#include <cstdlib>
#include <new>

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define TARN_COUNT_C_ALLOCATOR 1
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
}
#endif

namespace {

// Initial-exec TLS: reading these from inside malloc must never allocate.
__attribute__((tls_model("initial-exec"))) thread_local bool tArmed = false;
__attribute__((tls_model("initial-exec"))) thread_local long tCount = 0;

inline void Note() { tCount += tArmed; }

// The allocation behind operator new, which must not be counted a second time.
inline void* RawMalloc(std::size_t size) {
#ifdef TARN_COUNT_C_ALLOCATOR
  return __libc_malloc(size);
#else
  return std::malloc(size);
#endif
}

void* CountedNew(std::size_t size) {
  Note();
  void* p = RawMalloc(size ? size : 1);
  if (!p) throw std::bad_alloc();
  return p;
}

void* CountedAlignedNew(std::size_t size, std::align_val_t align) {
  Note();
  std::size_t a = static_cast<std::size_t>(align);
  std::size_t rounded = ((size ? size : 1) + a - 1) / a * a;
  void* p = std::aligned_alloc(a, rounded);
  if (!p) throw std::bad_alloc();
  return p;
}

}  // namespace

AllocationScope::AllocationScope() : mStart(tCount), mWasArmed(tArmed) { tArmed = true; }
AllocationScope::~AllocationScope() { tArmed = mWasArmed; }
long AllocationScope::Count() const { return tCount - mStart; }

void* operator new(std::size_t size) { return CountedNew(size); }
void* operator new[](std::size_t size) { return CountedNew(size); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Note(), RawMalloc(size ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Note(), RawMalloc(size ? size : 1);
}
void* operator new(std::size_t size, std::align_val_t a) { return CountedAlignedNew(size, a); }
void* operator new[](std::size_t size, std::align_val_t a) { return CountedAlignedNew(size, a); }
void operator delete(void* p) noexcept { std::free(p); }
void operator delete[](void* p) noexcept { std::free(p); }
void operator delete(void* p, std::size_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t) noexcept { std::free(p); }
void operator delete(void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::align_val_t) noexcept { std::free(p); }
void operator delete(void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept { std::free(p); }

// The C allocator is replaced only where no sanitizer runtime already owns it.
#ifdef TARN_COUNT_C_ALLOCATOR
extern "C" {
void* malloc(std::size_t size) { return Note(), __libc_malloc(size); }
void* calloc(std::size_t n, std::size_t size) { return Note(), __libc_calloc(n, size); }
void* realloc(void* p, std::size_t size) { return Note(), __libc_realloc(p, size); }
}
#endif
