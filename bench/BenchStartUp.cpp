// The plug-in's start-up at an agent that runs already, in a session of its own: from looking for the font
// manager to being registered with it and having a workgroup. "calls" is how many calls of the client library
// that takes.
//
// Links: hornbeam_crossplugin
#include <benchmark/benchmark.h>

#include "CountedLibrary.h"
#include "FontManagerInterface/FontManagerInterface.h"

namespace {

void StartUp(benchmark::State& state) {
  const CountedLibrary library;
  if (!library.IsLoaded()) return state.SkipWithError("Build the target \"stage\" first");
  int64_t calls = 0;
  for (auto _ : state) {
    CountedLibrary::sCalls = 0;
    FontManagerInterface::CompatibleFontManagerIsRunning(nullptr);
    state.PauseTiming();
    calls += CountedLibrary::sCalls;
    FontManagerInterface::OnHostAppShuttingDown();
    state.ResumeTiming();
  }
  state.counters["calls"] =
      benchmark::Counter(static_cast<double>(calls), benchmark::Counter::kAvgIterations);
}

BENCHMARK(StartUp)->Unit(benchmark::kMicrosecond)->Iterations(100);

}  // namespace
