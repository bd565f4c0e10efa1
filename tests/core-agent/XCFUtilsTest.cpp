#include <gtest/gtest.h>

#include "XCFUtils.h"

namespace {

const CFStringRef kKey = CFSTR("Key");

}  // namespace

TEST(XCFUtils, ReadsNumbersFromText) {
  const struct {
    const char* text;
    long asLong;
    unsigned long asULong;
  } kCases[] = {
      {"4294967295", 4294967295, 4294967295},
      {"-12", -12, 0},
      {"  7 fonts", 7, 7},
      {"12-3", 12, 12},
      {"", 0, 0},
      {"x1", 0, 0},
      {"99999999999999999999", 0, 0},
      {"18446744073709551615", 0, 18446744073709551615ul},
  };
  for (const auto& [text, asLong, asULong] : kCases) {
    const auto dict = MakeDictionary();
    XCFUtils::PutStringIntoDict(dict.get(), kKey, text);
    EXPECT_EQ(XCFUtils::GetLongFromDictString(dict.get(), kKey), asLong) << text;
    EXPECT_EQ(XCFUtils::GetULongFromDictString(dict.get(), kKey), asULong) << text;
  }
}

TEST(XCFUtils, TakesAnythingForARecord) {
  const auto dict = MakeDictionary();
  CFDictionarySetValue(dict.get(), kKey, kCFBooleanTrue);
  const auto notADictionary = static_cast<CFDictionaryRef>(static_cast<CFTypeRef>(kKey));
  for (const CFDictionaryRef any : {CFDictionaryRef(dict.get()), CFDictionaryRef(nullptr), notADictionary}) {
    EXPECT_EQ(XCFUtils::GetLongFromDictString(any, kKey), 0);
    EXPECT_FALSE(XCFUtils::GetBoolFromDictString(any, kKey));
    EXPECT_EQ(XCFUtils::GetStringFromDict(any, kKey), "");
    EXPECT_EQ(XCFUtils::GetCFStringFromDict(any, kKey), nullptr);
  }
  EXPECT_EQ(XCFUtils::GetStringFromDict(dict.get(), nullptr), "");
  XCFUtils::PutStringIntoDict(dict.get(), kKey, "broken \xFF");
  EXPECT_EQ(CFDictionaryGetValue(dict.get(), kKey), kCFBooleanTrue);
  XCFUtils::PutLongIntoDictAsString(nullptr, kKey, 1);
  XCFUtils::PutLongIntoDictAsString(dict.get(), nullptr, 1);
  EXPECT_EQ(CFDictionaryGetCount(dict.get()), 1);
}
