#include "idml/XmlText.h"

#include <cstdint>
#include <cstring>

#include "idml/Limits.h"

namespace idml {
namespace {

constexpr std::string_view kIdPrefix = "$ID/";

// The length of the UTF-8 sequence at the start of `text`, or 0 where there is no valid one.
std::size_t SequenceLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || text.size() < length) return 0;
  std::uint32_t point = lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const auto next = static_cast<unsigned char>(text[i]);
    if ((next & 0xC0) != 0x80) return 0;
    point = (point << 6) | (next & 0x3Fu);
  }
  const bool overlong = (length == 3 && point < 0x800) || (length == 4 && point < 0x10000);
  const bool surrogate = point >= 0xD800 && point <= 0xDFFF;
  return overlong || surrogate || point > 0x10FFFF ? 0 : length;
}

}  // namespace

std::string_view WithoutIdPrefix(std::string_view text) {
  return text.substr(0, kIdPrefix.size()) == kIdPrefix ? text.substr(kIdPrefix.size()) : text;
}

bool IsName(std::string_view text) {
  if (text.empty() || text.size() > limits::kMaximumNameLength) return false;
  while (!text.empty()) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = SequenceLength(text);
    if (length == 0 || lead < 0x20 || lead == 0x7F) return false;
    // U+0080 to U+009F steer a terminal as well.
    if (length == 2 && lead == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::optional<std::string> Property(const pugi::xml_node& element, const char* name) {
  std::string_view value;
  if (const pugi::xml_attribute attribute = element.attribute(name)) {
    value = attribute.value();
  } else {
    const pugi::xml_node property = element.child("Properties").child(name);
    value = property.text().get();
    if (value == "Nothing" && std::strcmp(property.attribute("type").value(), "enumeration") == 0) {
      return std::nullopt;
    }
  }
  value = WithoutIdPrefix(value);
  if (value.empty()) return std::nullopt;
  return std::string(value);
}

std::optional<std::string> NameProperty(const pugi::xml_node& element, const char* name) {
  std::optional<std::string> value = Property(element, name);
  if (value && !IsName(*value)) value.reset();
  return value;
}

}  // namespace idml
