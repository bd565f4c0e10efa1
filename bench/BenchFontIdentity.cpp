// Names looked up in bulk against the plain triple walk, filling from a font manager, and the number of
// questions to the agent that a sort costs. "walk_ratio" says how many times longer the plain walk takes.
//
// Links: hornbeam_crossplugin
#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>
#include <unordered_map>

#include "Identity/BestMatch.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/IndexedFontArray.h"
#include "Identity/PostScriptNames.h"
#include "support/FakeClientLibrary.h"
#include "support/FakeFontManager.h"

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string NameOf(int64_t i) {
  return "Family" + std::to_string(i / 8) + "-Style" + std::to_string(i % 8);
}

std::vector<RetainPtr<CFStringRef>> MakeNames(int64_t count) {
  std::vector<RetainPtr<CFStringRef>> names;
  for (int64_t i = 0; i < count; ++i) names.push_back(ToCFString(NameOf(i)));
  return names;
}

// The lookup as its rule reads: a walk a match level, each entry converted and stripped on the way.
bool FindByWalks(CFArrayRef fonts, CFStringRef name) {
  for (int level = 1; level <= 3; ++level) {
    for (CFIndex i = 0; i < CFArrayGetCount(fonts); ++i) {
      const std::string candidate = ToStdString(FontRecord::GetPostScriptName(FontRecord::At(fonts, i)));
      if (GFontToolUtils_DoPostScriptNamesMatch(candidate, ToStdString(name),
                                                static_cast<EMatchLevel>(level))) {
        return true;
      }
    }
  }
  return false;
}

// Measures about fifty of the walks and tells what all of them would take.
class WalkEstimate {
 public:
  explicit WalkEstimate(size_t walks) : step_(std::max<size_t>(1, walks / 50)) {}

  void Walk(CFArrayRef fonts, CFStringRef name) {
    if (count_++ % step_ != 0) return;
    const Clock::time_point start = Clock::now();
    benchmark::DoNotOptimize(FindByWalks(fonts, name));
    seconds_ += SecondsSince(start) * static_cast<double>(step_);
  }
  double seconds() const { return seconds_; }

 private:
  size_t step_;
  size_t count_ = 0;
  double seconds_ = 0;
};

// Each name is looked up among those before it.
double EstimateAdding(const std::vector<RetainPtr<CFStringRef>>& names) {
  WalkEstimate estimate(names.size());
  const auto fonts = MakeArray();
  for (const auto& name : names) {
    estimate.Walk(fonts.get(), name.get());
    CFArrayAppendValue(fonts.get(), adoptCF(GlyphMarkSupport::CreateGlyphMarkDictionary(name.get())).get());
  }
  return estimate.seconds();
}

// Each name of the source is looked up in what the destination has grown to.
double EstimateMerging(CFArrayRef source, CFMutableArrayRef destination) {
  const CFIndex count = CFArrayGetCount(source);
  WalkEstimate estimate(static_cast<size_t>(count));
  IndexedFontArray indexed(destination);
  for (CFIndex i = 0; i < count; ++i) {
    CFDictionaryRef font = FontRecord::At(source, i);
    estimate.Walk(destination, FontRecord::GetPostScriptName(font));
    indexed.MergeRecord(font);
  }
  return estimate.seconds();
}

void AddNames(benchmark::State& state) {
  const auto names = MakeNames(state.range(0));
  double seconds = 0;
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    const auto fonts = MakeArray();
    IndexedFontArray indexed(fonts.get());
    for (const auto& name : names) indexed.AddFont(name.get(), false);
    seconds += SecondsSince(start);
  }
  state.counters["walk_ratio"] = EstimateAdding(names) / (seconds / static_cast<double>(state.iterations()));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(AddNames)->Arg(200)->Arg(2'000)->Arg(20'000)->Unit(benchmark::kMillisecond)->Complexity();

