#include "CoreFoundation/CFPropertyListReader.h"

#include <unicode/utf8.h>

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>
#include <new>
#include <pugixml.hpp>

#include "CoreFoundation/CFArrayObject.h"
#include "CoreFoundation/CFBase64.h"
#include "CoreFoundation/CFBoolean.h"
#include "CoreFoundation/CFDate.h"
#include "CoreFoundation/CFDictionaryObject.h"
#include "CoreFoundation/CFNumberObject.h"
#include "CoreFoundation/CFPropertyListWriter.h"
#include "CoreFoundation/CFStringObject.h"
#include "Memory/CFVector.h"

namespace cf {

namespace {

// Escapes are ours to read, so that an undefined entity is an error and not a text.
constexpr unsigned kParseOptions =
    pugi::parse_cdata | pugi::parse_doctype | pugi::parse_ws_pcdata | pugi::parse_eol;

constexpr std::string_view kWhiteSpace = " \t\r\n";

std::string_view Trim(std::string_view text) {
  const size_t start = text.find_first_not_of(kWhiteSpace);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kWhiteSpace) - start + 1);
}

bool IsWide(std::string_view bytes) {
  // A byte order mark of UTF-16 or UTF-32, or "<" in one of them.
  if (bytes.size() < 2) return false;
  const auto first = static_cast<unsigned char>(bytes[0]);
  const auto second = static_cast<unsigned char>(bytes[1]);
  return (first == 0xFE && second == 0xFF) || (first == 0xFF && second == 0xFE) || first == 0 || second == 0;
}

bool LooksLikeXML(std::string_view bytes) {
  if (IsWide(bytes)) return true;
  if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return Trim(bytes).starts_with('<');
}

bool IsElement(const pugi::xml_node& node) {
  return node.type() == pugi::node_element;
}

bool IsText(const pugi::xml_node& node) {
  return node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
}

/// "&#38;" and "&#x26;" without "&" and ";".
bool ReadCharacterNumber(std::string_view name, UChar32* character) {
  name.remove_prefix(1);
  const bool hexadecimal = name.starts_with('x');
  if (hexadecimal) name.remove_prefix(1);
  unsigned number = 0;
  const auto [end, error] =
      std::from_chars(name.data(), name.data() + name.size(), number, hexadecimal ? 16 : 10);
  if (error != std::errc() || end != name.data() + name.size() || name.empty()) return false;
  if (number == 0 || number > 0x10FFFF || U_IS_SURROGATE(number)) return false;
  *character = static_cast<UChar32>(number);
  return true;
}

bool ReadEntity(std::string_view name, UChar32* character) {
  if (name.starts_with('#')) return ReadCharacterNumber(name, character);
  constexpr std::pair<std::string_view, UChar32> kNamed[] = {
      {"amp", '&'}, {"lt", '<'}, {"gt", '>'}, {"quot", '"'}, {"apos", '\''}};
  for (const auto& [known, value] : kNamed) {
    if (name != known) continue;
    *character = value;
    return true;
  }
  return false;
}

}  // namespace

