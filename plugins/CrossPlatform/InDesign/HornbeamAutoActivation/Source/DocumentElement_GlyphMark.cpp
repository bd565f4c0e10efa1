// The data that finds the document's very fonts again elsewhere, collected for a save.
#include <cstdint>

#include "Activation/State/HornbeamGlobals.h"
#include "Activation/Vocabulary/FontRecord.h"
#include "Activation/Vocabulary/StatusCodes.h"
#include "DocumentElement.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "Identity/GlyphMarkSupport.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/CFVector.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

bool LoomIsUsable() {
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  return loom != nullptr && loom->IsValid();
}

}  // namespace

void DocumentElement::CacheFontsInDocument() {
  const OperationTrace trace("DocumentElement::CacheFontsInDocument", "Entering %s()",
                             "DocumentElement::CacheFontsInDocument");
  if (!LoomIsUsable()) {
    OutputIndentedAndFormattedString(0, "No valid LoomInterface");
    return;
  }
  mCachedFontsInDocument = GetFontsInDocument();
}

RetainPtr<CFMutableArrayRef> DocumentElement::CollectGlyphMarkInfoForDocument(long workgroupID,
                                                                              bool bGetAllFontInfo,
                                                                              bool& allFound) {
  OperationTrace trace("DocumentElement::CollectGlyphMarkInfoForDocument",
                       "Entering DocumentElement::CollectGlyphMarkInfoForDocument(workgroupID=%ld, "
                       "bGetAllFontInfo=%d)",
                       workgroupID, bGetAllFontInfo);
  allFound = false;
  RetainPtr<CFMutableArrayRef> result;
  if (LoomIsUsable()) {
    result = GetFontsInDocument();
    const CFIndex countBefore = CFArrayGetCount(result.get());
    const int status =
        GlyphMarkSupport::AppendGlyphMarkDataToFonts(result.get(), workgroupID, true, bGetAllFontInfo, false);
    if (status == kErrorHornbeamNotRunning) {
      result = nullptr;
    }
    allFound = FontRecord::Count(result.get()) == countBefore;
    TakeCanExportFlagFrom(result.get());
  }
  trace.Exiting("DocumentElement::CollectGlyphMarkInfoForDocument returning 0x%08x",
                static_cast<unsigned int>(reinterpret_cast<uintptr_t>(result.get())));
  return result;
}

void DocumentElement::CollectGlyphMarkInfoForWrite() {
  const OperationTrace trace("DocumentElement::CollectGlyphMarkInfoForWrite", "Entering %s()",
                             "DocumentElement::CollectGlyphMarkInfoForWrite");
  mDocGlyphMarkData = nullptr;
  if (LoomIsUsable() && HornbeamGlobals::GetSharedLoomInterface()->GetEnabledGlyphMark()) {
    bool allFound = false;
    mDocGlyphMarkData =
        CollectGlyphMarkInfoForDocument(FontManagerInterface::kAllWorkgroups, false, allFound);
  }
}
