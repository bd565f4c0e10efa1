#include "CoreFoundation/CFNumber.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>

#include "CoreFoundation/CFNumberObject.h"

using cf::Cast;
using cf::WideInteger;

namespace {

/// The sized type of a C type's name; 0 for an unknown one.
CFNumberType SizedType(CFNumberType type) {
  switch (type) {
    case kCFNumberCharType:
      return kCFNumberSInt8Type;
    case kCFNumberShortType:
      return kCFNumberSInt16Type;
    case kCFNumberIntType:
      return kCFNumberSInt32Type;
    case kCFNumberLongType:
    case kCFNumberLongLongType:
    case kCFNumberCFIndexType:
    case kCFNumberNSIntegerType:
      return kCFNumberSInt64Type;
    case kCFNumberFloatType:
      return kCFNumberFloat32Type;
    case kCFNumberDoubleType:
    case kCFNumberCGFloatType:
      return kCFNumberFloat64Type;
    default:
      return type >= kCFNumberSInt8Type && type <= kCFNumberFloat64Type ? type : CFNumberType{};
  }
}

template <typename T>
T Load(const void* value) {
  T result;
  std::memcpy(&result, value, sizeof result);
  return result;
}

/// The nearest integer towards 0 that a wide one can hold; NaN is 0.
WideInteger Truncated(double real) {
  constexpr double kLimit = 1e38;
  return std::isnan(real) ? 0 : static_cast<WideInteger>(std::clamp(real, -kLimit, kLimit));
}

int Sign(WideInteger a, WideInteger b) {
  return (a > b) - (a < b);
}

int CompareReals(double a, double b) {
  if (std::isnan(a) || std::isnan(b))
    return static_cast<int>(std::isnan(b)) - static_cast<int>(std::isnan(a));
  return (a > b) - (a < b);
}

/// Exact, where the integer as a double would be rounded.
int CompareMixed(WideInteger a, double b) {
  if (std::isnan(b)) return 1;
  const WideInteger whole = Truncated(b);
  const int sign = Sign(a, whole);
  return sign != 0 ? sign : CompareReals(0, b - std::trunc(b));
}

int Compare(const __CFNumber& number1, const __CFNumber& number2) {
  const auto* integer1 = std::get_if<WideInteger>(&number1.value);
  const auto* integer2 = std::get_if<WideInteger>(&number2.value);
  if (integer1 != nullptr && integer2 != nullptr) return Sign(*integer1, *integer2);
  if (integer1 != nullptr) return CompareMixed(*integer1, std::get<double>(number2.value));
  if (integer2 != nullptr) return -CompareMixed(*integer2, std::get<double>(number1.value));
  return CompareReals(std::get<double>(number1.value), std::get<double>(number2.value));
}

template <typename T>
bool StoreInteger(const __CFNumber& number, void* target) {
  const auto* integer = std::get_if<WideInteger>(&number.value);
  const WideInteger whole = integer != nullptr ? *integer : Truncated(std::get<double>(number.value));
  const WideInteger fitted =
      std::clamp<WideInteger>(whole, std::numeric_limits<T>::min(), std::numeric_limits<T>::max());
  const T value = static_cast<T>(fitted);
  std::memcpy(target, &value, sizeof value);
  if (integer != nullptr) return fitted == whole;
  return CompareMixed(fitted, std::get<double>(number.value)) == 0;
}

template <typename T>
bool StoreReal(const __CFNumber& number, void* target) {
  const auto* integer = std::get_if<WideInteger>(&number.value);
  const double real = integer != nullptr ? static_cast<double>(*integer) : std::get<double>(number.value);
  constexpr auto kMost = static_cast<double>(std::numeric_limits<T>::max());
  const T value = static_cast<T>(std::isfinite(real) ? std::clamp(real, -kMost, kMost) : real);
  std::memcpy(target, &value, sizeof value);
  if (integer != nullptr) return CompareMixed(*integer, static_cast<double>(value)) == 0;
  return std::isnan(real) || static_cast<double>(value) == real;
}

}  // namespace

bool __CFNumber::Equals(const Object& other) const {
  return Compare(*this, static_cast<const __CFNumber&>(other)) == 0;
}

