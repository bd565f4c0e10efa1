// Drains queued notifications, as the main thread does after a burst of the agent's: time should be linear in
// their number. A drain handles a limited number, so the larger rows take several ticks.
//
// Links: hornbeam_crossplugin
#include <benchmark/benchmark.h>

#include "CoreAgentInterface/CoreAgentPluginNotification.h"
#include "CoreAgentInterface/CoreAgentPluginNotificationQueue.h"
#include "support/FakeFontManager.h"

namespace {

void Drain(benchmark::State& state) {
  const FakeFontManager manager;
  int64_t ticks = 0;
  for (auto _ : state) {
    state.PauseTiming();
    CoreAgentPluginNotificationQueue queue;
    for (unsigned int fontID = 1; fontID <= state.range(0); ++fontID) {
      queue.EnqueueNotification(
          CoreAgentPluginNotification::Create(PluginInterface::kFontActivated, &fontID));
    }
    state.ResumeTiming();
    while (queue.ProcessAllNotifications() > 0) ++ticks;
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["ticks"] =
      benchmark::Counter(static_cast<double>(ticks), benchmark::Counter::kAvgIterations);
  state.SetComplexityN(state.range(0));
}

// On the library's thread: from the event to its place in the queue.
void Enqueue(benchmark::State& state) {
  CoreAgentPluginNotificationQueue queue;
  unsigned int fontID = 7;
  for (auto _ : state) {
    queue.EnqueueNotification(CoreAgentPluginNotification::Create(PluginInterface::kFontActivated, &fontID));
  }
  state.SetItemsProcessed(state.iterations());
}

BENCHMARK(Drain)
    ->RangeMultiplier(10)
    ->Range(1'000, 1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity(benchmark::oN);
BENCHMARK(Enqueue)->Iterations(100'000);

}  // namespace
