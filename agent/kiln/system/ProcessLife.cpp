#include "kiln/system/ProcessLife.h"

#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

namespace kiln {

uint64_t ProcessStartTime(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  if (!std::getline(file, line)) return 0;
  // The second field is the name in brackets, and may hold blanks and brackets itself.
  const size_t nameEnd = line.rfind(')');
  if (nameEnd == std::string::npos) return 0;
  std::istringstream fields(line.substr(nameEnd + 1));
  std::string state;
  fields >> state;
  if (state == "Z" || state == "X") return 0;
  constexpr int kFieldsBeforeStart = 18;  // fields 4 to 21 of proc(5)
  std::string skipped;
  for (int i = 0; i < kFieldsBeforeStart; ++i) fields >> skipped;
  uint64_t start = 0;
  fields >> start;
  return fields ? start : 0;
}

}  // namespace kiln
