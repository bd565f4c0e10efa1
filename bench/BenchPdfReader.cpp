// The fonts of a PDF of 200 MB and of many small ones, against pdffonts and "mutool info", where they are
// installed, on the same warm files; and the large one with cold caches, against reading it from end to end.
//
// "pdffonts_ratio" and "mutool_ratio" say how many times longer those programs take, "read_share" which part
// of the file was read, "cat_ratio" how our time compares with that of "cat", "private_MiB" what memory it
// took, of which 64 are allowed.
//
// There are two large files: 0 is a catalogue whose pages share their fonts and are full of placed graphics,
// 1 was put together of pages that each bring fonts of their own. What the others need grows with graphics
// and fonts, what we need with the dictionaries of pages and fonts.
//
// Links: hornbeam_crossplugin
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>

#include "Parsers/FontParserPDF.h"
#include "PeakMemory.h"
#include "support/FontRecords.h"
#include "support/TemporaryFolder.h"

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Writes a file of pages with placed graphics, and with fonts of the first page or of their own.
class PdfWriter {
 public:
  PdfWriter(const std::string& path, int pages, int fontsOfAPage, bool bShared, int formsOfAPage,
            size_t contentSize)
      : m_out(path, std::ios::binary) {
    Write("%PDF-1.4\n");
    Begin(1) << "<< /Type /Catalog /Pages 2 0 R >>";
    End();
    const int perPage = 3 + formsOfAPage + 4 * fontsOfAPage;
    std::string kids;
    for (int i = 0; i < pages; ++i) kids += std::to_string(3 + i * perPage) + " 0 R ";
    Begin(2) << "<< /Type /Pages /Count " << pages << " /Kids [" << kids << "] >>";
    End();
    const std::string content(contentSize, 'q');
    const std::string program(4096, 'x');
    for (int i = 0; i < pages; ++i) {
      const int page = 3 + i * perPage;
      const auto font = [&](int n) { return (bShared ? 3 : page) + 3 + formsOfAPage + 4 * n; };
      Begin(page) << "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents " << page + 2
                  << " 0 R /Resources " << page + 1 << " 0 R >>";
      End();
      Begin(page + 1) << "<< /ProcSet [/PDF /Text] /XObject << ";
      for (int n = 0; n < formsOfAPage; ++n) m_out << "/X" << n << " " << page + 3 + n << " 0 R ";
      m_out << ">> /Font << ";
      for (int n = 0; n < fontsOfAPage; ++n) m_out << "/F" << n << " " << font(n) << " 0 R ";
      m_out << ">> >>";
      End();
      Stream(page + 2, "", content);
      for (int n = 0; n < formsOfAPage; ++n) {
        Stream(page + 3 + n,
               "/Type /XObject /Subtype /Form /BBox [0 0 9 9] /Resources << /Font << /F0 " +
                   std::to_string(font(0)) + " 0 R >> >>",
               "q Q");
      }
      for (int n = 0; n < fontsOfAPage && (i == 0 || !bShared); ++n) {
        const std::string name = "/ABCDEF+Family" + std::to_string(i % 40) + "-Style" + std::to_string(n);
        Begin(font(n)) << "<< /Type /Font /Subtype /TrueType /BaseFont " << name << " /FontDescriptor "
                       << font(n) + 1 << " 0 R /ToUnicode " << font(n) + 2
                       << " 0 R /FirstChar 32 /LastChar 33 /Widths [500 500] >>";
        End();
        Begin(font(n) + 1) << "<< /Type /FontDescriptor /FontName " << name
                           << " /Flags 32 /FontBBox [0 0 1 1] "
                           << "/ItalicAngle 0 /Ascent 1 /Descent 0 /CapHeight 1 /StemV 1 /FontFile2 "
                           << font(n) + 3 << " 0 R >>";
        End();
        Stream(font(n) + 2, "",
               "1 begincodespacerange <00> <FF> endcodespacerange\n"
               "1 beginbfrange <20> <7E> <0020> endbfrange\n");
        Stream(font(n) + 3, "", program);
      }
    }
    WriteTable();
  }

 private:
  void Write(const std::string& text) { m_out << text; }
  std::ostream& Begin(int number) {
    m_offsets.resize(std::max(m_offsets.size(), static_cast<size_t>(number) + 1));
    m_offsets[static_cast<size_t>(number)] = m_out.tellp();
    return m_out << number << " 0 obj\n";
  }
  void End() { m_out << "\nendobj\n"; }
  void Stream(int number, const std::string& keys, const std::string& data) {
    Begin(number) << "<< " << keys << " /Length " << data.size() << " >>\nstream\n" << data << "\nendstream";
    End();
  }
  void WriteTable() {
    const auto table = static_cast<long long>(m_out.tellp());
    m_out << "xref\n0 " << m_offsets.size() << "\n0000000000 65535 f \n";
    for (size_t i = 1; i < m_offsets.size(); ++i) {
      char entry[32];
      std::snprintf(entry, sizeof entry, "%010lld 00000 %c \n", static_cast<long long>(m_offsets[i]),
                    m_offsets[i] == 0 ? 'f' : 'n');
      m_out << entry;
    }
    m_out << "trailer << /Size " << m_offsets.size() << " /Root 1 0 R >>\nstartxref\n"
          << table << "\n%%EOF\n";
  }

  std::ofstream m_out;
  std::vector<std::streamoff> m_offsets;
};

