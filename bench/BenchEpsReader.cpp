// The EPS reader on a file of 300 MB with fonts in its body, against `grep -c -a '%%'` on the same file in
// the C locale: "of_grep" is the reader's share of grep's time. A file of that size without font comments
// costs its header alone. "private_MiB" is the memory that it took, of which 64 are allowed.
//
// Links: hornbeam_crossplugin
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <fstream>

#include "Memory/CFVector.h"
#include "Parsers/FontParserEPS.h"
#include "PeakMemory.h"
#include "support/TemporaryFolder.h"

namespace {

using Clock = std::chrono::steady_clock;

constexpr size_t kLength = 300'000'000;

enum Body : int64_t { kHexadecimal, kAscii85, kBinary, kNoFonts, kOneName };

// Image data as the kind writes them, about 64 KB.
std::string MakeImage(Body body) {
  static constexpr char kDigits[] = "0123456789abcdef";
  std::string image = "%%BeginData: 65536 Hex Bytes\n";
  unsigned state = 1;
  for (int line = 0; line < 1000; ++line) {
    for (int i = 0; i < 64; ++i) {
      state = state * 1103515245 + 12345;
      const unsigned value = state >> 16;
      image += body == kBinary    ? static_cast<char>(value)
               : body == kAscii85 ? static_cast<char>('!' + value % 85)
                                  : kDigits[value % 16];
    }
    image += '\n';
  }
  return image + "%%EndData\n";
}

/// A file of the kind, made once.
const std::string& FileOf(Body body) {
  static const TemporaryFolder folder;
  static std::string paths[5];
  std::string& path = paths[body];
  if (!path.empty()) return path;
  path = folder.Path(std::to_string(body) + ".eps");
  std::ofstream out(path, std::ios::binary);
  out << "%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 0 0 100 100\n"
      << (body == kNoFonts ? "" : "%%DocumentFonts: (atend)\n") << "%%EndComments\n";
  std::string image = MakeImage(body);
  if (body == kOneName) {
    image = "%%DocumentFontSpecs: <FONTSPEC NAME=\"F\"/>\n";
    while (image.size() < 60000) image += "%%+ <FONTSPEC NAME=\"F\"/>\n";
  }
  const size_t length = body == kOneName ? kLength / 10 : kLength;
  for (int i = 0; static_cast<size_t>(out.tellp()) < length; ++i) {
    out << image << "%ADOBeginSubsetFont: F" << i % 200 << " Initial\n/FontName /Family" << i % 200
        << "-Roman def\n"
        << image.substr(30, 20000) << "\n%ADOEndSubsetFont\n";
  }
  out << "%%Trailer\n%%DocumentFonts: Helvetica\n%%EOF\n";
  return path;
}

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

double TimeOfGrep(const std::string& path) {
  // Written to /dev/null itself, grep would stop at the first match.
  const std::string command = "LC_ALL=C grep -c -a '%%' '" + path + "' | cat >/dev/null";
  double best = 1e9;
  for (int i = 0; i < 5; ++i) {
    const Clock::time_point start = Clock::now();
    if (std::system(command.c_str()) != 0) return 0;
    best = std::min(best, SecondsSince(start));
  }
  return best;
}

void Parse(const std::string& path) {
  FontParserEPS parser(nullptr, ToCFString(path).get(), true);
  parser.Parse();
}

void FontsInTheBody(benchmark::State& state) {
  const std::string& path = FileOf(static_cast<Body>(state.range(0)));
  const double grep = TimeOfGrep(path);
  double best = 1e9;
  const PeakMemory memory;
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    Parse(path);
    best = std::min(best, SecondsSince(start));
  }
  state.counters["grep_ms"] = grep * 1000;
  state.counters["of_grep"] = best / grep;
  state.counters["private_MiB"] = memory.MiB();
}
BENCHMARK(FontsInTheBody)
    ->Arg(kHexadecimal)
    ->Arg(kAscii85)
    ->Arg(kBinary)
    ->MinTime(1)
    ->Unit(benchmark::kMillisecond);

void NoFontComments(benchmark::State& state) {
  const std::string& path = FileOf(kNoFonts);
  for (auto _ : state) Parse(path);
}
BENCHMARK(NoFontComments)->Unit(benchmark::kMillisecond);

// A million specifications of the same font.
void OneNameAgainAndAgain(benchmark::State& state) {
  const std::string& path = FileOf(kOneName);
  const PeakMemory memory;
  for (auto _ : state) Parse(path);
  state.counters["private_MiB"] = memory.MiB();
}
BENCHMARK(OneNameAgainAndAgain)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
