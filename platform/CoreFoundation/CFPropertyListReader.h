#pragma once

#include <CoreFoundation/CFPropertyList.h>

#include <map>
#include <string>
#include <string_view>

#include "Memory/RetainPtr.h"

namespace pugi {
class xml_node;
}

namespace cf {

/// Reads one property list from XML. For the sources of this folder only.
class PropertyListReader {
 public:
  explicit PropertyListReader(CFOptionFlags options) : options_(options) {}

  /// Null when the bytes aren't a property list; then ErrorCode() and Error() say why.
  RetainPtr<CFPropertyListRef> Read(std::string_view bytes);

  CFIndex ErrorCode() const { return errorCode_; }
  const std::string& Error() const { return error_; }

 private:
  using Value = RetainPtr<CFTypeRef>;

  Value ReadDocument(const pugi::xml_node& document);
  Value ReadValue(const pugi::xml_node& element, int level);
  Value ReadArray(const pugi::xml_node& element, int level);
  Value ReadDictionary(const pugi::xml_node& element, int level);
  Value ReadLeaf(const pugi::xml_node& element);
  Value ReadString(const pugi::xml_node& element, const std::string& text);
  Value ReadInteger(const pugi::xml_node& element, const std::string& text);
  Value ReadReal(const pugi::xml_node& element, const std::string& text);
  Value ReadDate(const pugi::xml_node& element, const std::string& text);
  Value ReadData(const pugi::xml_node& element, const std::string& text);
  RetainPtr<CFStringRef> ReadKey(const pugi::xml_node& element);

  /// The element after `node` among its neighbours, null at the end. `clean` becomes false when there is text
  /// in between.
  pugi::xml_node NextElement(pugi::xml_node node, bool* clean);
  /// The whole text in an element that may hold nothing else.
  bool ReadText(const pugi::xml_node& element, std::string* text);
  bool Unescape(const pugi::xml_node& node, std::string_view raw, std::string* text);
  Value Fail(const pugi::xml_node& node, const std::string& problem);

  const CFOptionFlags options_;
  CFIndex errorCode_ = 0;
  std::string error_;
  // A list of records says the same few keys again and again.
  std::map<std::string, RetainPtr<CFStringRef>, std::less<>> keys_;
};

}  // namespace cf
