#include "Utilities/DebugUtils.h"

#include <fcntl.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Utilities/TraceLine.h"

std::atomic<bool> sLoggingStarted = false;

namespace {

constexpr std::size_t kBufferSize = 0x10000;
constexpr int kIndentWidth = 2;
constexpr int kMaxIndent = 64;

std::atomic<DebugUtils::TraceSink> sSink = nullptr;
std::atomic<void*> sSinkContext = nullptr;
std::atomic<int> sFile = -1;
thread_local int sDepth = 0;

// Null until a name has been set; the environment's name counts then.
std::string*& TraceFilePath() {
  static std::string* sPath = nullptr;
  return sPath;
}

std::string GetTraceFilePath() {
  if (const std::string* path = TraceFilePath()) return *path;
  const char* path = std::getenv("HORNBEAM_TRACE_FILE");
  return path != nullptr ? path : "";
}

// One call a line, to a file opened for appending, so that the lines of several threads don't mix.
void WriteToFile(int file, int depth, char* text) {
  char spaces[kMaxIndent];
  const int indent = std::clamp(depth * kIndentWidth, 0, kMaxIndent);
  std::memset(spaces, ' ', static_cast<std::size_t>(indent));
  char newline = '\n';
  const iovec pieces[] = {
      {spaces, static_cast<std::size_t>(indent)}, {text, std::strlen(text)}, {&newline, 1}};
  if (writev(file, pieces, 3) < 0) return;  // a trace that can't be written is lost
}

}  // namespace

int TraceLine(int indentChange, const char* format, va_list args) {
  static thread_local char sBuffer[kBufferSize];
  const int savedErrno = errno;  // callers trace between a failure and their look at its reason
  const int length = std::vsnprintf(sBuffer, sizeof sBuffer, format, args);
  if (length < 0) sBuffer[0] = '\0';
  // The lines that open and close an operation stand at one depth, those between them one deeper.
  if (indentChange < 0) sDepth = std::max(0, sDepth + indentChange);
  if (const DebugUtils::TraceSink sink = sSink.load()) sink(indentChange, sBuffer, sSinkContext.load());
  if (sLoggingStarted.load(std::memory_order_relaxed)) {
    if (const int file = sFile.load(); file >= 0) WriteToFile(file, sDepth, sBuffer);
  }
  if (indentChange > 0) sDepth += indentChange;
  errno = savedErrno;
  return length;
}

void TraceLineIfHeard(int indentChange, const char* format, va_list args) {
  if (DebugUtils::IsTraceHeard()) {
    TraceLine(indentChange, format, args);
  } else {
    sDepth = std::max(0, sDepth + indentChange);
  }
}

int OutputIndentedAndFormattedString(int indentChange, const char* format, ...) {
  va_list args;
  va_start(args, format);
  const int length = TraceLine(indentChange, format, args);
  va_end(args);
  return length;
}

void StartLogging() {
  const std::string path = GetTraceFilePath();
  int file = -1;
  if (!path.empty()) {
    file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600);
  }
  // Once there is a descriptor it stays, since a thread may be about to write to its number; without a file
  // to name it leads nowhere.
  const int before = sFile.load();
  if (before >= 0 && file < 0) file = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (before < 0) {
    sFile = file;
  } else if (file >= 0) {
    dup3(file, before, O_CLOEXEC);
    close(file);
  }
  sLoggingStarted = true;
}

void StopLogging() {
  sLoggingStarted = false;
}

bool DebugUtils::IsTraceHeard() {
  return sSink.load() != nullptr || (sLoggingStarted.load(std::memory_order_relaxed) && sFile.load() >= 0);
}

void DebugUtils::SetTraceSink(TraceSink sink, void* context) {
  sSink = nullptr;
  sSinkContext = context;
  sSink = sink;
}

void DebugUtils::SetTraceFile(const std::string& path) {
  delete TraceFilePath();
  TraceFilePath() = new std::string(path);
}
