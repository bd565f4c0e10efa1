#include "kiln/reader/FontReaderProgram.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <string_view>

#include "kiln/reader/FontFileReader.h"
#include "kiln/reader/FrameStream.h"
#include "kiln/reader/SystemFontLister.h"

namespace kiln {
namespace {

constexpr rlim_t kMemory = rlim_t{2} << 30;
constexpr rlim_t kFileSize = rlim_t{1} << 30;
constexpr rlim_t kSecondsPerFile = 10;
constexpr rlim_t kSecondsForSystem = 300;

void Limit(__rlimit_resource resource, rlim_t value) {
  rlimit limit{};
  if (getrlimit(resource, &limit) != 0) return;
  limit.rlim_cur = value < limit.rlim_max ? value : limit.rlim_max;
  setrlimit(resource, &limit);
}

void LimitProcess() {
  // An orphan has nobody to answer.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
  Limit(RLIMIT_AS, kMemory);  // sanitizers map terabytes
#endif
  Limit(RLIMIT_FSIZE, kFileSize);
  Limit(RLIMIT_CORE, 0);
  signal(SIGXFSZ, SIG_IGN);  // the write's error is enough
  signal(SIGPIPE, SIG_IGN);
}

void LimitProcessorTime(rlim_t seconds) {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  Limit(RLIMIT_CPU, static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) + 1 + seconds);
}

int AnswerJobs() {
  FontFileReader reader;
  wire::ReaderJob job;
  while (ReadFrame(STDIN_FILENO, job)) {
    LimitProcessorTime(kSecondsPerFile);
    if (!WriteFrame(STDOUT_FILENO, reader.Read(job))) return 1;
  }
  return 0;
}

}  // namespace

int RunFontReader(int argc, char** argv) {
  LimitProcess();
  if (argc == 1) return AnswerJobs();
  if (argc == 3 && std::string_view(argv[1]) == "--system") {
    LimitProcessorTime(kSecondsForSystem);
    return ListSystemFonts(argv[2], STDOUT_FILENO) ? 0 : 1;
  }
  std::fputs("KilnFontReader: reads font files for Kiln; not to be started by hand.\n", stderr);
  return 2;
}

}  // namespace kiln
