#include "CoreFoundation/CFSet.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "CoreFoundation/CFContainer.h"
#include "CoreFoundation/CFRuntime.h"

using cf::Cast;
using cf::CastMutable;

struct __CFSet final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kSetType;

  struct ValueHash {
    const CFSetCallBacks* callBacks;
    size_t operator()(const void* value) const { return cf::HashOf(*callBacks, value); }
  };
  struct ValueEqual {
    const CFSetCallBacks* callBacks;
    bool operator()(const void* a, const void* b) const { return cf::AreEqual(*callBacks, a, b); }
  };

  __CFSet(const CFSetCallBacks* valueCallBacks, bool isMutable)
      : Object(kType),
        callBacks(valueCallBacks == nullptr ? CFSetCallBacks{} : *valueCallBacks),
        mutability(isMutable),
        values(0, ValueHash{&callBacks}, ValueEqual{&callBacks}) {}
  ~__CFSet() override {
    for (const void* value : values) cf::LetGo(callBacks, value);
  }

  bool Equals(const Object& other) const override {
    const auto& otherValues = static_cast<const __CFSet&>(other).values;
    return values.size() == otherValues.size() &&
           std::all_of(values.begin(), values.end(),
                       [&](const void* value) { return otherValues.contains(value); });
  }
  CFHashCode Hash() const override { return values.size(); }
  bool IsMutable() const override { return mutability; }
  std::string Describe(int depth) const override {
    std::string text = "{";
    for (const void* value : values) {
      if (text.size() > 1) text += ", ";
      text += cf::DescribeValue(callBacks.copyDescription, value, depth);
    }
    return text + "}";
  }

  void Add(const void* value) {
    if (!cf::Refuses(callBacks, value) && !values.contains(value)) values.insert(cf::Keep(callBacks, value));
  }

  const CFSetCallBacks callBacks;
  const bool mutability;
  std::unordered_set<const void*, ValueHash, ValueEqual> values;
};

const CFSetCallBacks kCFTypeSetCallBacks = {0,        &cf::RetainValue, &cf::ReleaseValue, &CFCopyDescription,
                                            &CFEqual, &CFHash};

namespace {

__CFSet* Copy(const __CFSet& source, bool isMutable) {
  auto* copy = new __CFSet(&source.callBacks, isMutable);
  for (const void* value : source.values) copy->Add(value);
  return copy;
}

}  // namespace

CFTypeID CFSetGetTypeID() {
  return cf::kSetType;
}

CFSetRef CFSetCreate(CFAllocatorRef, const void** values, CFIndex count, const CFSetCallBacks* callBacks) {
  if (count < 0 || (count > 0 && values == nullptr)) return nullptr;
  auto* set = new __CFSet(callBacks, false);
  for (CFIndex i = 0; i < count; ++i) {
    if (cf::Refuses(set->callBacks, values[i])) {
      CFRelease(set);
      return nullptr;
    }
    set->Add(values[i]);
  }
  return set;
}

CFSetRef CFSetCreateCopy(CFAllocatorRef, CFSetRef set) {
  const auto* source = Cast<__CFSet>(set);
  if (source == nullptr) return nullptr;
  if (!source->IsMutable()) return static_cast<CFSetRef>(CFRetain(set));
  return Copy(*source, false);
}

CFMutableSetRef CFSetCreateMutable(CFAllocatorRef, CFIndex, const CFSetCallBacks* callBacks) {
  return new __CFSet(callBacks, true);
}

CFMutableSetRef CFSetCreateMutableCopy(CFAllocatorRef, CFIndex, CFSetRef set) {
  const auto* source = Cast<__CFSet>(set);
  return source == nullptr ? nullptr : Copy(*source, true);
}

CFIndex CFSetGetCount(CFSetRef set) {
  const auto* source = Cast<__CFSet>(set);
  return source == nullptr ? 0 : static_cast<CFIndex>(source->values.size());
}

Boolean CFSetContainsValue(CFSetRef set, const void* value) {
  const auto* source = Cast<__CFSet>(set);
  return source != nullptr && source->values.contains(value);
}

const void* CFSetGetValue(CFSetRef set, const void* value) {
  const auto* source = Cast<__CFSet>(set);
  if (source == nullptr) return nullptr;
  const auto found = source->values.find(value);
  return found == source->values.end() ? nullptr : *found;
}

void CFSetGetValues(CFSetRef set, const void** values) {
  const auto* source = Cast<__CFSet>(set);
  if (source != nullptr && values != nullptr) std::copy(source->values.begin(), source->values.end(), values);
}

void CFSetApplyFunction(CFSetRef set, CFSetApplierFunction applier, void* context) {
  const auto* source = Cast<__CFSet>(set);
  if (source == nullptr || applier == nullptr) return;
  for (const void* value : source->values) applier(value, context);
}

void CFSetAddValue(CFMutableSetRef set, const void* value) {
  if (__CFSet* target = CastMutable(set)) target->Add(value);
}

void CFSetSetValue(CFMutableSetRef set, const void* value) {
  __CFSet* target = CastMutable(set);
  if (target == nullptr || cf::Refuses(target->callBacks, value)) return;
  const void* kept = cf::Keep(target->callBacks, value);
  CFSetRemoveValue(set, value);
  target->values.insert(kept);
}

void CFSetRemoveValue(CFMutableSetRef set, const void* value) {
  __CFSet* target = CastMutable(set);
  if (target == nullptr) return;
  const auto found = target->values.find(value);
  if (found == target->values.end()) return;
  const void* removed = *found;
  target->values.erase(found);
  cf::LetGo(target->callBacks, removed);
}

void CFSetRemoveAllValues(CFMutableSetRef set) {
  __CFSet* target = CastMutable(set);
  if (target == nullptr) return;
  const auto removed = target->values;
  target->values.clear();
  for (const void* value : removed) cf::LetGo(target->callBacks, value);
}
