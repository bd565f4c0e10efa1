#include "GLogger.h"

#include <vector>

#include "GDateTime.h"
#include "GScopedLock.h"
#include "GStringUtils.h"
#include "GThread.h"

namespace {

// Who is inside the appenders now; null for nobody.
struct CurrentLogThread {
  GMutex mutex;
  void* thread = nullptr;
};

CurrentLogThread& GetCurrentLogThread() {
  static auto& sCurrentLogThread = *new CurrentLogThread;
  return sCurrentLogThread;
}

bool IsCallingThreadLogging() {
  CurrentLogThread& current = GetCurrentLogThread();
  const GScopedLock lock(current.mutex, true, new GBlockingLockStrategy);
  return !lock.IsLocked() || GThread::AreThreadsEqual(current.thread, GThread::GetCurrentThread());
}

bool SetCurrentLogThread(void* thread) {
  CurrentLogThread& current = GetCurrentLogThread();
  const GScopedLock lock(current.mutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) return false;
  current.thread = thread;
  return true;
}

// Formats into the shared buffer, which only the holder of the appenders mutex may touch.
__attribute__((format(printf, 1, 0))) const char* FormatIntoSharedBuffer(const char* format, va_list args) {
  constexpr std::size_t kBufferStep = 256;
  static auto& sStringBuffer = *new std::vector<char>(kBufferStep);
  va_list again;
  va_copy(again, args);
  const int length = GStringUtils::OSvsnprintf(sStringBuffer.data(), sStringBuffer.size(), format, args);
  const char* text = length < 0 ? nullptr : sStringBuffer.data();
  if (text != nullptr && static_cast<std::size_t>(length) >= sStringBuffer.size()) {
    sStringBuffer.resize(static_cast<std::size_t>(length) / kBufferStep * kBufferStep + kBufferStep);
    const int written = GStringUtils::OSvsnprintf(sStringBuffer.data(), sStringBuffer.size(), format, again);
    text = written < 0 ? nullptr : sStringBuffer.data();
  }
  va_end(again);
  return text;
}

}  // namespace

GLogger::GLogger() {
  ResetAllLoggingLevels();
}

GLogger::~GLogger() {
  RemoveAllAppenders();
}

void GLogger::Log(const std::string& identifier, const LoggingLevel& level, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Logv(identifier, level, format, args);
  va_end(args);
}

void GLogger::LogError(const std::string& identifier, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Logv(identifier, eError, format, args);
  va_end(args);
}

void GLogger::LogWarning(const std::string& identifier, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Logv(identifier, eWarning, format, args);
  va_end(args);
}

void GLogger::LogInfo(const std::string& identifier, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Logv(identifier, eInfo, format, args);
  va_end(args);
}

void GLogger::LogDebug(const std::string& identifier, const char* format, ...) {
  va_list args;
  va_start(args, format);
  Logv(identifier, eDebug, format, args);
  va_end(args);
}

void GLogger::Logv(const std::string& identifier, const LoggingLevel& level, const char* format,
                   va_list args) {
  if (!ShouldLog(identifier, level)) return;
  LogvString("[" + identifier + "]\t[" + LevelToString(level) + "]\t" + format, args);
}

bool GLogger::ShouldLog(const std::string& identifier, const LoggingLevel& level) {
  if (level == eNone || level == eUnset) return false;
  const LoggingLevel effective = GetLoggingLevelForIdentifier(identifier);
  if (effective == eNone || effective == eUnset) return false;
  return effective >= level;
}

GLogger::LoggingLevel GLogger::GetLoggingLevelForIdentifier(const std::string& identifier) {
  const GScopedLock lock(mLevelsMutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) return eUnset;
  auto entry = mLevels.find(GStringUtils::OSToLowerCase(identifier));
  if (entry == mLevels.end()) entry = mLevels.find(mDefaultIdentifier);
  return entry == mLevels.end() ? eUnset : entry->second;
}

void GLogger::ResetAllLoggingLevels() {
  const GScopedLock lock(mLevelsMutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) return;
  mLevels.clear();
  mLevels[mDefaultIdentifier] = eWarning;
}

void GLogger::RemoveAllAppenders() {
  const GScopedLock lock(mAppendersMutex, true, new GBlockingLockStrategy);
  if (lock.IsLocked()) mAppenders.clear();
}

std::string GLogger::LevelToString(LoggingLevel level) {
  switch (level) {
    case eNone:
      return "None";
    case eError:
      return "Error";
    case eWarning:
      return "Warning";
    case eInfo:
      return "Info";
    case eDebug:
      return "Debug";
    default:
      return "";
  }
}

void GLogger::LogvString(const std::string& format, va_list args) {
  if (IsCallingThreadLogging()) return;
  const GScopedLock lock(mAppendersMutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked() || !SetCurrentLogThread(GThread::GetCurrentThread())) return;
  try {
    if (!mAppenders.empty()) AppendLine(format, args);
  } catch (...) {  // a line that can't be written is lost; the thread must not stay marked for it
  }
  SetCurrentLogThread(nullptr);
}

void GLogger::AppendLine(const std::string& format, va_list args) {
  const char* text = FormatIntoSharedBuffer(format.c_str(), args);
  if (text == nullptr) return;
  const std::string line = "[" + GDateTime().GetAsISO8601String(true) + "]\t" + text + "\n";
  for (const auto& [name, appender] : mAppenders) appender->Append(line);
}
