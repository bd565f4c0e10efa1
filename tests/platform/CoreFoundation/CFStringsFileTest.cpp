#include <gtest/gtest.h>

#include "CoreFoundation/CFStringsFile.h"

namespace {

using namespace std::string_literals;

struct Case {
  const char* name;
  std::string bytes;
  cf::StringsTable expected;
};

TEST(CFStringsFile, KeepsWhatCanBeRead) {
  const Case cases[] = {
      {"empty", "", {}},
      {"comments", "/* a = b; */ // c = d;\n\"a\" /* x */ = /* y */ \"b\" ;", {{u"a", u"b"}}},
      {"escapes",
       R"("a\"\\" = "\n\t\U00e9\101\q";)",
       {{u"a\"\\",
         u"\n\té"
         u"Aq"}}},
      {"plain words", "kKey.Name = value; alone;", {{u"kKey.Name", u"value"}, {u"alone", u"alone"}}},
      {"several lines", "\"a\" = \"one\ntwo\";", {{u"a", u"one\ntwo"}}},
      {"UTF-16",
       "\xFF\xFE"
       "a\0=\0b\0;\0"s,
       {{u"a", u"b"}}},
      {"UTF-8 with a mark", "\xEF\xBB\xBF\"é\" = \"😀\";", {{u"é", u"😀"}}},
      {"broken UTF-8", "\"a\" = \"\xFF\";", {{u"a", u"\uFFFD"}}},
      {"an entry without an end", "\"a\" = \"b\"\n\"c\" = \"d\";", {{u"c", u"d"}}},
      {"an entry without a value", "\"a\" = ;\n\"c\" = \"d\";", {{u"c", u"d"}}},
      {"a text without an end", "\"c\" = \"d\"; \"a\" = \"b", {{u"c", u"d"}}},
      {"a comment without an end", "c = d; /* a = b;", {{u"c", u"d"}}},
      {"an escape at the end", "\"a\" = \"\\", {}},
      {"signs", "= ; == ;;; \\ @ \"c\" = \"d\";\nc = e;", {{u"c", u"e"}}}};
  for (const Case& test : cases) {
    SCOPED_TRACE(test.name);
    EXPECT_EQ(cf::ParseStrings(test.bytes), test.expected);
  }
}

}  // namespace
