#include "LibraryCommands.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "Amount.h"
#include "Complaint.h"
#include "ExitCodes.h"
#include "JsonText.h"
#include "KilnLibrary.h"
#include "PathText.h"
#include "PlugInLogic.h"
#include "ProgressLine.h"
#include "Utf8Text.h"
#include "Workgroups.h"

namespace {

std::vector<std::string> AbsolutePaths(const std::vector<std::string>& paths) {
  std::vector<std::string> absolute;
  absolute.reserve(paths.size());
  for (const std::string& path : paths) absolute.push_back(AbsolutePath(path));
  return absolute;
}

// Kiln's ID of a library that the user names.
bool FindLibrary(const KilnConnection& kiln, const std::string& nameOrID, unsigned int& outID) {
  const std::unique_ptr<PlugInLogic> logic = PlugInLogic::Start(kiln);
  const std::optional<Workgroups> workgroups = logic ? Workgroups::Read(kiln, *logic) : std::nullopt;
  const Workgroup* library = workgroups ? workgroups->FindOne(nameOrID) : nullptr;
  if (library) outID = library->AgentID();
  return library != nullptr;
}

size_t CountStatus(const std::vector<KilnLibrary::FileResult>& results, const char* status) {
  return static_cast<size_t>(std::count_if(results.begin(), results.end(),
                                           [status](const auto& result) { return result.status == status; }));
}

void PrintFont(const KilnLibrary::Font& font) {
  const char* const state = font.active ? "active" : font.missing ? "missing" : font.damaged ? "damaged" : "";
  std::printf("%6lu  %-8s  %-36s %-10s %-12s %s, %s\n", font.databaseID, state,
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
  json.Key("missing").Boolean(font.missing);
  json.Key("damaged").Boolean(font.damaged);
  json.EndObject();
  std::puts(json.Text().c_str());
}

}  // namespace

int RunLibraryAdd(const LibraryAddOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  unsigned int workgroupID = 0;
  if (!options.library.empty() && !FindLibrary(*kiln, options.library, workgroupID)) return kExitFailed;
  std::vector<KilnLibrary::FileResult> results;
  ErrCode code = 0;
  {
    ProgressLine progress("Adding");
    code = KilnLibrary(*kiln).AddPaths(workgroupID, AbsolutePaths(options.paths), &ProgressLine::Report,
                                       &progress, results);
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
  std::printf("Added %s from %s", Amount(fonts, "font").c_str(),
              Amount(CountStatus(results, "added"), "file").c_str());
  if (const size_t known = CountStatus(results, "known")) {
    std::printf(", %s known before", Amount(known, "file").c_str());
  }
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
