#include <algorithm>
#include <string>
#include <vector>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/IndexedFontArray.h"
#include "Identity/PostScriptNames.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "XCFUtils.h"

namespace {

struct NameAt {
  CFIndex index;
  std::string name;
};

// The names of an array, each with its place; entries without one are left out.
std::vector<NameAt> GetNames(CFArrayRef fonts) {
  std::vector<NameAt> names;
  const CFIndex count = CFArrayGetCount(fonts);
  names.reserve(static_cast<size_t>(count));
  for (CFIndex i = 0; i < count; ++i) {
    CFStringRef name = FontRecord::GetPostScriptName(FontRecord::At(fonts, i));
    if (name) names.push_back({i, ToStdString(name)});
  }
  return names;
}

}  // namespace

bool GlyphMarkSupport::DoesArrayContainFontWithPostScriptName(CFArrayRef fonts, CFStringRef name,
                                                              long* outIndex) {
  if (!fonts || !name) return false;
  const std::string wanted = ToStdString(name);
  const std::vector<NameAt> names = GetNames(fonts);
  for (EMatchLevel level :
       {EMatchLevel::kIdentical, EMatchLevel::kStripped, EMatchLevel::kStrippedSpecials}) {
    const auto found = std::find_if(names.begin(), names.end(), [&](const NameAt& entry) {
      return GFontToolUtils_DoPostScriptNamesMatch(entry.name, wanted, level);
    });
    if (found == names.end()) continue;
    if (outIndex) *outIndex = static_cast<long>(found->index);
    return true;
  }
  return false;
}

bool GlyphMarkSupport::AddFontToArray(CFStringRef postScriptName, CFMutableArrayRef fonts,
                                      bool allowDuplicates) {
  if (!postScriptName) {
    OutputIndentedAndFormattedString(0, "*** ERROR:  NULL cfPostScriptName passed to AddFontToArray");
  }
  if (!fonts) OutputIndentedAndFormattedString(0, "*** ERROR:  NULL fontsArray passed to AddFontToArray");
  if (!postScriptName || !fonts) return false;

  const RetainPtr<CFStringRef> name =
      adoptCF(CreateStringStrippingIllegalCharsInPostScriptName(postScriptName));
  if (!name) return false;
  if (!allowDuplicates && DoesArrayContainFontWithPostScriptName(fonts, name.get(), nullptr)) return false;
  CFArrayAppendValue(fonts, adoptCF(CreateGlyphMarkDictionary(name.get())).get());
  return true;
}

void GlyphMarkSupport::MergeGlyphmarkDictionaryIntoArray(CFMutableArrayRef fonts, CFDictionaryRef font) {
  if (!fonts || !font) return;
  long index = 0;
  if (!DoesArrayContainFontWithPostScriptName(fonts, FontRecord::GetPostScriptName(font), &index)) {
    CFArrayAppendValue(fonts, font);
  } else if (CFDictionaryGetCount(font) > CFDictionaryGetCount(FontRecord::At(fonts, index))) {
    CFArraySetValueAtIndex(fonts, index, font);
  }
}

void GlyphMarkSupport::MergeFontsIntoFontsArray(CFArrayRef srcFontArray, CFMutableArrayRef dstFontArray) {
  if (!srcFontArray || !dstFontArray) return;
  IndexedFontArray(dstFontArray).MergeFonts(srcFontArray);
}

bool GlyphMarkSupport::AllFontsResolved(CFArrayRef fonts, CFMutableArrayRef outMatchedFonts) {
  bool allResolved = true;
  const CFIndex count = FontRecord::Count(fonts);
  for (CFIndex i = 0; i < count; ++i) {
    CFDictionaryRef font = FontRecord::At(fonts, i);
    if (!font) continue;
    auto matched = dynamicCF<CFDictionaryRef>(CFDictionaryGetValue(font, kGM_MatchedFontKey));
    if (matched) {
      if (outMatchedFonts) CFArrayAppendValue(outMatchedFonts, matched);
      continue;
    }
    allResolved = false;
    OutputIndentedAndFormattedString(
        0, "This font was skipped:  '%s' -- host app's Find Fonts dialog will be displayed",
        XCFUtils::GetStringFromDict(font, kGM_PostScriptNameKey).c_str());
  }
  return allResolved;
}
