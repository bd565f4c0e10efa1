// Questions by name at a library of 50,000 fonts. "median_ms" is the round trip of a client, "empty_ms" that
// of a question which costs the agent nothing, "ratio" the one to the other, and "agent_ms" what is left for
// the agent: it is to stay below 1 ms.
//
// Links: hornbeam_test_support hornbeam_agent_client PkgConfig::FONTCONFIG
#include "KilnSession.h"

namespace {

constexpr int kVeryLargeLibrary = 50'000;

bool HasVeryLargeLibrary() {
  static const KilnSession session;
  static const bool filled = [] {
    const TemporaryFolder fonts;
    WriteFonts(fonts, kVeryLargeLibrary);
    return session.AddFolder(fonts.Path());
  }();
  return filled;
}

double MedianOfEmptyCall() {
  std::vector<double> times;
  for (int i = 0; i < 500; ++i) {
    const Clock::time_point start = Clock::now();
    int loggedIn = 0;
    GetIsLoggedIn(KilnSession::Facade(), &loggedIn);
    times.push_back(MillisecondsSince(start));
  }
  std::nth_element(times.begin(), times.begin() + 250, times.end());
  return times[250];
}

template <typename Query>
void AskByName(benchmark::State& state, std::string (*nameOf)(int), unsigned int expected, Query query) {
  if (!HasVeryLargeLibrary()) return state.SkipWithError("Kiln doesn't add the fonts");
  const double empty = MedianOfEmptyCall();
  std::vector<double> times;
  int font = 0;
  for (auto _ : state) {
    const std::string name = nameOf(font);
    font = (font + 7919) % kVeryLargeLibrary;
    unsigned int ids[64];
    unsigned int count = 0;
    const Clock::time_point start = Clock::now();
    query(KilnSession::Facade(), name.c_str(), nullptr, 0UL, ids, 64UL, &count);
    times.push_back(MillisecondsSince(start));
    state.SetIterationTime(times.back() / 1000);
    if (count != expected) return state.SkipWithError("A font isn't found");
  }
  ReportTimes(state, times);
  const double median = state.counters["median_ms"];
  state.counters["empty_ms"] = empty;
  state.counters["ratio"] = median / empty;
  state.counters["agent_ms"] = median - empty;
}

void ByPostScriptName(benchmark::State& state) {
  AskByName(state, NameOf, 1, GetFontsByPostscriptName);
}
void ByFamilyName(benchmark::State& state) {
  AskByName(state, FamilyOf, 8, GetFontsByFamilyName);
}

BENCHMARK(ByPostScriptName)->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(2000);
BENCHMARK(ByFamilyName)->UseManualTime()->Unit(benchmark::kMicrosecond)->Iterations(2000);

}  // namespace

// Here, since the tests' support has a main() as well.
BENCHMARK_MAIN();
