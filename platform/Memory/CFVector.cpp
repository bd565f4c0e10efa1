#include "Memory/CFVector.h"

#include "CoreFoundation/CFStringObject.h"
#include "CoreFoundation/CFURLObject.h"

std::string ToStdString(CFStringRef string) {
  return cf::ToUTF8(cf::TextOf(string));
}

std::string ToStdString(CFTypeRef object) {
  return cf::ToUTF8(cf::TextOf(object));
}

RetainPtr<CFStringRef> ToCFString(std::string_view text) {
  return adoptCF(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                         static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

std::vector<std::string> ToStringVector(CFArrayRef array) {
  std::vector<std::string> texts;
  for (const RetainPtr<CFStringRef>& string : ToVector<CFStringRef>(array))
    texts.push_back(ToStdString(string.get()));
  return texts;
}

RetainPtr<CFMutableArrayRef> ToCFArray(const std::vector<std::string>& texts) {
  RetainPtr<CFMutableArrayRef> array = MakeArray();
  for (const std::string& text : texts) CFArrayAppendValue(array.get(), ToCFString(text).get());
  return array;
}

std::vector<UInt8> ToBytes(CFDataRef data) {
  const UInt8* bytes = CFDataGetBytePtr(data);
  if (bytes == nullptr) return {};
  return {bytes, bytes + CFDataGetLength(data)};
}

RetainPtr<CFDataRef> ToCFData(std::string_view bytes) {
  return adoptCF(CFDataCreate(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
                              static_cast<CFIndex>(bytes.size())));
}

std::string ToPath(CFURLRef url) {
  const auto* source = cf::Cast<__CFURL>(url);
  return source == nullptr ? std::string() : source->AbsolutePath();
}

RetainPtr<CFURLRef> ToCFURL(std::string_view path, bool isFolder) {
  return adoptCF(CFURLCreateFromFileSystemRepresentation(kCFAllocatorDefault,
                                                         reinterpret_cast<const UInt8*>(path.data()),
                                                         static_cast<CFIndex>(path.size()), isFolder));
}

RetainPtr<CFMutableDictionaryRef> MakeDictionary() {
  return adoptCF(CFDictionaryCreateMutable(kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks,
                                           &kCFTypeDictionaryValueCallBacks));
}

RetainPtr<CFMutableArrayRef> MakeArray() {
  return adoptCF(CFArrayCreateMutable(kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks));
}
