#include <algorithm>
#include <cstring>
#include <vector>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/PostScriptNames.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"

namespace {

constexpr size_t kNoPrefix = static_cast<size_t>(-1);

// The index of what ends a prefix, or kNoPrefix: a "+" before any hyphen, underscore or blank, or a first
// blank.
size_t FindPrefixEnd(const char* name) {
  for (size_t i = 0; name[i] != '\0'; ++i) {
    if (name[i] == '+' || (name[i] == ' ' && i == 0)) return i;
    if (name[i] == '-' || name[i] == '_' || name[i] == ' ') break;
  }
  return kNoPrefix;
}

// The buffers may be the same one.
void CopyBytes(const char* text, size_t length, unsigned long bufferSize, char* outName) {
  const size_t kept = std::min<size_t>(length, bufferSize - 1);
  std::memmove(outName, text, kept);
  outName[kept] = '\0';
}

}  // namespace

std::string GlyphMarkSupport::StripIllegalPostScriptCharacters(const std::string& name) {
  return GFontToolUtils_StripCharsAndNormalizeString(name, true);
}

CFStringRef GlyphMarkSupport::CreateResolvedMMFontName(CFStringRef name) {
  if (!name) return nullptr;
  const CFIndex length = CFStringGetLength(name);
  std::vector<UniChar> units(static_cast<size_t>(length));
  CFStringGetCharacters(name, CFRangeMake(0, length), units.data());

  bool sawMarker = false;
  for (size_t i = 0; i + 2 < units.size(); ++i) {
    if (units[i] == 'M' && units[i + 1] == 'M' && (units[i + 2] == '_' || units[i + 2] == '-')) {
      sawMarker = true;
    }
    if (sawMarker && units[i] == '_') {
      return CFStringCreateWithSubstring(nullptr, name, CFRangeMake(0, static_cast<CFIndex>(i)));
    }
  }
  return nullptr;
}

void GlyphMarkSupport::ResolveMMFontString(std::string* name) {
  if (!name) return;
  const RetainPtr<CFStringRef> resolved = adoptCF(CreateResolvedMMFontName(ToCFString(*name).get()));
  if (resolved) *name = ToStdString(resolved.get());
}

void GlyphMarkSupport::ResolveDictionaryMMFontName(CFMutableDictionaryRef font) {
  if (!font) return;
  CFStringRef name = FontRecord::GetPostScriptName(font);
  const RetainPtr<CFStringRef> resolved = adoptCF(CreateResolvedMMFontName(name));
  if (!resolved) return;
  OutputIndentedAndFormattedString(0, "GlyphMarkSupport::ResolveDictionaryMMFontName changing '%s' to '%s'",
                                   ToStdString(name).c_str(), ToStdString(resolved.get()).c_str());
  CFDictionarySetValue(font, kGM_PostScriptNameKey, resolved.get());
}

bool GlyphMarkSupport::PSNameMightHaveCruftAppended(const char* name, unsigned long bufferSize,
                                                    char* outName) {
  if (!name || name[0] == '\0' || !outName || bufferSize == 0) return false;

  const size_t length = std::strlen(name);
  const size_t prefixEnd = FindPrefixEnd(name);
  if (prefixEnd != kNoPrefix) {
    CopyBytes(name + prefixEnd + 1, length - prefixEnd - 1, bufferSize, outName);
    return true;
  }
  for (size_t i = length - 1; i > 0; --i) {
    if (std::strchr("-_ ()", name[i])) {
      CopyBytes(name, i, bufferSize, outName);
      return true;
    }
  }
  return false;
}
