#pragma once

#include <atomic>
#include <string>

/// The plug-in's trace: one line at each entry and exit of nearly every operation and at each decision.
///
/// The rule, which every traced operation keeps on all its paths: one opening line ("Entering ...") with an
/// indentChange of 1, one closing line ("Exiting ..." or "... returning %d") with -1, all other lines with 0.
/// OperationTrace.h helps with operations that have many exits. A loop over tokens or bytes isn't traced.
///
/// By default the text goes nowhere. A file takes it while logging is started and one has been named; a sink
/// takes it always.
///
/// Thread: any, signal handlers excepted. No heap and no lock; each thread has a buffer and an indentation of
/// its own.

/// Formats one line; text behind 65,535 bytes is cut.
///
/// \return what vsnprintf() returns: the length of the uncut text, or a negative number.
int OutputIndentedAndFormattedString(int indentChange, const char* format, ...)
    __attribute__((format(printf, 2, 3)));

/// Whether the trace may leave the process.
extern std::atomic<bool> sLoggingStarted;

/// Sets sLoggingStarted and, when a trace file is named, opens it at its end.
void StartLogging();

/// Clears sLoggingStarted. The file stays open, since other threads may be writing to it.
void StopLogging();

namespace DebugUtils {

/// Receives each line, without indentation or newline, on the thread that traces; it must not trace itself.
using TraceSink = void (*)(int indentChange, const char* text, void* context);

/// Whether a sink or a file takes what is traced now. Lines that come by the thousands ask first.
bool IsTraceHeard();

/// Takes the place of the sink before; null ends it. Not while other threads trace.
void SetTraceSink(TraceSink sink, void* context);

/// Names the file that StartLogging() opens; empty for none. At first it is that of the environment variable
/// HORNBEAM_TRACE_FILE.
void SetTraceFile(const std::string& path);

}  // namespace DebugUtils
