// What a connected plug-in costs while nothing happens: the ticks of ten minutes, 100 a second, at an agent
// in a session of its own. "calls_per_minute" is how often the client library is called: the check of the
// agent's health falls due when more than 5 whole seconds have passed, so 10 times, and nothing else is
// asked.
//
// Links: hornbeam_crossplugin
#include <benchmark/benchmark.h>

#include <chrono>

#include "CountedLibrary.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "support/FakeSystem.h"
#include "support/ScopedReplacement.h"

namespace {

constexpr int kMinutes = 10;
constexpr int kTicksPerMinute = 6000;

void IdleMinutes(benchmark::State& state) {
  const CountedLibrary library;
  if (!library.IsLoaded()) return state.SkipWithError("Build the target \"stage\" first");
  FontManagerInterface::CompatibleFontManagerIsRunning(nullptr);
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  if (manager == nullptr || !HornbeamGlobals::ConnectedToCore()) {
    return state.SkipWithError("The plug-in can't connect");
  }
  FakeClock clock;
  const ScopedReplacement<platform::Clock> replaced(clock);
  CountedLibrary::sCalls = 0;
  for (auto _ : state) {
    for (int tick = 0; tick < kMinutes * kTicksPerMinute; ++tick) {
      clock.Sleep(std::chrono::milliseconds(10));
      manager->ProcessNotifications();
    }
  }
  state.counters["calls_per_minute"] = benchmark::Counter(
      static_cast<double>(CountedLibrary::sCalls) / kMinutes, benchmark::Counter::kAvgIterations);
  state.SetItemsProcessed(state.iterations() * kMinutes * kTicksPerMinute);
  FontManagerInterface::OnHostAppShuttingDown();
}

BENCHMARK(IdleMinutes)->Unit(benchmark::kMillisecond)->Iterations(10);

}  // namespace
