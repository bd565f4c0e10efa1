#pragma once

/// Sets a flag for a scope, on every way out of it. One thread.
class ScopedFlag {
 public:
  /// \param flag  Must outlive the object.
  explicit ScopedFlag(bool& flag) : m_flag(flag) { m_flag = true; }
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;
  ~ScopedFlag() { m_flag = false; }

 private:
  bool& m_flag;
};
