#include "HostAlerts.h"

#include "Activation/FontActivationTracker.h"
#include "Activation/State/HornbeamGlobals.h"
#include "DocumentElement.h"
#include "HBInDesignUtils.h"
#include "HBIndesignPluginGlobals.h"
#include "IDocument.h"
#include "ILinkFacade.h"
#include "ILinkManager.h"
#include "ISession.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace HostAlerts {

namespace {

bool AnyLinkNeedsAttention(IDataBase& database) {
  const InterfacePtr<ILinkManager> linkManager(&database, database.GetRootUID(), UseDefaultIID());
  const InterfacePtr<Facade::ILinkFacade> linkFacade(GetExecutionContextSession(), UseDefaultIID());
  if (!linkManager || !linkFacade) {
    return false;
  }
  K2Vector<UID> links;
  linkManager->QueryLinks(LinkQuery(), links);
  for (const UID& link : links) {
    switch (linkFacade->GetLinkStatus(UIDRef(&database, link))) {
      case Facade::ILinkFacade::kOutOfDate:
        OutputIndentedAndFormattedString(
            0, "HasMissingOrOutOfDateLinks:  At least one link is out-of-date and needs to be updated.");
        return true;
      case Facade::ILinkFacade::kMissing:
        OutputIndentedAndFormattedString(0, "HasMissingOrOutOfDateLinks:  At least one link is missing.");
        return true;
      default:
        break;
    }
  }
  return false;
}

}  // namespace

bool HasMissingOrOutOfDateLinks(const UIDRef& document) {
  OperationTrace trace("HasMissingOrOutOfDateLinks", "Entering HasMissingOrOutOfDateLinks('%s')",
                       HBInDesignUtils::GetPathForLog(document).c_str());
  bool result = true;
  if (const InterfacePtr<IDocument> hostDocument(document, UseDefaultIID()); hostDocument) {
    IDataBase* database = hostDocument->GetDataBase();
    if (database == nullptr) {
      OutputIndentedAndFormattedString(0, "*** ERROR:  No IDataBase* for this document!");
    }
    result = database != nullptr && AnyLinkNeedsAttention(*database);
  }
  trace.Exiting("HasMissingOrOutOfDateLinks() returning %d", result);
  return result;
}

void Suppress(IDocumentSignalData& data) {
  data.Set(data.GetFile(), data.IsClone(), data.GetDocument(), IDocumentSignalData::kSuppressUI);
}

void Decide(const InterfacePtr<IDocumentSignalData>& data, const UIDRef& document) {
  if (!data || HasMissingOrOutOfDateLinks(document)) {
    return;
  }
  if (!HBIndesignPluginGlobals::CheckPendingActivationChanges()) {
    OutputIndentedAndFormattedString(
        0, "Suppressing InDesign alerts because there are pending activation changes.");
    Suppress(*data.get());
    return;
  }
  FontActivationTracker* tracker = HornbeamGlobals::GetSharedFontActivationTracker();
  DocumentElement* element = HBIndesignPluginGlobals::GetDocumentFromDocumentList(document);
  if (tracker == nullptr || element == nullptr) {
    return;
  }
  const std::string& identifier = element->GetDocumentIdentifier();
  const int opened = static_cast<int>(tracker->CountFontsOpenedForIdentifier(identifier));
  const int used = element->CountFontsUsedByDocument();
  if (opened == 0) {
    OutputIndentedAndFormattedString(
        0, "Choosing not to suppress InDesign alerts because no font activations were attempted for '%s'",
        identifier.c_str());
  } else if (opened < used) {
    OutputIndentedAndFormattedString(
        0, "Choosing not to suppress InDesign alerts because %d fonts used by '%s' are missing.", opened,
        identifier.c_str());
  } else {
    OutputIndentedAndFormattedString(
        0, "Suppressing InDesign alerts because all %d missing fonts are being activated for '%s'", opened,
        identifier.c_str());
    Suppress(*data.get());
  }
}

}  // namespace HostAlerts
