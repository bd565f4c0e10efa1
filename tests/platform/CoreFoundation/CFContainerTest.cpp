#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <limits>
#include <random>
#include <set>

#include "Memory/CFVector.h"

namespace {

RetainPtr<CFMutableArrayRef> Letters(const std::string& letters) {
  std::vector<std::string> texts;
  for (const char letter : letters) texts.emplace_back(1, letter);
  return ToCFArray(texts);
}

std::string Joined(CFArrayRef array) {
  return ToStdString(adoptCF(CFStringCreateByCombiningStrings(nullptr, array, CFSTR(""))).get());
}

TEST(CFArray, RetainsWhatItHolds) {
  const auto value = MakeDictionary();
  {
    const auto array = MakeArray();
    CFArrayAppendValue(array.get(), value.get());
    CFArraySetValueAtIndex(array.get(), 1, value.get());
    EXPECT_EQ(CFGetRetainCount(value.get()), 3);
    CFArraySetValueAtIndex(array.get(), 0, value.get());
    CFArrayRemoveValueAtIndex(array.get(), 1);
    EXPECT_EQ(CFGetRetainCount(value.get()), 2);
    const auto copy = adoptCF(CFArrayCreateCopy(nullptr, array.get()));
    EXPECT_EQ(CFGetRetainCount(value.get()), 3);
  }
  EXPECT_EQ(CFGetRetainCount(value.get()), 1);
}

TEST(CFArray, IndexesOutOfBoundsAndNullChangeNothing) {
  const auto array = Letters("abc");
  CFArrayInsertValueAtIndex(array.get(), 4, CFSTR("x"));
  CFArrayInsertValueAtIndex(array.get(), -1, CFSTR("x"));
  CFArraySetValueAtIndex(array.get(), 4, CFSTR("x"));
  CFArrayRemoveValueAtIndex(array.get(), 3);
  CFArrayExchangeValuesAtIndices(array.get(), 0, 3);
  CFArrayAppendValue(array.get(), nullptr);
  CFArrayReplaceValues(array.get(), {2, LONG_MAX}, nullptr, 0);
  CFArrayReplaceValues(array.get(), {1, 1}, nullptr, 2);
  EXPECT_EQ(Joined(array.get()), "abc");
  EXPECT_EQ(CFArrayGetValueAtIndex(array.get(), 3), nullptr);
  EXPECT_EQ(CFArrayGetValueAtIndex(array.get(), -1), nullptr);
  EXPECT_EQ(CFArrayGetFirstIndexOfValue(array.get(), {1, LONG_MAX}, CFSTR("a")), kCFNotFound);
  EXPECT_EQ(CFArrayGetFirstIndexOfValue(array.get(), {-1, 4}, CFSTR("a")), kCFNotFound);
  const void* values[] = {CFSTR("a"), nullptr};
  EXPECT_EQ(CFArrayCreate(nullptr, values, 2, &kCFTypeArrayCallBacks), nullptr);
}

TEST(CFArray, ReplacesAndAppendsAlsoItself) {
  const auto array = Letters("abcd");
  const void* values[] = {CFSTR("x"), CFSTR("y"), CFSTR("z")};
  CFArrayReplaceValues(array.get(), {1, 2}, values, 3);
  CFArrayAppendArray(array.get(), array.get(), {3, 99});
  EXPECT_EQ(Joined(array.get()), "axyzdzd");
}

CFComparisonResult CompareFirstLetter(const void* a, const void* b, void* calls) {
  ++*static_cast<long*>(calls);
  const auto letter = [](const void* value) {
    return CFStringGetCharacterAtIndex(dynamicCF<CFStringRef>(value), 0);
  };
  return letter(a) < letter(b)   ? kCFCompareLessThan
         : letter(a) > letter(b) ? kCFCompareGreaterThan
                                 : kCFCompareEqualTo;
}

TEST(CFArray, SortIsStableAndWithinItsRange) {
  const auto array = ToCFArray(std::vector<std::string>{"z", "b1", "a1", "b2", "a2", "b3", "a3", "y"});
  long calls = 0;
  CFArraySortValues(array.get(), {1, 6}, &CompareFirstLetter, &calls);
  EXPECT_EQ(Joined(array.get()), "za1a2a3b1b2b3y");
  EXPECT_LE(calls, 6 * 3);
}

struct Contrary {
  std::mt19937 random{1};
  int mode = 0;
  std::set<const void*> live;
  long calls = 0;
};

CFComparisonResult AnswerContrarily(const void* a, const void* b, void* context) {
  auto* contrary = static_cast<Contrary*>(context);
  ++contrary->calls;
  EXPECT_TRUE(contrary->live.contains(a) && contrary->live.contains(b));
  if (contrary->mode == 0) return kCFCompareLessThan;
  if (contrary->mode == 1) return kCFCompareGreaterThan;
  return static_cast<CFComparisonResult>(static_cast<long>(contrary->random() % 3) - 1);
}

TEST(CFArray, SortEndsWithEveryValueWhateverTheComparatorAnswers) {
  for (int mode = 0; mode < 3; ++mode) {
    for (const long count : {0, 1, 2, 3, 17, 1000}) {
      std::vector<std::string> texts;
      for (long i = 0; i < count; ++i) texts.push_back(std::to_string(i));
      const auto array = ToCFArray(texts);
      Contrary contrary;
      contrary.mode = mode;
      for (long i = 0; i < count; ++i) contrary.live.insert(CFArrayGetValueAtIndex(array.get(), i));
      CFArraySortValues(array.get(), {0, count}, &AnswerContrarily, &contrary);
      std::vector<std::string> sorted = ToStringVector(array.get());
      std::sort(sorted.begin(), sorted.end());
      std::sort(texts.begin(), texts.end());
      EXPECT_EQ(sorted, texts);
      EXPECT_LE(contrary.calls,
                static_cast<long>(static_cast<double>(count) * std::log2(std::max(count, 1L))));
    }
  }
}

TEST(CFDictionary, FindsByEqualKeysAndRetains) {
  const auto dictionary = MakeDictionary();
  const auto value = MakeArray();
  const auto key = ToCFString("key");
  CFDictionarySetValue(dictionary.get(), key.get(), value.get());
  CFDictionaryAddValue(dictionary.get(), CFSTR("key"), CFSTR("other"));
  CFDictionaryReplaceValue(dictionary.get(), CFSTR("absent"), CFSTR("other"));
  CFDictionarySetValue(dictionary.get(), nullptr, CFSTR("other"));
  CFDictionarySetValue(dictionary.get(), CFSTR("null"), nullptr);
  EXPECT_EQ(CFDictionaryGetCount(dictionary.get()), 1);
  EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), CFSTR("key")), value.get());
  EXPECT_EQ(CFDictionaryGetValue(dictionary.get(), nullptr), nullptr);
  EXPECT_EQ(CFGetRetainCount(value.get()), 2);
  CFDictionarySetValue(dictionary.get(), CFSTR("key"), value.get());
  EXPECT_EQ(CFGetRetainCount(value.get()), 2);
  EXPECT_EQ(CFGetRetainCount(key.get()), 2);
  CFDictionaryRemoveValue(dictionary.get(), CFSTR("key"));
  EXPECT_EQ(CFGetRetainCount(value.get()), 1);
  EXPECT_EQ(CFGetRetainCount(key.get()), 1);
}

