#include "PlugInLogic.h"

#include "Activation/State/HornbeamGlobals.h"
#include "Complaint.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "HornbeamVersion.h"
#include "KilnLibrary.h"
#include "Memory/CFVector.h"

namespace {

void Stop() {
  FontManagerInterface::OnHostAppShuttingDown();
  HornbeamGlobals::CleanUpOnShutdown();
}

// What the plug-in would say in boxes that speak of documents.
bool HasUsableLibrary(const KilnConnection& kiln) {
  KilnLibrary::Status status;
  if (const ErrCode code = KilnLibrary(kiln).GetStatus(status)) {
    ComplainOfCode("Kiln can't be asked", code);
    return false;
  }
  if (status.vaultStatus != 0) ComplainOfCode("Kiln has no library", status.vaultStatus);
  return status.vaultStatus == 0;
}

}  // namespace

std::unique_ptr<PlugInLogic> PlugInLogic::Start(const KilnConnection& kiln) {
  if (!HasUsableLibrary(kiln)) return nullptr;
  HornbeamGlobals::IdentifyPluginHostApp(CFSTR("hornbeam"));
  HornbeamGlobals::IdentifyPluginVersion(ToCFString(kHornbeamVersion).get());
  HornbeamGlobals::IdentifyPluginInterfaceVersion(
      adoptCF(ShuttleLoader::GetSharedInstance()->VersionStringRef()).get());
  HornbeamGlobals::SetConnectedToCore(false);
  const bool fits = FontManagerInterface::CompatibleFontManagerIsRunning(nullptr);
  FontManagerInterface* manager = FontManagerInterface::GetFontManager();
  if (fits && manager && HornbeamGlobals::ConnectedToCore()) {
    return std::unique_ptr<PlugInLogic>(new PlugInLogic(*manager));
  }
  Complain("the Kiln that runs doesn't fit this hornbeam");
  Stop();
  return nullptr;
}

PlugInLogic::~PlugInLogic() {
  Stop();
}
