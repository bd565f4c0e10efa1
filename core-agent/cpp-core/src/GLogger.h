#pragma once

#include <cstdarg>
#include <map>
#include <memory>
#include <string>

#include "GLogAppender.h"
#include "GMutex.h"
#include "GSingleton.h"

/// The foundation's log: named identifiers, a level for each, named appenders.
///
/// Life: made on first use, with "default" at warnings and without appenders, so that it computes levels and
/// writes nothing; kept to the end of the process. Identifiers are fixed words, compared without case; a
/// "%" in one would be read as a conversion.
///
/// Thread: any. No failure is reported; a call that can't get its lock does nothing. What a thread logs while
/// it is inside an appender is dropped.
class GLogger : public GSingleton<GLogger> {
 public:
  /// Ordered by verbosity: an identifier at eDebug lets everything through.
  enum LoggingLevel : TSInt32 { eUnset = -1, eNone = 0, eError = 1, eWarning = 2, eInfo = 3, eDebug = 4 };

  ~GLogger();

  void Log(const std::string& identifier, const LoggingLevel& level, const char* format, ...)
      __attribute__((format(printf, 4, 5)));
  void LogError(const std::string& identifier, const char* format, ...) __attribute__((format(printf, 3, 4)));
  void LogWarning(const std::string& identifier, const char* format, ...)
      __attribute__((format(printf, 3, 4)));
  void LogInfo(const std::string& identifier, const char* format, ...) __attribute__((format(printf, 3, 4)));
  void LogDebug(const std::string& identifier, const char* format, ...) __attribute__((format(printf, 3, 4)));

  /// Writes "[identifier]\t[level]\t" and the text when ShouldLog() says so.
  void Logv(const std::string& identifier, const LoggingLevel& level, const char* format, va_list args)
      __attribute__((format(printf, 4, 0)));

  /// False for eNone and eUnset, on either side.
  bool ShouldLog(const std::string& identifier, const LoggingLevel& level);

  /// The identifier's level, else the default identifier's, else eUnset.
  LoggingLevel GetLoggingLevelForIdentifier(const std::string& identifier);

  const std::string& GetDefaultLoggingIdentifier() const { return mDefaultIdentifier; }

  /// Forgets all levels; the default identifier is at eWarning then.
  void ResetAllLoggingLevels();

  void RemoveAllAppenders();

  /// "Error", "Warning", "Info", "Debug", "None"; empty for eUnset and any other value.
  static std::string LevelToString(LoggingLevel level);

 private:
  friend class GSingleton<GLogger>;
  friend class GLoggerTestAccess;  // no operation adds an appender or sets a level yet

  GLogger();
  void LogvString(const std::string& format, va_list args);
  void AppendLine(const std::string& format, va_list args);

  GMutex mAppendersMutex;
  std::map<std::string, std::unique_ptr<GLogAppender>> mAppenders;
  GMutex mLevelsMutex;
  std::map<std::string, LoggingLevel> mLevels;
  std::string mDefaultIdentifier = "default";
};
