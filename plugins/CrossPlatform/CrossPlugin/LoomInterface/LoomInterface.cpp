#include "LoomInterface/LoomInterface.h"

#include <utility>

#include "FontManagerInterface/FontManagerInterface.h"
#include "System/SystemRoot.h"
#include "Utilities/AgentLauncher.h"
#include "Utilities/BundleUtilities.h"
#include "Utilities/DebugUtils.h"
#include "XCFUtils.h"

namespace {

const char* const kFrameworkVersion = "1.0";
const char* const kPluginFilesFolder = "PluginFiles/";
const char* const kKilnProcessName = "Kiln";
const char* const kFixedPath = "/Library/Frameworks/TalworthPlugins.framework";

// Keys of the start-up dictionary.
const CFStringRef kHostAppKey = CFSTR("HostApp");
const CFStringRef kPluginVersionKey = CFSTR("PluginVersion");
const CFStringRef kPluginInterfaceVersionKey = CFSTR("TalworthPluginInterfaceVersion");
const CFStringRef kFrameworkURLKey = CFSTR("FrameworkURL");
const CFStringRef kFontManagerKey = CFSTR("FontManager");

template <typename Function>
void Bind(Function*& pointer, CFBundleRef bundle, CFStringRef name) {
  pointer = reinterpret_cast<Function*>(CFBundleGetFunctionPointerForName(bundle, name));
}

LoomFunctions BindFunctions(CFBundleRef bundle) {
  LoomFunctions functions;
#define LOOM_ENTRY(result, name, ...) Bind(functions.pf##name, bundle, CFSTR(#name));
#include "LoomInterface/LoomEntries.h"
  return functions;
}

RetainPtr<CFBundleRef> FindBesideRunningKiln() {
  std::string folder;
  if (GetPathToRunningProcessExe(kKilnProcessName, folder) != 0) {
    FindAndLaunchKiln(nullptr);
    if (GetPathToRunningProcessExe(kKilnProcessName, folder) != 0) return {};
  }
  return OpenBundleAtPath(folder + kPluginFilesFolder + LoomInterface::kFrameworkName);
}

RetainPtr<CFBundleRef> FindFramework(CFStringRef bundleIdentifier) {
  RetainPtr<CFBundleRef> bundle = LoadPrivateFramework(bundleIdentifier, LoomInterface::kFrameworkName);
  if (!bundle) bundle = FindBesideRunningKiln();
  if (!bundle) bundle = OpenBundleAtPath(platform::InSystemRoot(kFixedPath));
  return bundle;
}

}  // namespace

LoomInterface::LoomInterface(CFStringRef hostApp, CFStringRef pluginVersion,
                             CFStringRef pluginInterfaceVersion, CFStringRef bundleIdentifier) {
  SetStartupValues(hostApp, pluginVersion, pluginInterfaceVersion);
  InitializeFramework(bundleIdentifier);
}

LoomInterface::LoomInterface(const LoomFunctions& functions, CFStringRef hostApp, CFStringRef pluginVersion,
                             CFStringRef pluginInterfaceVersion)
    : m_osData(std::make_unique<OsData>()) {
  SetStartupValues(hostApp, pluginVersion, pluginInterfaceVersion);
  m_osData->functions = functions;
  StartFramework();
}

LoomInterface::~LoomInterface() {
  DestroyFramework();
}

void LoomInterface::SetStartupValues(CFStringRef hostApp, CFStringRef pluginVersion,
                                     CFStringRef pluginInterfaceVersion) {
  m_startup.SetStringForKey(kHostAppKey, hostApp);
  m_startup.SetStringForKey(kPluginVersionKey, pluginVersion);
  m_startup.SetStringForKey(kPluginInterfaceVersionKey, pluginInterfaceVersion);
}

void LoomInterface::InitializeFramework(CFStringRef bundleIdentifier) {
  if (m_bInitialized) return;
  m_bundleIdentifier = retainCF(bundleIdentifier);
  m_osData = std::make_unique<OsData>();
  m_osData->bundle = FindFramework(bundleIdentifier);
  if (!m_osData->bundle) {
    OutputIndentedAndFormattedString(0, "ERROR:  cannot find %s", kFrameworkName);
    m_nStatus = kFrameworkNotFound;
    DestroyFramework();
    return;
  }
  m_osData->functions = BindFunctions(m_osData->bundle.get());
  StartFramework();
}

void LoomInterface::StartFramework() {
  const LoomFunctions& functions = m_osData->functions;
  if (functions.pfLoomIsVersionCompatible == nullptr ||
      !functions.pfLoomIsVersionCompatible(kFrameworkVersion)) {
    m_nStatus = kVersionRefused;
  } else {
    if (m_osData->bundle) {
      const RetainPtr<CFURLRef> url = adoptCF(CFBundleCopyBundleURL(m_osData->bundle.get()));
      if (url) CFDictionarySetValue(m_startup.GetDictionaryRef(), kFrameworkURLKey, url.get());
    }
    const bool up = functions.pfLoomInitializeFramework != nullptr &&
                    functions.pfLoomInitializeFramework(m_startup.GetDictionaryRef()) == 0;
    m_nStatus = up ? kUp : kInitializationFailed;
  }
  m_bInitialized = m_nStatus == kUp;
  if (!m_bInitialized) DestroyFramework();
}

void LoomInterface::DestroyFramework() {
  m_osData.reset();
  m_bInitialized = false;
}

void LoomInterface::ShowAboutBox() {
  if (IsValid() && m_osData->functions.pfLoomShowAboutBox) m_osData->functions.pfLoomShowAboutBox();
}

void LoomInterface::ShowPreferences() {
  if (IsValid() && m_osData->functions.pfLoomShowPreferences) m_osData->functions.pfLoomShowPreferences();
}

void LoomInterface::ShowResolveFonts(CFArrayRef problemFonts) {
  if (IsValid() && m_osData->functions.pfLoomShowResolveFonts) {
    m_osData->functions.pfLoomShowResolveFonts(problemFonts);
  }
}

bool LoomInterface::AskForOneString(CFStringRef title, CFStringRef prompt, CFStringRef proposed,
                                    CFStringRef* outString) {
  if (outString == nullptr || !IsValid() || !m_osData->functions.pfLoomAskForOneString) return false;
  CFStringRef answer = nullptr;
  const bool answered = m_osData->functions.pfLoomAskForOneString(title, prompt, proposed, &answer);
  RetainPtr<CFStringRef> owned = adoptCF(answer);
  if (!answered || !owned) return false;
  *outString = owned.leakRef();
  return true;
}

void LoomInterface::SetIsOnline(bool online) {
  if (IsValid() && m_osData->functions.pfLoomSetIsOnline) m_osData->functions.pfLoomSetIsOnline(online);
}

void LoomInterface::SetFontManagerBundleName(CFStringRef name) {
  m_startup.SetStringForKey(kFontManagerKey, name);
}

CFStringRef LoomInterface::LocalizedString(CFStringRef key) const {
  if (key == nullptr) return nullptr;
  if (IsValid() && m_osData->functions.pfLoomLocalizedString) {
    if (CFStringRef text = m_osData->functions.pfLoomLocalizedString(key)) return text;
  }
  return CFStringCreateCopy(nullptr, key);
}

CFStringRef LoomInterface::GetHostAppDisplayName() const {
  if (!IsValid() || !m_osData->functions.pfLoomGetHostAppDisplayName) return nullptr;
  return m_osData->functions.pfLoomGetHostAppDisplayName();
}
