#include <algorithm>
#include <array>
#include <vector>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/MutableRecords.h"
#include "Identity/WritableText.h"
#include "Memory/CFVector.h"

namespace {

constexpr size_t kSluggableKeyCount = 10;

RetainPtr<CFDataRef> CreateXML(CFArrayRef fontData) {
  return adoptCF(CFPropertyListCreateData(nullptr, fontData, kCFPropertyListXMLFormat_v1_0, 0, nullptr));
}

}  // namespace

int GlyphMarkSupport::CreateXMLGlyphMarkSlug(CFArrayRef fontData, CFStringRef* outSlug) {
  if (!fontData || !outSlug) return kErrorBadParameter;
  RetainPtr<CFDataRef> xml = CreateXML(fontData);
  if (!xml) {
    // One name with a control character must not cost the document all its font data.
    const RetainPtr<CFArrayRef> writable = CreateListOfWritableText(fontData);
    if (writable) xml = CreateXML(writable.get());
  }
  if (!xml) return 0;
  CFStringRef slug = CFStringCreateWithBytes(nullptr, CFDataGetBytePtr(xml.get()), CFDataGetLength(xml.get()),
                                             kCFStringEncodingUTF8, false);
  if (slug) *outSlug = slug;
  return 0;
}

CFMutableDictionaryRef GlyphMarkSupport::CreateGlyphMarkDictionary(CFStringRef postScriptName) {
  RetainPtr<CFMutableDictionaryRef> record = MakeDictionary();
  if (postScriptName) CFDictionarySetValue(record.get(), kGM_PostScriptNameKey, postScriptName);
  return record.leakRef();
}

bool GlyphMarkSupport::IsSluggableKey(CFStringRef key) {
  // The first of all keys, in their order.
  static const std::array<CFStringRef, kSluggableKeyCount> sluggableKeys = [] {
    std::array<CFStringRef, kSluggableKeyCount> keys{};
    std::copy_n(kAllGlyphMarkCFKeys.begin(), kSluggableKeyCount, keys.begin());
    return keys;
  }();
  if (!key) return false;
  return std::any_of(sluggableKeys.begin(), sluggableKeys.end(),
                     [key](CFStringRef sluggable) { return CFEqual(sluggable, key); });
}

bool GlyphMarkSupport::RemoveUnsluggableKeysFromDictionary(CFMutableDictionaryRef font) {
  if (!font) return false;
  std::vector<const void*> keys(static_cast<size_t>(CFDictionaryGetCount(font)));
  CFDictionaryGetKeysAndValues(font, keys.data(), nullptr);
  std::vector<RetainPtr<CFTypeRef>> unsluggable;
  for (const void* key : keys) {
    if (!IsSluggableKey(dynamicCF<CFStringRef>(key))) unsluggable.push_back(retainCF(key));
  }
  for (const auto& key : unsluggable) CFDictionaryRemoveValue(font, key.get());
  return !unsluggable.empty();
}

bool GlyphMarkSupport::RemoveUnsluggableGlyphMarkKeys(CFMutableArrayRef fonts) {
  bool changed = false;
  const CFIndex count = FontRecord::Count(fonts);
  for (CFIndex i = 0; i < count; ++i) {
    if (RemoveUnsluggableKeysFromDictionary(MutableRecords::At(fonts, i))) changed = true;
  }
  return changed;
}
