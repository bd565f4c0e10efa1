#include "MatchCommand.h"

#include <cstdio>
#include <memory>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Complaint.h"
#include "ExitCodes.h"
#include "Identity/GlyphMarkSupport.h"
#include "KilnConnection.h"
#include "MatchReport.h"
#include "Memory/CFVector.h"
#include "PlugInLogic.h"
#include "XCFUtils.h"

namespace {

// What a document that knows so much of the font would ask for.
RetainPtr<CFMutableDictionaryRef> MakeRequest(const std::string& name, const MatchOptions& options) {
  RetainPtr<CFMutableDictionaryRef> request = MakeDictionary();
  XCFUtils::PutStringIntoDict(request.get(), options.family ? kGM_FamilyKey : kGM_PostScriptNameKey, name);
  if (!options.kind.empty()) XCFUtils::PutStringIntoDict(request.get(), kGM_KindKey, options.kind);
  if (!options.foundry.empty()) XCFUtils::PutStringIntoDict(request.get(), kGM_FoundryKey, options.foundry);
  GlyphMarkSupport::PostProcessSingleFontForSlug(request.get());
  return request;
}

RetainPtr<CFDictionaryRef> GlyphMarkOf(CFDictionaryRef font) {
  const RetainPtr<CFMutableDictionaryRef> record = adoptCF(CFDictionaryCreateMutableCopy(nullptr, 0, font));
  GlyphMarkSupport::RemoveUnsluggableKeysFromDictionary(record.get());
  GlyphMarkSupport::PostProcessSingleFontForSlug(record.get());
  return record;
}

// As GetGlyphMarkData() tells.
bool CanBeLookedUp(const std::string& name) {
  return !name.empty() && name.size() < 128 && ToCFString(name);
}

// The status of the lookup; a name that nobody has is no failure.
int FindMatch(FontManagerInterface& manager, const MatchOptions& options, Match& match) {
  const RetainPtr<CFMutableDictionaryRef> request = MakeRequest(match.name, options);
  const auto type = options.family ? TypeOfFontName::kFamilyName : TypeOfFontName::kPostScriptName;
  CFArrayRef found = MakeArray().leakRef();
  const int status =
      manager.GetGlyphMarkData(request.get(), type, match.excludedRemote,
                               FontManagerInterface::GetCurrentWorkgroupID(), &found, &match.foundName);
  match.candidates = adoptCF(found);
  const CFIndex count = FontRecord::Count(found);
  if (count == 0) return status;
  const CFDictionaryRef best = FontRecord::At(found, 0);
  match.glyphMark = GlyphMarkOf(best);
  if (count > 1) match.decidedBy = DecideBestMatch(best, FontRecord::At(found, 1), request.get()).test;
  manager.AddWorkgroupNamesToFonts(found);
  return 0;
}

}  // namespace

int RunMatch(const MatchOptions& options) {
  const std::unique_ptr<KilnConnection> kiln = KilnConnection::Open();
  if (!kiln) return kExitFailed;
  const std::unique_ptr<PlugInLogic> logic = PlugInLogic::Start(*kiln);
  if (!logic) return kExitFailed;
  if (!logic->GetManager().IsLoggedIn()) {
    Complain("nobody is logged in to the font server; hornbeam library login");
    return kExitFailed;
  }
  int exitCode = kExitOk;
  for (const std::string& name : options.names) {
    Match match;
    match.name = name;
    const int status = FindMatch(logic->GetManager(), options, match);
    const bool found = FontRecord::Count(match.candidates.get()) > 0;
    const std::string text = options.json ? MatchAsJson(match) : found ? MatchAsText(match) : "";
    std::fwrite(text.data(), 1, text.size(), stdout);
    if (found) continue;
    Complain(name + (status == 0           ? ": not found"
                     : CanBeLookedUp(name) ? ": Kiln couldn't be asked"
                                           : ": no font can have this name"));
    exitCode = kExitFailed;
  }
  return exitCode;
}
