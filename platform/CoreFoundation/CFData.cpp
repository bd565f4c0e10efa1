#include "CoreFoundation/CFData.h"

#include <algorithm>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "CoreFoundation/CFRuntime.h"

using cf::Cast;
using cf::CastMutable;

struct __CFData final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kDataType;

  __CFData(std::vector<UInt8> content, bool isMutable)
      : Object(kType), bytes(std::move(content)), mutability(isMutable) {}

  bool Equals(const Object& other) const override {
    return bytes == static_cast<const __CFData&>(other).bytes;
  }
  CFHashCode Hash() const override {
    // The start tells most data apart, and long data stays cheap.
    constexpr size_t kHashed = 256;
    return std::hash<std::string_view>()(
        {reinterpret_cast<const char*>(bytes.data()), std::min(bytes.size(), kHashed)});
  }
  bool IsMutable() const override { return mutability; }
  std::string Describe(int) const override { return "<" + std::to_string(bytes.size()) + " bytes>"; }

  std::vector<UInt8> bytes;
  const bool mutability;
};

CFTypeID CFDataGetTypeID() {
  return cf::kDataType;
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
  if (length < 0 || (bytes == nullptr && length > 0)) return nullptr;
  return new __CFData(std::vector<UInt8>(bytes, bytes + length), false);
}

CFDataRef CFDataCreateCopy(CFAllocatorRef, CFDataRef data) {
  const auto* source = Cast<__CFData>(data);
  if (source == nullptr) return nullptr;
  if (!source->IsMutable()) return static_cast<CFDataRef>(CFRetain(data));
  return new __CFData(source->bytes, false);
}

CFMutableDataRef CFDataCreateMutable(CFAllocatorRef, CFIndex) {
  return new __CFData({}, true);
}

CFMutableDataRef CFDataCreateMutableCopy(CFAllocatorRef, CFIndex, CFDataRef data) {
  const auto* source = Cast<__CFData>(data);
  return source == nullptr ? nullptr : new __CFData(source->bytes, true);
}

CFIndex CFDataGetLength(CFDataRef data) {
  const auto* source = Cast<__CFData>(data);
  return source == nullptr ? 0 : static_cast<CFIndex>(source->bytes.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
  static const UInt8 none = 0;
  const auto* source = Cast<__CFData>(data);
  if (source == nullptr) return nullptr;
  return source->bytes.empty() ? &none : source->bytes.data();
}

UInt8* CFDataGetMutableBytePtr(CFMutableDataRef data) {
  __CFData* target = CastMutable(data);
  return target == nullptr ? nullptr : target->bytes.data();
}

void CFDataGetBytes(CFDataRef data, CFRange range, UInt8* buffer) {
  const auto* source = Cast<__CFData>(data);
  if (source == nullptr || buffer == nullptr) return;
  const CFRange part = cf::Cut(range, source->bytes.size());
  std::copy_n(source->bytes.begin() + part.location, part.length, buffer);
}

void CFDataSetLength(CFMutableDataRef data, CFIndex length) {
  __CFData* target = CastMutable(data);
  if (target != nullptr && length >= 0) target->bytes.resize(static_cast<size_t>(length));
}

void CFDataIncreaseLength(CFMutableDataRef data, CFIndex extraLength) {
  if (extraLength > 0) CFDataSetLength(data, CFDataGetLength(data) + extraLength);
}

void CFDataAppendBytes(CFMutableDataRef data, const UInt8* bytes, CFIndex length) {
  CFDataReplaceBytes(data, {CFDataGetLength(data), 0}, bytes, length);
}

void CFDataReplaceBytes(CFMutableDataRef data, CFRange range, const UInt8* bytes, CFIndex length) {
  __CFData* target = CastMutable(data);
  if (target == nullptr || length < 0 || (bytes == nullptr && length > 0)) return;
  if (!cf::IsWithin(range, target->bytes.size())) return;
  // The bytes may be the data's own.
  const std::vector<UInt8> inserted(bytes, bytes + length);
  const auto begin = target->bytes.begin() + range.location;
  const auto place = target->bytes.erase(begin, begin + range.length);
  target->bytes.insert(place, inserted.begin(), inserted.end());
}

void CFDataDeleteBytes(CFMutableDataRef data, CFRange range) {
  CFDataReplaceBytes(data, range, nullptr, 0);
}
