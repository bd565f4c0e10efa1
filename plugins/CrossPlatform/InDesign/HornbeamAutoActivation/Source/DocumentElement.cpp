#include "DocumentElement.h"

#include <algorithm>

#include "Activation/FontActivationTracker.h"
#include "Activation/Vocabulary/FontRecord.h"
#include "ClassIDs.h"
#include "CmdUtils.h"
#include "GBlockingLockStrategy.h"
#include "GScopedLock.h"
#include "HBInDesignUtils.h"
#include "IUsedFontList.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

std::vector<std::string> DocumentElement::FontPathList;
std::vector<std::string> DocumentElement::FontFaceList;
std::vector<unsigned int> DocumentElement::DuplicateFontIDListForSingleFont;
std::vector<int> DocumentElement::DuplicateFontIndexList;

DocumentElement::DocumentElement()
    : mActivationIdentifier(FontActivationTracker::GenerateUniqueIdentifier()) {
  OutputIndentedAndFormattedString(0,
                                   "Exiting DocumentElement::DocumentElement(). mActivationIdentifier='%s'",
                                   mActivationIdentifier.c_str());
}

DocumentElement::~DocumentElement() {
  OutputIndentedAndFormattedString(0, "DocumentElement::~DocumentElement(). mActivationIdentifier='%s'",
                                   mActivationIdentifier.c_str());
}

const std::string& DocumentElement::GetDocumentIdentifier() {
  if (mDocumentIdentifier.empty()) {
    mDocumentIdentifier = mDocumentName.GetUTF8String() + "/" + mActivationIdentifier;
  }
  return mDocumentIdentifier;
}

int DocumentElement::CountFontsUsedByDocument() {
  OperationTrace trace("CountFontsUsedByDocument", "Entering %s()", "CountFontsUsedByDocument");
  const int count = std::max(static_cast<int>(mNumberOfFontsUsedByDocument),
                             static_cast<int>(FontRecord::Count(mDocGlyphMarkData.get())));
  trace.Exiting("%s() returning %d", "CountFontsUsedByDocument", count);
  return count;
}

void DocumentElement::RebuildFontMenus() {
  const OperationTrace trace("DocumentElement::RebuildFontMenus", "Entering %s()",
                             "DocumentElement::RebuildFontMenus");
  int seed = 0;
  HBInDesignUtils::ReadFontChangeSeed(seed);
  const InterfacePtr<IUsedFontList> usedFonts(mDocUIDRef, UseDefaultIID());
  const InterfacePtr<ICommand> command(CmdUtils::CreateCommand(kRebuildUsedFontListCmdBoss));
  if (usedFonts && command) {
    command->SetItemList(UIDList(usedFonts->GetUIDRef()));
    CmdUtils::ProcessCommand(command.get());
  }
}

void DocumentElement::DeleteFontList() {
  GScopedLock lock(mFontListMutex, true, new GBlockingLockStrategy);
  if (lock.IsLocked()) {
    mFontList.clear();
  }
}

void DocumentElement::ReleaseMemoryAcquiredByDocument() {
  OutputIndentedAndFormattedString(0, "ReleaseMemoryAcquiredByDocument");
  DeleteFontList();
}
