#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"

#include <cstdint>
#include <utility>

#include "Activation/State/HornbeamGlobals.h"
#include "Memory/CFVector.h"
#include "System/SystemRoot.h"
#include "Utilities/AgentLauncher.h"
#include "Utilities/BundleUtilities.h"
#include "Utilities/DebugUtils.h"
#include "XCFUtils.h"

ShuttleLoader* ShuttleLoader::sSharedInstance = nullptr;

namespace {

constexpr const char* kKilnProcessName = "Kiln";
constexpr const char* kFixedPath = "/Library/Frameworks/TalworthPluginInterface.framework";

// A pointer as the log's eight hexadecimal digits.
unsigned LogForm(const void* pointer) {
  return static_cast<unsigned>(reinterpret_cast<uintptr_t>(pointer));
}

void* GetFunctionPtrWrapper(const void* bundle, const char* name, int* missingCount) {
  if (bundle == nullptr) return nullptr;
  const RetainPtr<CFStringRef> functionName = XCFUtils::CreateString(name);
  void* function = CFBundleGetFunctionPointerForName(static_cast<CFBundleRef>(const_cast<void*>(bundle)),
                                                     functionName.get());  // CFBundleRef is not const
  OutputIndentedAndFormattedString(0, "CFBundleGetFunctionPointerForName(0x%08x, '%s') returned 0x%08x",
                                   LogForm(bundle), name, LogForm(function));
  if (function == nullptr) ++*missingCount;
  return function;
}

template <typename Function>
void Bind(Function*& pointer, const void* bundle, const char* name, int* missingCount) {
  pointer = reinterpret_cast<Function*>(GetFunctionPtrWrapper(bundle, name, missingCount));
}

bool IsAsExpected(bool bound, bool expectBound, const char* name) {
  if (bound == expectBound) return true;
  OutputIndentedAndFormattedString(
      0, expectBound ? "ERROR:  this->pf%s is NULL." : "ERROR:  this->pf%s is not NULL.", name);
  return false;
}

// The folder that holds the bundle.
std::string FolderOf(CFBundleRef bundle) {
  const RetainPtr<CFURLRef> url = adoptCF(CFBundleCopyBundleURL(bundle));
  const std::string path = ToPath(url.get());
  return path.substr(0, path.find_last_of('/'));
}

}  // namespace

ShuttleLoader* ShuttleLoader::GetSharedInstance() {
  if (sSharedInstance == nullptr) {
    sSharedInstance = new ShuttleLoader;
    sSharedInstance->FindAndBind();
  }
  return sSharedInstance;
}

ShuttleLoader* ShuttleLoader::ReplaceSharedInstanceForTesting(ShuttleLoader* instance) {
  return std::exchange(sSharedInstance, instance);
}

ShuttleLoader::ShuttleLoader() {
  ResetFunctionPointers(this, nullptr);
  VerifyThatAllMembersAre(false);
}

ShuttleLoader::ShuttleLoader(const ShuttleFunctions& functions, std::string location, std::string version)
    : ShuttleFunctions(functions),
      m_location(std::move(location)),
      m_version(std::move(version)),
      m_nMissing(0) {
#define COUNT_IF_MISSING(name) m_nMissing += this->pf##name == nullptr ? 1 : 0;
#define AGENT_ENTRY(name, ...) COUNT_IF_MISSING(name)
#define FLAG_ENTRY(name) COUNT_IF_MISSING(name)
#define COLUMN_ENTRY(name) COUNT_IF_MISSING(name)
#define PLAIN_ENTRY(result, name, ...) COUNT_IF_MISSING(name)
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
#undef COUNT_IF_MISSING
}

void ShuttleLoader::FindAndBind() {
  std::string besideAgent;
  RetainPtr<CFBundleRef> bundle =
      LoadPrivateFramework(HornbeamGlobals::GetPluginBundleIdentifier(), kFrameworkName);
  if (!bundle && (GetPathToRunningProcessExe(kKilnProcessName, besideAgent) == 0 ||
                  FindAndLaunchKiln(&besideAgent) == 0)) {
    const std::string path = besideAgent + kFrameworkName;
    bundle = OpenBundleAtPath(path);
    OutputIndentedAndFormattedString(
        0, "CFBundleCreate() returned 0x%08x on attempt to load plug-in interface from '%s'",
        LogForm(bundle.get()), path.c_str());
    if (bundle) m_location = besideAgent;
  }
  if (!bundle) bundle = OpenBundleAtPath(platform::InSystemRoot(kFixedPath));
  if (!bundle) {
    OutputIndentedAndFormattedString(0, "ERROR:  cannot find %s", kFrameworkName);
    return;
  }
  if (m_location.empty()) m_location = FolderOf(bundle.get());
  m_version = XCFUtils::GetStdString(
      CFBundleGetValueForInfoDictionaryKey(bundle.get(), CFSTR("CFBundleShortVersionString")));
  // Its functions are called until the process ends, so the bundle is kept as long as the table.
  m_bundle = bundle;
  ResetFunctionPointers(this, bundle.get());
}

bool ShuttleLoader::IsLoaded(std::string* outLocation, std::string* outVersion, int* outMissingCount) const {
  if (outLocation == nullptr || outVersion == nullptr || outMissingCount == nullptr) {
    OutputIndentedAndFormattedString(
        0, "ShuttleLoader::IsLoaded() returning false because it was called incorrectly.");
    return false;
  }
  *outLocation = m_location;
  *outVersion = m_version;
  *outMissingCount = m_nMissing;
  if (m_nMissing == kNeverBound) {
    OutputIndentedAndFormattedString(
        0, "ShuttleLoader::IsLoaded() returning false because all %d functions are missing.", m_nMissing);
  } else if (m_nMissing != 0) {
    OutputIndentedAndFormattedString(
        0, "ShuttleLoader::IsLoaded() returning false because of one or more null inputs.");
  }
  return m_nMissing == 0;
}

CFStringRef ShuttleLoader::VersionStringRef() const {
  return XCFUtils::CreateString(m_version).leakRef();
}

void ShuttleLoader::ResetFunctionPointers(ShuttleLoader* loader, const void* bundle) {
  if (bundle != nullptr) loader->m_nMissing = 0;
#define BIND(name) Bind(loader->pf##name, bundle, #name, &loader->m_nMissing);
#define AGENT_ENTRY(name, ...) BIND(name)
#define FLAG_ENTRY(name) BIND(name)
#define COLUMN_ENTRY(name) BIND(name)
#define PLAIN_ENTRY(result, name, ...) BIND(name)
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
#undef BIND
}

bool ShuttleLoader::VerifyThatAllMembersAre(bool expectBound) const {
  bool asExpected = true;
#define VERIFY(name) asExpected = IsAsExpected(this->pf##name != nullptr, expectBound, #name) && asExpected;
#define AGENT_ENTRY(name, ...) VERIFY(name)
#define FLAG_ENTRY(name) VERIFY(name)
#define COLUMN_ENTRY(name) VERIFY(name)
#define PLAIN_ENTRY(result, name, ...) VERIFY(name)
#include "CoreAgentInterface/Shuttle/ShuttleEntries.h"
#undef VERIFY
  return asExpected;
}
