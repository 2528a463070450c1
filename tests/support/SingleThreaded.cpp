#include <pthread.h>

#include <cstdio>
#include <cstdlib>

// Stands before the function of the C library in tests that are left out where threads are watched, because
// they start none.
extern "C" int pthread_create(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*) noexcept {
  std::fputs("a thread in a test that is built as SINGLE_THREADED (tests/CMakeLists.txt)\n", stderr);
  std::abort();
}
