#include "CoreFoundation/CFArray.h"

#include <algorithm>

#include "CoreFoundation/CFArrayObject.h"

using cf::Cast;
using cf::CastMutable;

const CFArrayCallBacks kCFTypeArrayCallBacks = {0, &cf::RetainValue, &cf::ReleaseValue, &CFCopyDescription,
                                                &CFEqual};

namespace {

bool AddAll(__CFArray* array, const void* const* values, CFIndex count) {
  if (count < 0 || (count > 0 && values == nullptr)) return false;
  for (CFIndex i = 0; i < count; ++i) {
    if (cf::Refuses(array->callBacks, values[i])) return false;
    array->values.push_back(cf::Keep(array->callBacks, values[i]));
  }
  return true;
}

__CFArray* Copy(const __CFArray& source, bool isMutable) {
  auto* copy = new __CFArray(&source.callBacks, isMutable);
  AddAll(copy, source.values.data(), static_cast<CFIndex>(source.values.size()));
  return copy;
}

auto At(std::vector<const void*>& values, CFIndex index) {
  return values.begin() + index;
}

/// Sorts `values` with `spare` of the same size beside it: top down, so that the recursion is log2 deep.
void MergeSort(const void** values, const void** spare, size_t count, CFComparatorFunction comparator,
               void* context) {
  if (count < 2) return;
  const size_t half = count / 2;
  MergeSort(values, spare, half, comparator, context);
  MergeSort(values + half, spare + half, count - half, comparator, context);
  std::copy_n(values, count, spare);
  size_t left = 0;
  size_t right = half;
  for (size_t i = 0; i < count; ++i) {
    const bool takeRight =
        left == half || (right < count && comparator(spare[left], spare[right], context) > 0);
    values[i] = takeRight ? spare[right++] : spare[left++];
  }
}

}  // namespace

bool __CFArray::Equals(const Object& other) const {
  const auto& otherValues = static_cast<const __CFArray&>(other).values;
  return std::equal(values.begin(), values.end(), otherValues.begin(), otherValues.end(),
                    [this](const void* a, const void* b) { return cf::AreEqual(callBacks, a, b); });
}

std::string __CFArray::Describe(int depth) const {
  std::string text = "(";
  for (const void* value : values) {
    if (text.size() > 1) text += ", ";
    text += cf::DescribeValue(callBacks.copyDescription, value, depth);
  }
  return text + ")";
}

CFTypeID CFArrayGetTypeID() {
  return cf::kArrayType;
}

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
  auto* array = new __CFArray(callBacks, false);
  if (AddAll(array, values, count)) return array;
  CFRelease(array);
  return nullptr;
}

CFArrayRef CFArrayCreateCopy(CFAllocatorRef, CFArrayRef array) {
  const auto* source = Cast<__CFArray>(array);
  if (source == nullptr) return nullptr;
  if (!source->IsMutable()) return static_cast<CFArrayRef>(CFRetain(array));
  return Copy(*source, false);
}

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef, CFIndex, const CFArrayCallBacks* callBacks) {
  return new __CFArray(callBacks, true);
}

