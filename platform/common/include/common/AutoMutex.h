#pragma once

#include <pthread.h>

namespace ZEB {

/// Holds a mutex from construction to destruction, also when an exception passes.
class AutoMutex {
 public:
  explicit AutoMutex(pthread_mutex_t& mutex) : _mutex(mutex) { pthread_mutex_lock(&_mutex); }
  ~AutoMutex() { pthread_mutex_unlock(&_mutex); }
  AutoMutex(const AutoMutex&) = delete;
  AutoMutex& operator=(const AutoMutex&) = delete;

 private:
  pthread_mutex_t& _mutex;
};

}  // namespace ZEB
