#pragma once

/// The opening and the closing trace line of one operation, paired on every path, exceptions included.
///
///     OperationTrace trace("IsRunning", "Entering %s()", "IsRunning");
///     ...
///     trace.Exiting("Exiting %s(); return code %d", "IsRunning", result);
///
/// Lines between them go through OutputIndentedAndFormattedString(0, ...). One thread.
class OperationTrace {
 public:
  /// Writes the opening line.
  ///
  /// \param operation  The operation's name; must outlive the object.
  OperationTrace(const char* operation, const char* format, ...) __attribute__((format(printf, 3, 4)));
  OperationTrace(const OperationTrace&) = delete;
  OperationTrace& operator=(const OperationTrace&) = delete;

  /// Writes "Exiting %s()" with the operation's name, unless Exiting() has written the closing line.
  ~OperationTrace();

  /// Writes the closing line; only the first call does.
  void Exiting(const char* format, ...) __attribute__((format(printf, 2, 3)));

 private:
  const char* m_operation;
  bool m_isOpen = true;
};
