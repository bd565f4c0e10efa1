#include "CoreFoundation/CFRuntime.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <new>

// Address sanitizer keeps freed memory aside and tells more than we could.
#if defined(__SANITIZE_ADDRESS__)
#define HORNBEAM_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define HORNBEAM_ADDRESS_SANITIZER 1
#endif
#endif
#if !defined(NDEBUG) && !defined(HORNBEAM_ADDRESS_SANITIZER)
#define HORNBEAM_KEEP_FREED_OBJECTS 1
#endif

namespace cf {

namespace {

constexpr std::array<const char*, kTypeCount> kTypeNames = {
    nullptr,  "CFString", "CFNumber", "CFBoolean", "CFNull",  "CFArray",  "CFDictionary", "CFSet",
    "CFData", "CFDate",   "CFURL",    "CFUUID",    "CFError", "CFBundle", "CFRunLoop",    "CFRunLoopTimer"};

constinit std::array<std::atomic<long>, kTypeCount> liveCounts{};
constinit thread_local bool uncounted = false;

#ifdef HORNBEAM_KEEP_FREED_OBJECTS
// The last objects freed, so that a late use still finds the mark and not somebody else's object.
constinit std::array<std::atomic<void*>, 4096> freed{};
constinit std::atomic<size_t> nextFreed{0};
#endif

}  // namespace

const char* TypeName(CFTypeID type) {
  return type < kTypeCount ? kTypeNames[type] : nullptr;
}

long LiveCount(TypeNumber type) {
  return liveCounts[type].load(std::memory_order_relaxed);
}

void Die(const char* what, const void* object) {
  std::fprintf(stderr, "CoreFoundation: %s (%p)\n", what, object);
  std::abort();
}

Object::Object(TypeNumber type) : type_(type), counted_(!uncounted) {
  if (counted_) liveCounts[type_].fetch_add(1, std::memory_order_relaxed);
}

Object::~Object() {
  if (counted_) liveCounts[type_].fetch_sub(1, std::memory_order_relaxed);
}

CFHashCode Object::Hash() const {
  return std::hash<const void*>()(this);
}

std::string Object::Describe(int) const {
  char text[64];
  std::snprintf(text, sizeof text, "<%s %p>", TypeName(type_), static_cast<const void*>(this));
  return text;
}

void Object::Retain() const {
  CheckAlive();
  if (count_.load(std::memory_order_relaxed) == kConstant) return;
  if (count_.fetch_add(1, std::memory_order_relaxed) <= 0)
    Die("an object retained after its last release", this);
}

void Object::Release() const {
  CheckAlive();
  if (count_.load(std::memory_order_relaxed) == kConstant) return;
  const long before = count_.fetch_sub(1, std::memory_order_acq_rel);
  if (before <= 0) Die("an object released more often than retained", this);
  if (before == 1) delete this;
}

bool Object::RetainIfLive() const {
  long count = count_.load(std::memory_order_relaxed);
  while (count > 0) {
    if (count_.compare_exchange_weak(count, count + 1, std::memory_order_relaxed)) return true;
  }
  return false;
}

long Object::Count() const {
  CheckAlive();
  return count_.load(std::memory_order_relaxed);
}

void Object::MakeConstant() {
  count_.store(kConstant, std::memory_order_relaxed);
  if (counted_) liveCounts[type_].fetch_sub(1, std::memory_order_relaxed);
  counted_ = false;
}

void* Object::operator new(size_t size) {
  return ::operator new(size);
}

void Object::operator delete(void* memory) {
#ifdef HORNBEAM_KEEP_FREED_OBJECTS
  // Through volatile, since the optimizer knows that the object's life is over.
  volatile UInt32* mark = &static_cast<Object*>(memory)->mark_;
  *mark = 0xDEADDEAD;
  const size_t place = nextFreed.fetch_add(1, std::memory_order_relaxed) % freed.size();
  memory = freed[place].exchange(memory, std::memory_order_acq_rel);
#endif
  ::operator delete(memory);
}

UncountedScope::UncountedScope(bool isUncounted) : before_(uncounted) {
  uncounted = before_ || isUncounted;
}

UncountedScope::~UncountedScope() {
  uncounted = before_;
}

}  // namespace cf
