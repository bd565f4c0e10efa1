#include "CoreFoundation/CFPropertyList.h"

#include "CoreFoundation/CFArrayObject.h"
#include "CoreFoundation/CFDictionaryObject.h"
#include "CoreFoundation/CFPropertyListReader.h"
#include "CoreFoundation/CFPropertyListWriter.h"
#include "CoreFoundation/CFStringObject.h"
#include "Memory/CFVector.h"

namespace {

CFErrorRef MakeError(CFIndex code, const std::string& description) {
  const RetainPtr<CFMutableDictionaryRef> information = MakeDictionary();
  const auto text = adoptCF(cf::NewString(description));
  CFDictionarySetValue(information.get(), kCFErrorLocalizedDescriptionKey, text.get());
  return CFErrorCreate(kCFAllocatorDefault, kCFErrorDomainCocoa, code, information.get());
}

class Copier {
 public:
  explicit Copier(CFOptionFlags options)
      : mutableContainers_((options & 3) != kCFPropertyListImmutable),
        mutableLeaves_((options & 3) == kCFPropertyListMutableContainersAndLeaves) {}

  RetainPtr<CFTypeRef> Copy(CFTypeRef value, int level) const {
    switch (CFGetTypeID(value)) {
      case cf::kStringType: {
        const auto* string = static_cast<CFStringRef>(value);
        if (!mutableLeaves_) return adoptCF<CFTypeRef>(CFStringCreateCopy(kCFAllocatorDefault, string));
        return adoptCF<CFTypeRef>(CFStringCreateMutableCopy(kCFAllocatorDefault, 0, string));
      }
      case cf::kDataType: {
        const auto* data = static_cast<CFDataRef>(value);
        if (!mutableLeaves_) return adoptCF<CFTypeRef>(CFDataCreateCopy(kCFAllocatorDefault, data));
        return adoptCF<CFTypeRef>(CFDataCreateMutableCopy(kCFAllocatorDefault, 0, data));
      }
      case cf::kNumberType:
      case cf::kBooleanType:
      case cf::kDateType:
        return retainCF(value);
      case cf::kArrayType:
        return level < cf::kMostPropertyListLevels ? CopyArray(*static_cast<const __CFArray*>(value), level)
                                                   : nullptr;
      case cf::kDictionaryType:
        return level < cf::kMostPropertyListLevels
                   ? CopyDictionary(*static_cast<const __CFDictionary*>(value), level)
                   : nullptr;
      default:
        return nullptr;
    }
  }

 private:
  RetainPtr<CFTypeRef> CopyArray(const __CFArray& source, int level) const {
    if (!cf::HoldsObjects(source.callBacks)) return nullptr;
    auto* copy = new __CFArray(&kCFTypeArrayCallBacks, mutableContainers_);
    RetainPtr<CFTypeRef> result = adoptCF<CFTypeRef>(copy);
    for (const void* value : source.values) {
      RetainPtr<CFTypeRef> copied = Copy(value, level + 1);
      if (!copied) return nullptr;
      copy->values.push_back(copied.leakRef());
    }
    return result;
  }

  RetainPtr<CFTypeRef> CopyDictionary(const __CFDictionary& source, int level) const {
    if (!cf::HoldsObjects(source.keyCallBacks) || !cf::HoldsObjects(source.valueCallBacks)) return nullptr;
    auto* copy = new __CFDictionary(&kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks,
                                    mutableContainers_);
    RetainPtr<CFTypeRef> result = adoptCF<CFTypeRef>(copy);
    for (const auto& [key, value] : source.entries) {
      const auto* name = cf::Cast<__CFString>(key);
      const auto copiedKey = adoptCF(CFStringCreateCopy(kCFAllocatorDefault, name));
      const RetainPtr<CFTypeRef> copied = Copy(value, level + 1);
      if (!copiedKey || !copied) return nullptr;
      copy->Put(copiedKey.get(), copied.get(), __CFDictionary::When::kAlways);
    }
    return result;
  }

  const bool mutableContainers_;
  const bool mutableLeaves_;
};

}  // namespace

CFDataRef CFPropertyListCreateData(CFAllocatorRef allocator, CFPropertyListRef list,
                                   CFPropertyListFormat format, CFOptionFlags, CFErrorRef* error) {
  cf::PropertyListWriter writer;
  const bool known = format == kCFPropertyListXMLFormat_v1_0;
  if (known && writer.Write(list)) {
    const std::string& bytes = writer.Bytes();
    return CFDataCreate(allocator, reinterpret_cast<const UInt8*>(bytes.data()),
                        static_cast<CFIndex>(bytes.size()));
  }
  if (error != nullptr) {
    *error = MakeError(kCFPropertyListWriteStreamError,
                       known ? writer.Error() : "Only XML property lists are written");
  }
  return nullptr;
}

CFDataRef CFPropertyListCreateXMLData(CFAllocatorRef allocator, CFPropertyListRef list) {
  return CFPropertyListCreateData(allocator, list, kCFPropertyListXMLFormat_v1_0, 0, nullptr);
}

CFPropertyListRef CFPropertyListCreateWithData(CFAllocatorRef, CFDataRef data, CFOptionFlags options,
                                               CFPropertyListFormat* format, CFErrorRef* error) {
  const UInt8* bytes = CFDataGetBytePtr(data);
  if (bytes == nullptr) {
    if (error != nullptr) *error = MakeError(kCFPropertyListReadStreamError, "There is no data");
    return nullptr;
  }
  cf::PropertyListReader reader(options);
  RetainPtr<CFPropertyListRef> list =
      reader.Read({reinterpret_cast<const char*>(bytes), static_cast<size_t>(CFDataGetLength(data))});
  if (!list) {
    if (error != nullptr) *error = MakeError(reader.ErrorCode(), reader.Error());
    return nullptr;
  }
  if (format != nullptr) *format = kCFPropertyListXMLFormat_v1_0;
  return list.leakRef();
}

CFPropertyListRef CFPropertyListCreateFromXMLData(CFAllocatorRef allocator, CFDataRef data,
                                                  CFOptionFlags options, CFStringRef* errorString) {
  CFErrorRef error = nullptr;
  CFPropertyListRef list = CFPropertyListCreateWithData(allocator, data, options, nullptr, &error);
  const auto owned = adoptCF(error);
  if (errorString != nullptr) *errorString = error == nullptr ? nullptr : CFErrorCopyDescription(error);
  return list;
}

CFPropertyListRef CFPropertyListCreateDeepCopy(CFAllocatorRef, CFPropertyListRef list,
                                               CFOptionFlags options) {
  return list == nullptr ? nullptr : Copier(options).Copy(list, 0).leakRef();
}

Boolean CFPropertyListIsValid(CFPropertyListRef list, CFPropertyListFormat format) {
  return format == kCFPropertyListXMLFormat_v1_0 && cf::PropertyListWriter().Write(list);
}
