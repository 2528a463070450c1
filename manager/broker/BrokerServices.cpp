// Operating system services for providers that want them from the broker: POSIX threads under other names.
#include <pthread.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "broker/Broker.h"

namespace ZebManager {
namespace {

static_assert(sizeof(pthread_once_t) == sizeof(int) && sizeof(pthread_key_t) == sizeof(unsigned));
static_assert(sizeof(pthread_t) == sizeof(void*));

pthread_t threadOf(void* thread) {
  return reinterpret_cast<pthread_t>(thread);
}
pthread_mutex_t* mutexOf(void* mutex) {
  return static_cast<pthread_mutex_t*>(mutex);
}
pthread_cond_t* conditionOf(void* condition) {
  return static_cast<pthread_cond_t*>(condition);
}

/// The file name of a library by its short name. The caller frees it.
char* resolveFileName(const char* name) {
  return name ? strdup(("lib" + std::string(name) + ".so").c_str()) : nullptr;
}

void* newThread(CMPIThreadFunc function, void* argument, int detached) {
  pthread_t thread{};
  if (pthread_create(&thread, nullptr, function, argument) != 0) return nullptr;
  if (detached) pthread_detach(thread);
  return reinterpret_cast<void*>(thread);  // NOLINT(performance-no-int-to-ptr): the interface's handle
}

int joinThread(void* thread, void** value) {
  return pthread_join(threadOf(thread), value);
}

int exitThread(void* value) {
  pthread_exit(value);
}

int cancelThread(void* thread) {
  return pthread_cancel(threadOf(thread));
}

int threadSleep(CMPIUint32 milliseconds) {
  const timespec time{static_cast<time_t>(milliseconds / 1000),
                      static_cast<long>(milliseconds % 1000) * 1'000'000};
  return nanosleep(&time, nullptr);
}

int threadOnce(int* once, CMPIThreadOnceFunc function) {
  return pthread_once(once, function);
}

int createThreadKey(unsigned int* key, CMPIThreadKeyCleanupFunc cleanup) {
  return pthread_key_create(key, cleanup);
}

int destroyThreadKey(unsigned int key) {
  return pthread_key_delete(key);
}

void* getThreadSpecific(unsigned int key) {
  return pthread_getspecific(key);
}

int setThreadSpecific(unsigned int key, void* value) {
  return pthread_setspecific(key, value);
}

void* newMutex(int) {
  auto mutex = std::make_unique<pthread_mutex_t>();
  return pthread_mutex_init(mutex.get(), nullptr) == 0 ? mutex.release() : nullptr;
}

int destroyMutex2(void* mutex) {
  const int error = pthread_mutex_destroy(mutexOf(mutex));
  if (error == 0) delete mutexOf(mutex);
  return error;
}

int lockMutex2(void* mutex) {
  return pthread_mutex_lock(mutexOf(mutex));
}

int unlockMutex2(void* mutex) {
  return pthread_mutex_unlock(mutexOf(mutex));
}

void destroyMutex(void* mutex) {
  destroyMutex2(mutex);
}

void lockMutex(void* mutex) {
  lockMutex2(mutex);
}

void unlockMutex(void* mutex) {
  unlockMutex2(mutex);
}

void* newCondition(int) {
  auto condition = std::make_unique<pthread_cond_t>();
  return pthread_cond_init(condition.get(), nullptr) == 0 ? condition.release() : nullptr;
}

int destroyCondition2(void* condition) {
  const int error = pthread_cond_destroy(conditionOf(condition));
  if (error == 0) delete conditionOf(condition);
  return error;
}

void destroyCondition(void* condition) {
  destroyCondition2(condition);
}

int condWait(void* condition, void* mutex) {
  return pthread_cond_wait(conditionOf(condition), mutexOf(mutex));
}

int timedCondWait(void* condition, void* mutex, timespec* until) {
  return pthread_cond_timedwait(conditionOf(condition), mutexOf(mutex), until);
}

int signalCondition(void* condition) {
  return pthread_cond_signal(conditionOf(condition));
}

}  // namespace

const CMPIBrokerExtFT kBrokerExtFT = {
    CMPIVersion210,    resolveFileName,   newThread,        joinThread,      exitThread,
    cancelThread,      threadSleep,       threadOnce,       createThreadKey, destroyThreadKey,
    getThreadSpecific, setThreadSpecific, newMutex,         destroyMutex,    lockMutex,
    unlockMutex,       newCondition,      destroyCondition, condWait,        timedCondWait,
    signalCondition,   destroyMutex2,     lockMutex2,       unlockMutex2,    destroyCondition2,
};

}  // namespace ZebManager
