// Making and ending the one manager: the members of the facade that know its concrete class.

#include <string>

#include "Activation/FontActivationTracker.h"
#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/CoreAgentInterface.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "FontManagerInterface/FontManagerInterface.h"
#include "GBlockingLockStrategy.h"
#include "GScopedLock.h"
#include "LoomInterface/LoomInterface.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

const char* const kAnyVersion = "1.0.0.0";
constexpr int kComparedFields = 3;

// The host quit while the manager was being made, from inside one of its message boxes.
bool sShutdownDeferred = false;

bool ShouldDeactivateAtQuit(const LoomInterface& loom, FontManagerInterface* manager) {
  return HornbeamGlobals::ArePluginServicesEnabled() && loom.GetCloseFontsOnHostAppQuit() &&
         loom.GetEnabledAutoActivationPref() && manager != nullptr && manager->IsLoggedIn();
}

// Tells the UI framework and the caller which edition of the font manager this is.
void NameFontManager(FontManagerInterface* manager, CFStringRef* outPluginName) {
  const CFStringRef pluginName = manager->RunningStandalone() ? kHornbeamStudioPlugin : kSycamorePlugin;
  if (LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface())
    loom->SetFontManagerBundleName(pluginName);
  if (outPluginName != nullptr) *outPluginName = pluginName;
}

// Whether the texts agree in their first three fields, or the shorter ends with a whole field of the longer.
bool AgreeInLeadingFields(const std::string& a, const std::string& b) {
  const std::string& shorter = a.size() <= b.size() ? a : b;
  const std::string& longer = a.size() <= b.size() ? b : a;
  int dots = 0;
  for (size_t index = 0; index < shorter.size(); ++index) {
    if (dots == kComparedFields) return true;
    if (shorter[index] != longer[index]) return false;
    if (shorter[index] == '.') ++dots;
  }
  return longer.size() > shorter.size() && longer[shorter.size()] == '.';
}

}  // namespace

bool FontManagerInterface::CompatibleFontManagerIsRunning(CFStringRef* outPluginName) {
  const char* const kName = "FontManagerInterface::CompatibleFontManagerIsRunning";
  OperationTrace trace(kName, "Entering %s()", kName);
  bool compatible = false;
  {
    GScopedLock lock(sm_Mutex, true, new GBlockingLockStrategy);
    // This thread is inside already: a message box of the constructor let it come back in.
    if (!lock.IsLocked()) return false;
    std::string location;
    std::string version;
    int missingCount = 0;
    if (sm_pFontManager != nullptr) {
      compatible = GetFontManager()->IsRunning();
    } else if (ShuttleLoader::GetSharedInstance()->IsLoaded(&location, &version, &missingCount)) {
      sm_pFontManager = new CoreAgentInterface;
      NameFontManager(GetFontManager(), outPluginName);
      if (GetFontManager()->IsRunning()) {
        const std::string pluginVersion = HornbeamGlobals::GetPluginVersion();
        OutputIndentedAndFormattedString(
            0, "Shuttle at location '%s' is version '%s' and plugin version is '%s'", location.c_str(),
            version.c_str(), pluginVersion.c_str());
        compatible = VersionsAreCompatible(version, pluginVersion);
      }
    }
  }
  if (sShutdownDeferred) {
    OnHostAppShuttingDown();
    compatible = false;
  }
  trace.Exiting("Exiting %s(); return code %d", kName, compatible);
  return compatible;
}

bool FontManagerInterface::VersionsAreCompatible(const std::string& a, const std::string& b) {
  bool compatible = false;
  if (a == b) {
    compatible = true;
  } else if (!a.empty() && !b.empty()) {
    compatible = a == kAnyVersion || b == kAnyVersion || AgreeInLeadingFields(a, b);
  }
  OutputIndentedAndFormattedString(0, "%s('%s', '%s') returning %d", "VersionsAreCompatible", a.c_str(),
                                   b.c_str(), compatible);
  return compatible;
}

void FontManagerInterface::OnHostAppShuttingDown() {
  const OperationTrace trace("FontManagerInterface::OnHostAppShuttingDown",
                             "Entering FontManagerInterface::OnHostAppShuttingDown()");
  GScopedLock lock(sm_Mutex, true, new GBlockingLockStrategy);
  // The manager is being made further up this stack; CompatibleFontManagerIsRunning() comes back here.
  sShutdownDeferred = !lock.IsLocked();
  if (sShutdownDeferred) return;

  FontManagerInterface* manager = sm_pFontManager;
  const LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface();
  FontActivationTracker* tracker = HornbeamGlobals::GetSharedFontActivationTracker();
  if (loom != nullptr && loom->IsValid() && tracker != nullptr) {
    tracker->CloseAllFonts(ShouldDeactivateAtQuit(*loom, manager));
  }
  if (manager == nullptr) {
    OutputIndentedAndFormattedString(
        0, "*** UH-OH, sm_pFontManager is NULL in FontManagerInterface::OnHostAppShuttingDown");
    return;
  }
  manager->DisconnectFromFontManager();
  // The pointer goes first: a callback that still comes in finds no manager.
  sm_pFontManager = nullptr;
  delete manager;
}
