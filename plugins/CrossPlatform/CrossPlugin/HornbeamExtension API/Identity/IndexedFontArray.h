#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <optional>
#include <string>
#include <vector>

#include "Identity/FontNameIndex.h"
#include "Memory/RetainPtr.h"

/// A font array with an index of its names, for a bulk operation: what GlyphMarkSupport does to one name or
/// record, with the same result, in a time that doesn't grow with the array.
///
/// The array is retained and must not be changed by others meanwhile. Additions and replacements reach it at
/// once; what is removed is no longer found, but leaves the array only at the end, in one pass, so that
/// positions stand until then.
///
/// Thread: one.
class IndexedFontArray {
 public:
  /// \param fonts  Not null.
  explicit IndexedFontArray(CFMutableArrayRef fonts);
  IndexedFontArray(const IndexedFontArray&) = delete;
  IndexedFontArray& operator=(const IndexedFontArray&) = delete;

  /// Takes what was removed out of the array.
  ~IndexedFontArray();

  /// As GlyphMarkSupport::DoesArrayContainFontWithPostScriptName().
  std::optional<CFIndex> Find(CFStringRef name) const;

  /// As GlyphMarkSupport::AddFontToArray().
  bool AddFont(CFStringRef postScriptName, bool allowDuplicates);

  /// As GlyphMarkSupport::MergeGlyphmarkDictionaryIntoArray().
  void MergeRecord(CFDictionaryRef font);

  /// As GlyphMarkSupport::MergeFontsIntoFontsArray().
  void MergeFonts(CFArrayRef srcFontArray);

  /// Takes an entry out.
  void Remove(CFIndex position);

 private:
  CFDictionaryRef RecordAt(CFIndex position) const;
  void Append(CFDictionaryRef font, CFStringRef name);
  void Replace(CFIndex position, CFDictionaryRef font);
  void MergeOne(CFDictionaryRef source, CFIndex indexInSource);

  RetainPtr<CFMutableArrayRef> m_fonts;
  FontNameIndex m_names;
  std::vector<bool> m_removed;
};
