#include "CoreFoundation/CFDate.h"

#include <chrono>
#include <cmath>
#include <functional>

#include "CoreFoundation/CFRuntime.h"

using cf::Cast;

struct __CFDate final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kDateType;

  explicit __CFDate(CFAbsoluteTime at) : Object(kType), time(at) {}

  bool Equals(const Object& other) const override { return time == static_cast<const __CFDate&>(other).time; }
  CFHashCode Hash() const override { return std::hash<double>()(time); }
  std::string Describe(int) const override { return std::to_string(time) + " s since 2001"; }

  const CFAbsoluteTime time;
};

const CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;

CFAbsoluteTime CFAbsoluteTimeGetCurrent() {
  const std::chrono::duration<double> since1970 = std::chrono::system_clock::now().time_since_epoch();
  return since1970.count() - kCFAbsoluteTimeIntervalSince1970;
}

CFTypeID CFDateGetTypeID() {
  return cf::kDateType;
}

CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime at) {
  return new __CFDate(at);
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
  const auto* source = Cast<__CFDate>(date);
  return source == nullptr ? 0 : source->time;
}

CFTimeInterval CFDateGetTimeIntervalSinceDate(CFDateRef date, CFDateRef otherDate) {
  return CFDateGetAbsoluteTime(date) - CFDateGetAbsoluteTime(otherDate);
}

CFComparisonResult CFDateCompare(CFDateRef date, CFDateRef otherDate, void*) {
  const CFTimeInterval difference = CFDateGetTimeIntervalSinceDate(date, otherDate);
  return static_cast<CFComparisonResult>((difference > 0) - (difference < 0));
}
