#include "Identity/MutableRecords.h"

#include "Memory/CFCast.h"

namespace MutableRecords {

CFMutableDictionaryRef At(CFMutableArrayRef fonts, CFIndex index) {
  const void* element = CFArrayGetValueAtIndex(fonts, index);
  if (auto record = dynamicCF<CFMutableDictionaryRef>(element)) return record;
  auto fixed = dynamicCF<CFDictionaryRef>(element);
  if (!fixed) return nullptr;
  const RetainPtr<CFMutableDictionaryRef> copy = adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, fixed));
  CFArraySetValueAtIndex(fonts, index, copy.get());
  return copy.get();
}

void RemoveMarked(CFMutableArrayRef fonts, const std::vector<bool>& marked) {
  const CFIndex count = CFArrayGetCount(fonts);
  std::vector<const void*> all(static_cast<size_t>(count));
  CFArrayGetValues(fonts, CFRangeMake(0, count), all.data());
  std::vector<const void*> kept;
  kept.reserve(all.size());
  for (size_t i = 0; i < all.size(); ++i) {
    if (i >= marked.size() || !marked[i]) kept.push_back(all[i]);
  }
  if (kept.size() == all.size()) return;
  // The array is the only owner of some of them: they live on in it while it is filled anew.
  const RetainPtr<CFArrayRef> holder = adoptCF(CFArrayCreateCopy(nullptr, fonts));
  CFArrayReplaceValues(fonts, CFRangeMake(0, count), kept.data(), static_cast<CFIndex>(kept.size()));
}

}  // namespace MutableRecords
