#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>
#include <variant>

#include "Memory/RetainPtr.h"

/// One preference: a truth value, a whole number or a text.
///
/// Each kind can be read as another where that makes sense, since a user may have edited the file by hand and
/// an override from the environment is always a text.
class PreferenceValue {
 public:
  explicit PreferenceValue(bool value) : m_value(value) {}
  explicit PreferenceValue(long value) : m_value(value) {}
  explicit PreferenceValue(std::string value) : m_value(std::move(value)) {}

  /// Nothing for an object of another kind.
  static std::optional<PreferenceValue> FromObject(CFTypeRef object);

  RetainPtr<CFTypeRef> ToObject() const;

  /// A number counts when it isn't 0, a text when it is "1", "true" or "yes".
  bool AsBool() const;
  /// A text counts when it is a whole number in decimal; a truth value is 1 or 0.
  long AsLong() const;
  /// Nothing unless it is a text.
  std::optional<std::string> AsString() const;
  /// As a user reads it.
  std::string ToText() const;

 private:
  std::variant<bool, long, std::string> m_value;
};
