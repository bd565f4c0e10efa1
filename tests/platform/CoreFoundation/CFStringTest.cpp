#include <gtest/gtest.h>

#include <climits>

#include "Memory/CFVector.h"

namespace {

using namespace std::string_literals;

RetainPtr<CFMutableStringRef> Mutable(const std::string& text) {
  return adoptCF(CFStringCreateMutableCopy(nullptr, 0, ToCFString(text).get()));
}

struct DecodeCase {
  const char* name;
  CFStringEncoding encoding;
  std::string bytes;
  bool valid;
  std::string expected;
};

TEST(CFString, BytesAreTakenWholeOrRefused) {
  const DecodeCase cases[] = {{"ASCII", kCFStringEncodingASCII, "plain", true, "plain"},
                              {"ASCII with a high byte", kCFStringEncodingASCII, "pl\x80in", false, ""},
                              {"UTF-8 of four bytes", kCFStringEncodingUTF8, "a\xF0\x9F\x98\x80", true, "a😀"},
                              {"UTF-8 with a zero", kCFStringEncodingUTF8, "a\0b"s, true, "a\0b"s},
                              {"UTF-8 cut", kCFStringEncodingUTF8, "a\xF0\x9F\x98", false, ""},
                              {"UTF-8 overlong", kCFStringEncodingUTF8, "\xC0\x80", false, ""},
                              {"UTF-8 of a surrogate", kCFStringEncodingUTF8, "\xED\xA0\x80", false, ""},
                              {"UTF-8 beyond U+10FFFF", kCFStringEncodingUTF8, "\xF4\x90\x80\x80", false, ""},
                              {"Latin 1", kCFStringEncodingISOLatin1, "\xE9", true, "é"},
                              {"Mac Roman", kCFStringEncodingMacRoman, "\x8E\xA5", true, "é•"},
                              {"Windows Latin 1", kCFStringEncodingWindowsLatin1, "\x80\x95", true, "€•"},
                              {"UTF-16BE", kCFStringEncodingUTF16BE, "\0a\xD8\x3D\xDE\x00"s, true, "a😀"},
                              {"UTF-16 by mark", kCFStringEncodingUTF16, "\xFE\xFF\0a"s, true, "a"},
                              {"UTF-16 of odd length", kCFStringEncodingUTF16LE, "a\0b"s, false, ""},
                              {"UTF-32LE", kCFStringEncodingUTF32LE, "\x00\xF6\x01\x00"s, true, "😀"},
                              {"UTF-32 beyond U+10FFFF", kCFStringEncodingUTF32BE, "\0\x11\0\0"s, false, ""},
                              {"unknown encoding", 0x7777, "a", false, ""}};
  for (const DecodeCase& test : cases) {
    SCOPED_TRACE(test.name);
    const auto string =
        adoptCF(CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(test.bytes.data()),
                                        static_cast<CFIndex>(test.bytes.size()), test.encoding, true));
    ASSERT_EQ(static_cast<bool>(string), test.valid);
    EXPECT_EQ(ToStdString(string.get()), test.expected);
  }
  EXPECT_EQ(CFStringCreateWithBytes(nullptr, nullptr, 3, kCFStringEncodingUTF8, false), nullptr);
  EXPECT_EQ(
      CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>("a"), -1, kCFStringEncodingUTF8, false),
      nullptr);
}

TEST(CFString, LengthCountsUTF16Units) {
  const auto string = ToCFString("é😀");
  EXPECT_EQ(CFStringGetLength(string.get()), 3);
  EXPECT_EQ(CFStringGetCharacterAtIndex(string.get(), 1), 0xD83D);
  EXPECT_EQ(CFStringGetCharacterAtIndex(string.get(), 3), 0);
  EXPECT_EQ(CFStringGetCharacterAtIndex(string.get(), -1), 0);
  UniChar units[3] = {7, 7, 7};
  CFStringGetCharacters(string.get(), {1, 3}, units);
  EXPECT_EQ(units[0], 7);
  CFStringGetCharacters(string.get(), {2, 1}, units);
  EXPECT_EQ(units[0], 0xDE00);
}