RetainPtr<CFNumberRef> Number(double value) {
  return adoptCF(CFNumberCreate(nullptr, kCFNumberDoubleType, &value));
}
RetainPtr<CFNumberRef> Number(long value) {
  return adoptCF(CFNumberCreate(nullptr, kCFNumberLongType, &value));
}

TEST(CFNumber, SaysWhetherAValueFits) {
  struct Case {
    RetainPtr<CFNumberRef> number;
    bool fits;
    int expected;
  };
  const Case cases[] = {{Number(5L), true, 5},
                        {Number(LONG_MAX), false, INT_MAX},
                        {Number(LONG_MIN), false, INT_MIN},
                        {Number(2.0), true, 2},
                        {Number(-2.5), false, -2},
                        {Number(1e300), false, INT_MAX},
                        {Number(std::numeric_limits<double>::quiet_NaN()), false, 0}};
  for (const Case& test : cases) {
    int value = 77;
    EXPECT_EQ(CFNumberGetValue(test.number.get(), kCFNumberIntType, &value), test.fits) << test.expected;
    EXPECT_EQ(value, test.expected);
  }
  double real = 0;
  EXPECT_FALSE(CFNumberGetValue(Number(LONG_MAX).get(), kCFNumberDoubleType, &real));
  float small = 0;
  EXPECT_FALSE(CFNumberGetValue(Number(0.1).get(), kCFNumberFloatType, &small));
  EXPECT_TRUE(CFNumberIsFloatType(Number(1.0).get()));
  EXPECT_EQ(CFNumberGetType(Number(1L).get()), kCFNumberSInt64Type);
}

TEST(CFNumber, ComparesByValueAcrossTypes) {
  EXPECT_TRUE(CFEqual(Number(3L).get(), Number(3.0).get()));
  EXPECT_EQ(CFHash(Number(3L).get()), CFHash(Number(3.0).get()));
  EXPECT_EQ(CFHash(Number(0.0).get()), CFHash(Number(-0.0).get()));
  // As doubles the two would be the same.
  EXPECT_EQ(CFNumberCompare(Number(LONG_MAX).get(), Number(9223372036854775808.0).get(), nullptr),
            kCFCompareLessThan);
  EXPECT_EQ(CFNumberCompare(Number(-1L).get(), Number(-1.5).get(), nullptr), kCFCompareGreaterThan);
  EXPECT_FALSE(CFEqual(Number(1L).get(), kCFBooleanTrue));
}

}  // namespace
