#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "support/FakeLoom.h"
#include "support/PrivateHome.h"

/// The staged client library at a Kiln in a session of its own, bound so that calls are counted; the facade,
/// which is fetched before each, left out. The plug-in's shared loader stands on it as long as it exists. One
/// at a time.
class CountedLibrary {
 public:
  CountedLibrary() {
    m_home.WriteLaunchInformation(HORNBEAM_STAGE "/lib/hornbeam/Kiln/Kiln");
    m_loom.SetPreference("EnablePlugin", 1);
    sLibrary = ShuttleLoader::GetSharedInstance();
    std::string location;
    std::string version;
    int missing = 0;
    if (!sLibrary->IsLoaded(&location, &version, &missing)) return;
    m_counting = std::make_unique<ShuttleLoader>(Table(), location, version);
    ShuttleLoader::ReplaceSharedInstanceForTesting(m_counting.get());
    HornbeamGlobals::IdentifyPluginHostApp(CFSTR("InDesignCC2020"));
  }
  ~CountedLibrary() {
    if (m_counting) ShuttleLoader::ReplaceSharedInstanceForTesting(sLibrary);
  }
  CountedLibrary(const CountedLibrary&) = delete;
  CountedLibrary& operator=(const CountedLibrary&) = delete;

  /// False before the target "stage" has been built.
  bool IsLoaded() const { return m_counting != nullptr; }

  static inline int64_t sCalls = 0;

 private:
  template <auto kEntry>
  struct Counted;

  template <typename Result, typename... Parameters, Result (*ShuttleFunctions::*kEntry)(Parameters...)>
  struct Counted<kEntry> {
    static Result Call(Parameters... parameters) {
      ++sCalls;
      return (sLibrary->*kEntry)(parameters...);
    }
  };

  static ShuttleFunctions Table() {
    ShuttleFunctions table;
#define AGENT_ENTRY(name, ...) table.pf##name = &Counted<&ShuttleFunctions::pf##name>::Call;
#define FLAG_ENTRY(name) table.pf##name = &Counted<&ShuttleFunctions::pf##name>::Call;
#define COLUMN_ENTRY(name) table.pf##name = &Counted<&ShuttleFunctions::pf##name>::Call;
#define PLAIN_ENTRY(result, name, ...) table.pf##name = &Counted<&ShuttleFunctions::pf##name>::Call;
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
    table.pfGetPluginFacadeInstance = sLibrary->pfGetPluginFacadeInstance;
    return table;
  }

  static inline ShuttleLoader* sLibrary = nullptr;
  const PrivateHome m_home;
  FakeLoom m_loom;
  std::unique_ptr<ShuttleLoader> m_counting;
};
