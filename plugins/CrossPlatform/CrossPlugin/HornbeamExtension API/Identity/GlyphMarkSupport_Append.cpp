#include <map>
#include <string>
#include <vector>

#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/FontRecordKeys.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "Identity/FontDataPreviouslyGottenFromDatabase.h"
#include "Identity/GlyphMarkSupport.h"
#include "Identity/IndexedFontArray.h"
#include "Identity/MutableRecords.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "XCFUtils.h"

namespace {

struct Search {
  long workgroupID;
  bool excludeInactiveFonts;
  bool tryFamilyNames;
};

// The name before its first hyphen, where a family's name ends.
std::string GuessFamily(const std::string& postScriptName) {
  return postScriptName.substr(0, postScriptName.find('-'));
}

bool MergeCachedFont(const std::string& name, IndexedFontArray& array) {
  CFMutableDictionaryRef cached = nullptr;
  unsigned int fontID = 0;
  if (!FontDataPreviouslyGottenFromDatabase::CreateCopyOfGlyphmarkDataForActiveFont(name, cached, fontID)) {
    return false;
  }
  array.MergeRecord(adoptCF(cached).get());
  OutputIndentedAndFormattedString(0, "Using cached glyphmark data for the active version of %s",
                                   name.c_str());
  return true;
}

int MergeFontsOfFamily(CFMutableDictionaryRef entry, const std::string& name, long workgroupID,
                       IndexedFontArray& array) {
  if (!CFDictionaryContainsKey(entry, kGM_FamilyKey)) {
    XCFUtils::PutStringIntoDict(entry, kGM_FamilyKey, GuessFamily(name));
  }
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  if (!manager) return kErrorHornbeamNotRunning;
  CFArrayRef found = MakeArray().leakRef();
  bool excludedRemote = false;
  const int status =
      manager->GetGlyphMarkData(entry, TypeOfFontName::kFamilyName, excludedRemote, workgroupID, &found);
  array.MergeFonts(adoptCF(found).get());
  return status;
}

// The code of the last lookup made, or `previous` when none was.
int FillEntry(CFMutableArrayRef fonts, CFIndex position, const Search& search, IndexedFontArray& array,
              int previous) {
  const RetainPtr<CFMutableDictionaryRef> entry = retainCF(MutableRecords::At(fonts, position));
  CFStringRef nameRef = FontRecord::GetPostScriptName(entry.get());
  if (!nameRef) return previous;
  const std::string name = ToStdString(nameRef);
  if (search.excludeInactiveFonts && MergeCachedFont(name, array)) return previous;

  CFMutableDictionaryRef outBest = nullptr;
  const int status =
      GlyphMarkSupport::GetGlyphMarkDataForBestMatch(entry.get(), search.workgroupID, &outBest);
  const RetainPtr<CFMutableDictionaryRef> best = adoptCF(outBest);
  if (!best) {
    const bool mayTryFamily = search.tryFamilyNames && search.excludeInactiveFonts;
    return mayTryFamily ? MergeFontsOfFamily(entry.get(), name, search.workgroupID, array) : status;
  }
  CFStringRef bestName = FontRecord::GetPostScriptName(best.get());
  if (!bestName) return status;  // Damaged: the entry's own name is the better one.
  // The font's true name takes the place of the one that was asked for.
  if (ToStdString(bestName) != name) array.Remove(position);
  array.MergeRecord(best.get());
  return status;
}

void RemoveInactiveFonts(FontManagerInterface& manager, CFMutableArrayRef fonts) {
  const std::map<unsigned int, bool> states = manager.GetFontIsActivated(fonts);
  std::vector<bool> inactive(static_cast<size_t>(CFArrayGetCount(fonts)), false);
  for (size_t i = inactive.size(); i-- > 0;) {
    CFDictionaryRef font = FontRecord::At(fonts, static_cast<CFIndex>(i));
    if (!font) continue;
    const auto state = states.find(FontRecord::GetDatabaseID(font));
    if (state != states.end() && state->second) continue;
    OutputIndentedAndFormattedString(0, "Removing inactive '%s' from fonts.",
                                     XCFUtils::GetStringFromDict(font, kGM_PostScriptNameKey).c_str());
    inactive[i] = true;
  }
  MutableRecords::RemoveMarked(fonts, inactive);
}

}  // namespace

int GlyphMarkSupport::GetGlyphMarkDataForBestMatch(CFMutableDictionaryRef fontRecord, long workgroupID,
                                                   CFMutableDictionaryRef* outBest) {
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  if (!fontRecord || !manager) return kErrorBadParameter;
  CFArrayRef found = MakeArray().leakRef();
  bool excludedRemote = false;
  const int status = manager->GetGlyphMarkData(fontRecord, TypeOfFontName::kPostScriptName, excludedRemote,
                                               workgroupID, &found);
  const RetainPtr<CFArrayRef> owned = adoptCF(found);
  if (status != 0 || !outBest || FontRecord::Count(owned.get()) == 0) return status;
  CFDictionaryRef best = FontRecord::At(owned.get(), 0);
  if (best) *outBest = CFDictionaryCreateMutableCopy(nullptr, 0, best);
  return status;
}

int GlyphMarkSupport::AppendGlyphMarkDataToFonts(CFMutableArrayRef fonts, long workgroupID,
                                                 bool excludeInactiveFonts, bool bGetAllFontInfo,
                                                 bool tryFamilyNames) {
  OperationTrace trace(
      "GlyphMarkSupport::AppendGlyphMarkDataToFonts", "Entering %s(%d fonts, workgroupID=%ld, %d, %d, %d)",
      "GlyphMarkSupport::AppendGlyphMarkDataToFonts", static_cast<int>(FontRecord::Count(fonts)), workgroupID,
      excludeInactiveFonts, bGetAllFontInfo, tryFamilyNames);
  if (!FontManagerInterface::GetConnectedFontManager()) return kErrorHornbeamNotRunning;
  if (!fonts) return kErrorBadParameter;

  int result = 0;
  {
    const Search search{workgroupID, excludeInactiveFonts, tryFamilyNames};
    IndexedFontArray array(fonts);
    for (CFIndex i = CFArrayGetCount(fonts); i-- > 0 && result != kErrorHornbeamNotRunning;) {
      result = FillEntry(fonts, i, search, array, result);
    }
  }
  // A lookup can run the host's events, and the host may have quit meanwhile.
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  if (excludeInactiveFonts && manager) RemoveInactiveFonts(*manager, fonts);
  if (!bGetAllFontInfo) RemoveUnsluggableGlyphMarkKeys(fonts);
  trace.Exiting("%s() returning %d", "GlyphMarkSupport::AppendGlyphMarkDataToFonts", result);
  return result;
}
