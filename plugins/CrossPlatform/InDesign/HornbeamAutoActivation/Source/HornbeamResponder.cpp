#include "HornbeamResponder.h"

#include "Activation/State/HornbeamGlobals.h"
#include "ClassIDs.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "HBInDesignUtils.h"
#include "HBIndesignPluginGlobals.h"
#include "HostAlerts.h"
#include "HostCall.h"
#include "ISubject.h"
#include "LoomInterface/LoomInterface.h"
#include "ServiceIDs.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

constexpr const char* kRespond = "HornbeamResponder::Respond";

/// Whether the host made the document for itself from one that is open.
bool DocumentIsClone(const InterfacePtr<IDocumentSignalData>& data) {
  return data && data->IsClone();
}

}  // namespace

int HornbeamResponder::g_nOldSeed = 0;
std::map<UID, bool> HornbeamResponder::openingDocuments;

void HornbeamResponder::Respond(ISignalMgr* signal) {
  if (signal != nullptr) {
    HostCall(kRespond, [&] { HandleSignal(*signal); });
  }
}

void HornbeamResponder::HandleSignal(ISignalMgr& signal) {
  const ServiceID trigger = signal.GetServiceID();
  const OperationTrace trace(kRespond, "Entering %s(trigger=%u)", kRespond, trigger);
  FontManagerInterface* fontManager = FontManagerInterface::GetFontManager();
  LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  if (loom == nullptr || !loom->IsValid()) {
    OutputIndentedAndFormattedString(0, "%s doing nothing because Loom can't be loaded.", kRespond);
    return;
  }
  if (!loom->GetEnabledAutoActivationPref() || !HornbeamGlobals::ArePluginServicesEnabled()) {
    OutputIndentedAndFormattedString(0, "%s doing nothing because the plugin is disabled.", kRespond);
    return;
  }
  if (fontManager == nullptr || !fontManager->IsLoggedIn()) {
    OutputIndentedAndFormattedString(0, "%s doing nothing because the font manager is not logged in.",
                                     kRespond);
    return;
  }

  InterfacePtr<IDocumentSignalData> data(&signal, UseDefaultIID());
  const UIDRef document = data ? data->GetDocument() : UIDRef::Null();
  Dispatch(trigger, document, data, *loom);
  HostAlerts::Decide(data, document);
}

void HornbeamResponder::Dispatch(ServiceID trigger, const UIDRef& document,
                                 InterfacePtr<IDocumentSignalData>& data, LoomInterface& loom) {
  switch (trigger) {
    case kDuringNewDocSignalResponderService:
      DuringNewDocument(document);
      break;
    case kBeforeOpenDocSignalResponderService:
      if (data && !loom.GetPickBestMatch() && !HostAlerts::HasMissingOrOutOfDateLinks(document)) {
        HostAlerts::Suppress(*data.get());
        OutputIndentedAndFormattedString(
            0, "Suppressed InDesign alerts before handling kBeforeOpenDocSignalResponderService trigger");
      }
      if (!DocumentIsClone(data)) {
        BeforeOpenDocument(document);
      }
      break;
    case kDuringOpenDocSignalResponderService:
      if (!DocumentIsClone(data)) {
        DuringOpenDocument(document, g_nOldSeed);
      }
      break;
    case kAfterOpenDocSignalResponderService:
      if (!DocumentIsClone(data)) {
        AfterOpenDocument(document);
      }
      break;
    case kBeforeSaveDocSignalResponderService:
      BeforeSaveDocument(document);
      break;
    case kAfterSaveDocSignalResponderService:
      AfterSaveDocument(document);
      break;
    case kBeforeSaveAsDocSignalResponderService:
      BeforeSaveAsDoc(document);
      break;
    case kAfterSaveAsDocSignalResponderService:
      AfterSaveAsDoc(document);
      break;
    case kBeforeSaveACopyDocSignalResponderService:
      BeforeSaveACopyDoc(document);
      break;
    case kAfterSaveACopyDocSignalResponderService:
      AfterSaveACopyDoc(document);
      break;
    case kBeforeCloseDocSignalResponderService:
      BeforeCloseDocument(document);
      break;
    case kAfterCloseDocSignalResponderService:
      AfterCloseDocument(document);
      BroadcastFontChange();
      break;
    case kAfterAddLinkSignalResponderService:
      if (loom.GetSupportEmbeddedObjects()) {
        HBIndesignPluginGlobals::EmbeddedDocJustAdded = 1;
      }
      break;
    default:
      OutputIndentedAndFormattedString(0, "...unknown responder trigger: %ld", static_cast<long>(trigger));
      break;
  }
}

void HornbeamResponder::BroadcastFontChange() {
  int seed = g_nOldSeed;
  HBInDesignUtils::ReadFontChangeSeed(seed);
  if (seed == g_nOldSeed) {
    return;
  }
  g_nOldSeed = seed;
  const InterfacePtr<ISubject> subject(HBInDesignUtils::QueryFontMgr(), UseDefaultIID());
  if (subject) {
    subject->Change(kFontSystemChangedMsg);
  }
}
