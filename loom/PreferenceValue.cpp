#include "PreferenceValue.h"

#include <charconv>

#include "GStringUtils.h"
#include "Memory/CFVector.h"

namespace {

bool BoolOfText(const std::string& text) {
  const std::string lower = GStringUtils::OSToLowerCase(text);
  return lower == "1" || lower == "true" || lower == "yes";
}

long LongOfText(const std::string& text) {
  long number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number);
  return error == std::errc() && rest == end ? number : 0;
}

}  // namespace

std::optional<PreferenceValue> PreferenceValue::FromObject(CFTypeRef object) {
  if (const auto boolean = dynamicCF<CFBooleanRef>(object)) {
    return PreferenceValue(static_cast<bool>(CFBooleanGetValue(boolean)));
  }
  if (const auto number = dynamicCF<CFNumberRef>(object)) {
    long value = 0;
    CFNumberGetValue(number, kCFNumberLongType, &value);
    return PreferenceValue(value);
  }
  if (const auto string = dynamicCF<CFStringRef>(object)) return PreferenceValue(ToStdString(string));
  return std::nullopt;
}

RetainPtr<CFTypeRef> PreferenceValue::ToObject() const {
  if (const bool* boolean = std::get_if<bool>(&m_value)) {
    return retainCF<CFTypeRef>(*boolean ? kCFBooleanTrue : kCFBooleanFalse);
  }
  if (const long* number = std::get_if<long>(&m_value)) {
    return adoptCF(CFNumberCreate(kCFAllocatorDefault, kCFNumberLongType, number));
  }
  return ToCFString(std::get<std::string>(m_value));
}

bool PreferenceValue::AsBool() const {
  if (const bool* boolean = std::get_if<bool>(&m_value)) return *boolean;
  if (const long* number = std::get_if<long>(&m_value)) return *number != 0;
  return BoolOfText(std::get<std::string>(m_value));
}

long PreferenceValue::AsLong() const {
  if (const bool* boolean = std::get_if<bool>(&m_value)) return *boolean ? 1 : 0;
  if (const long* number = std::get_if<long>(&m_value)) return *number;
  return LongOfText(std::get<std::string>(m_value));
}

std::optional<std::string> PreferenceValue::AsString() const {
  const std::string* text = std::get_if<std::string>(&m_value);
  return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::string PreferenceValue::ToText() const {
  if (const std::string* text = std::get_if<std::string>(&m_value)) return *text;
  return std::to_string(AsLong());
}
