#include <cstdint>
#include <utility>

#include "Activation/FontActivationTracker.h"
#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "LoomInterface/LoomInterface.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/FontDebugUtils.h"
#include "Utilities/OperationTrace.h"

std::atomic<bool> HornbeamGlobals::sShutDown{false};
std::unique_ptr<LoomInterface> HornbeamGlobals::sLoomInterface;
std::unique_ptr<FontActivationTracker> HornbeamGlobals::sFontActivationTracker;

LoomInterface* HornbeamGlobals::GetSharedLoomInterface() {
  if (sShutDown) return nullptr;
  if (!sLoomInterface) {
    if (!sHostApp) OutputIndentedAndFormattedString(0, "ERROR: sHostApp is NULL in %s()", __func__);
    sLoomInterface =
        std::make_unique<LoomInterface>(sHostApp.get(), sPluginVersion.get(),
                                        sTalworthPluginInterfaceVersion.get(), sPluginBundleIdentifier.get());
  }
  return sLoomInterface.get();
}

std::unique_ptr<LoomInterface> HornbeamGlobals::ReplaceSharedLoomInterfaceForTesting(
    std::unique_ptr<LoomInterface> loomInterface) {
  if (loomInterface) sShutDown = false;
  return std::exchange(sLoomInterface, std::move(loomInterface));
}

FontActivationTracker* HornbeamGlobals::GetSharedFontActivationTracker() {
  if (sShutDown) return nullptr;
  if (!sFontActivationTracker) {
    sFontActivationTracker = std::make_unique<FontActivationTracker>(GetSharedLoomInterface());
  }
  return sFontActivationTracker.get();
}

CFStringRef HornbeamGlobals::GetHostAppDisplayName() {
  const LoomInterface* loom = GetSharedLoomInterface();
  if (!loom || !sHostApp) return nullptr;
  return loom->GetHostAppDisplayName();
}

void HornbeamGlobals::SaveDocumentFonts(const std::string& path, CFArrayRef fonts) {
  const OperationTrace trace("SaveDocumentFonts", "Entering %s (path=%s, hint=0x%08x)", "SaveDocumentFonts",
                             path.c_str(), static_cast<unsigned int>(reinterpret_cast<uintptr_t>(fonts)));
  FontDebugUtils::DumpFontNames(fonts, "...SaveDocumentFonts() hint");
  if (!GetSharedLoomInterface()) {
    OutputIndentedAndFormattedString(0, "No Loom");
    return;
  }

  CFStringRef displayName = GetHostAppDisplayName();
  if (!displayName) return;
  char hostName[256] = {};
  if (!CFStringGetCString(displayName, hostName, sizeof(hostName), kCFStringEncodingUTF8)) return;

  OutputIndentedAndFormattedString(0, "Calling Shuttle SaveDocumentFonts");
  const std::string category = GetHostAppCategory();
  ShuttleLoader::GetSharedInstance()->SaveDocumentFonts(path.c_str(), hostName, category.c_str(), fonts);
}

void HornbeamGlobals::CleanUpOnShutdown() {
  SetPluginServicesEnabled(false);
  sShutDown = true;
  sFontActivationTracker.reset();
  // The library looks after what the framework left with it before the framework itself goes.
  ShuttleLoader::GetSharedInstance()->CleanUpOnShutdown();
  sLoomInterface.reset();
  sHostApp = nullptr;
  sPluginVersion = nullptr;
  sPluginBundleIdentifier = nullptr;
  sTalworthPluginInterfaceVersion = nullptr;
}
