#pragma once

#include <CoreFoundation/CFBase.h>

#include <string>
#include <string_view>

namespace cf {

/// The most levels of containers, in reading, writing and copying: each takes a piece of the stack.
constexpr int kMostPropertyListLevels = 512;

/// Writes one property list as XML. For the sources of this folder only.
class PropertyListWriter {
 public:
  /// False when the list can't be written; then only Error() means anything.
  bool Write(CFPropertyListRef list);

  const std::string& Bytes() const { return out_; }
  /// What can't be written, and where: "/fonts/3/name: …".
  std::string Error() const { return path_ + ": " + problem_; }

 private:
  bool WriteValue(CFTypeRef value, int level);
  bool WriteArray(CFTypeRef value, int level);
  bool WriteDictionary(CFTypeRef value, int level);
  bool WriteNumber(CFTypeRef value);
  bool WriteDate(CFTypeRef value);
  void WriteData(CFTypeRef value, int level);
  bool WriteElement(std::string_view name, std::u16string_view text);
  bool WriteEscaped(std::u16string_view text);
  void Indent(int level) { out_.append(static_cast<size_t>(level), '\t'); }
  bool Fail(std::string problem);
  bool FailBelow(std::string_view step);

  std::string out_;
  std::string problem_;
  std::string path_;
};

}  // namespace cf