// Of every two records one completes a known font and one is new.
void MergeArrays(benchmark::State& state) {
  const auto names = MakeNames(state.range(0));
  const auto source = MakeArray();
  const auto known = MakeArray();
  for (size_t i = 0; i < names.size(); ++i) {
    const auto record = adoptCF(GlyphMarkSupport::CreateGlyphMarkDictionary(names[i].get()));
    CFArrayAppendValue(known.get(), record.get());
    const auto richer = adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, record.get()));
    XCFUtils::PutStringIntoDict(richer.get(), i % 2 == 0 ? kGM_KindKey : kGM_PostScriptNameKey,
                                "New" + NameOf(static_cast<int64_t>(i)));
    CFArrayAppendValue(source.get(), richer.get());
  }
  double seconds = 0;
  for (auto _ : state) {
    const auto destination = adoptCF(CFArrayCreateMutableCopy(nullptr, 0, known.get()));
    const Clock::time_point start = Clock::now();
    GlyphMarkSupport::MergeFontsIntoFontsArray(source.get(), destination.get());
    state.SetIterationTime(SecondsSince(start));
    seconds += SecondsSince(start);
  }
  state.counters["walk_ratio"] =
      EstimateMerging(source.get(), known.get()) / (seconds / static_cast<double>(state.iterations()));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(MergeArrays)
    ->Arg(100)
    ->Arg(1'000)
    ->Arg(10'000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

// A library that finds a name at once, so that what is measured is ours.
class IndexedManager : public FakeFontManager {
 public:
  explicit IndexedManager(int64_t count) {
    for (int64_t i = 0; i < count; ++i) {
      byName_[NameOf(i)] = AddFont({{kGM_PostScriptNameKey, NameOf(i)}, {kGM_KindKey, "OpenType - PS"}}, 2);
    }
  }
  int CountNamedFonts(std::string name, TypeOfFontName, long, long* outCount, std::string&) override {
    *outCount = byName_.contains(name) ? 1 : 0;
    return 0;
  }
  int GetNamedFontInfo(std::string name, TypeOfFontName, long, long, std::string,
                       FontOrSetInfoRec* outRec) override {
    const Font& font = fonts[byName_.at(name) - 1];
    outRec->databaseID = font.fontID;
    outRec->activationState = font.state;
    outRec->fontInfo = CFDictionaryCreateMutableCopy(nullptr, 0, font.record.get());
    return 0;
  }

 private:
  std::unordered_map<std::string, unsigned int> byName_;
};

// Half of the names carry what a driver put in front, so that half of the entries give way to the true name.
void FillFromTheManager(benchmark::State& state) {
  const FakeClientLibrary library;
  IndexedManager manager(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    const auto fonts = MakeArray();
    for (int64_t i = 0; i < state.range(0); ++i) {
      const std::string name = (i % 2 == 0 ? "ABCDEF+" : "") + NameOf(i);
      CFArrayAppendValue(fonts.get(), MakeFontRecord({{kGM_PostScriptNameKey, name}}).get());
    }
    state.ResumeTiming();
    GlyphMarkSupport::AppendGlyphMarkDataToFonts(fonts.get(), -2, true, false, false);
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(FillFromTheManager)->Arg(200)->Arg(2'000)->Arg(20'000)->Unit(benchmark::kMillisecond)->Complexity();

void SortCandidates(benchmark::State& state) {
  FakeClientLibrary library;
  const double n = static_cast<double>(state.range(0));
  for (auto _ : state) {
    state.PauseTiming();
    library.calls.clear();
    const auto fonts = MakeArray();
    for (int64_t i = 0; i < state.range(0); ++i) {
      CFArrayAppendValue(fonts.get(),
                         MakeFontRecord({{kGM_DatabaseIDKey, std::to_string(i + 1)},
                                         {kGM_VersionKey, std::to_string((i * 7919) % 1000 + 1)}})
                             .get());
    }
    state.ResumeTiming();
    CFArraySortValues(fonts.get(), CFRangeMake(0, state.range(0)), PickBestMatchCallBack, nullptr);
  }
  state.counters["of_n_log2_n"] =
      static_cast<double>(library.CountCalls("GetFontIsActivated")) / (n * std::log2(n));
}
BENCHMARK(SortCandidates)->Arg(16)->Arg(256)->Arg(4096)->Unit(benchmark::kMicrosecond);

}  // namespace
