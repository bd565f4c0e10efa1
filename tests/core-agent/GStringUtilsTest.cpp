#include <gtest/gtest.h>

#include "GConfigurationFile.h"
#include "GLoggerTestAccess.h"
#include "GStringUtils.h"

using Strings = std::vector<std::string>;

TEST(GStringUtils, CutsTextIntoTokensAndPieces) {
  EXPECT_EQ(GStringUtils::OSTokenizeString("\r\na\r\n\nb\r", "\r\n"), (Strings{"a", "b"}));
  EXPECT_EQ(GStringUtils::OSTokenizeString("", ","), Strings());
  EXPECT_EQ(GStringUtils::Split("a--b----c", "--"), (Strings{"a", "b", "", "c"}));
  EXPECT_EQ(GStringUtils::Split("--", "--"), (Strings{"", ""}));
  EXPECT_EQ(GStringUtils::Split("abc", ""), Strings());
}

TEST(GStringUtils, ReplacesAndStrips) {
  EXPECT_EQ(GStringUtils::StringReplace("aaa", "a", "aa", -1), "aaaaaa");
  EXPECT_EQ(GStringUtils::StringReplace("aaa", "a", "b", 2), "bba");
  EXPECT_EQ(GStringUtils::StringReplace("aaa", "", "b", -1), "aaa");
  EXPECT_EQ(GStringUtils::StripPrecedingString("ababac", "ab"), "ac");
  EXPECT_EQ(GStringUtils::StripTrailingString("///", "/"), "");
  EXPECT_EQ(GStringUtils::StripTrailingString("x", ""), "x");
  EXPECT_EQ(GStringUtils::StripPrecedingString("x", ""), "x");
  EXPECT_EQ(GStringUtils::StripTrailingWhitespace(" Kiln\xC3\xA9 \t\x7F"), " Kiln\xC3\xA9");
  EXPECT_EQ(GStringUtils::StripPrecedingWhitespace(" \n\xC3\xA9t"), "\xC3\xA9t");
  EXPECT_EQ(GStringUtils::FirstNonWhiteSpaceCharacterLoc(" \t "), std::string::npos);
  EXPECT_EQ(GStringUtils::OSToLowerCase("KILN.Path\xC3\x89"), "kiln.path\xC3\x89");
}

TEST(GConfigurationFile, ReadsKeysAndValues) {
  const LogCapture log;
  std::map<std::string, std::string> map{{"kept", "1"}, {"path", "old"}};
  EXPECT_EQ(GConfigurationFile::ParseString("Path = /a=b # comment\r\n# only a comment\r\nnovalue\n= value\n"
                                            "Quoted=\"x\"\rempty=\nKiln.Path = /Applications/Kiln\xC3\xA9",
                                            map),
            0u);
  const std::map<std::string, std::string> expected{{"kept", "1"},
                                                    {"path", "/a=b"},
                                                    {"quoted", "\"x\""},
                                                    {"empty", ""},
                                                    {"kiln.path", "/Applications/Kiln\xC3\xA9"}};
  EXPECT_EQ(map, expected);
  EXPECT_TRUE(log.Contains("Ignoring illegal line in configuration:\nnovalue"));
  EXPECT_TRUE(log.Contains("Ignoring illegal line in configuration:\n= value"));
  EXPECT_TRUE(log.Contains("Configuration key = path, value = /a=b"));
}
