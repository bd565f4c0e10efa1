#pragma once

#include <string>

#include "GErrorCodes.h"
#include "GLogger.h"

/// The name of a code, as "GFileSystem::kFileNotFound"; "Unknown error code" for a number nobody uses.
/// Thread: any; it takes a lock, so the trace never calls it.
std::string GetNameForErrorCode(TErrCode code);

namespace GErrors {

/// Logs a failed check in the one form that all checks share:
/// "Error='%s'  File='%s'  Line=%d  Expression='%s'  Code='%u'  ". A code of 0 logs nothing.
///
/// \param file  As __FILE__ gives it; the extension is cut.
/// \return the code, so that a check can stand in an assignment.
TErrCode Report(TErrCode code, const char* identifier, GLogger::LoggingLevel level, const char* expression,
                const char* file, int line);

}  // namespace GErrors

/// The value of an expression that yields an error code; a code other than 0 is logged with the text of the
/// expression. Nothing is thrown: the caller decides what follows.
///
///     const TErrCode status = GCHECK(file.Open(spec, GFile::eRead), "FileSystem", GLogger::eError);
#define GCHECK(expression, identifier, level) \
  GErrors::Report((expression), identifier, level, #expression, __FILE__, __LINE__)

/// `code`, logged with the text of the condition, when the condition that marks a failure holds; else 0.
#define GFAIL_IF(condition, code, identifier, level) \
  ((condition) ? GErrors::Report((code), identifier, level, #condition, __FILE__, __LINE__) : TErrCode{0})

/// `code`, logged as "!(condition)", unless the condition that must hold does; else 0.
#define GREQUIRE(condition, code, identifier, level) \
  ((condition) ? TErrCode{0}                         \
               : GErrors::Report((code), identifier, level, "!(" #condition ")", __FILE__, __LINE__))
