#pragma once

#include <CoreFoundation/CFBase.h>

#include <string>

/// The callbacks that containers of objects share. For the sources of this folder only.
namespace cf {

const void* RetainValue(CFAllocatorRef allocator, const void* value);
void ReleaseValue(CFAllocatorRef allocator, const void* value);

/// Whether what is held are objects and not bare pointers.
template <typename CallBacks>
bool HoldsObjects(const CallBacks& callBacks) {
  return callBacks.copyDescription == &CFCopyDescription;
}

/// NULL is no object; bare pointers may be NULL.
template <typename CallBacks>
bool Refuses(const CallBacks& callBacks, const void* value) {
  return value == nullptr && callBacks.retain != nullptr;
}

template <typename CallBacks>
const void* Keep(const CallBacks& callBacks, const void* value) {
  return callBacks.retain == nullptr ? value : callBacks.retain(kCFAllocatorDefault, value);
}

template <typename CallBacks>
void LetGo(const CallBacks& callBacks, const void* value) {
  if (callBacks.release != nullptr) callBacks.release(kCFAllocatorDefault, value);
}

template <typename CallBacks>
bool AreEqual(const CallBacks& callBacks, const void* value1, const void* value2) {
  if (value1 == value2) return true;
  if (value1 == nullptr || value2 == nullptr) return false;
  return callBacks.equal != nullptr && callBacks.equal(value1, value2);
}

template <typename CallBacks>
CFHashCode HashOf(const CallBacks& callBacks, const void* value) {
  if (callBacks.hash != nullptr && value != nullptr) return callBacks.hash(value);
  return reinterpret_cast<CFHashCode>(value) >> 3;
}

/// A value for a log: objects are described, bare pointers shown.
std::string DescribeValue(CFStringRef (*copyDescription)(const void*), const void* value, int depth);

}  // namespace cf