TEST(CFString, ACStringIsWholeOrNotAtAll) {
  const auto text = ToCFString("Grün");
  char buffer[8] = "xxxxxxx";
  EXPECT_TRUE(CFStringGetCString(text.get(), buffer, 6, kCFStringEncodingUTF8));
  EXPECT_STREQ(buffer, "Grün");
  EXPECT_FALSE(CFStringGetCString(text.get(), buffer, 5, kCFStringEncodingUTF8));
  EXPECT_STREQ(buffer, "");
  EXPECT_FALSE(CFStringGetCString(text.get(), buffer, 8, kCFStringEncodingASCII));
  EXPECT_FALSE(CFStringGetCString(text.get(), nullptr, 8, kCFStringEncodingUTF8));
  EXPECT_FALSE(CFStringGetCString(text.get(), buffer, 0, kCFStringEncodingUTF8));
  EXPECT_FALSE(CFStringGetCString(ToCFString("a\0b"s).get(), buffer, 8, kCFStringEncodingUTF8));
  EXPECT_STREQ(CFStringGetCStringPtr(text.get(), kCFStringEncodingUTF8), "Grün");
  EXPECT_EQ(CFStringGetCStringPtr(text.get(), kCFStringEncodingASCII), nullptr);
  EXPECT_EQ(CFStringGetCStringPtr(Mutable("a").get(), kCFStringEncodingUTF8), nullptr);
}

struct CompareCase {
  const char* a;
  const char* b;
  CFStringCompareFlags options;
  CFComparisonResult expected;
};

TEST(CFString, CompareFollowsItsOptions) {
  const CompareCase cases[] = {
      {"a", "b", 0, kCFCompareLessThan},
      {"B", "a", 0, kCFCompareLessThan},
      {"a", "ab", 0, kCFCompareLessThan},
      {"\uFB01", "😀", 0, kCFCompareLessThan},  // by code points, not by units
      {"STRASSE", "straße", kCFCompareCaseInsensitive, kCFCompareEqualTo},
      {"É", "é", kCFCompareCaseInsensitive, kCFCompareEqualTo},
      {"É", "e\u0301", kCFCompareCaseInsensitive, kCFCompareGreaterThan},
      {"É", "e\u0301", kCFCompareCaseInsensitive | kCFCompareNonliteral, kCFCompareEqualTo},
      {"q\u0307\u0323", "q\u0323\u0307", kCFCompareNonliteral, kCFCompareEqualTo},
      {"résumé", "resume", kCFCompareDiacriticInsensitive, kCFCompareEqualTo},
      {"ＡＢ", "AB", kCFCompareWidthInsensitive, kCFCompareEqualTo},
      {"Foo2", "Foo7", kCFCompareNumerically, kCFCompareLessThan},
      {"Foo7", "Foo25", kCFCompareNumerically, kCFCompareLessThan},
      {"Foo007", "Foo7", kCFCompareNumerically, kCFCompareEqualTo},
      {"Foo007", "Foo7", kCFCompareNumerically | kCFCompareForcedOrdering, kCFCompareLessThan},
      {"1.10", "1.9", kCFCompareNumerically, kCFCompareGreaterThan},
      {"99999999999999999999999999", "100000000000000000000000000", kCFCompareNumerically,
       kCFCompareLessThan},
      {"15", "15.0.1", kCFCompareNumerically, kCFCompareLessThan},
      {"a", "B", kCFCompareLocalized, kCFCompareLessThan},
      {"Foo2", "foo10", kCFCompareLocalized | kCFCompareNumerically | kCFCompareCaseInsensitive,
       kCFCompareLessThan},
      {"É", "é", kCFCompareLocalized | kCFCompareCaseInsensitive, kCFCompareEqualTo}};
  for (const CompareCase& test : cases) {
    SCOPED_TRACE(std::string(test.a) + " " + test.b);
    const auto a = ToCFString(test.a);
    const auto b = ToCFString(test.b);
    EXPECT_EQ(CFStringCompare(a.get(), b.get(), test.options), test.expected);
    EXPECT_EQ(CFStringCompare(b.get(), a.get(), test.options), -test.expected);
  }
}

struct FindCase {
  const char* text;
  const char* pattern;
  CFStringCompareFlags options;
  CFRange expected;
};

