#include "CoreFoundation/CFPropertyListWriter.h"

#include <unicode/ustring.h>
#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <vector>

#include "CoreFoundation/CFArrayObject.h"
#include "CoreFoundation/CFBase64.h"
#include "CoreFoundation/CFBoolean.h"
#include "CoreFoundation/CFData.h"
#include "CoreFoundation/CFDate.h"
#include "CoreFoundation/CFDictionaryObject.h"
#include "CoreFoundation/CFNumberObject.h"
#include "CoreFoundation/CFStringObject.h"

namespace cf {

namespace {

constexpr std::string_view kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";
constexpr std::string_view kTail = "</plist>\n";

// Data is indented by at most this many tabs, so that a line keeps some columns.
constexpr int kMostDataTabs = 8;
constexpr int kDataColumns = 76;
constexpr int kTabColumns = 8;

bool IsXMLCharacter(UChar32 character) {
  return character == '\t' || character == '\n' || character == '\r' ||
         (character >= 0x20 && character <= 0xD7FF) || (character >= 0xE000 && character <= 0xFFFD) ||
         character >= 0x10000;
}

std::string RealText(double real) {
  if (std::isnan(real)) return "nan";
  if (std::isinf(real)) return real > 0 ? "+infinity" : "-infinity";
  if (real == 0) return "0.0";
  char text[64];
  // 17 digits tell every double apart from its neighbours.
  const auto [end, error] = std::to_chars(text, text + sizeof text, real, std::chars_format::general, 17);
  return error == std::errc() ? std::string(text, end) : std::string("0.0");
}

}  // namespace

bool PropertyListWriter::Write(CFPropertyListRef list) {
  out_ = kHead;
  if (!WriteValue(list, 0)) {
    if (path_.empty()) path_ = "/";
    return false;
  }
  out_ += kTail;
  return true;
}

bool PropertyListWriter::WriteValue(CFTypeRef value, int level) {
  if (value == nullptr) return Fail("There is no object");
  Indent(level);
  bool written = true;
  switch (CFGetTypeID(value)) {
    case kStringType:
      written = WriteElement("string", TextOf(value));
      break;
    case kBooleanType:
      out_ += value == kCFBooleanTrue ? "<true/>" : "<false/>";
      break;
    case kNumberType:
      written = WriteNumber(value);
      break;
    case kDateType:
      written = WriteDate(value);
      break;
    case kDataType:
      WriteData(value, level);
      break;
    case kArrayType:
      written = WriteArray(value, level);
      break;
    case kDictionaryType:
      written = WriteDictionary(value, level);
      break;
    default:
      return Fail(std::string(TypeName(CFGetTypeID(value))) + " has no form in a property list");
  }
  out_ += '\n';
  return written;
}

bool PropertyListWriter::WriteArray(CFTypeRef value, int level) {
  const auto* array = static_cast<const __CFArray*>(value);
  const auto& values = array->values;
  if (!HoldsObjects(array->callBacks)) return Fail("An array of bare pointers");
  if (level >= kMostPropertyListLevels) return Fail("More than 512 levels");
  if (values.empty()) {
    out_ += "<array/>";
    return true;
  }
  out_ += "<array>\n";
  for (size_t i = 0; i < values.size(); ++i) {
    if (!WriteValue(values[i], level + 1)) return FailBelow(std::to_string(i));
  }
  Indent(level);
  out_ += "</array>";
  return true;
}

bool PropertyListWriter::WriteDictionary(CFTypeRef value, int level) {
  const auto* dictionary = static_cast<const __CFDictionary*>(value);
  const auto& entries = dictionary->entries;
  if (!HoldsObjects(dictionary->keyCallBacks) || !HoldsObjects(dictionary->valueCallBacks)) {
    return Fail("A dictionary of bare pointers");
  }
  if (level >= kMostPropertyListLevels) return Fail("More than 512 levels");
  if (entries.empty()) {
    out_ += "<dict/>";
    return true;
  }
  using Entry = std::pair<std::u16string_view, const void*>;
  std::vector<Entry> sorted;
  sorted.reserve(entries.size());
  for (const auto& [key, object] : entries) {
    const auto* name = Cast<__CFString>(key);
    if (name == nullptr) return Fail("A key isn't a string");
    sorted.emplace_back(name->text, object);
  }
  std::sort(sorted.begin(), sorted.end(), [](const Entry& a, const Entry& b) {
    return u_strCompare(a.first.data(), static_cast<int32_t>(a.first.size()), b.first.data(),
                        static_cast<int32_t>(b.first.size()), true) < 0;
  });
  out_ += "<dict>\n";
  for (const auto& [key, object] : sorted) {
    Indent(level + 1);
    const bool keyWritten = WriteElement("key", key);
    out_ += '\n';
    if (!keyWritten || !WriteValue(object, level + 1)) return FailBelow(ToUTF8(key));
  }
  Indent(level);
  out_ += "</dict>";
  return true;
}

bool PropertyListWriter::WriteNumber(CFTypeRef value) {
  const auto* number = static_cast<const __CFNumber*>(value);
  if (const auto* real = std::get_if<double>(&number->value)) {
    out_ += "<real>" + RealText(*real) + "</real>";
  } else {
    out_ += "<integer>" + IntegerText(std::get<WideInteger>(number->value)) + "</integer>";
  }
  return true;
}

bool PropertyListWriter::WriteDate(CFTypeRef value) {
  using std::chrono::days;
  using std::chrono::seconds;
  const double since1970 =
      std::floor(CFDateGetAbsoluteTime(static_cast<CFDateRef>(value))) + kCFAbsoluteTimeIntervalSince1970;
  // From 0001-01-01 to 9999-12-31.
  if (!(since1970 >= -62135596800.0 && since1970 <= 253402300799.0))
    return Fail("The date has no year of 4 digits");
  const std::chrono::sys_seconds time{seconds(static_cast<SInt64>(since1970))};
  const auto day = std::chrono::floor<days>(time);
  const std::chrono::year_month_day date(day);
  const std::chrono::hh_mm_ss clock(time - day);
  char text[64];
  std::snprintf(text, sizeof text, "<date>%04d-%02u-%02uT%02d:%02d:%02dZ</date>",
                static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                static_cast<int>(clock.minutes().count()), static_cast<int>(clock.seconds().count()));
  out_ += text;
  return true;
}

void PropertyListWriter::WriteData(CFTypeRef value, int level) {
  const auto* data = static_cast<CFDataRef>(value);
  const std::string text = EncodeBase64(
      {reinterpret_cast<const char*>(CFDataGetBytePtr(data)), static_cast<size_t>(CFDataGetLength(data))});
  const int tabs = std::min(level, kMostDataTabs);
  const auto columns = static_cast<size_t>(kDataColumns - kTabColumns * tabs);
  out_ += "<data>\n";
  for (size_t i = 0; i < text.size(); i += columns) {
    Indent(tabs);
    out_.append(text, i, columns);
    out_ += '\n';
  }
  Indent(level);
  out_ += "</data>";
}

bool PropertyListWriter::WriteElement(std::string_view name, std::u16string_view text) {
  out_.append("<").append(name).append(">");
  if (!WriteEscaped(text)) return false;
  out_.append("</").append(name).append(">");
  return true;
}

bool PropertyListWriter::WriteEscaped(std::u16string_view text) {
  for (size_t i = 0; i < text.size();) {
    UChar32 character = 0;
    U16_NEXT(text.data(), i, text.size(), character);
    if (!IsXMLCharacter(character)) {
      char problem[64];
      std::snprintf(problem, sizeof problem, "XML has no way to say U+%04X",
                    static_cast<unsigned>(character));
      return Fail(problem);
    }
    switch (character) {
      case '&':
        out_ += "&amp;";
        break;
      case '<':
        out_ += "&lt;";
        break;
      case '>':
        out_ += "&gt;";
        break;
      case '\r':
        out_ += "&#13;";
        break;
      default:
        char bytes[U8_MAX_LENGTH];
        size_t length = 0;
        U8_APPEND_UNSAFE(bytes, length, character);
        out_.append(bytes, length);
    }
  }
  return true;
}

bool PropertyListWriter::Fail(std::string problem) {
  problem_ = std::move(problem);
  return false;
}

bool PropertyListWriter::FailBelow(std::string_view step) {
  path_ = "/" + std::string(step) + path_;
  return false;
}

}  // namespace cf
