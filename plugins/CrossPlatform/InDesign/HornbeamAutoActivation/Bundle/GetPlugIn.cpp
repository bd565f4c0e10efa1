#include "Activation/CommonFunctionality.h"
#include "HornbeamPlugIn.h"

namespace {

/// Tells who this plug-in is, when the host loads it.
const CommonFunctionality::StaticPluginInitializer sPluginInitializer(
    "com.talworth.AutoActivationPlugin.ID15", "15");

}  // namespace

PlugIn* GetPlugIn() {
  return &HornbeamPlugIn::GetInstance();
}
