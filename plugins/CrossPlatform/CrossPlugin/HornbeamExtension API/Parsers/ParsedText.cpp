#include "Parsers/ParsedText.h"

#include "Memory/CFVector.h"

RetainPtr<CFStringRef> MakeParsedText(std::string_view bytes) {
  if (RetainPtr<CFStringRef> text = ToCFString(bytes)) return text;
  return adoptCF(CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(bytes.data()),
                                         static_cast<CFIndex>(bytes.size()), kCFStringEncodingISOLatin1,
                                         false));
}
