#pragma once

/// Names a log file to the agent's library and writes one banner with the local time to it. The folder of the
/// file is the library's decision. Does nothing when the library has no log entry. Main thread.
///
/// \param logFileName  The file's name without a folder, in UTF-8.
void InitLogging(const char* logFileName);
