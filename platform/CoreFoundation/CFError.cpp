#include "CoreFoundation/CFError.h"

#include "CoreFoundation/CFDictionary.h"
#include "CoreFoundation/CFRuntime.h"
#include "CoreFoundation/CFStringObject.h"
#include "Memory/CFVector.h"

using cf::Cast;

const CFErrorDomain kCFErrorDomainPOSIX = CFSTR("NSPOSIXErrorDomain");
const CFErrorDomain kCFErrorDomainCocoa = CFSTR("NSCocoaErrorDomain");
const CFStringRef kCFErrorLocalizedDescriptionKey = CFSTR("NSLocalizedDescription");
const CFStringRef kCFErrorDescriptionKey = CFSTR("NSDescription");

struct __CFError final : cf::Object {
  static constexpr cf::TypeNumber kType = cf::kErrorType;

  __CFError(RetainPtr<CFStringRef> errorDomain, CFIndex errorCode, RetainPtr<CFDictionaryRef> information)
      : Object(kType), domain(std::move(errorDomain)), code(errorCode), userInfo(std::move(information)) {}

  bool Equals(const Object& other) const override {
    const auto& error = static_cast<const __CFError&>(other);
    return code == error.code && CFEqual(domain.get(), error.domain.get()) &&
           CFEqual(userInfo.get(), error.userInfo.get());
  }
  CFHashCode Hash() const override { return static_cast<CFHashCode>(code); }
  std::string Describe(int) const override {
    for (CFStringRef key : {kCFErrorLocalizedDescriptionKey, kCFErrorDescriptionKey}) {
      std::string text = ToStdString(CFDictionaryGetValue(userInfo.get(), key));
      if (!text.empty()) return text;
    }
    return ToStdString(domain.get()) + " error " + std::to_string(code);
  }

  const RetainPtr<CFStringRef> domain;
  const CFIndex code;
  const RetainPtr<CFDictionaryRef> userInfo;
};

CFTypeID CFErrorGetTypeID() {
  return cf::kErrorType;
}

CFErrorRef CFErrorCreate(CFAllocatorRef allocator, CFErrorDomain domain, CFIndex code,
                         CFDictionaryRef userInfo) {
  if (dynamicCF<CFStringRef>(domain) == nullptr) return nullptr;
  RetainPtr<CFDictionaryRef> information = adoptCF(CFDictionaryCreateCopy(allocator, userInfo));
  if (!information) information = MakeDictionary();
  return new __CFError(retainCF(domain), code, std::move(information));
}

CFErrorDomain CFErrorGetDomain(CFErrorRef error) {
  const auto* source = Cast<__CFError>(error);
  return source == nullptr ? nullptr : source->domain.get();
}

CFIndex CFErrorGetCode(CFErrorRef error) {
  const auto* source = Cast<__CFError>(error);
  return source == nullptr ? 0 : source->code;
}

CFDictionaryRef CFErrorCopyUserInfo(CFErrorRef error) {
  const auto* source = Cast<__CFError>(error);
  return source == nullptr ? nullptr : retainCF(source->userInfo.get()).leakRef();
}

CFStringRef CFErrorCopyDescription(CFErrorRef error) {
  const auto* source = Cast<__CFError>(error);
  return source == nullptr ? nullptr : cf::NewString(source->Describe(0));
}
