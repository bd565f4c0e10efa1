// The commands on a document's font list as a whole: collect the fonts into a folder, make a font set of
// them.

#include <exception>
#include <string>
#include <vector>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/CoreAgentInterface.h"
#include "CoreAgentInterface/FontIDs.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/RetainPtr.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"
#include "Utilities/SaveFolderDialog.h"
#include "XCFUtils.h"

namespace {

constexpr CFIndex kMaxSetNameLength = 255;  // UTF-16 units

// Status 0 or "not done".
int16_t Flatten(unsigned int status) {
  return static_cast<int16_t>(status == 0 ? 0 : -1);
}

// The name's beginning, without half of a surrogate pair at its end.
RetainPtr<CFStringRef> ShortenedName(CFStringRef name, CFIndex length) {
  const UniChar last = CFStringGetCharacterAtIndex(name, length - 1);
  if (last >= 0xD800 && last <= 0xDBFF) --length;
  return adoptCF(CFStringCreateWithSubstring(nullptr, name, CFRangeMake(0, length)));
}

// Where the user wants the fonts; false when the user doesn't.
bool AskForFolder(const LoomInterface& loom, const std::string& documentName, std::string& outPath) {
  const RetainPtr<CFStringRef> title =
      adoptCF(loom.LocalizedString(CFSTR("[FONT_MANAGER_MODIFIER] Auto-Activation Plug-in for [host app]")));
  const RetainPtr<CFStringRef> message =
      adoptCF(loom.LocalizedString(CFSTR("Enter name of new folder.  Collected fonts will be placed here.")));
  const RetainPtr<CFStringRef> namePattern = adoptCF(loom.LocalizedString(CFSTR("%@'s fonts")));
  return ShowSaveFolderDialog(documentName, outPath, title.get(), message.get(), namePattern.get()) == 0;
}

}  // namespace

int16_t CoreAgentInterface::CollectFontsUsedByCurrentDocument(const std::string& documentName,
                                                              const std::string& documentPath,
                                                              CFArrayRef fonts) {
  const char* const kName = "CoreAgentInterface::CollectFontsUsedByCurrentDocument";
  OperationTrace trace(kName, "Entering %s('%s', '%s')", kName, documentName.c_str(), documentPath.c_str());
  int16_t result = 0;
  try {
    const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
    std::string path;
    if (loom != nullptr && AskForFolder(*loom, documentName, path)) {
      result = CollectFontsIntoFolder(path, fonts);
    }
  } catch (const std::exception& error) {
    OutputIndentedAndFormattedString(0,
                                     "Exception thrown somewhere under CollectFontsUsedByCurrentDocument().");
    OutputIndentedAndFormattedString(0, "%s", error.what());
  }
  trace.Exiting("%s() returning %d", kName, result);
  return result;
}

int16_t CoreAgentInterface::CollectFontsIntoFolder(const std::string& path, CFArrayRef fonts) {
  const ShuttleLoader* shuttle = ShuttleLoader::GetSharedInstance();
  const std::vector<unsigned int> ids = GetFontIDsFromFontInfoArray(fonts, false);
  if (!ids.empty()) {
    const std::unique_ptr<unsigned int[]> idArray = CreateArrayFromVector(ids);
    return Flatten(CallUnderRetryRule([&] {
      return shuttle->ExportFonts(static_cast<unsigned long>(ids.size()), idArray.get(), path.c_str(), 0, 0);
    }));
  }
  OutputIndentedAndFormattedString(
      0, "No fonts to collect.  Creating empty destination folder, if it does not already exist.");
  if (shuttle->OSDoesDirectoryExist(path.c_str()) == 0) return 0;
  return Flatten(shuttle->OSCreateDirectory(path.c_str()));
}

int16_t CoreAgentInterface::MakeSetForDocumentFonts(CFStringRef documentName, CFArrayRef fonts) {
  OperationTrace trace("CoreAgentInterface::MakeSetForDocumentFonts",
                       "Entering CoreAgentInterface::MakeSetForDocumentFonts('%s')",
                       XCFUtils::GetStdString(documentName).c_str());
  // A set lives in one workgroup.
  const int workgroup = GetCurrentWorkgroupID();
  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (IsAllWorkgroups(workgroup) || documentName == nullptr || loom == nullptr) return -1;

  const RetainPtr<CFStringRef> title = adoptCF(
      loom->LocalizedString(CFSTR("Create a [FONT_MANAGER_MODIFIER] set for this document's fonts?")));
  const RetainPtr<CFStringRef> prompt = adoptCF(loom->LocalizedString(CFSTR("Set Name:")));
  CFStringRef answer = nullptr;
  if (!loom->AskForOneString(title.get(), prompt.get(), documentName, &answer)) return 0;
  RetainPtr<CFStringRef> name = adoptCF(answer);
  if (CFStringGetLength(name.get()) > kMaxSetNameLength) {
    name = ShortenedName(name.get(), kMaxSetNameLength);
    loom->ShowSetNameTooLongMessageBox();
  }

  const std::string setName = XCFUtils::GetStdString(name.get());
  const std::vector<unsigned int> ids = GetFontIDsFromFontInfoArray(fonts, true);
  const std::unique_ptr<unsigned int[]> idArray = CreateArrayFromVector(ids);
  int setID = 0;
  const unsigned int status = CallUnderRetryRule([&] {
    return ShuttleLoader::GetSharedInstance()->CreateTopLevelSet(
        &setID, setName.c_str(), workgroup, 0, 0, static_cast<unsigned long>(ids.size()), idArray.get());
  });
  const int16_t result = Flatten(status);
  trace.Exiting("CoreAgentInterface::MakeSetForDocumentFonts() returning %d", result);
  return result;
}
