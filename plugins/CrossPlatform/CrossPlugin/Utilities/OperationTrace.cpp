#include "Utilities/OperationTrace.h"

#include <cstdarg>

#include "Utilities/TraceLine.h"

OperationTrace::OperationTrace(const char* operation, const char* format, ...) : m_operation(operation) {
  va_list args;
  va_start(args, format);
  TraceLineIfHeard(1, format, args);
  va_end(args);
}

OperationTrace::~OperationTrace() {
  Exiting("Exiting %s()", m_operation);
}

void OperationTrace::Exiting(const char* format, ...) {
  if (!m_isOpen) return;
  m_isOpen = false;
  va_list args;
  va_start(args, format);
  TraceLineIfHeard(-1, format, args);
  va_end(args);
}