CFHashCode __CFNumber::Hash() const {
  // Equal integers and reals hash alike: as the integer when they are whole.
  if (const auto* integer = std::get_if<WideInteger>(&value)) return static_cast<CFHashCode>(*integer);
  const double real = std::get<double>(value);
  if (std::trunc(real) == real) return static_cast<CFHashCode>(Truncated(real));
  return std::isnan(real) ? 0 : std::hash<double>()(real);
}

std::string __CFNumber::Describe(int) const {
  if (const auto* integer = std::get_if<WideInteger>(&value)) return cf::IntegerText(*integer);
  char text[64];
  const auto [end, error] = std::to_chars(text, text + sizeof text, std::get<double>(value));
  return error == std::errc() ? std::string(text, end) : std::string();
}

namespace cf {

std::string IntegerText(WideInteger integer) {
  std::string digits;
  const bool negative = integer < 0;
  do {
    const auto digit = static_cast<int>(integer % 10);
    digits.push_back(static_cast<char>('0' + (digit < 0 ? -digit : digit)));
    integer /= 10;
  } while (integer != 0);
  if (negative) digits.push_back('-');
  std::reverse(digits.begin(), digits.end());
  return digits;
}

}  // namespace cf

CFTypeID CFNumberGetTypeID() {
  return cf::kNumberType;
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
  if (value == nullptr) return nullptr;
  const CFNumberType sized = SizedType(type);
  switch (sized) {
    case kCFNumberSInt8Type:
      return new __CFNumber(sized, WideInteger{Load<SInt8>(value)});
    case kCFNumberSInt16Type:
      return new __CFNumber(sized, WideInteger{Load<SInt16>(value)});
    case kCFNumberSInt32Type:
      return new __CFNumber(sized, WideInteger{Load<SInt32>(value)});
    case kCFNumberSInt64Type:
      return new __CFNumber(sized, WideInteger{Load<SInt64>(value)});
    case kCFNumberFloat32Type:
      return new __CFNumber(sized, static_cast<double>(Load<Float32>(value)));
    case kCFNumberFloat64Type:
      return new __CFNumber(sized, Load<Float64>(value));
    default:
      return nullptr;
  }
}

CFNumberType CFNumberGetType(CFNumberRef number) {
  const auto* source = Cast<__CFNumber>(number);
  return source == nullptr ? CFNumberType{} : source->type;
}

CFIndex CFNumberGetByteSize(CFNumberRef number) {
  switch (CFNumberGetType(number)) {
    case kCFNumberSInt8Type:
      return 1;
    case kCFNumberSInt16Type:
      return 2;
    case kCFNumberSInt32Type:
    case kCFNumberFloat32Type:
      return 4;
    case kCFNumberSInt64Type:
    case kCFNumberFloat64Type:
      return 8;
    default:
      return 0;
  }
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
  const auto* source = Cast<__CFNumber>(number);
  return source != nullptr && source->IsReal();
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  const auto* source = Cast<__CFNumber>(number);
  if (source == nullptr || value == nullptr) return false;
  switch (SizedType(type)) {
    case kCFNumberSInt8Type:
      return StoreInteger<SInt8>(*source, value);
    case kCFNumberSInt16Type:
      return StoreInteger<SInt16>(*source, value);
    case kCFNumberSInt32Type:
      return StoreInteger<SInt32>(*source, value);
    case kCFNumberSInt64Type:
      return StoreInteger<SInt64>(*source, value);
    case kCFNumberFloat32Type:
      return StoreReal<Float32>(*source, value);
    case kCFNumberFloat64Type:
      return StoreReal<Float64>(*source, value);
    default:
      return false;
  }
}

CFComparisonResult CFNumberCompare(CFNumberRef number1, CFNumberRef number2, void*) {
  const auto* source1 = Cast<__CFNumber>(number1);
  const auto* source2 = Cast<__CFNumber>(number2);
  if (source1 == nullptr || source2 == nullptr) {
    return static_cast<CFComparisonResult>((source1 != nullptr) - (source2 != nullptr));
  }
  return static_cast<CFComparisonResult>(Compare(*source1, *source2));
}