RetainPtr<CFPropertyListRef> PropertyListReader::Read(std::string_view bytes) {
  errorCode_ = kCFPropertyListReadCorruptError;
  if (!LooksLikeXML(bytes)) {
    errorCode_ = kCFPropertyListReadUnknownVersionError;
    error_ = "The data isn't an XML property list";
    return nullptr;
  }
  // A zero ends the text for the parser, which would take what is in front for the whole.
  if (const size_t zero = bytes.find('\0'); zero != std::string_view::npos && !IsWide(bytes)) {
    error_ = "Offset " + std::to_string(zero) + ": a zero byte";
    return nullptr;
  }
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer(bytes.data(), bytes.size(), kParseOptions);
  if (parsed.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (!parsed) {
    error_ = "Offset " + std::to_string(parsed.offset) + ": " + parsed.description();
    return nullptr;
  }
  return ReadDocument(document);
}

PropertyListReader::Value PropertyListReader::ReadDocument(const pugi::xml_node& document) {
  pugi::xml_node root;
  for (const pugi::xml_node& node : document.children()) {
    if (node.type() == pugi::node_doctype &&
        std::string_view(node.value()).find("<!ENTITY") != std::string_view::npos) {
      return Fail(node, "entity definitions are not allowed");
    }
    if (!IsElement(node)) continue;
    if (root) return Fail(node, "a second root element");
    root = node;
  }
  if (!root) return Fail(document, "no root element");
  if (std::string_view(root.name()) != "plist") return ReadValue(root, 0);
  bool clean = true;
  const pugi::xml_node element = NextElement(root.first_child(), &clean);
  if (!element) return Fail(root, "an empty property list");
  const pugi::xml_node second = NextElement(element.next_sibling(), &clean);
  if (second || !clean) return Fail(root, "more than one value in <plist>");
  return ReadValue(element, 0);
}

PropertyListReader::Value PropertyListReader::ReadValue(const pugi::xml_node& element, int level) {
  const std::string_view name = element.name();
  if (name == "dict" || name == "array") {
    if (level >= kMostPropertyListLevels) return Fail(element, "more than 512 levels");
    return name == "dict" ? ReadDictionary(element, level) : ReadArray(element, level);
  }
  return ReadLeaf(element);
}

PropertyListReader::Value PropertyListReader::ReadArray(const pugi::xml_node& element, int level) {
  auto* array = new __CFArray(&kCFTypeArrayCallBacks, (options_ & 3) != kCFPropertyListImmutable);
  const Value result = adoptCF<CFTypeRef>(array);
  bool clean = true;
  for (pugi::xml_node child = NextElement(element.first_child(), &clean); child;
       child = NextElement(child.next_sibling(), &clean)) {
    Value value = ReadValue(child, level + 1);
    if (!value) return nullptr;
    array->values.push_back(value.leakRef());
  }
  return clean ? result : Fail(element, "text in <array>");
}

PropertyListReader::Value PropertyListReader::ReadDictionary(const pugi::xml_node& element, int level) {
  auto* dictionary = new __CFDictionary(&kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks,
                                        (options_ & 3) != kCFPropertyListImmutable);
  const Value result = adoptCF<CFTypeRef>(dictionary);
  bool clean = true;
  for (pugi::xml_node child = NextElement(element.first_child(), &clean); child;
       child = NextElement(child.next_sibling(), &clean)) {
    const RetainPtr<CFStringRef> key = ReadKey(child);
    if (!key) return nullptr;
    child = NextElement(child.next_sibling(), &clean);
    if (!child) return Fail(element, "a key without a value");
    const Value value = ReadValue(child, level + 1);
    if (!value) return nullptr;
    dictionary->Put(key.get(), value.get(), __CFDictionary::When::kAlways);
  }
  return clean ? result : Fail(element, "text in <dict>");
}

PropertyListReader::Value PropertyListReader::ReadLeaf(const pugi::xml_node& element) {
  const std::string_view name = element.name();
  std::string text;
  if (!ReadText(element, &text)) return nullptr;
  if (name == "string") return ReadString(element, text);
  if (name == "integer") return ReadInteger(element, text);
  if (name == "real") return ReadReal(element, text);
  if (name == "date") return ReadDate(element, text);
  if (name == "data") return ReadData(element, text);
  if (name == "true" || name == "false") {
    if (!Trim(text).empty()) return Fail(element, "text in a boolean");
    return retainCF<CFTypeRef>(name == "true" ? kCFBooleanTrue : kCFBooleanFalse);
  }
  return Fail(element, "the element <" + std::string(name) + "> is unknown");
}

PropertyListReader::Value PropertyListReader::ReadString(const pugi::xml_node& element,
                                                         const std::string& text) {
  const RetainPtr<CFStringRef> string = ToCFString(text);
  if (!string) return Fail(element, "a text that isn't valid UTF-8");
  if ((options_ & 3) != kCFPropertyListMutableContainersAndLeaves) return string;
  return adoptCF<CFTypeRef>(CFStringCreateMutableCopy(kCFAllocatorDefault, 0, string.get()));
}

PropertyListReader::Value PropertyListReader::ReadInteger(const pugi::xml_node& element,
                                                          const std::string& text) {
  std::string_view digits = Trim(text);
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  const bool hexadecimal = digits.starts_with("0x") || digits.starts_with("0X");
  if (hexadecimal) digits.remove_prefix(2);
  UInt64 size = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), size, hexadecimal ? 16 : 10);
  if (digits.empty() || error != std::errc() || end != digits.data() + digits.size()) {
    return Fail(element, "not an integer of 64 bits");
  }
  const WideInteger value = negative ? -static_cast<WideInteger>(size) : static_cast<WideInteger>(size);
  if (value < std::numeric_limits<SInt64>::min()) return Fail(element, "not an integer of 64 bits");
  return adoptCF<CFTypeRef>(new __CFNumber(kCFNumberSInt64Type, value));
}

PropertyListReader::Value PropertyListReader::ReadReal(const pugi::xml_node& element,
                                                       const std::string& text) {
  std::string_view digits = Trim(text);
  const bool negative = digits.starts_with('-');
  if (negative || digits.starts_with('+')) digits.remove_prefix(1);
  double value = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
  if (digits.starts_with('-') || digits.empty() || error == std::errc::invalid_argument ||
      end != digits.data() + digits.size()) {
    return Fail(element, "not a real number");
  }
  // Digits that are too large or too small: the text's own limits tell which.
  if (error == std::errc::result_out_of_range) value = CFStringGetDoubleValue(ToCFString(digits).get());
  return adoptCF<CFTypeRef>(new __CFNumber(kCFNumberFloat64Type, negative ? -value : value));
}

