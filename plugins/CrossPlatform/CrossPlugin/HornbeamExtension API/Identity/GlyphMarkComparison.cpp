#include "Identity/GlyphMarkComparison.h"

#include <vector>

#include "Memory/CFCast.h"

namespace {

bool AreComparable(CFDictionaryRef d1, CFDictionaryRef d2) {
  return d1 && d2 && d1 != d2 && CFDictionaryGetCount(d1) > 0 && CFDictionaryGetCount(d2) > 0;
}

bool AreInConflict(CFTypeRef value1, CFTypeRef value2) {
  CFStringRef text1 = dynamicCF<CFStringRef>(value1);
  CFStringRef text2 = dynamicCF<CFStringRef>(value2);
  if (!text1 || !text2) return !CFEqual(value1, value2);
  return CFStringGetLength(text1) != CFStringGetLength(text2) ||
         CFStringCompare(text1, text2, kCFCompareCaseInsensitive) != kCFCompareEqualTo;
}

struct KeysAndValues {
  explicit KeysAndValues(CFDictionaryRef dict)
      : keys(static_cast<size_t>(CFDictionaryGetCount(dict))), values(keys.size()) {
    CFDictionaryGetKeysAndValues(dict, keys.data(), values.data());
  }
  std::vector<const void*> keys;
  std::vector<const void*> values;
};

}  // namespace

void CountConflicts(CFDictionaryRef d1, CFDictionaryRef d2, int& commonKeys, int& conflicts) {
  commonKeys = 0;
  conflicts = 0;
  if (!AreComparable(d1, d2)) return;
  const KeysAndValues entries(d1);
  for (size_t i = 0; i < entries.keys.size(); ++i) {
    const void* other = CFDictionaryGetValue(d2, entries.keys[i]);
    if (!other) continue;
    ++commonKeys;
    if (AreInConflict(entries.values[i], other)) ++conflicts;
  }
}

CFMutableDictionaryRef CreateMergedDictionary(CFDictionaryRef primary, CFDictionaryRef secondary) {
  if (!AreComparable(primary, secondary)) return nullptr;
  CFMutableDictionaryRef merged = CFDictionaryCreateMutableCopy(nullptr, 0, primary);
  const KeysAndValues entries(secondary);
  for (size_t i = 0; i < entries.keys.size(); ++i) {
    CFDictionaryAddValue(merged, entries.keys[i], entries.values[i]);
  }
  return merged;
}

int CompareGlyphMarkInfo(CFDictionaryRef d1, CFDictionaryRef d2) {
  if (d1 == d2) return 0;
  if (!d1 || !d2) return d1 ? 1 : -1;
  const CFIndex count1 = CFDictionaryGetCount(d1);
  const CFIndex count2 = CFDictionaryGetCount(d2);
  if (count1 == count2) return 0;
  return count1 > count2 ? 1 : -1;
}
