// Illustrator's private data: unpacked, written to the temporary file and read from it, against inflate alone
// on the same stream. "inflate_ratio" is our time in terms of that, "private_MiB" the memory that it took, of
// which 64 are allowed.
//
// Links: hornbeam_crossplugin ZLIB::ZLIB
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <memory>
#include <random>

#include "Parsers/FontParser.h"
#include "PeakMemory.h"
#include "support/FontRecords.h"
#include "support/TemporaryFolder.h"

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Drawing in Illustrator's language: coordinates and operators, which pack to about a third.
std::string MakeArtwork(size_t size) {
  std::mt19937 random(5);
  std::string text = "%!PS-Adobe-3.0 \n%%Creator: Adobe Illustrator(R) 16.0\n%%EndComments\n%%EndProlog\n";
  while (text.size() < size) {
    for (int i = 0; i < 6; ++i)
      text += std::to_string(random() % 600) + "." + std::to_string(random() % 10000) + " ";
    text += "C\n";
  }
  return text;
}

std::string Pack(const std::string& bytes) {
  uLongf size = compressBound(bytes.size());
  std::string data(size, '\0');
  compress(reinterpret_cast<Bytef*>(data.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
           bytes.size());
  data.resize(size);
  return data;
}

double TimeInflate(const std::string& packed) {
  std::string output(size_t{256} * 1024, '\0');
  z_stream stream{};
  inflateInit(&stream);
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data()));
  stream.avail_in = static_cast<uInt>(packed.size());
  const Clock::time_point start = Clock::now();
  int result = Z_OK;
  while (result == Z_OK) {
    stream.next_out = reinterpret_cast<Bytef*>(output.data());
    stream.avail_out = static_cast<uInt>(output.size());
    result = inflate(&stream, Z_SYNC_FLUSH);
  }
  const double seconds = SecondsSince(start);
  inflateEnd(&stream);
  return seconds;
}

std::string FileWith(const std::string& packed) {
  const std::string objects[] = {"<< /Pages 2 0 R >>", "<< /Kids [3 0 R] /Count 1 >>",
                                 "<< /Illustrator 4 0 R >>", "<< /AIPrivateData2 5 0 R >>",
                                 "<< /Length " + std::to_string(packed.size()) +
                                     " /Filter /FlateDecode >>\nstream\n" + packed + "\nendstream"};
  std::string file = "%PDF-1.4\n";
  std::string table = "xref\n0 6\n0000000000 65535 f \n";
  for (size_t i = 0; i < std::size(objects); ++i) {
    char entry[32];
    std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", file.size());
    table += entry;
    file += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
  }
  return file + table + "trailer << /Root 1 0 R >>\nstartxref\n" + std::to_string(file.size()) + "\n%%EOF\n";
}

void PrivateData(benchmark::State& state) {
  const TemporaryFolder folder;
  const std::string packed = Pack(MakeArtwork(static_cast<size_t>(state.range(0)) << 20));
  const std::string path = folder.Write("artwork.ai", FileWith(packed));
  const RetainPtr<CFStringRef> name = ToCFString(path);
  double ours = 1e9;
  double inflate = 1e9;
  const PeakMemory memory;
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    const std::unique_ptr<FontParser> parser(
        FontParser::CreateParserWithFile(name.get(), true, FontParser::GetDefaultSystemPathStyle()));
    parser->Parse();
    ours = std::min(ours, SecondsSince(start));
    inflate = std::min(inflate, TimeInflate(packed));
  }
  state.counters["private_MiB"] = memory.MiB();
  state.counters["packed_MB"] = static_cast<double>(packed.size()) / 1e6;
  state.counters["inflate_ratio"] = ours / inflate;
}
BENCHMARK(PrivateData)->Arg(8)->Arg(100)->Unit(benchmark::kMillisecond)->Iterations(5);

// 1.5 GB of zeros, which are given up at 1 GiB.
void Bomb(benchmark::State& state) {
  const TemporaryFolder folder;
  const std::string path = folder.Write("bomb.ai", FileWith(Pack(std::string(1'500'000'000, '\0'))));
  const RetainPtr<CFStringRef> name = ToCFString(path);
  const PeakMemory memory;
  for (auto _ : state) {
    const std::unique_ptr<FontParser> parser(
        FontParser::CreateParserWithFile(name.get(), true, FontParser::GetDefaultSystemPathStyle()));
    parser->Parse();
  }
  state.counters["private_MiB"] = memory.MiB();
}
BENCHMARK(Bomb)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
