#include "FontCommands.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "Amount.h"
#include "Complaint.h"
#include "ExitCodes.h"
#include "FontFinder.h"
#include "KilnConnection.h"
#include "LibrarySession.h"
#include "Memory/CFVector.h"
#include "PathText.h"
#include "ProgressLine.h"
#include "Utf8Text.h"
#include "XCFUtils.h"
#include "client/RecordKeys.h"

namespace {

bool Contains(const std::vector<unsigned int>& ids, unsigned int count, unsigned int id) {
  return std::find(ids.begin(), ids.begin() + count, id) != ids.begin() + count;
}

void ComplainOfFont(const NamedFont& font, const std::string& problem) {
  Complain(font.postScriptName + " (" + std::to_string(font.id) + "): " + problem);
}

// Nothing is active at a Kiln that can't be asked.
std::vector<int> ActiveStates(const KilnConnection& kiln, const std::vector<unsigned int>& ids) {
  std::vector<int> states(ids.size());
  kiln.Call(KILN_ENTRY(GetFontIsActivated), ids.size(), ids.data(), states.data());
  return states;
}

int SetRefused(const RefuseOptions& options, bool refused) {
  const std::optional<LibrarySession> session = LibrarySession::Open();
  const Workgroup* library = session ? session->workgroups.FindOne(options.library) : nullptr;
  if (!library) return kExitFailed;
  std::vector<NamedFont> fonts;
  const bool foundAll =
      FontFinder(*session->kiln, {library->AgentID()}).Find(options.fonts, FontFinder::Take::kAll, fonts);
  if (fonts.empty()) return kExitFailed;
  const std::vector<unsigned int> ids = IDsOf(fonts);
  if (const ErrCode code = session->kiln->Call(KILN_ENTRY(KilnLibrarySetRefused), library->AgentID(),
                                               ids.size(), ids.data(), refused)) {
    ComplainOfCode("the fonts could not be marked", code);
    return kExitFailed;
  }
  std::printf(refused ? "Marked %s of %s as not to be activated.\n" : "Took the mark from %s of %s.\n",
              Amount(ids.size(), "font").c_str(), PrintableText(library->name).c_str());
  return foundAll ? kExitOk : kExitFailed;
}

}  // namespace

int RunActivate(const ActivateOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  const FontFinder finder(*kiln);
  std::vector<NamedFont> fonts;
  bool wellDone = finder.Find(options.fonts, FontFinder::Take::kBest, fonts);
  if (fonts.empty()) return kExitFailed;
  const std::vector<unsigned int> ids = IDsOf(fonts);
  std::vector<unsigned int> failed(ids.size());
  std::vector<unsigned int> refused(ids.size());
  unsigned int failedCount = 0;
  unsigned int refusedCount = 0;
  constexpr int kLasting = 0;
  constexpr int kByHand = 0;
  const ErrCode code =
      kiln->Call(KILN_ENTRY(ActivateFonts), ids.size(), ids.data(), nullptr, kLasting, kByHand, 1,
                 failed.size(), refused.size(), failed.data(), refused.data(), &failedCount, &refusedCount);
  if (code != 0 && code != GOspreyAssetManager::kLicenseComplianceViolation) {
    ComplainOfCode("the fonts could not be activated", code);
    return kExitFailed;
  }
  size_t systemCount = 0;
  for (NamedFont& font : fonts) {
    if (finder.FindByID(font.id, font) == 0 && font.isSystem) ++systemCount;
    if (Contains(failed, failedCount, font.id)) {
      ComplainOfFont(font, "could not be activated; its file has gone or can't be put in place");
    } else if (Contains(refused, refusedCount, font.id)) {
      ComplainOfFont(font, "a library marks it as not to be activated");
    }
  }
  wellDone = wellDone && failedCount == 0 && refusedCount == 0;
  std::printf("Activated %s until deactivated by hand",
              Amount(ids.size() - failedCount - refusedCount - systemCount, "font").c_str());
  if (systemCount > 0)
    std::printf(", %s of the system active in any case", Amount(systemCount, "font").c_str());
  std::puts(".");
  return wellDone ? kExitOk : kExitFailed;
}

int RunDeactivate(const DeactivateOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  std::vector<NamedFont> fonts;
  bool wellDone = FontFinder(*kiln).Find(options.fonts, FontFinder::Take::kAll, fonts);
  if (fonts.empty()) return kExitFailed;
  const std::vector<unsigned int> ids = IDsOf(fonts);
  const std::vector<int> before = ActiveStates(*kiln, ids);
  if (const ErrCode code = kiln->Call(KILN_ENTRY(KilnLibraryDeactivateFonts), ids.size(), ids.data())) {
    ComplainOfCode("the fonts could not be deactivated", code);
    return kExitFailed;
  }
  const std::vector<int> after = ActiveStates(*kiln, ids);
  size_t deactivated = 0;
  for (size_t i = 0; i < fonts.size(); ++i) {
    if (before[i] != 0 && after[i] == 0) ++deactivated;
    if (after[i] == 0) continue;
    ComplainOfFont(fonts[i], "stays active; it is a font of the system");
    wellDone = false;
  }
  std::printf("Deactivated %s.\n", Amount(deactivated, "font").c_str());
  return wellDone ? kExitOk : kExitFailed;
}

int RunExport(const ExportOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  std::vector<NamedFont> fonts;
  bool wellDone = FontFinder(*kiln).Find(options.fonts, FontFinder::Take::kAll, fonts);
  if (fonts.empty()) return kExitFailed;
  const std::vector<unsigned int> ids = IDsOf(fonts);
  const std::string folder = AbsolutePath(options.folder);
  const RetainPtr<CFMutableArrayRef> results = MakeArray();
  ErrCode code = 0;
  {
    ProgressLine progress("Copying");
    code = kiln->Call(KILN_ENTRY(KilnLibraryExportFonts), ids.size(), ids.data(), folder.c_str(),
                      &ProgressLine::Report, static_cast<void*>(&progress), results.get());
  }
  size_t copied = 0;
  for (const auto& result : ToVector<CFDictionaryRef>(results.get())) {
    const std::string message = XCFUtils::GetStringFromDict(result.get(), CFSTR("message"));
    if (XCFUtils::GetULongFromDictString(result.get(), CFSTR("code")) == 0) {
      ++copied;
      continue;
    }
    const auto id =
        static_cast<unsigned int>(XCFUtils::GetULongFromDictString(result.get(), RecordKeys::kDatabaseID));
    const auto font = std::find_if(fonts.begin(), fonts.end(),
                                   [id](const NamedFont& candidate) { return candidate.id == id; });
    ComplainOfFont(font == fonts.end() ? NamedFont{id, "a font", false} : *font, message);
    wellDone = false;
  }
  if (code != 0) ComplainOfCode(copied > 0 ? "not all fonts were copied" : "no font was copied", code);
  if (copied > 0)
    std::printf("Copied %s into %s.\n", Amount(copied, "font").c_str(), PrintableText(folder).c_str());
  return code == 0 && wellDone ? kExitOk : kExitFailed;
}

int RunRefuse(const RefuseOptions& options) {
  return SetRefused(options, true);
}

int RunAllow(const RefuseOptions& options) {
  return SetRefused(options, false);
}
