// Registers fonts with documents and closes the documents again, at the agent and one by one. Time should be
// linear in the number of registrations: the column "per_registration" stays level from row to row.
//
// Links: hornbeam_crossplugin
#include <benchmark/benchmark.h>

#include "Activation/FontActivationTracker.h"
#include "support/FakeFontManager.h"

namespace {

constexpr int kDocuments = 1000;

// A tenth of the fonts is in two documents, as in a studio's work.
uint32_t FontOf(int64_t document, int64_t i, int64_t perDocument) {
  const bool isShared = i % 10 == 0;
  return static_cast<uint32_t>((isShared ? document / 2 : document) * perDocument + i + 1);
}

void RegisterAndClose(benchmark::State& state, bool atTheAgent) {
  const int64_t perDocument = state.range(0) / kDocuments;
  const auto record = MakeMatchedFont("Minion-Regular", 1);
  std::vector<std::string> identifiers;
  for (int i = 0; i < kDocuments; ++i) {
    identifiers.push_back("Brochure.indd/" + FontActivationTracker::GenerateUniqueIdentifier());
  }
  for (auto _ : state) {
    FakeFontManager manager;
    manager.agent = atTheAgent;
    FontActivationTracker tracker(nullptr);
    for (int document = 0; document < kDocuments; ++document) {
      for (int64_t i = 0; i < perDocument; ++i) {
        tracker.RegisterFontWithDocument(record.get(), FontRecord::GetPostScriptName(record.get()),
                                         FontOf(document, i, perDocument), false,
                                         identifiers[static_cast<size_t>(document)], nullptr);
      }
    }
    for (const std::string& identifier : identifiers) {
      tracker.CloseAllFontsForIdentifier(identifier, true, nullptr);
    }
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  state.counters["per_registration"] =
      benchmark::Counter(static_cast<double>(state.iterations() * state.range(0)),
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  state.SetComplexityN(state.range(0));
}

void AtTheAgent(benchmark::State& state) {
  RegisterAndClose(state, true);
}
void OneByOne(benchmark::State& state) {
  RegisterAndClose(state, false);
}

BENCHMARK(AtTheAgent)
    ->RangeMultiplier(10)
    ->Range(10'000, 1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(OneByOne)
    ->RangeMultiplier(10)
    ->Range(10'000, 1'000'000)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

}  // namespace
