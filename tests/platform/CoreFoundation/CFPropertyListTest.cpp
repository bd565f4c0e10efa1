#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Memory/CFVector.h"

namespace {

using namespace std::string_literals;

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
    "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
    "<plist version=\"1.0\">\n";

std::string Document(const std::string& body) {
  return kHead + body + "</plist>\n";
}

RetainPtr<CFPropertyListRef> Read(const std::string& bytes,
                                  CFOptionFlags options = kCFPropertyListImmutable) {
  return adoptCF(CFPropertyListCreateWithData(nullptr, ToCFData(bytes).get(), options, nullptr, nullptr));
}

/// The list as bytes, or the error's description.
std::string Write(CFPropertyListRef list) {
  CFErrorRef error = nullptr;
  const auto data =
      adoptCF(CFPropertyListCreateData(nullptr, list, kCFPropertyListXMLFormat_v1_0, 0, &error));
  const auto owned = adoptCF(error);
  if (!data) return ToStdString(adoptCF(CFErrorCopyDescription(error)).get());
  const std::vector<UInt8> bytes = ToBytes(data.get());
  return {bytes.begin(), bytes.end()};
}

/// What reading says of bytes that it refuses; "" when it takes them.
std::string Refusal(const std::string& bytes) {
  CFStringRef problem = nullptr;
  const auto list = adoptCF(
      CFPropertyListCreateFromXMLData(nullptr, ToCFData(bytes).get(), kCFPropertyListImmutable, &problem));
  EXPECT_NE(list == nullptr, problem == nullptr);
  return ToStdString(adoptCF(problem).get());
}

RetainPtr<CFTypeRef> Real(double value) {
  return adoptCF<CFTypeRef>(CFNumberCreate(nullptr, kCFNumberDoubleType, &value));
}
RetainPtr<CFTypeRef> Integer(SInt64 value) {
  return adoptCF<CFTypeRef>(CFNumberCreate(nullptr, kCFNumberSInt64Type, &value));
}
RetainPtr<CFTypeRef> Date(double time) {
  return adoptCF<CFTypeRef>(CFDateCreate(nullptr, time));
}

struct Golden {
  const char* name;
  RetainPtr<CFTypeRef> value;
  std::string body;
};

TEST(CFPropertyList, WritesThePublishedFormat) {
  const auto nested = MakeDictionary();
  const auto list = MakeArray();
  CFArrayAppendValue(list.get(), MakeDictionary().get());
  CFArrayAppendValue(list.get(), MakeArray().get());
  CFArrayAppendValue(list.get(), ToCFData(std::string(60, 'x')).get());
  for (const char* key : {"b", "a", "é", "B", "😀", "\uFB01", ""}) {
    CFDictionarySetValue(nested.get(), ToCFString(key).get(), kCFBooleanTrue);
  }
  CFDictionarySetValue(nested.get(), CFSTR("a&b"), list.get());
  const Golden cases[] = {
      {"empty string", retainCF<CFTypeRef>(CFSTR("")), "<string></string>\n"},
      {"escapes", retainCF<CFTypeRef>(CFSTR("<a> & \"b\" 'c'\r\n\té😀")),
       "<string>&lt;a&gt; &amp; \"b\" 'c'&#13;\n\té😀</string>\n"},
      {"true", retainCF<CFTypeRef>(kCFBooleanTrue), "<true/>\n"},
      {"integer", Integer(std::numeric_limits<SInt64>::min()), "<integer>-9223372036854775808</integer>\n"},
      {"0.1", Real(0.1), "<real>0.10000000000000001</real>\n"},
      {"whole real", Real(15), "<real>15</real>\n"},
      {"zero", Real(0), "<real>0.0</real>\n"},
      {"large", Real(1e300), "<real>1.0000000000000001e+300</real>\n"},
      {"infinity", Real(-HUGE_VAL), "<real>-infinity</real>\n"},
      {"no number", Real(std::nan("")), "<real>nan</real>\n"},
      {"epoch", Date(0), "<date>2001-01-01T00:00:00Z</date>\n"},
      {"before 1970", Date(-978307200.5), "<date>1969-12-31T23:59:59Z</date>\n"},
      {"leap day", Date(-26438400), "<date>2000-03-01T00:00:00Z</date>\n"},
      {"empty data", ToCFData(""), "<data>\n</data>\n"},
      {"data of one line and more", ToCFData(std::string(58, 'x')),
       "<data>\neHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4\neA==\n</"
       "data>\n"},
      {"empty containers", MakeArray(), "<array/>\n"},
      {"nested", nested,
       "<dict>\n"
       "\t<key></key>\n\t<true/>\n"
       "\t<key>B</key>\n\t<true/>\n"
       "\t<key>a</key>\n\t<true/>\n"
       "\t<key>a&amp;b</key>\n"
       "\t<array>\n\t\t<dict/>\n\t\t<array/>\n"
       "\t\t<data>\n"
       "\t\teHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4eHh4\n"
       "\t\teHh4eHh4eHh4eHh4eHh4\n"
       "\t\t</data>\n\t</array>\n"
       "\t<key>b</key>\n\t<true/>\n"
       "\t<key>é</key>\n\t<true/>\n"
       "\t<key>\uFB01</key>\n\t<true/>\n"
       "\t<key>😀</key>\n\t<true/>\n"
       "</dict>\n"}};
  for (const Golden& test : cases) {
    SCOPED_TRACE(test.name);
    const std::string bytes = Write(test.value.get());
    EXPECT_EQ(bytes, Document(test.body));
    EXPECT_EQ(Write(Read(bytes).get()), bytes);
  }
}

TEST(CFPropertyList, SaysWhatItCanNotWriteAndWhere) {
  const auto bad = MakeDictionary();
  const auto list = MakeArray();
  CFArrayAppendValue(list.get(), CFSTR("fine"));
  CFArrayAppendValue(list.get(), kCFNull);
  CFDictionarySetValue(bad.get(), CFSTR("fonts"), list.get());
  EXPECT_EQ(Write(bad.get()), "/fonts/1: CFNull has no form in a property list");
  CFArraySetValueAtIndex(list.get(), 1, ToCFString("a\x01"s).get());
  EXPECT_EQ(Write(bad.get()), "/fonts/1: XML has no way to say U+0001");
  const UniChar half = 0xDC00;
  CFArraySetValueAtIndex(list.get(), 1, adoptCF(CFStringCreateWithCharacters(nullptr, &half, 1)).get());
  EXPECT_EQ(Write(bad.get()), "/fonts/1: XML has no way to say U+DC00");
  CFDictionarySetValue(bad.get(), kCFBooleanTrue, CFSTR("value"));
  EXPECT_EQ(Write(bad.get()), "/: A key isn't a string");
  EXPECT_EQ(Write(Date(1e15).get()), "/: The date has no year of 4 digits");
  EXPECT_EQ(Write(nullptr), "/: There is no object");
  EXPECT_EQ(Write(adoptCF(CFArrayCreateMutable(nullptr, 0, nullptr)).get()), "/: An array of bare pointers");
  EXPECT_FALSE(CFPropertyListIsValid(bad.get(), kCFPropertyListXMLFormat_v1_0));
  EXPECT_EQ(CFPropertyListCreateData(nullptr, list.get(), kCFPropertyListBinaryFormat_v1_0, 0, nullptr),
            nullptr);
}

struct ReadCase {
  const char* name;
  std::string bytes;
  RetainPtr<CFTypeRef> expected;
};

TEST(CFPropertyList, ReadsWhatOthersWrite) {
  const ReadCase cases[] = {
      {"without a head", "<plist><string>a</string></plist>", retainCF<CFTypeRef>(CFSTR("a"))},
      {"without <plist>", "<string>a</string>", retainCF<CFTypeRef>(CFSTR("a"))},
      {"byte order mark", "\xEF\xBB\xBF<plist><string>é</string></plist>", retainCF<CFTypeRef>(CFSTR("é"))},
      {"UTF-16", "\xFF\xFE<\0a\0r\0r\0a\0y\0/\0>\0"s, MakeArray()},
      {"declared Latin 1", "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><string>\xE9</string>",
       retainCF<CFTypeRef>(CFSTR("é"))},
      {"comments, CDATA and entities",
       "<string> a<!-- x --><![CDATA[<&amp;]]>&#x41;&#66;&quot;&apos; </string>",
       retainCF<CFTypeRef>(CFSTR(" a<&amp;AB\"' "))},
      {"only white space", "<string>  \r\n</string>", retainCF<CFTypeRef>(CFSTR("  \n"))},
      {"hexadecimal", "<integer> 0xFF </integer>", Integer(255)},
      {"plus", "<integer>+7</integer>", Integer(7)},
      {"real without a point", "<real>1e3</real>", Real(1000)},
      {"inf", "<real>inf</real>", Real(HUGE_VAL)},
      {"too large a real", "<real>-1e999</real>", Real(-HUGE_VAL)},
      {"data with blanks", "<data> aG\n\tk= </data>", ToCFData("hi")},
      {"true with an end", "<true></true>", retainCF<CFTypeRef>(kCFBooleanTrue)}};
  for (const ReadCase& test : cases) {
    SCOPED_TRACE(test.name);
    EXPECT_EQ(Refusal(test.bytes), "");
    EXPECT_TRUE(CFEqual(Read(test.bytes).get(), test.expected.get()));
  }
  EXPECT_EQ(Write(Read("<integer>18446744073709551615</integer>").get()),
            Document("<integer>18446744073709551615</integer>\n"));
  const auto last = Read("<dict><key>a</key><integer>1</integer><key>a</key><integer>2</integer></dict>");
  EXPECT_TRUE(
      CFEqual(CFDictionaryGetValue(dynamicCF<CFDictionaryRef>(last.get()), CFSTR("a")), Integer(2).get()));
}

TEST(CFPropertyList, RefusesWhatIsNotAPropertyList) {
  const std::pair<const char*, std::string> cases[] = {
      {"", "isn't an XML"},
      {"bplist00\xD4", "isn't an XML"},
      {"{ a = b; }", "isn't an XML"},
      {"<plist>", "Offset"},
      {"<plist><true/><true/></plist>", "more than one value"},
      {"<blink>a</blink>", "<blink> is unknown"},
      {"<string>&#xD800;</string>", "an undefined entity"},
      {"<string>a & b</string>", "an undefined entity"},
      {"<string>\xFF</string>", "isn't valid UTF-8"},
      {"<string><b/></string>", "an element in <string>"},
      {"<true>x</true>", "text in a boolean"},
      {"<integer>--5</integer>", "not an integer"},
      {"<integer>18446744073709551616</integer>", "not an integer"},
      {"<integer>-9223372036854775809</integer>", "not an integer"},
      {"<real>1,5</real>", "not a real"},
      {"<date>2001-02-29T00:00:00Z</date>", "not a date"},
      {"<date>2001-01-01T24:00:00Z</date>", "not a date"},
      {"<data>a</data>", "not base 64"},
      {"<data>ab=c</data>", "not base 64"},
      {"<data>aGk=aGk=</data>", "not base 64"},
      {"<dict><key>a</key></dict>", "a key without a value"},
      {"<dict><string>a</string><true/></dict>", "<key> is missing"},
      {"<dict>x<key>a</key><true/></dict>", "text in <dict>"},
      {"<array>x</array>", "text in <array>"},
      {"<key>a</key>", "<key> is unknown"},
      {"<!DOCTYPE plist [<!ENTITY a \"b\">]><string>&a;</string>", "entity definitions"}};
  for (const auto& [bytes, problem] : cases) {
    EXPECT_NE(Refusal(bytes).find(problem), std::string::npos) << bytes << ": " << Refusal(bytes);
  }
  EXPECT_NE(Refusal("<string>a</string>\0<true/>"s).find("a zero byte"), std::string::npos);
  CFErrorRef error = nullptr;
  EXPECT_EQ(CFPropertyListCreateWithData(nullptr, nullptr, 0, nullptr, &error), nullptr);
  EXPECT_EQ(CFErrorGetCode(adoptCF(error).get()), kCFPropertyListReadStreamError);
}

std::string Deep(const std::string& open, const std::string& close, int levels) {
  std::string bytes;
  for (int i = 0; i < levels; ++i) bytes += open;
  for (int i = 0; i < levels; ++i) bytes += close;
  return bytes;
}

TEST(CFPropertyList, DepthHasALimitBothWays) {
  EXPECT_EQ(Refusal(Deep("<array>", "</array>", 512)), "");
  EXPECT_NE(Refusal(Deep("<array>", "</array>", 513)).find("512 levels"), std::string::npos);
  EXPECT_NE(Refusal(Deep("<array>", "</array>", 100000)), "");
  EXPECT_NE(Refusal(Deep("<dict><key>a</key>", "</dict>", 100000)), "");
  EXPECT_NE(Refusal(Deep("<string>", "</string>", 100000)), "");
  EXPECT_NE(Refusal(Deep("<array>", "", 100000)), "");
  EXPECT_NE(Refusal("<!DOCTYPE " + Deep("[<!", ">", 100000)), "");

  auto array = MakeArray();
  for (int i = 0; i < 512; ++i) {
    const auto outer = MakeArray();
    CFArrayAppendValue(outer.get(), array.get());
    array = outer;
  }
  EXPECT_NE(Write(array.get()).find("512 levels"), std::string::npos);
  EXPECT_EQ(CFPropertyListCreateDeepCopy(nullptr, array.get(), 0), nullptr);
}

TEST(CFPropertyList, CutOrChangedAnywhereItGivesAListOrAReason) {
  const std::string whole = Document(
      "<dict>\n\t<key>a&amp;</key>\n\t<array>\n\t\t<integer>5</integer>\n\t\t<real>1.5</real>\n"
      "\t\t<data>\n\t\taGk=\n\t\t</data>\n\t\t<date>2001-01-01T00:00:00Z</date>\n\t\t<true/>\n\t\t<string>é</"
      "string>\n"
      "\t</array>\n</dict>\n");
  ASSERT_EQ(Refusal(whole), "");
  for (size_t i = 0; i < whole.size(); ++i) {
    const std::string problem = Refusal(whole.substr(0, i));
    EXPECT_EQ(problem.empty(), i == whole.size() - 1) << i;
    for (const char byte : {'\0', '<', '>', '&', '\xFF', 'x', ']'}) {
      std::string changed = whole;
      changed[i] = byte;
      Refusal(changed);
    }
  }
}

TEST(CFPropertyList, OptionsSayWhatMayChange) {
  const std::string bytes = "<dict><key>a</key><array><string>b</string><data/></array></dict>";
  for (const CFOptionFlags options : {kCFPropertyListImmutable, kCFPropertyListMutableContainers,
                                      kCFPropertyListMutableContainersAndLeaves}) {
    const auto original = Read(bytes, options);
    const auto immutable = Read(bytes);
    const auto copy = adoptCF(CFPropertyListCreateDeepCopy(nullptr, immutable.get(), options));
    EXPECT_TRUE(CFEqual(original.get(), copy.get()));
    for (CFTypeRef list : {original.get(), copy.get()}) {
      const auto* inner = CFDictionaryGetValue(dynamicCF<CFDictionaryRef>(list), CFSTR("a"));
      EXPECT_EQ(IsMutableCF(list), options != kCFPropertyListImmutable);
      EXPECT_EQ(IsMutableCF(inner), options != kCFPropertyListImmutable);
      for (const CFIndex i : {0, 1}) {
        EXPECT_EQ(IsMutableCF(CFArrayGetValueAtIndex(dynamicCF<CFArrayRef>(inner), i)),
                  options == kCFPropertyListMutableContainersAndLeaves);
      }
    }
  }
}

}  // namespace
