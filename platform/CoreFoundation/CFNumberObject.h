#pragma once

#include <CoreFoundation/CFNumber.h>

#include <variant>

#include "CoreFoundation/CFRuntime.h"

namespace cf {

/// Holds every integer of 64 bits, with and without sign.
__extension__ using WideInteger = __int128;

}  // namespace cf

struct __CFNumber final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kNumberType;

  __CFNumber(CFNumberType sizedType, cf::WideInteger integer)
      : Object(kType), type(sizedType), value(integer) {}
  __CFNumber(CFNumberType sizedType, double real) : Object(kType), type(sizedType), value(real) {}

  bool Equals(const Object& other) const override;
  CFHashCode Hash() const override;
  std::string Describe(int depth) const override;

  bool IsReal() const { return std::holds_alternative<double>(value); }

  const CFNumberType type;
  const std::variant<cf::WideInteger, double> value;
};

namespace cf {

/// "-12"; wide integers have no printf.
std::string IntegerText(WideInteger integer);

}  // namespace cf
