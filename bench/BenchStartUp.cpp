// The plug-in's start-up at an agent that runs already, in a session of its own: from looking for the font
// manager to being registered with it and having a workgroup. "calls" is how many calls of the client library
// that takes.
//
// Links: hornbeam_crossplugin
#include <benchmark/benchmark.h>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "support/FakeLoom.h"
#include "support/PrivateHome.h"

namespace {

const ShuttleFunctions* sLibrary = nullptr;
int64_t sCalls = 0;

template <auto kEntry>
struct Counted;

template <typename Result, typename... Parameters, Result (*ShuttleFunctions::*kEntry)(Parameters...)>
struct Counted<kEntry> {
  static Result Call(Parameters... parameters) {
    ++sCalls;
    return (sLibrary->*kEntry)(parameters...);
  }
};

// The library with every call counted, apart from the facade, which is fetched before each.
ShuttleFunctions CountingTable() {
  ShuttleFunctions table;
#define AGENT_ENTRY(name, ...) table.pf##name = &Counted<&ShuttleFunctions::pf##name>::Call;
#define FLAG_ENTRY(name) table.pf##name = &Counted<&ShuttleFunctions::pf##name>::Call;
#define COLUMN_ENTRY(name) table.pf##name = &Counted<&ShuttleFunctions::pf##name>::Call;
#define PLAIN_ENTRY(result, name, ...) table.pf##name = &Counted<&ShuttleFunctions::pf##name>::Call;
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
  table.pfGetPluginFacadeInstance = sLibrary->pfGetPluginFacadeInstance;
  return table;
}

void StartUp(benchmark::State& state) {
  const PrivateHome home;
  home.WriteLaunchInformation(HORNBEAM_STAGE "/lib/hornbeam/Kiln/Kiln");
  FakeLoom loom;
  loom.SetPreference("EnablePlugin", 1);
  ShuttleLoader* library = ShuttleLoader::GetSharedInstance();
  std::string location;
  std::string version;
  int missing = 0;
  if (!library->IsLoaded(&location, &version, &missing)) {
    state.SkipWithError("Build the target \"stage\" first");
    return;
  }
  sLibrary = library;
  ShuttleLoader counting(CountingTable(), location, version);
  ShuttleLoader::ReplaceSharedInstanceForTesting(&counting);
  HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesignCC2020"));

  for (auto _ : state) {
    FontManagerInterface::CompatibleFontManagerIsRunning(nullptr);
    state.PauseTiming();
    const int64_t calls = sCalls;
    FontManagerInterface::OnHostAppShuttingDown();
    sCalls = calls;
    state.ResumeTiming();
  }
  state.counters["calls"] =
      benchmark::Counter(static_cast<double>(sCalls), benchmark::Counter::kAvgIterations);
  ShuttleLoader::ReplaceSharedInstanceForTesting(library);
}

BENCHMARK(StartUp)->Unit(benchmark::kMicrosecond)->Iterations(100);

}  // namespace
