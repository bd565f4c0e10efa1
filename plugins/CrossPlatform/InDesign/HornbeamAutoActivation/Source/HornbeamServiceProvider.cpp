#include "HornbeamServiceProvider.h"

#include "ServiceIDs.h"

namespace {

// Two signals of the host without a published name; the responder only logs them.
constexpr ServiceID kUnnamedSignal263 = 263;
constexpr ServiceID kUnnamedSignal15873 = 15873;

}  // namespace

HornbeamServiceProvider::HornbeamServiceProvider(IPMUnknown* boss)
    : CServiceProvider(boss),
      m_vServiceIDs{
          kDuringNewDocSignalResponderService,
          kBeforeOpenDocSignalResponderService,
          kDuringOpenDocSignalResponderService,
          kAfterOpenDocSignalResponderService,
          kBeforeSaveDocSignalResponderService,
          kAfterSaveDocSignalResponderService,
          kUnnamedSignal263,
          kBeforeSaveAsDocSignalResponderService,
          kAfterSaveAsDocSignalResponderService,
          kBeforeSaveACopyDocSignalResponderService,
          kAfterSaveACopyDocSignalResponderService,
          kBeforeCloseDocSignalResponderService,
          kAfterCloseDocSignalResponderService,
          kUnnamedSignal15873,
          kAfterAddLinkSignalResponderService,
      } {}

PMString HornbeamServiceProvider::GetName() const {
  return "HornbeamServiceProvider";
}

ServiceID HornbeamServiceProvider::GetServiceID() const {
  return m_vServiceIDs.front();
}

void HornbeamServiceProvider::GetServiceIDs(K2Vector<ServiceID>& serviceIDs) const {
  serviceIDs.insert(serviceIDs.end(), m_vServiceIDs.begin(), m_vServiceIDs.end());
}
