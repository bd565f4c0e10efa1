#include "LibraryCommands.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <memory>

#include "Complaint.h"
#include "ExitCodes.h"
#include "JsonText.h"
#include "KilnLibrary.h"
#include "ProgressLine.h"
#include "Utf8Text.h"

namespace {

void ShowProgress(unsigned long done, unsigned long total, const char*, void* context) {
  static_cast<ProgressLine*>(context)->Show(done, total);
}

// Kiln reads paths in its own working directory.
std::vector<std::string> AbsolutePaths(const std::vector<std::string>& paths) {
  std::vector<std::string> absolute;
  for (const std::string& path : paths) {
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    absolute.push_back(error ? path : full.lexically_normal().string());
  }
  return absolute;
}

size_t CountStatus(const std::vector<KilnLibrary::FileResult>& results, const char* status) {
  return static_cast<size_t>(std::count_if(results.begin(), results.end(),
                                           [status](const auto& result) { return result.status == status; }));
}

void PrintFont(const KilnLibrary::Font& font) {
  std::printf("%6lu  %-8s  %-36s %-10s %-12s %s, %s\n", font.databaseID, font.active ? "active" : "",
              PrintableText(font.postScriptName).c_str(), PrintableText(font.kind).c_str(),
              PrintableText(font.version).c_str(), PrintableText(font.family).c_str(),
              PrintableText(font.style).c_str());
}

void PrintFontAsJson(const KilnLibrary::Font& font) {
  JsonText json;
  json.BeginObject();
  json.Key("databaseID").Integer(static_cast<long long>(font.databaseID));
  json.Key("postScriptName").String(font.postScriptName);
  json.Key("family").String(font.family);
  json.Key("style").String(font.style);
  json.Key("kind").String(font.kind);
  json.Key("version").String(font.version);
  json.Key("active").Boolean(font.active);
  json.EndObject();
  std::puts(json.Text().c_str());
}

}  // namespace

int RunLibraryAdd(const LibraryAddOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  std::vector<KilnLibrary::FileResult> results;
  ErrCode code = 0;
  {
    ProgressLine progress("Adding");
    code = KilnLibrary(*kiln).AddPaths(0, AbsolutePaths(options.paths), ShowProgress, &progress, results);
  }
  if (code != 0) {
    ComplainOfCode("the fonts could not be added", code);
    return kExitFailed;
  }
  size_t fonts = 0;
  for (const KilnLibrary::FileResult& result : results) {
    if (result.status == "failed") Complain(result.path + ": " + result.message);
    if (result.status == "added") fonts += result.fonts.size();
  }
  const size_t failed = CountStatus(results, "failed");
  std::printf("Added %zu fonts from %zu files", fonts, CountStatus(results, "added"));
  if (const size_t known = CountStatus(results, "known")) std::printf(", %zu files were known", known);
  if (failed > 0) std::printf(", %zu failed", failed);
  std::printf(".\n");
  return failed > 0 ? kExitFailed : kExitOk;
}

int RunLibraryList(const LibraryListOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  std::vector<KilnLibrary::Font> fonts;
  if (const ErrCode code = KilnLibrary(*kiln).ListFonts(fonts)) {
    ComplainOfCode("the library could not be listed", code);
    return kExitFailed;
  }
  for (const KilnLibrary::Font& font : fonts) options.json ? PrintFontAsJson(font) : PrintFont(font);
  return kExitOk;
}
