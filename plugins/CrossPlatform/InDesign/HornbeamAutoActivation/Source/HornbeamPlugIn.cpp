#include "HornbeamPlugIn.h"

#include <array>

#include "AppStartupShutdownResponder.h"
#include "HornbeamID.h"
#include "HornbeamResponder.h"
#include "HornbeamServiceProvider.h"

namespace {

constexpr std::array kStartupShutdownInterfaces = {
    MakeInterfaceFactory<AppStartupShutdownResponder>(kHornbeamApplicationStartupShutdownImpl),
};

constexpr std::array kResponderInterfaces = {
    MakeInterfaceFactory<HornbeamServiceProvider>(kHornbeamServiceProviderImpl),
    MakeInterfaceFactory<HornbeamResponder>(kHornbeamResponderImpl),
};

constexpr std::array kBosses = {
    BossDefinition{kHornbeamStartupShutdownBoss, kStartupShutdownInterfaces},
    BossDefinition{kHornbeamResponderBoss, kResponderInterfaces},
};

}  // namespace

HornbeamPlugIn& HornbeamPlugIn::GetInstance() {
  static HornbeamPlugIn plugIn;
  return plugIn;
}

const char* HornbeamPlugIn::GetName() const {
  return "HornbeamAutoActivation";
}

std::span<const BossDefinition> HornbeamPlugIn::GetBosses() const {
  return kBosses;
}
