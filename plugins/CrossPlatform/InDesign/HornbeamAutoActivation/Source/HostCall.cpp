#include "HostCall.h"

namespace {

thread_local int sDepth = 0;
thread_local void (*sWhenOver)() = nullptr;

}  // namespace

HostCallScope::HostCallScope() {
  ++sDepth;
}

HostCallScope::~HostCallScope() {
  if (--sDepth > 0) {
    return;
  }
  if (void (*const work)() = std::exchange(sWhenOver, nullptr); work != nullptr) {
    work();
  }
}

bool HostCallScope::IsUnderWay() {
  return sDepth > 0;
}

void HostCallScope::RunWhenOver(void (*work)()) {
  sWhenOver = work;
}
