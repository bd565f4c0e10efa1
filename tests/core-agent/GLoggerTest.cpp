#include <gtest/gtest.h>

#include "GErrors.h"
#include "GFile.h"
#include "GLogger.h"
#include "GLoggerTestAccess.h"

TEST(GLogger, LetsThroughWarningsAndErrorsAtFirst) {
  GLogger& logger = *GLogger::GetSharedInstance();
  EXPECT_TRUE(logger.ShouldLog("anything", GLogger::eError));
  EXPECT_TRUE(logger.ShouldLog("anything", GLogger::eWarning));
  EXPECT_FALSE(logger.ShouldLog("anything", GLogger::eInfo));
  EXPECT_FALSE(logger.ShouldLog("anything", GLogger::eNone));
  EXPECT_FALSE(logger.ShouldLog("anything", GLogger::eUnset));
}

TEST(GLogger, KnowsIdentifiersWithoutCaseAndSilencesThem) {
  const LogCapture log;
  GLogger& logger = *GLogger::GetSharedInstance();
  GLoggerTestAccess::SetLevel("quiet", GLogger::eNone);
  GLoggerTestAccess::SetLevel("unset", GLogger::eUnset);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("DEFAULT"), GLogger::eDebug);
  EXPECT_EQ(logger.GetLoggingLevelForIdentifier("Quiet"), GLogger::eNone);
  EXPECT_FALSE(logger.ShouldLog("quiet", GLogger::eError));
  EXPECT_FALSE(logger.ShouldLog("unset", GLogger::eError));
  EXPECT_TRUE(logger.ShouldLog("other", GLogger::eDebug));
}

TEST(GLogger, ComposesOneLineWithTimeIdentifierAndLevel) {
  LogCapture log;
  GLogger::GetSharedInstance()->LogInfo("Fonts", "%d of %s", 3, "four");
  ASSERT_EQ(log.lines.size(), 1u);
  EXPECT_EQ(log.lines[0].substr(log.lines[0].find(']')), "]\t[Fonts]\t[Info]\t3 of four\n");
}

TEST(GLogger, KeepsTextOfAnyLengthWhole) {
  LogCapture log;
  for (const std::size_t length : {200u, 241u, 256u, 100'000u}) {
    GLogger::GetSharedInstance()->LogError("x", "%s|%d", std::string(length, 'a').c_str(), 7);
    EXPECT_TRUE(log.lines.back().ends_with(std::string(length, 'a') + "|7\n")) << length;
  }
}

TEST(GLogger, DropsWhatAnAppenderLogsItself) {
  LogCapture log;
  log.whileAppending = [] { GLogger::GetSharedInstance()->LogError("x", "from inside"); };
  GLogger::GetSharedInstance()->LogError("x", "outside");
  log.whileAppending = [] { throw 1; };
  GLogger::GetSharedInstance()->LogError("x", "thrown at");
  log.whileAppending = [] {};
  GLogger::GetSharedInstance()->LogError("x", "after");
  EXPECT_EQ(log.lines.size(), 3u);
  EXPECT_FALSE(log.Contains("from inside"));
}

TEST(GErrors, NamesEveryCode) {
  const struct {
    TErrCode code;
    const char* name;
  } kCases[] = {
      {0, "CoreErrorCodes::kSuccess"},
      {0x15000000, "CoreErrorCodes::kUnknownError"},
      {0x0100100C, "GLockable::kLockBusyErr"},
      {0x02001005, "GFileSystem::kDirectoryNotFound"},
      {0x01001009, "GIPCReceiver::kInvalidName"},
      {0x0100100A, "GIPCSender::kInvalidName"},
      {0x0200200D, "GAgentIF::kShutdown"},
      {0x0500400C, "GOspreyAssetManager::kLicenseComplianceViolation"},
      {0x07004005, "GFontToolResults::kFontAlreadyInDatabase"},
      {0x0100400D, "GFontToolResults::kNotAFontFile"},
      {0x0300A002, "GScopedXMPFile::kXMPError"},
      {0x0B000000, "Unknown error code"},
      {0x02004005, "Unknown error code"},
      {0xFFFFFFFF, "Unknown error code"},
  };
  for (const auto& [code, name] : kCases) EXPECT_EQ(GetNameForErrorCode(code), name);
}

TEST(GErrors, ChecksLogTheExpressionAndHandOnTheCode) {
  LogCapture log;
  const bool isBroken = true;
  EXPECT_EQ(GCHECK(CoreErrorCodes::kSuccess, "Miscellaneous", GLogger::eError), 0u);
  EXPECT_TRUE(log.lines.empty());
  EXPECT_EQ(GFAIL_IF(isBroken, TErrCode{GFile::kOpenFailed}, "Miscellaneous", GLogger::eError), 0x02001004u);
  EXPECT_TRUE(
      log.Contains("[Miscellaneous]\t[Error]\tError='GFile::kOpenFailed'  "
                   "File='tests/core-agent/GLoggerTest'  Line="));
  EXPECT_TRUE(log.Contains("Expression='isBroken'  Code='33558532'  "));
  EXPECT_EQ(GREQUIRE(!isBroken, 5u << 24, "x", GLogger::eError), 0x05000000u);
  EXPECT_TRUE(log.Contains("Expression='!(!isBroken)'"));
}
