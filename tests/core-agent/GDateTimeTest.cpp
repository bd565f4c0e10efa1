#include <gtest/gtest.h>

#include "GDateTime.h"

TEST(GDateTime, ReadsAndWritesISO8601) {
  const struct {
    const char* text;
    TErrCode status;
    const char* printed;  // with fields not reached as they were: 2001-02-03T04:05:06.007
  } kCases[] = {
      {GDateTime::kFarFuture, 0, "2099-12-31T23:59:59.999Z"},
      {"2020-02-31", 0, "2020-02-31T04:05:06.007Z"},
      {"2020-1-1", 0, "2020-01-01T04:05:06.007Z"},
      {"2020-01-01T10:20", 0, "2020-01-01T10:20:06.007Z"},
      {"2020-01-01T10:20:30+02:00", 0, "2020-01-01T10:20:30.007Z"},
      {"2020-01-01T10:20:30.1500Z", 0, "2020-01-01T10:20:30.999Z"},
      {"2020-01-01T10:20:30.99999999Z", 0, "2020-01-01T10:20:30.999Z"},
      {"2020-13-01", GDateTime::kParsingError, "2020-02-03T04:05:06.007Z"},
      {"2020/01/01", GDateTime::kParsingError, "2020-02-03T04:05:06.007Z"},
      {"2020-01-01 10:20", GDateTime::kParsingError, "2020-01-01T04:05:06.007Z"},
      {"2020-01-01T24:00", GDateTime::kParsingError, "2020-01-01T04:05:06.007Z"},
      {"2020-01-01T10", GDateTime::kParsingError, "2020-01-01T10:05:06.007Z"},
      {"99999999999-01-01", GDateTime::kParsingError, "2001-02-03T04:05:06.007Z"},
      {"", GDateTime::kParsingError, "0000-02-03T04:05:06.007Z"},
  };
  for (const auto& [text, status, printed] : kCases) {
    GDateTime date(SDateTime{2001, 2, 3, 4, 5, 6, 7});
    EXPECT_EQ(date.SetFromISO8601String(text), status) << text;
    EXPECT_EQ(date.GetAsISO8601String(true), printed) << text;
  }
  EXPECT_EQ(GDateTime(std::string("2020-1-2")).GetAsISO8601String(false), "2020-01-02");
}
