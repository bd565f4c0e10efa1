// What each signal does with its document.
#include <memory>

#include "Activation/FontActivationTracker.h"
#include "Activation/State/HornbeamGlobals.h"
#include "Activation/Vocabulary/FontRecord.h"
#include "AppStartupShutdownResponder.h"
#include "DocumentElement.h"
#include "FontActivityReporter.h"
#include "HBInDesignUtils.h"
#include "HBIndesignPluginGlobals.h"
#include "HornbeamResponder.h"
#include "IDocument.h"
#include "IDocumentFontUsage.h"
#include "IUsedFontList.h"
#include "LoomInterface/LoomInterface.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

/// Keeps a document from being opened once more while it is inside its open.
class OpeningMark {
 public:
  OpeningMark(std::map<UID, bool>& marks, UID uid) : m_Marks(marks), m_UID(uid) { m_Marks[uid] = true; }
  OpeningMark(const OpeningMark&) = delete;
  OpeningMark& operator=(const OpeningMark&) = delete;
  ~OpeningMark() { m_Marks.erase(m_UID); }

 private:
  std::map<UID, bool>& m_Marks;
  UID m_UID;
};

bool LoomIsUsable() {
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  return loom != nullptr && loom->IsValid();
}

DocumentElement* MakeElement(const UIDRef& document) {
  auto element = std::make_unique<DocumentElement>();
  element->SetUIDRef(document);
  return HBIndesignPluginGlobals::AddDocumentToDocumentList(std::move(element));
}

DocumentElement* FindOrMakeElement(const UIDRef& document) {
  DocumentElement* element = HBIndesignPluginGlobals::GetDocumentFromDocumentList(document);
  return element != nullptr ? element : MakeElement(document);
}

/// Hands the document's fonts to the font manager.
void WriteDocument(LoomInterface* loom, const std::string& path, DocumentElement* element) {
  if (element == nullptr || loom == nullptr || !loom->IsValid()) {
    OutputIndentedAndFormattedString(
        0, "Skipping document write: currentDocument=0x%08x, docPath=%s, loomIntf=0x%08x",
        static_cast<unsigned int>(reinterpret_cast<uintptr_t>(element)), path.c_str(),
        static_cast<unsigned int>(reinterpret_cast<uintptr_t>(loom)));
    return;
  }
  if (!loom->GetEnabledGlyphMark()) {
    HornbeamGlobals::SaveDocumentFonts(path, element->GetCachedFontsInDocument());
  }
}

void DeactivateFontOnDocClose(const UIDRef& document) {
  const OperationTrace trace("DeactivateFontOnDocClose", "Entering %s()", "DeactivateFontOnDocClose");
  DocumentElement* element = HBIndesignPluginGlobals::GetDocumentFromDocumentList(document);
  FontActivationTracker* tracker = HornbeamGlobals::GetSharedFontActivationTracker();
  if (element == nullptr || !LoomIsUsable() || tracker == nullptr) {
    return;
  }
  CFMutableArrayRef deactivated = HBIndesignPluginGlobals::GetPendingDeactivatedFonts();
  const CFIndex first = FontRecord::Count(deactivated);
  tracker->CloseAllFontsForIdentifier(element->GetDocumentIdentifier(),
                                      HornbeamGlobals::GetSharedLoomInterface()->GetCloseFontsOnDocClose(),
                                      deactivated);
  FontActivityReporter::ReportDeactivated(document, deactivated, first);
  HBIndesignPluginGlobals::RemoveConflictingPendingActivatedFonts();

  OutputIndentedAndFormattedString(
      0, "...After deactivating doc fonts, telling InDesign to update (rebuild menus)");
  element->RebuildFontMenus();
  HBIndesignPluginGlobals::UpdateFontSystem();
  HBIndesignPluginGlobals::RefreshFontStuff = 1;
  HBIndesignPluginGlobals::CheckHostFontAvailability = 1;
}

void RefreshUsedFonts(const InterfacePtr<IDocument>& hostDocument) {
  if (!hostDocument) {
    OutputIndentedAndFormattedString(0, "...DuringOpenDocument: pDocument is nil");
    return;
  }
  OutputIndentedAndFormattedString(0, "Document name:  %s", hostDocument->GetName().c_str());
  if (const InterfacePtr<IUsedFontList> usedFonts(hostDocument, UseDefaultIID()); usedFonts) {
    usedFonts->Refresh();
  } else {
    OutputIndentedAndFormattedString(0, "...DuringOpenDocument: pUsedFontList is nil");
  }
}

}  // namespace

void HornbeamResponder::DuringNewDocument(const UIDRef& document) {
  HBIndesignPluginGlobals::SetUIDRef(document);
  MakeElement(document);
  HBIndesignPluginGlobals::ExecuteTimer = 1;
}

void HornbeamResponder::BeforeOpenDocument(const UIDRef& document) {
  HBIndesignPluginGlobals::SetUIDRef(document);
}

