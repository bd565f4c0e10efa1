#pragma once

/// Puts a fake in place of one of the operating system's interfaces until the end of the scope:
/// `ScopedReplacement<platform::Clock> replaced(clock);`
template <typename Interface>
class ScopedReplacement {
 public:
  explicit ScopedReplacement(Interface& fake) : before_(Interface::Replace(&fake)) {}
  ~ScopedReplacement() { Interface::Replace(before_); }
  ScopedReplacement(const ScopedReplacement&) = delete;
  ScopedReplacement& operator=(const ScopedReplacement&) = delete;

 private:
  Interface* before_;
};