class Parser : public FontParserPDF {
 public:
  explicit Parser(const std::string& path) : FontParserPDF(nullptr, ToCFString(path).get()) {}
  uint64_t BytesFetched() { return m_file.stream.Buffer().BytesFetched(); }
};

struct Reading {
  uint64_t bytes = 0;
  CFIndex fonts = 0;
};

Reading ReadFonts(const std::string& path) {
  Parser parser(path);
  parser.Parse();
  CFMutableArrayRef fonts = nullptr;
  parser.GetObsoleteGlyphmarkData(false, fonts);
  return {parser.BytesFetched(), FontRecord::Count(adoptCF(fonts).get())};
}

// Seconds that a program takes for a file; 0 when it isn't installed.
double TimeProgram(std::vector<std::string> command, const std::string& path) {
  if (!std::filesystem::exists(command[0])) return 0;
  command.push_back(path);
  std::vector<char*> arguments;
  for (std::string& word : command) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const Clock::time_point start = Clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int nowhere = open("/dev/null", O_WRONLY);
    dup2(nowhere, 1);
    dup2(nowhere, 2);
    execv(arguments[0], arguments.data());
    _exit(127);
  }
  waitpid(child, nullptr, 0);
  return SecondsSince(start);
}

void ReportRatios(benchmark::State& state, const std::string& path, double seconds) {
  state.counters["pdffonts_ratio"] = TimeProgram({"/usr/bin/pdffonts"}, path) / seconds;
  state.counters["mutool_ratio"] = TimeProgram({"/usr/bin/mutool", "info", "-F"}, path) / seconds;
}

const std::string& LargeFile(int64_t kind) {
  static const TemporaryFolder folder;
  static std::string paths[2];
  std::string& path = paths[kind];
  if (path.empty()) {
    path = folder.Path(std::to_string(kind) + ".pdf");
    if (kind == 0) PdfWriter(path, 7800, 2, true, 30, 20000);
    if (kind == 1) PdfWriter(path, 7800, 3, false, 1, 12000);
  }
  return path;
}

void LargeFileWarm(benchmark::State& state) {
  const std::string& path = LargeFile(state.range(0));
  double best = 1e9;
  Reading reading;
  const PeakMemory memory;
  for (auto _ : state) {
    const Clock::time_point start = Clock::now();
    reading = ReadFonts(path);
    best = std::min(best, SecondsSince(start));
  }
  state.counters["private_MiB"] = memory.MiB();
  const auto size = static_cast<double>(std::filesystem::file_size(path));
  state.counters["MB"] = size / 1e6;
  state.counters["fonts"] = static_cast<double>(reading.fonts);
  state.counters["read_share"] = static_cast<double>(reading.bytes) / size;
  ReportRatios(state, path, best);
}
BENCHMARK(LargeFileWarm)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(5);

// A table of 15 million entries, and one of 5 million sections.
void HostileTable(benchmark::State& state) {
  const TemporaryFolder folder;
  const std::string path = folder.Path("table.pdf");
  {
    std::ofstream out(path, std::ios::binary);
    out << "%PDF-1.4\nxref\n";
    if (state.range(0) == 0) out << "0 15000000\n";
    for (int i = 0; i < (state.range(0) == 0 ? 15'000'000 : 5'000'000); ++i) {
      if (state.range(0) != 0) out << i * 7 % 5'000'000 << " 1\n";
      out << "0000000009 00000 n \n";
    }
    out << "trailer << /Root 1 0 R >>\nstartxref\n9\n%%EOF\n";
  }
  const PeakMemory memory;
  for (auto _ : state) benchmark::DoNotOptimize(ReadFonts(path));
  state.counters["private_MiB"] = memory.MiB();
}
BENCHMARK(HostileTable)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(1);

void DropCache(const std::string& path) {
  const int file = open(path.c_str(), O_RDONLY);
  fdatasync(file);
  posix_fadvise(file, 0, 0, POSIX_FADV_DONTNEED);
  close(file);
}

void LargeFileCold(benchmark::State& state) {
  const std::string& path = LargeFile(state.range(0));
  double ours = 0;
  double cat = 0;
  for (auto _ : state) {
    DropCache(path);
    cat += TimeProgram({"/bin/cat"}, path);
    DropCache(path);
    const Clock::time_point start = Clock::now();
    ReadFonts(path);
    ours += SecondsSince(start);
  }
  state.counters["cat_ratio"] = ours / cat;
}
BENCHMARK(LargeFileCold)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->Iterations(3);

// The median of many small files, each read once.
void SmallFiles(benchmark::State& state) {
  const TemporaryFolder folder;
  std::vector<std::string> paths;
  for (int i = 0; i < 50; ++i) {
    paths.push_back(folder.Path(std::to_string(i) + ".pdf"));
    PdfWriter(paths.back(), 1 + i % 8, 1 + i % 4, false, 1, 2000);
    ReadFonts(paths.back());
  }
  std::vector<double> ratios;
  for (auto _ : state) {
    for (const std::string& path : paths) {
      const double theirs = TimeProgram({"/usr/bin/pdffonts"}, path);
      const Clock::time_point start = Clock::now();
      benchmark::DoNotOptimize(ReadFonts(path));
      ratios.push_back(theirs / SecondsSince(start));
    }
  }
  std::nth_element(ratios.begin(), ratios.begin() + static_cast<long>(ratios.size() / 2), ratios.end());
  state.counters["pdffonts_ratio"] = ratios[ratios.size() / 2];
}
BENCHMARK(SmallFiles)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