void HornbeamResponder::DuringOpenDocument(const UIDRef& document, int& seed) {
  if (!LoomIsUsable() || openingDocuments.contains(document.GetUID())) {
    return;
  }
  const OpeningMark mark(openingDocuments, document.GetUID());
  HBIndesignPluginGlobals::ExecuteTimer = 0;
  HBIndesignPluginGlobals::SetUIDRef(document);
  const OperationTrace trace("HornbeamResponder::DuringOpenDocument",
                             "Entering HornbeamResponder::DuringOpenDocument('%s')",
                             HBInDesignUtils::GetPathForLog(document).c_str());
  HBInDesignUtils::ReadFontChangeSeed(seed);
  RefreshUsedFonts(InterfacePtr<IDocument>(document, UseDefaultIID()));

  const InterfacePtr<IDocumentFontUsage> fontUsage(document, UseDefaultIID());
  if (!fontUsage) {
    OutputIndentedAndFormattedString(0, "...DuringOpenDocument: pDocFontUsage is NULL");
    return;
  }
  OutputIndentedAndFormattedString(0, "...DuringOpenDocument: calling pDocFontUsage->UpdateFontList()...");
  fontUsage->UpdateFontList();

  DocumentElement* element = HBIndesignPluginGlobals::GetDocumentFromDocumentList(document);
  if (element == nullptr) {
    OutputIndentedAndFormattedString(
        0, "...DuringOpenDocument: current doc was NULL, creating new DocumentElement...");
    element = MakeElement(document);
  }
  if (element == nullptr) {
    return;
  }
  element->ActivateFontList();
  OutputIndentedAndFormattedString(0, "...DuringOpenDocument: deleting document font list");
  element->DeleteFontList();
  OutputIndentedAndFormattedString(
      0,
      "Calling HBIndesignPluginGlobals::UpdateFontSystem near end of HornbeamResponder::DuringOpenDocument.");
  HBIndesignPluginGlobals::UpdateFontSystem();
  HBIndesignPluginGlobals::ExecuteTimer = 1;
}

void HornbeamResponder::AfterOpenDocument(const UIDRef& document) {
  HBIndesignPluginGlobals::SetUIDRef(document);
}

void HornbeamResponder::BeforeSaveDocument(const UIDRef& document) {
  HBIndesignPluginGlobals::SetUIDRef(document);
  if (DocumentElement* element = FindOrMakeElement(document); element != nullptr) {
    element->CollectGlyphMarkInfoForWrite();
    element->CacheFontsInDocument();
  }
}

void HornbeamResponder::AfterSaveDocument(const UIDRef& document) {
  HBIndesignPluginGlobals::SetUIDRef(document);
  DocumentElement* element = FindOrMakeElement(document);
  std::string path;
  if (!HBInDesignUtils::GetFullPathFromDocumentUIDRef(document, path)) {
    OutputIndentedAndFormattedString(0, "Could not get current document path");
    return;
  }
  HBIndesignPluginGlobals::SetCurrentDocumentPath(path);
  WriteDocument(HornbeamGlobals::GetSharedLoomInterface(), path, element);
}

void HornbeamResponder::BeforeSaveAsDoc(const UIDRef& document) {
  OutputIndentedAndFormattedString(0, "HornbeamResponder::BeforeSaveAsDoc");
  BeforeSaveDocument(document);
}

void HornbeamResponder::AfterSaveAsDoc(const UIDRef& document) {
  OutputIndentedAndFormattedString(0, "HornbeamResponder::AfterSaveAsDoc");
  AfterSaveDocument(document);
}

void HornbeamResponder::BeforeSaveACopyDoc(const UIDRef& document) {
  OutputIndentedAndFormattedString(0, "HornbeamResponder::BeforeSaveACopyDoc");
  BeforeSaveDocument(document);
}

void HornbeamResponder::AfterSaveACopyDoc(const UIDRef& document) {
  OutputIndentedAndFormattedString(0, "HornbeamResponder::AfterSaveACopyDoc");
  AfterSaveDocument(document);
}

void HornbeamResponder::BeforeCloseDocument(const UIDRef& document) {
  if (std::string path; HBInDesignUtils::GetFullPathFromDocumentUIDRef(document, path)) {
    HBIndesignPluginGlobals::SetCurrentDocumentPath(path);
  }
  HBIndesignPluginGlobals::SetUIDRef(document);
  if (HBIndesignPluginGlobals::GetDocumentFromDocumentList(document) != nullptr) {
    DeactivateFontOnDocClose(document);
  }
}

void HornbeamResponder::AfterCloseDocument(const UIDRef& document) {
  const UIDRef closed = HBIndesignPluginGlobals::GetUIDRef();
  if (HBIndesignPluginGlobals::GetDocumentFromDocumentList(closed) != nullptr && LoomIsUsable()) {
    HBIndesignPluginGlobals::DeleteDocumentFromDocumentList(closed);
  }
  HBIndesignPluginGlobals::SetUIDRef(document);
  if (HBIndesignPluginGlobals::GetNoOfDocumentsInDocumentList() == 0) {
    AppStartupShutdownResponder::ReleaseGlobalMemory(0);
  }
  HBIndesignPluginGlobals::SetUIDRef(UIDRef::Null());
  HBIndesignPluginGlobals::SetCurrentDocumentPath("");
}
