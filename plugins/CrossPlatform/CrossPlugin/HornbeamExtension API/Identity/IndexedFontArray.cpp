#include "Identity/IndexedFontArray.h"

#include <algorithm>

#include "Activation/Vocabulary/FontRecord.h"
#include "Identity/GlyphMarkComparison.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/MutableRecords.h"
#include "Identity/PostScriptNames.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"

IndexedFontArray::IndexedFontArray(CFMutableArrayRef fonts) : m_fonts(retainCF(fonts)) {
  const CFIndex count = CFArrayGetCount(fonts);
  for (CFIndex i = 0; i < count; ++i) {
    if (CFStringRef name = FontRecord::GetPostScriptName(RecordAt(i))) {
      m_names.Add(static_cast<size_t>(i), ToStdString(name));
    }
  }
}

IndexedFontArray::~IndexedFontArray() {
  if (!m_removed.empty()) MutableRecords::RemoveMarked(m_fonts.get(), m_removed);
}

std::optional<CFIndex> IndexedFontArray::Find(CFStringRef name) const {
  if (!name) return std::nullopt;
  const std::optional<size_t> found = m_names.Find(ToStdString(name));
  return found ? std::optional<CFIndex>(static_cast<CFIndex>(*found)) : std::nullopt;
}

bool IndexedFontArray::AddFont(CFStringRef postScriptName, bool allowDuplicates) {
  if (!postScriptName) {
    OutputIndentedAndFormattedString(0, "*** ERROR:  NULL cfPostScriptName passed to AddFontToArray");
    return false;
  }
  const RetainPtr<CFStringRef> name =
      adoptCF(CreateStringStrippingIllegalCharsInPostScriptName(postScriptName));
  if (!name || (!allowDuplicates && Find(name.get()))) return false;
  Append(adoptCF(GlyphMarkSupport::CreateGlyphMarkDictionary(name.get())).get(), name.get());
  return true;
}

void IndexedFontArray::MergeRecord(CFDictionaryRef font) {
  if (!font) return;
  CFStringRef name = FontRecord::GetPostScriptName(font);
  const std::optional<CFIndex> known = Find(name);
  if (!known) {
    Append(font, name);
  } else if (CFDictionaryGetCount(font) > CFDictionaryGetCount(RecordAt(*known))) {
    Replace(*known, font);
  }
}

void IndexedFontArray::MergeFonts(CFArrayRef srcFontArray) {
  // The source may be the array itself, which doesn't grow then: every name is found.
  const CFIndex count = FontRecord::Count(srcFontArray);
  for (CFIndex i = 0; i < count; ++i) {
    if (CFDictionaryRef source = FontRecord::At(srcFontArray, i)) MergeOne(source, i);
  }
}

void IndexedFontArray::MergeOne(CFDictionaryRef source, CFIndex indexInSource) {
  CFStringRef name = FontRecord::GetPostScriptName(source);
  if (!name) {
    OutputIndentedAndFormattedString(
        0, "WARNING: ignoring entry %d in srcFontArray because it does not contain a postscript name.",
        static_cast<int>(indexInSource));
    return;
  }
  const std::optional<CFIndex> known = Find(name);
  if (!known) {
    Append(source, name);
    return;
  }

  CFDictionaryRef destination = RecordAt(*known);
  int commonKeys = 0;
  int conflicts = 0;
  CountConflicts(source, destination, commonKeys, conflicts);
  if (conflicts == 0 && commonKeys < CFDictionaryGetCount(source)) {
    const RetainPtr<CFMutableDictionaryRef> merged = adoptCF(CreateMergedDictionary(destination, source));
    if (merged) Replace(*known, merged.get());
  } else if (CompareGlyphMarkInfo(source, destination) > 0) {
    OutputIndentedAndFormattedString(0,
                                     "WARNING: replacing entry %d in dstFontArray (for '%s') because "
                                     "srcFontArray has more complete info for that font.",
                                     static_cast<int>(*known), ToStdString(name).c_str());
    Replace(*known, source);
  }
}

void IndexedFontArray::Remove(CFIndex position) {
  const auto index = static_cast<size_t>(position);
  if (m_removed.size() <= index) m_removed.resize(index + 1, false);
  if (m_removed[index]) return;
  m_removed[index] = true;
  if (CFStringRef name = FontRecord::GetPostScriptName(RecordAt(position))) {
    m_names.Remove(index, ToStdString(name));
  }
}

CFDictionaryRef IndexedFontArray::RecordAt(CFIndex position) const {
  return FontRecord::At(m_fonts.get(), position);
}

void IndexedFontArray::Append(CFDictionaryRef font, CFStringRef name) {
  const auto position = static_cast<size_t>(CFArrayGetCount(m_fonts.get()));
  CFArrayAppendValue(m_fonts.get(), font);
  if (name) m_names.Add(position, ToStdString(name));
}

void IndexedFontArray::Replace(CFIndex position, CFDictionaryRef font) {
  const std::string oldName = ToStdString(FontRecord::GetPostScriptName(RecordAt(position)));
  const std::string newName = ToStdString(FontRecord::GetPostScriptName(font));
  CFArraySetValueAtIndex(m_fonts.get(), position, font);
  m_names.Rename(static_cast<size_t>(position), oldName, newName);
}
