#include "CoreAgentInterface/Shuttle/AgentLog.h"

#include <ctime>
#include <string>

#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"

namespace {

std::string LocalTime() {
  const time_t now = time(nullptr);
  char text[64] = "\n";  // ctime_r() wants 26
  ctime_r(&now, text);
  return text;
}

}  // namespace

void InitLogging(const char* logFileName) {
  const ShuttleLoader* shuttle = ShuttleLoader::GetSharedInstance();
  if (shuttle->pfBeginLogging == nullptr) return;
  shuttle->BeginLogging(logFileName);
  const std::string banner = "\n=======\n" + LocalTime() + "=======\n";
  shuttle->Log(banner.c_str());
}
