#include "GThread.h"

#include <pthread.h>

namespace {

pthread_t ThreadOfHandle(void* handle) {
  return reinterpret_cast<pthread_t>(handle);
}

}  // namespace

void* GThread::GetCurrentThread() {
  return reinterpret_cast<void*>(pthread_self());
}

bool GThread::AreThreadsEqual(void* a, void* b) {
  if (a == nullptr || b == nullptr) return a == b;
  return pthread_equal(ThreadOfHandle(a), ThreadOfHandle(b)) != 0;
}
