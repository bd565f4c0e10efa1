#include <gtest/gtest.h>

#include <vector>

#include "Memory/CFVector.h"
#include "Memory/LiveObjects.h"

namespace {

TEST(CFBase, ConstantsLiveForEverAndAreNotCounted) {
  const auto before = LiveObjectCounts();
  for (CFTypeRef constant : {CFTypeRef{CFSTR("constant")}, CFTypeRef{kCFBooleanTrue}, CFTypeRef{kCFNull}}) {
    CFRelease(constant);
    CFRelease(constant);
    EXPECT_GT(CFGetRetainCount(constant), 1000000);
    CFRetain(constant);
  }
  EXPECT_EQ(LiveObjectCounts(), before);
  EXPECT_EQ(CFSTR("same"), CFSTR("same"));
}

TEST(CFBase, NullIsNeutralEverywhere) {
  CFRelease(nullptr);
  EXPECT_EQ(CFRetain(nullptr), nullptr);
  EXPECT_EQ(CFGetTypeID(nullptr), 0U);
  EXPECT_EQ(CFHash(nullptr), 0U);
  EXPECT_TRUE(CFEqual(nullptr, nullptr));
  EXPECT_FALSE(CFEqual(nullptr, CFSTR("a")));
  EXPECT_EQ(CFCopyDescription(nullptr), nullptr);
  EXPECT_EQ(CFStringGetLength(nullptr), 0);
  EXPECT_EQ(CFArrayGetCount(nullptr), 0);
  EXPECT_EQ(CFArrayGetValueAtIndex(nullptr, 0), nullptr);
  EXPECT_EQ(CFDictionaryGetValue(nullptr, CFSTR("a")), nullptr);
  EXPECT_EQ(CFDataGetBytePtr(nullptr), nullptr);
  EXPECT_EQ(CFURLGetString(nullptr), nullptr);
  EXPECT_EQ(CFBundleGetInfoDictionary(nullptr), nullptr);
  EXPECT_EQ(CFStringCompare(nullptr, CFSTR(""), 0), kCFCompareLessThan);
  CFArrayAppendValue(nullptr, CFSTR("a"));
  CFDictionarySetValue(nullptr, CFSTR("a"), CFSTR("b"));
  CFStringAppend(nullptr, CFSTR("a"));
  CFRunLoopTimerInvalidate(nullptr);
}

TEST(CFBase, AWronglyTypedArgumentIsNeutral) {
  const void* number = kCFBooleanTrue;
  EXPECT_EQ(CFStringGetLength(static_cast<CFStringRef>(number)), 0);
  EXPECT_EQ(CFArrayGetCount(static_cast<CFArrayRef>(number)), 0);
  EXPECT_EQ(CFDictionaryGetCount(static_cast<CFDictionaryRef>(number)), 0);
  EXPECT_EQ(CFDataGetLength(static_cast<CFDataRef>(number)), 0);
  int value = 7;
  EXPECT_FALSE(CFNumberGetValue(static_cast<CFNumberRef>(number), kCFNumberIntType, &value));
  EXPECT_EQ(value, 7);
  EXPECT_FALSE(CFBooleanGetValue(static_cast<CFBooleanRef>(static_cast<const void*>(CFSTR("true")))));
  EXPECT_EQ(CFDateGetAbsoluteTime(static_cast<CFDateRef>(number)), 0);
  EXPECT_EQ(ToStdString(number), "");
}

TEST(CFBase, ImmutableObjectsDoNotChange) {
  const auto array = adoptCF(CFArrayCreate(nullptr, nullptr, 0, &kCFTypeArrayCallBacks));
  CFArrayAppendValue(const_cast<CFMutableArrayRef>(array.get()), CFSTR("a"));
  EXPECT_EQ(CFArrayGetCount(array.get()), 0);
  CFStringAppend(const_cast<CFMutableStringRef>(CFSTR("constant")), CFSTR("!"));
  EXPECT_EQ(ToStdString(CFSTR("constant")), "constant");
  EXPECT_EQ(dynamicCF<CFMutableArrayRef>(array.get()), nullptr);
  EXPECT_EQ(dynamicCF<CFArrayRef>(array.get()), array.get());
  EXPECT_EQ(dynamicCF<CFStringRef>(array.get()), nullptr);
}

#if !defined(NDEBUG) && !defined(__SANITIZE_ADDRESS__)
TEST(CFBaseDeathTest, ReleasingTooOftenEndsTheProgram) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  CFMutableArrayRef array = CFArrayCreateMutable(nullptr, 0, nullptr);
  CFRelease(array);
  EXPECT_DEATH(CFRelease(array), "CoreFoundation: use of an object that is gone");
  EXPECT_DEATH(CFArrayGetCount(array), "CoreFoundation: use of an object that is gone");
  EXPECT_DEATH(CFRetain(array), "CoreFoundation: use of an object that is gone");
}
#endif

TEST(RetainPtr, KeepsExactlyOneReferenceThroughCopiesAndMoves) {
  auto first = MakeArray();
  RetainPtr<CFArrayRef> immutable = first;
  RetainPtr<CFTypeRef> any = std::move(immutable);
  EXPECT_FALSE(immutable);  // NOLINT(bugprone-use-after-move): that is the point
  EXPECT_EQ(CFGetRetainCount(first.get()), 2);
  any = first;
  any = nullptr;
  EXPECT_EQ(CFGetRetainCount(first.get()), 1);
  RetainPtr<CFMutableArrayRef> self = retainCF(first.get());
  self = *&self;
  EXPECT_EQ(self, first);
  EXPECT_EQ(CFGetRetainCount(first.get()), 2);
  CFRelease(self.leakRef());
  EXPECT_EQ(self, nullptr);
  EXPECT_EQ(CFGetRetainCount(first.get()), 1);
}

TEST(CFVector, ConvertsListsAndLeavesOutOtherTypes) {
  const auto mixed = MakeArray();
  for (CFTypeRef value : {CFTypeRef{CFSTR("Ä")}, CFTypeRef{kCFBooleanTrue}, CFTypeRef{CFSTR("b")}}) {
    CFArrayAppendValue(mixed.get(), value);
  }
  EXPECT_EQ(ToStringVector(mixed.get()), (std::vector<std::string>{"Ä", "b"}));
  EXPECT_EQ(ToVector<CFBooleanRef>(mixed.get()).size(), 1U);
  EXPECT_EQ(CFArrayGetCount(ToCFArray(std::vector<std::string>{"a", "\xFF", "b"}).get()), 2);
  EXPECT_EQ(ToCFString("\xC3"), nullptr);
  const UniChar half[] = {'a', 0xD83D, 'b'};
  EXPECT_EQ(ToStdString(adoptCF(CFStringCreateWithCharacters(nullptr, half, 3)).get()),
            "a\xEF\xBF\xBD"
            "b");
}

}  // namespace
