// Property lists. Any bytes give a list or an error, never both and never neither. A list that was read can
// be copied; what can be written of it reads as the same list again. No object is left behind.
//
// Links: hornbeam_platform
#include <CoreFoundation/CoreFoundation.h>

#include "FuzzSupport.h"
#include "Memory/RetainPtr.h"

namespace {

RetainPtr<CFPropertyListRef> Read(CFDataRef data) {
  CFErrorRef error = nullptr;
  CFPropertyListFormat format{};
  auto list = adoptCF(CFPropertyListCreateWithData(nullptr, data, 0, &format, &error));
  const RetainPtr<CFErrorRef> owner = adoptCF(error);
  Promise(static_cast<bool>(list) != static_cast<bool>(owner), "there is a list or an error");
  return list;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  {
    const auto bytes = adoptCF(CFDataCreate(nullptr, data, static_cast<CFIndex>(size)));
    if (const RetainPtr<CFPropertyListRef> list = Read(bytes.get())) {
      const auto copy = adoptCF(CFPropertyListCreateDeepCopy(nullptr, list.get(), kCFPropertyListImmutable));
      Promise(copy && CFEqual(copy.get(), list.get()), "a list can be copied");
      const auto text =
          adoptCF(CFPropertyListCreateData(nullptr, list.get(), kCFPropertyListXMLFormat_v1_0, 0, nullptr));
      // Reading is more lenient than writing: a control character in a text ends the writing.
      if (text) {
        const RetainPtr<CFPropertyListRef> again = Read(text.get());
        Promise(again && CFEqual(again.get(), list.get()), "what was written reads as the same list");
      }
    }
  }
  Promise(LiveObjectCounts().empty(), "no object is left");
  return 0;
}
