#pragma once

/// Thread handles as plain pointers, so that "no thread" is null.
class GThread {
 public:
  GThread() = delete;

  /// The calling thread; never null.
  static void* GetCurrentThread();

  /// Two nulls are equal; a null and a live handle are not.
  static bool AreThreadsEqual(void* a, void* b);
};