PropertyListReader::Value PropertyListReader::ReadDate(const pugi::xml_node& element,
                                                       const std::string& text) {
  const std::string trimmed(Trim(text));
  // "2001-01-01T00:00:00Z", a digit for each 0.
  constexpr std::string_view kForm = "0000-00-00T00:00:00Z";
  bool fits = trimmed.size() == kForm.size();
  for (size_t i = 0; fits && i < kForm.size(); ++i) {
    fits = kForm[i] == '0' ? trimmed[i] >= '0' && trimmed[i] <= '9' : trimmed[i] == kForm[i];
  }
  if (!fits) return Fail(element, "not a date");
  const auto number = [&trimmed](size_t start, size_t length) {
    int value = 0;
    std::from_chars(trimmed.data() + start, trimmed.data() + start + length, value);
    return value;
  };
  const std::chrono::year_month_day date(std::chrono::year(number(0, 4)),
                                         std::chrono::month(static_cast<unsigned>(number(5, 2))),
                                         std::chrono::day(static_cast<unsigned>(number(8, 2))));
  const int hours = number(11, 2);
  const int minutes = number(14, 2);
  const int seconds = number(17, 2);
  if (!date.ok() || hours > 23 || minutes > 59 || seconds > 59) return Fail(element, "not a date");
  const auto days = std::chrono::sys_days(date).time_since_epoch();
  const double since1970 =
      static_cast<double>(std::chrono::seconds(days).count()) + hours * 3600 + minutes * 60 + seconds;
  return adoptCF<CFTypeRef>(CFDateCreate(kCFAllocatorDefault, since1970 - kCFAbsoluteTimeIntervalSince1970));
}

PropertyListReader::Value PropertyListReader::ReadData(const pugi::xml_node& element,
                                                       const std::string& text) {
  const std::optional<std::vector<UInt8>> bytes = DecodeBase64(text);
  if (!bytes) return Fail(element, "not base 64");
  const auto data =
      adoptCF(CFDataCreate(kCFAllocatorDefault, bytes->data(), static_cast<CFIndex>(bytes->size())));
  if ((options_ & 3) != kCFPropertyListMutableContainersAndLeaves) return data;
  return adoptCF<CFTypeRef>(CFDataCreateMutableCopy(kCFAllocatorDefault, 0, data.get()));
}

RetainPtr<CFStringRef> PropertyListReader::ReadKey(const pugi::xml_node& element) {
  std::string text;
  if (std::string_view(element.name()) != "key") {
    Fail(element, "<key> is missing");
    return nullptr;
  }
  if (!ReadText(element, &text)) return nullptr;
  if (const auto found = keys_.find(text); found != keys_.end()) return found->second;
  RetainPtr<CFStringRef> key = ToCFString(text);
  if (!key) {
    Fail(element, "a key that isn't valid UTF-8");
    return nullptr;
  }
  return keys_.emplace(std::move(text), key).first->second;
}

pugi::xml_node PropertyListReader::NextElement(pugi::xml_node node, bool* clean) {
  for (; node && !IsElement(node); node = node.next_sibling()) {
    if (IsText(node) && !Trim(node.value()).empty()) *clean = false;
  }
  return node;
}

bool PropertyListReader::ReadText(const pugi::xml_node& element, std::string* text) {
  for (const pugi::xml_node& node : element.children()) {
    if (IsElement(node)) {
      Fail(node, "an element in <" + std::string(element.name()) + ">");
      return false;
    }
    if (node.type() == pugi::node_cdata) {
      *text += node.value();
    } else if (node.type() == pugi::node_pcdata && !Unescape(node, node.value(), text)) {
      return false;
    }
  }
  return true;
}

bool PropertyListReader::Unescape(const pugi::xml_node& node, std::string_view raw, std::string* text) {
  while (!raw.empty()) {
    const size_t mark = raw.find('&');
    text->append(raw.substr(0, mark));
    if (mark == std::string_view::npos) break;
    const size_t end = raw.find(';', mark);
    UChar32 character = 0;
    if (end == std::string_view::npos || !ReadEntity(raw.substr(mark + 1, end - mark - 1), &character)) {
      Fail(node, "an undefined entity");
      return false;
    }
    char bytes[U8_MAX_LENGTH];
    size_t length = 0;
    U8_APPEND_UNSAFE(bytes, length, character);
    text->append(bytes, length);
    raw.remove_prefix(end + 1);
  }
  return true;
}

PropertyListReader::Value PropertyListReader::Fail(const pugi::xml_node& node, const std::string& problem) {
  error_ = "Offset " + std::to_string(node.offset_debug()) + ": " + problem;
  return nullptr;
}

}  // namespace cf
