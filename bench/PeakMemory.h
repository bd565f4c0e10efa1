#pragma once

#include <malloc.h>
#include <unistd.h>

#include <fstream>
#include <string>

/// How much memory of its own the process takes at most, beyond what it has when the object is made.
class PeakMemory {
 public:
  PeakMemory() {
    malloc_trim(0);
    std::ofstream("/proc/self/clear_refs") << 5;  // the peak starts anew
    m_before = Field("VmRSS:");
  }

  double MiB() const { return (Field("VmHWM:") - m_before) / 1024; }

 private:
  static double Field(const std::string& name) {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word) {
      if (word != name) continue;
      double kibibytes = 0;
      status >> kibibytes;
      return kibibytes;
    }
    return 0;
  }

  double m_before = 0;
};
