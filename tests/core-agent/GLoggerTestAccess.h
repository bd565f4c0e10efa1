#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "GLogger.h"

/// What the logger has no operation for: appenders, levels, and a hold on its locks.
class GLoggerTestAccess {
 public:
  static void AddAppender(const std::string& name, std::unique_ptr<GLogAppender> appender) {
    GLogger::GetSharedInstance()->mAppenders[name] = std::move(appender);
  }
  static void SetLevel(const std::string& identifier, GLogger::LoggingLevel level) {
    GLogger::GetSharedInstance()->mLevels[identifier] = level;
  }
  static GMutex& LevelsMutex() { return GLogger::GetSharedInstance()->mLevelsMutex; }
};

/// Collects the lines of the shared logger, at all levels, for a scope.
class LogCapture {
 public:
  LogCapture() {
    GLoggerTestAccess::SetLevel("default", GLogger::eDebug);
    GLoggerTestAccess::AddAppender("capture", std::make_unique<Appender>(*this));
  }
  ~LogCapture() {
    GLogger::GetSharedInstance()->RemoveAllAppenders();
    GLogger::GetSharedInstance()->ResetAllLoggingLevels();
  }
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  bool Contains(const std::string& text) const {
    for (const std::string& line : lines) {
      if (line.find(text) != line.npos) return true;
    }
    return false;
  }

  std::vector<std::string> lines;
  std::function<void()> whileAppending = [] {};

 private:
  class Appender : public GLogAppender {
   public:
    explicit Appender(LogCapture& capture) : m_capture(capture) {}
    void Append(const std::string& line) override {
      m_capture.lines.push_back(line);
      m_capture.whileAppending();
    }

   private:
    LogCapture& m_capture;
  };
};
