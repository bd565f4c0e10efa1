#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "Memory/CFVector.h"
#include "XCFUtils.h"
#include "client/LibraryInterface.h"
#include "client/PluginInterface.h"
#include "support/FontBuilder.h"
#include "support/PrivateHome.h"
#include "support/ProgramRun.h"

/// What the benchmarks of a running Kiln share: its home, fonts to fill it with, and the figures they report.

using Clock = std::chrono::steady_clock;

inline double MillisecondsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

/// Fonts are told by number; eight make a family.
inline std::string FamilyOf(int font) {
  return "Family" + std::to_string(font / 8);
}
inline std::string StyleOf(int font) {
  return "Style" + std::to_string(font % 8);
}
inline std::string NameOf(int font) {
  return FamilyOf(font) + "-" + StyleOf(font);
}

inline void WriteFonts(const TemporaryFolder& folder, int count) {
  for (int i = 0; i < count; ++i) {
    FontBuilder font;
    font.postScriptName = NameOf(i);
    font.family = FamilyOf(i);
    font.style = StyleOf(i);
    folder.Write(font.postScriptName + ".ttf", font.TrueType());
  }
}

/// A home with a Kiln in it, and this process as its client.
class KilnSession {
 public:
  static constexpr const char* kProgram = HORNBEAM_STAGE "/lib/hornbeam/Kiln/Kiln";

  KilnSession() {
    m_home.WriteLaunchInformation(kProgram);
    StartKiln();
  }
  ~KilnSession() { EndKiln(); }

  static FacadeRef Facade() { return GetPluginFacadeInstance(); }

  // The first answer is the end of the start-up.
  void StartKiln() {
    m_kiln = std::make_unique<ProgramRun>(kProgram, std::vector<std::string>{});
    InitAppInstance(Facade(), 4, 0);
  }
  void EndKiln() {
    ResetPluginFacadeInstance();
    m_kiln->Signal(SIGTERM);
    m_kiln->Wait();
  }

  bool AddFolder(const std::string& folder) const {
    const auto results = MakeArray();
    const std::vector<std::string> paths{folder};
    return KilnLibraryAddPaths(Facade(), 0, ToCFArray(paths).get(), nullptr, nullptr, results.get()) == 0;
  }

  unsigned long RequestCount() const {
    const RetainPtr<CFMutableDictionaryRef> status = adoptCF(CFDictionaryCreateMutable(
        nullptr, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    KilnLibraryStatus(Facade(), status.get());
    return XCFUtils::GetULongFromDictString(status.get(), CFSTR("requestCount"));
  }

  const TemporaryFolder& Folder() const { return m_home.Folder(); }

 private:
  const PrivateHome m_home;
  std::unique_ptr<ProgramRun> m_kiln;
};

/// Over all rounds of a row.
inline void ReportTimes(benchmark::State& state, std::vector<double> milliseconds) {
  if (milliseconds.empty()) return;
  std::sort(milliseconds.begin(), milliseconds.end());
  state.counters["median_ms"] = milliseconds[milliseconds.size() / 2];
  state.counters["p99_ms"] = milliseconds[(milliseconds.size() * 99) / 100];
}
