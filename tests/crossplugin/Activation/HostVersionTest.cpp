#include <gtest/gtest.h>

#include "Activation/HostVersion.h"

namespace {

TEST(HostVersionTest, FieldsCompareAsNumbers) {
  struct Case {
    const char* a;
    const char* b;
    int expected;
  };
  for (const Case& row :
       {Case{"15.0.2", "15.0.10", -1}, Case{"15.0", "15", 0}, Case{"15", "15.0.0.0", 0},
        Case{"16", "15.9", 1}, Case{"", "", 0}, Case{"", "0.1", -1}, Case{"15..1", "15.0.1", 0},
        Case{"007", "7", 0}, Case{"1a", "59", 0}, Case{"1.", "1", 0}}) {
    EXPECT_EQ(row.expected, HostVersion::CompareVersionStrings(row.a, row.b)) << row.a << " " << row.b;
    EXPECT_EQ(-row.expected, HostVersion::CompareVersionStrings(row.b, row.a)) << row.b << " " << row.a;
  }
  EXPECT_EQ(0, HostVersion::CompareVersionStrings(std::string(100000, '9'), std::string(100000, '9')));
}

TEST(HostVersionTest, PrefixDecidesAlone) {
  struct Case {
    const char* prefix;
    const char* minimum;
    const char* version;
    bool expected;
  };
  for (const Case& row :
       {Case{"15", "16", "15.1", true}, Case{"15", "", "16.0", false}, Case{"15", "1", "1.5", false},
        Case{"15", "", "", false}, Case{"", "15.0.2", "15.0.10", true}, Case{"", "15.0.2", "15.0.2", true},
        Case{"", "15.0.2", "15.0.1", false}, Case{"", "", "", true}}) {
    EXPECT_EQ(row.expected, HostVersion::IsCompatible(row.prefix, row.minimum, row.version))
        << row.prefix << " " << row.minimum << " " << row.version;
  }
}

}  // namespace
