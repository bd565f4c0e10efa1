// The agent as its users meet it, in a session of its own: filling the library beside fc-scan on the same
// files, starting with 10,000 fonts in the library, activations until this process sees the font, and the
// number of requests that opening a document costs. "median_ms" and "p99_ms" are over all rounds of a row.
//
// Links: hornbeam_test_support hornbeam_agent_client PkgConfig::FONTCONFIG
#include <benchmark/benchmark.h>
#include <fontconfig/fontconfig.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "KilnSession.h"
#include "client/PluginInterface.h"
#include "support/IdmlFixture.h"

namespace {

constexpr const char* kHornbeam = HORNBEAM_STAGE "/bin/hornbeam";
constexpr int kLargeLibrary = 10'000;

// Fonts as large as the machine's own: what each of them holds, told apart by some bytes at the end, which no
// reader looks at.
bool WriteRealFonts(const TemporaryFolder& folder, int count) {
  std::vector<std::string> files;
  std::error_code error;
  for (const auto& entry : std::filesystem::recursive_directory_iterator("/usr/share/fonts", error)) {
    const std::string extension = entry.path().extension();
    if (extension == ".ttf" || extension == ".otf") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  for (int i = 0; i < count && !files.empty(); ++i) {
    const std::filesystem::path& from = files[static_cast<size_t>(i) % files.size()];
    const std::string to = folder.Path(std::to_string(i) + from.extension().string());
    std::filesystem::copy_file(from, to, error);
    std::ofstream(to, std::ios::app) << "    " << i;
  }
  return !files.empty();
}

// One large library for all rows that want one.
KilnSession& LargeSession() {
  static KilnSession session;
  static const bool filled = [] {
    const TemporaryFolder fonts;
    WriteFonts(fonts, kLargeLibrary);
    return session.AddFolder(fonts.Path());
  }();
  benchmark::DoNotOptimize(filled);
  return session;
}

bool IsVisibleHere(const std::string& postScriptName) {
  const std::unique_ptr<FcPattern, void (*)(FcPattern*)> pattern(FcPatternCreate(), FcPatternDestroy);
  FcPatternAddString(pattern.get(), FC_POSTSCRIPT_NAME,
                     reinterpret_cast<const FcChar8*>(postScriptName.c_str()));
  const std::unique_ptr<FcObjectSet, void (*)(FcObjectSet*)> properties(FcObjectSetBuild(FC_FILE, nullptr),
                                                                        FcObjectSetDestroy);
  const std::unique_ptr<FcFontSet, void (*)(FcFontSet*)> found(
      FcFontList(nullptr, pattern.get(), properties.get()), FcFontSetDestroy);
  return found && found->nfont > 0;
}

// Both read from memory the second time, so both get a first look at the files before.
void AddBesideFcScan(benchmark::State& state, bool real) {
  const TemporaryFolder fonts;
  const int count = static_cast<int>(state.range(0));
  if (!real) WriteFonts(fonts, count);
  if (real && !WriteRealFonts(fonts, count)) return state.SkipWithError("No fonts in /usr/share/fonts");
  const std::string scan = "fc-scan '" + fonts.Path() + "' >/dev/null";
  if (std::system(scan.c_str()) != 0) return state.SkipWithError("fc-scan fails");
  double scanning = 0;
  double adding = 0;
  for (auto _ : state) {
    const Clock::time_point before = Clock::now();
    benchmark::DoNotOptimize(std::system(scan.c_str()));
    scanning += MillisecondsSince(before);
    const KilnSession session;
    const Clock::time_point start = Clock::now();
    if (!session.AddFolder(fonts.Path())) return state.SkipWithError("Kiln doesn't add them");
    const double milliseconds = MillisecondsSince(start);
    adding += milliseconds;
    state.SetIterationTime(milliseconds / 1000);
  }
  state.counters["ratio"] = adding / scanning;
}

void AddBuiltFonts(benchmark::State& state) {
  AddBesideFcScan(state, false);
}
void AddRealFonts(benchmark::State& state) {
  AddBesideFcScan(state, true);
}

void StartWithLargeLibrary(benchmark::State& state) {
  KilnSession& session = LargeSession();
  std::vector<double> times;
  for (auto _ : state) {
    session.EndKiln();
    const Clock::time_point start = Clock::now();
    session.StartKiln();
    times.push_back(MillisecondsSince(start));
    state.SetIterationTime(times.back() / 1000);
  }
  ReportTimes(state, times);
}

// From the call until fontconfig shows the font in this process, each time another font.
void ActivateInLargeLibrary(benchmark::State& state) {
  LargeSession();
  std::vector<double> times;
  int font = 0;
  for (auto _ : state) {
    const std::string name = NameOf(font);
    font += 7;
    unsigned int id = 0;
    unsigned int count = 0;
    GetFontsByPostscriptName(KilnSession::Facade(), name.c_str(), nullptr, 0, &id, 1, &count);
    const Clock::time_point start = Clock::now();
    unsigned int failed = 0;
    unsigned int refused = 0;
    ActivateFonts(KilnSession::Facade(), count, &id, nullptr, 1, 1, 0, 1, 1, &failed, &refused, &failed,
                  &refused);
    if (!IsVisibleHere(name)) return state.SkipWithError("An activated font isn't seen");
    times.push_back(MillisecondsSince(start));
    state.SetIterationTime(times.back() / 1000);
  }
  ReportTimes(state, times);
}

// The host's whole road, as a process of its own: start-up, open, close, quit.
void OpenDocument(benchmark::State& state) {
  const KilnSession& session = LargeSession();
  std::string fonts = "=== Resources/Fonts.xml\n";
  std::string story = "=== Stories/Story_u1.xml\n<ParagraphStyleRange>";
  for (int i = 0; i < state.range(0); ++i) {
    fonts += "<FontFamily Name=\"" + FamilyOf(i) + "-" + StyleOf(i) +
             "\"><Font FontStyleName=\"Regular\" PostScriptName=\"" + NameOf(i) + "\"/></FontFamily>\n";
    story += "<CharacterStyleRange FontStyle=\"Regular\"><Properties><AppliedFont type=\"string\">" +
             NameOf(i) + "</AppliedFont></Properties><Content>A</Content></CharacterStyleRange>\n";
  }
  const std::string document =
      IdmlFixture(fonts + story + "</ParagraphStyleRange>\n").Write(session.Folder().Path("document.idml"));
  const unsigned long before = session.RequestCount();
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    ProgramRun open(kHornbeam, {"open", "--give-back", "--json", document});
    if (open.Wait() != 0) return state.SkipWithError("hornbeam can't open the document");
    state.SetIterationTime(MillisecondsSince(start) / 1000);
  }
  state.counters["requests"] = benchmark::Counter(static_cast<double>(session.RequestCount() - before),
                                                  benchmark::Counter::kAvgIterations);
}

BENCHMARK(AddBuiltFonts)->Arg(2000)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(3);
BENCHMARK(AddRealFonts)->Arg(2000)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(StartWithLargeLibrary)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(OpenDocument)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3);
BENCHMARK(ActivateInLargeLibrary)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(500);

}  // namespace

// Here, since the tests' support has a main() as well.
BENCHMARK_MAIN();