CFMutableArrayRef CFArrayCreateMutableCopy(CFAllocatorRef, CFIndex, CFArrayRef array) {
  const auto* source = Cast<__CFArray>(array);
  return source == nullptr ? nullptr : Copy(*source, true);
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  const auto* source = Cast<__CFArray>(array);
  return source == nullptr ? 0 : static_cast<CFIndex>(source->values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return index < 0 || index >= CFArrayGetCount(array) ? nullptr : array->values[static_cast<size_t>(index)];
}

void CFArrayGetValues(CFArrayRef array, CFRange range, const void** values) {
  const auto* source = Cast<__CFArray>(array);
  if (source == nullptr || values == nullptr || !cf::IsWithin(range, source->values.size())) return;
  std::copy_n(source->values.begin() + range.location, range.length, values);
}

CFIndex CFArrayGetCountOfValue(CFArrayRef array, CFRange range, const void* value) {
  const auto* source = Cast<__CFArray>(array);
  if (source == nullptr) return 0;
  const CFRange part = cf::Cut(range, source->values.size());
  const auto begin = source->values.begin() + part.location;
  return std::count_if(begin, begin + part.length,
                       [&](const void* other) { return cf::AreEqual(source->callBacks, other, value); });
}

Boolean CFArrayContainsValue(CFArrayRef array, CFRange range, const void* value) {
  return CFArrayGetFirstIndexOfValue(array, range, value) != kCFNotFound;
}

CFIndex CFArrayGetFirstIndexOfValue(CFArrayRef array, CFRange range, const void* value) {
  const CFRange part = cf::Cut(range, static_cast<size_t>(CFArrayGetCount(array)));
  for (CFIndex i = part.location; i < part.location + part.length; ++i) {
    if (cf::AreEqual(array->callBacks, array->values[static_cast<size_t>(i)], value)) return i;
  }
  return kCFNotFound;
}

CFIndex CFArrayGetLastIndexOfValue(CFArrayRef array, CFRange range, const void* value) {
  const CFRange part = cf::Cut(range, static_cast<size_t>(CFArrayGetCount(array)));
  for (CFIndex i = part.location + part.length; i-- > part.location;) {
    if (cf::AreEqual(array->callBacks, array->values[static_cast<size_t>(i)], value)) return i;
  }
  return kCFNotFound;
}

void CFArrayApplyFunction(CFArrayRef array, CFRange range, CFArrayApplierFunction applier, void* context) {
  if (applier == nullptr) return;
  const CFRange part = cf::Cut(range, static_cast<size_t>(CFArrayGetCount(array)));
  for (CFIndex i = part.location; i < part.location + part.length; ++i) {
    applier(array->values[static_cast<size_t>(i)], context);
  }
}

CFIndex CFArrayBSearchValues(CFArrayRef array, CFRange range, const void* value,
                             CFComparatorFunction comparator, void* context) {
  const CFRange part = cf::Cut(range, static_cast<size_t>(CFArrayGetCount(array)));
  if (comparator == nullptr || part.length == 0) return part.location;
  const auto begin = array->values.begin() + part.location;
  const auto found = std::partition_point(
      begin, begin + part.length, [&](const void* other) { return comparator(other, value, context) < 0; });
  return found - array->values.begin();
}

void CFArrayAppendValue(CFMutableArrayRef array, const void* value) {
  CFArrayInsertValueAtIndex(array, CFArrayGetCount(array), value);
}

void CFArrayAppendArray(CFMutableArrayRef array, CFArrayRef appended, CFRange range) {
  const auto* source = Cast<__CFArray>(appended);
  if (CastMutable(array) == nullptr || source == nullptr) return;
  const CFRange part = cf::Cut(range, source->values.size());
  // The array may be appended to itself.
  const std::vector<const void*> values(source->values.begin() + part.location,
                                        source->values.begin() + part.location + part.length);
  for (const void* value : values) CFArrayAppendValue(array, value);
}

void CFArrayInsertValueAtIndex(CFMutableArrayRef array, CFIndex index, const void* value) {
  CFArrayReplaceValues(array, {index, 0}, &value, 1);
}

void CFArraySetValueAtIndex(CFMutableArrayRef array, CFIndex index, const void* value) {
  CFArrayReplaceValues(array, {index, index == CFArrayGetCount(array) ? 0 : 1}, &value, 1);
}

void CFArrayRemoveValueAtIndex(CFMutableArrayRef array, CFIndex index) {
  CFArrayReplaceValues(array, {index, 1}, nullptr, 0);
}

void CFArrayRemoveAllValues(CFMutableArrayRef array) {
  CFArrayReplaceValues(array, {0, CFArrayGetCount(array)}, nullptr, 0);
}

void CFArrayReplaceValues(CFMutableArrayRef array, CFRange range, const void** values, CFIndex count) {
  __CFArray* target = CastMutable(array);
  if (target == nullptr || count < 0 || (count > 0 && values == nullptr)) return;
  if (!cf::IsWithin(range, target->values.size())) return;
  for (CFIndex i = 0; i < count; ++i) {
    if (cf::Refuses(target->callBacks, values[i])) return;
  }
  std::vector<const void*> kept;
  kept.reserve(static_cast<size_t>(count));
  for (CFIndex i = 0; i < count; ++i) kept.push_back(cf::Keep(target->callBacks, values[i]));
  const auto begin = At(target->values, range.location);
  const std::vector<const void*> removed(begin, begin + range.length);
  if (removed.size() == kept.size()) {
    std::copy(kept.begin(), kept.end(), begin);
  } else {
    target->values.insert(target->values.erase(begin, begin + range.length), kept.begin(), kept.end());
  }
  // Last, since a release may come back to this array.
  for (const void* value : removed) cf::LetGo(target->callBacks, value);
}

void CFArrayExchangeValuesAtIndices(CFMutableArrayRef array, CFIndex index1, CFIndex index2) {
  __CFArray* target = CastMutable(array);
  if (target == nullptr) return;
  const CFIndex count = CFArrayGetCount(array);
  if (index1 < 0 || index2 < 0 || index1 >= count || index2 >= count) return;
  std::swap(*At(target->values, index1), *At(target->values, index2));
}

void CFArraySortValues(CFMutableArrayRef array, CFRange range, CFComparatorFunction comparator,
                       void* context) {
  __CFArray* target = CastMutable(array);
  if (target == nullptr || comparator == nullptr) return;
  const CFRange part = cf::Cut(range, target->values.size());
  // On a copy, so that the array is whole at every moment the comparator may look at it.
  const auto begin = At(target->values, part.location);
  std::vector<const void*> values(begin, begin + part.length);
  std::vector<const void*> spare(values.size());
  MergeSort(values.data(), spare.data(), values.size(), comparator, context);
  std::copy(values.begin(), values.end(), At(target->values, part.location));
}
