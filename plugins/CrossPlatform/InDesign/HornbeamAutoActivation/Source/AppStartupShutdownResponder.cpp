#include "AppStartupShutdownResponder.h"

#include <vector>

#include "Activation/CommonFunctionality.h"
#include "DocumentElement.h"
#include "GBlockingLockStrategy.h"
#include "GScopedLock.h"
#include "HBIndesignPluginGlobals.h"
#include "HornbeamID.h"
#include "IDThreading.h"
#include "IIdleTask.h"
#include "InterfacePtr.h"
#include "Utilities/DebugUtils.h"

namespace {

/// To the first run of the idle task, in milliseconds.
constexpr uint32 kFirstIdleDelay = 1000;

template <class T>
void EmptyFromTheBack(std::vector<T>& list) {
  while (!list.empty()) {
    list.pop_back();
  }
  list.shrink_to_fit();
}

}  // namespace

GMutex AppStartupShutdownResponder::msMutex;

void AppStartupShutdownResponder::Startup() {
  OutputIndentedAndFormattedString(1, "Entering AppStartupShutdownResponder::Startup()");
  GScopedLock lock(msMutex, true, new GBlockingLockStrategy);
  if (lock.IsLocked()) {
    CommonFunctionality::Startup(IDThreading::IsMainThreadDomain());
    CommonFunctionality::InitializeCommonPreferences();
    if (InterfacePtr<IIdleTask> task(GetExecutionContextSession(), IID_IHORNBEAMIDLETASK); task) {
      task->InstallTask(kFirstIdleDelay);
    }
  }
  OutputIndentedAndFormattedString(-1, "Exiting AppStartupShutdownResponder::Startup()");
}

void AppStartupShutdownResponder::Shutdown() {
  GScopedLock lock(msMutex, true, new GBlockingLockStrategy);
  OutputIndentedAndFormattedString(1, "Entering AppStartupShutdownResponder::Shutdown()");
  if (lock.IsLocked()) {
    CommonFunctionality::Shutdown();
  }
  OutputIndentedAndFormattedString(-1, "Exiting AppStartupShutdownResponder::Shutdown()");
}

void AppStartupShutdownResponder::ReleaseGlobalMemory(short bDeleteActivationList) {
  OutputIndentedAndFormattedString(0, "ReleaseGlobalMemory");
  GScopedLock lock(msMutex, true, new GBlockingLockStrategy);
  if (!lock.IsLocked()) {
    return;
  }
  if (bDeleteActivationList != 0) {
    HBIndesignPluginGlobals::DeleteActivationList();
  }
  EmptyFromTheBack(DocumentElement::FontPathList);
  EmptyFromTheBack(DocumentElement::FontFaceList);
  EmptyFromTheBack(DocumentElement::DuplicateFontIDListForSingleFont);
  EmptyFromTheBack(DocumentElement::DuplicateFontIndexList);
  HBIndesignPluginGlobals::DeleteDocumentList();
}
