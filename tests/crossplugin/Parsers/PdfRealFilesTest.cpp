#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <sstream>

#include "PdfFonts.h"
#include "support/ProgramRun.h"

// Files of real producers, against what pdffonts lists of them. Where the two may differ, a test says so and
// why.

namespace {

using testing::IsEmpty;

std::string FindProgram(const std::string& name) {
  for (const char* folder : {"/usr/bin/", "/usr/local/bin/"}) {
    if (std::filesystem::exists(folder + name)) return folder + name;
  }
  return "";
}

// Names as pdffonts has them, in the form that ours have.
std::set<std::string> ListedNames(const std::string& path) {
  ProgramRun run(FindProgram("pdffonts"), {path});
  run.Wait();
  std::istringstream lines(run.Output());
  std::set<std::string> names;
  std::string line;
  std::getline(lines, line);
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    std::string name = line.substr(0, line.find(' '));
    if (const size_t plus = name.rfind('+'); plus != std::string::npos) name.erase(0, plus + 1);
    std::replace(name.begin(), name.end(), ',', '-');
    names.insert(name);
  }
  return names;
}

std::set<std::string> OurNames(const std::string& path) {
  const PdfFonts fonts = ReadPdfFile(path);
  return {fonts.names.begin(), fonts.names.end()};
}

class PdfRealFiles : public testing::Test {
 protected:
  // Skips the test when a program is missing.
  bool Have(std::initializer_list<const char*> programs) {
    for (const char* program : programs) {
      if (FindProgram(program).empty()) {
        m_missing = program;
        return false;
      }
    }
    return true;
  }

  void Run(const std::string& program, const std::vector<std::string>& arguments) {
    ProgramRun run(FindProgram(program), arguments);
    const int code = run.Wait();
    // qpdf says 3 for a warning.
    ASSERT_TRUE(code == 0 || code == 3) << program << ": " << run.Errors();
  }

  // A page of three fonts by cairo.
  std::string MakeCairoFile() {
    const std::string drawing =
        m_folder.Write("page.svg",
                       "<svg xmlns='http://www.w3.org/2000/svg' width='200' height='200'>"
                       "<text x='9' y='40' font-family='DejaVu Sans'>One</text>"
                       "<text x='9' y='80' font-family='DejaVu Sans' font-weight='bold'>Two</text>"
                       "<text x='9' y='120' font-family='DejaVu Sans Mono'>Three</text></svg>");
    Run("rsvg-convert", {"-f", "pdf", "-o", m_folder.Path("cairo.pdf"), drawing});
    return m_folder.Path("cairo.pdf");
  }

  TemporaryFolder m_folder;
  std::string m_missing;
};

TEST_F(PdfRealFiles, OfCairoAndAsQpdfRewritesThem) {
  if (!Have({"rsvg-convert", "qpdf", "pdffonts"})) GTEST_SKIP() << "There is no " << m_missing;
  const std::string original = MakeCairoFile();
  const std::set<std::string> listed = ListedNames(original);
  ASSERT_EQ(listed.size(), 3U);
  EXPECT_EQ(OurNames(original), listed);

  const struct {
    const char* name;
    std::vector<std::string> options;
  } rows[] = {
      {"rewritten", {"--object-streams=disable"}},
      {"linearized", {"--object-streams=disable", "--linearize"}},
      {"for reading", {"--qdf", "--object-streams=disable"}},
      {"several pages", {"--object-streams=disable", "--pages", original, "1,1,1", "--"}},
  };
  for (const auto& row : rows) {
    const std::string path = m_folder.Path(std::string(row.name) + ".pdf");
    std::vector<std::string> arguments = row.options;
    arguments.insert(arguments.begin(), original);
    arguments.push_back(path);
    Run("qpdf", arguments);
    EXPECT_EQ(OurNames(path), listed) << row.name;
  }
}

TEST_F(PdfRealFiles, WithObjectStreamsHaveNoReadableTable) {
  if (!Have({"rsvg-convert", "qpdf"})) GTEST_SKIP() << "There is no " << m_missing;
  const std::string path = m_folder.Path("streams.pdf");
  Run("qpdf", {MakeCairoFile(), "--object-streams=generate", path});
  const PdfFonts fonts = ReadPdfFile(path);
  EXPECT_THAT(fonts.names, IsEmpty());
  EXPECT_THAT(fonts.notes, testing::Contains("no catalog"));
}

TEST_F(PdfRealFiles, OfGhostscriptNameTheirFontsIndirectly) {
  if (!Have({"gs", "pdffonts"})) GTEST_SKIP() << "There is no " << m_missing;
  const std::string program = m_folder.Write(
      "page.ps", "%!PS\n/Times-Roman findfont 20 scalefont setfont 72 600 moveto (One) show showpage\n");
  const std::string path = m_folder.Path("gs.pdf");
  Run("gs",
      {"-q", "-dNOPAUSE", "-dBATCH", "-sDEVICE=pdfwrite", "-dCompatibilityLevel=1.4", "-o", path, program});
  // "/Font 9 0 R" isn't followed: only a direct font dictionary is read.
  EXPECT_EQ(ListedNames(path).size(), 1U);
  for (const std::string& name : ReadPdfFile(path).names) EXPECT_EQ(name, "");
}

}  // namespace
