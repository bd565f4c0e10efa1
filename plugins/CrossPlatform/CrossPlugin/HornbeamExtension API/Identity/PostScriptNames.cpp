#include "Identity/PostScriptNames.h"

#include <string_view>

#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsLetter(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

}  // namespace

std::string GFontToolUtils_StripCharsAndNormalizeString(const std::string& name, bool handleSpecials) {
  std::string stripped;
  stripped.reserve(name.size());
  bool sawHyphen = false;
  for (size_t i = 0; i < name.size(); ++i) {
    const char c = name[i];
    if (IsLetter(c) || IsDigit(c)) {
      stripped.push_back(c);
    } else if (handleSpecials && c == '#') {
      while (i + 1 < name.size() && IsDigit(name[i + 1])) ++i;
    } else if (handleSpecials && c == '-') {
      if (sawHyphen) break;
      sawHyphen = true;
    }
  }
  return stripped;
}

bool GFontToolUtils_DoPostScriptNamesMatch(const std::string& a, const std::string& b, EMatchLevel level) {
  if (a == b) return true;
  if (level == EMatchLevel::kIdentical) return false;
  if (GFontToolUtils_StripCharsAndNormalizeString(a, false) ==
      GFontToolUtils_StripCharsAndNormalizeString(b, false)) {
    return true;
  }
  if (level == EMatchLevel::kStripped) return false;
  return GFontToolUtils_StripCharsAndNormalizeString(a, true) ==
         GFontToolUtils_StripCharsAndNormalizeString(b, true);
}

CFStringRef CreateStringStrippingIllegalCharsInPostScriptName(CFStringRef name) {
  if (!name) return nullptr;
  constexpr std::string_view kIllegal = " ()/[]{}";
  std::string text = ToStdString(name);
  std::erase_if(text, [&](char c) { return kIllegal.find(c) != std::string_view::npos; });
  if (text.empty()) return nullptr;
  RetainPtr<CFStringRef> stripped = ToCFString(text);
  if (stripped && CFStringGetLength(stripped.get()) == 0) {
    OutputIndentedAndFormattedString(0, "ERROR string coverted to emptyString %s", text.c_str());
    return nullptr;
  }
  return stripped.leakRef();
}