TEST(CFString, FindGivesRangesOfTheSource) {
  const FindCase cases[] = {{"abcabc", "bc", 0, {1, 2}},
                            {"abcabc", "bc", kCFCompareBackwards, {4, 2}},
                            {"abcabc", "bc", kCFCompareAnchored, {kCFNotFound, 0}},
                            {"abcabc", "bc", kCFCompareAnchored | kCFCompareBackwards, {4, 2}},
                            {"abc", "", 0, {kCFNotFound, 0}},
                            {"", "a", 0, {kCFNotFound, 0}},
                            {"Große Straße", "STRASSE", kCFCompareCaseInsensitive, {6, 6}},
                            {"Maße", "s", kCFCompareCaseInsensitive, {kCFNotFound, 0}},
                            {"😀x", "x", 0, {2, 1}},
                            {"cafe\u0301 e", "e", kCFCompareNonliteral, {6, 1}},
                            {"cafe\u0301", "é", kCFCompareNonliteral, {3, 2}},
                            {"caf\u00E9", "e", kCFCompareDiacriticInsensitive, {3, 1}}};
  for (const FindCase& test : cases) {
    SCOPED_TRACE(std::string(test.text) + " / " + test.pattern);
    const CFRange found =
        CFStringFind(ToCFString(test.text).get(), ToCFString(test.pattern).get(), test.options);
    EXPECT_EQ(found.location, test.expected.location);
    EXPECT_EQ(found.length, test.expected.length);
  }
  CFRange range;
  EXPECT_FALSE(CFStringFindWithOptions(CFSTR("abc"), CFSTR("c"), {0, 2}, 0, &range));
  EXPECT_TRUE(CFStringFindWithOptions(CFSTR("abc"), CFSTR("c"), {1, LONG_MAX}, 0, &range));
  EXPECT_EQ(range.location, 2);
}

TEST(CFString, EditingKeepsToItsBounds) {
  const auto text = Mutable("hello");
  CFStringInsert(text.get(), 6, CFSTR("!"));
  CFStringDelete(text.get(), {9, 3});
  CFStringReplace(text.get(), {3, 5}, CFSTR("x"));
  EXPECT_EQ(ToStdString(text.get()), "hello");
  CFStringReplace(text.get(), {0, 1}, text.get());
  EXPECT_EQ(ToStdString(text.get()), "helloello");
  CFStringDelete(text.get(), {5, 99});
  CFStringAppendCString(text.get(), "\xFF", kCFStringEncodingUTF8);
  EXPECT_EQ(ToStdString(text.get()), "hello");
  const auto limited = adoptCF(CFStringCreateMutable(nullptr, 3));
  CFStringAppend(limited.get(), CFSTR("hello"));
  EXPECT_EQ(ToStdString(limited.get()), "hel");
}

std::string Format(CFStringRef format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const auto result = adoptCF(CFStringCreateWithFormatAndArguments(nullptr, nullptr, format, arguments));
  va_end(arguments);
  return ToStdString(result.get());
}

TEST(CFString, FormatsObjectsAndNumbers) {
  const UniChar units[] = {0xE9, 0};
  EXPECT_EQ(Format(CFSTR("%@ of %d, %ld, %u, %lld"), CFSTR("é"), -1, 2L, 4000000000U, 1LL << 40),
            "é of -1, 2, 4000000000, 1099511627776");
  EXPECT_EQ(Format(CFSTR("%s|%5s|%-5s|%.2s"), "é", "ab", "ab", "abc"), "é|   ab|ab   |ab");
  EXPECT_EQ(Format(CFSTR("%2$@ %1$@ %2$@"), CFSTR("b"), CFSTR("a")), "a b a");
  EXPECT_EQ(Format(CFSTR("%05.1f %x %c%C %S %hhu %zu %%"), 3.14159, 255, 'z', 0xE9, units, 257, size_t{9}),
            "003.1 ff zé é 1 9 %");
  EXPECT_EQ(Format(CFSTR("%*d|%-*d|%.*f"), 4, 7, 4, 7, 2, 1.0), "   7|7   |1.00");
  EXPECT_EQ(Format(CFSTR("%@ %s"), nullptr, nullptr), "(null) (null)");
  EXPECT_EQ(Format(CFSTR("%@"), kCFBooleanTrue), "true");
}

TEST(CFString, AnUnsoundFormatStandsForItself) {
  EXPECT_EQ(Format(CFSTR("100%, sure %")), "100%, sure %");
  EXPECT_EQ(Format(CFSTR("%n%d"), 5), "%n5");
  EXPECT_EQ(Format(CFSTR("%3$d"), 1, 2, 3), "%3$d");
  EXPECT_EQ(Format(CFSTR("%1$d %1$@"), 1), "%1$d %1$@");
  EXPECT_EQ(Format(CFSTR("%99999999999$d"), 1), "%99999999999$d");
  EXPECT_EQ(Format(CFSTR("%99999999999d"), 1).size(), 4096U);
}

}  // namespace
