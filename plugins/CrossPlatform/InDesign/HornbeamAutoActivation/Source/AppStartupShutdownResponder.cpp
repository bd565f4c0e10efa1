#include "AppStartupShutdownResponder.h"

#include <vector>

#include "Activation/CommonFunctionality.h"
#include "CAlert.h"
#include "DocumentElement.h"
#include "GBlockingLockStrategy.h"
#include "GScopedLock.h"
#include "HBIndesignPluginGlobals.h"
#include "HornbeamID.h"
#include "HostCall.h"
#include "IDThreading.h"
#include "IIdleTask.h"
#include "InterfacePtr.h"
#include "LoomInterface/LoomInterface.h"
#include "Memory/CFVector.h"
#include "NotificationDelivery.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

/// To the first run of the idle task, in milliseconds.
constexpr uint32 kFirstIdleDelay = 1000;

/// The one message that has to do without the UI framework is the host's to show.
void ShowHostAlert(CFStringRef text) {
  CAlert::InformationAlert(ToStdString(text));
}

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
  HostCall("AppStartupShutdownResponder::Startup", [] {
    const OperationTrace trace("AppStartupShutdownResponder::Startup", "Entering %s()",
                               "AppStartupShutdownResponder::Startup");
    GScopedLock lock(msMutex, true, new GBlockingLockStrategy);
    if (!lock.IsLocked()) {
      return;
    }
    LoomInterface::SetHostMessageProc(&ShowHostAlert);
    CommonFunctionality::Startup(IDThreading::IsMainThreadDomain());
    CommonFunctionality::InitializeCommonPreferences();
    if (InterfacePtr<IIdleTask> task(GetExecutionContextSession(), IID_IHORNBEAMIDLETASK); task) {
      task->InstallTask(kFirstIdleDelay);
    }
    NotificationDelivery::Start();
  });
}

void AppStartupShutdownResponder::Shutdown() {
  // Tracker and font manager can be at work further up the stack, where a message box let the quit come in.
  if (HostCallScope::IsUnderWay()) {
    OutputIndentedAndFormattedString(
        0, "*** AppStartupShutdownResponder::Shutdown waits until the host's other call is over");
    HostCallScope::RunWhenOver(&ShutDownNow);
    return;
  }
  ShutDownNow();
}

void AppStartupShutdownResponder::ShutDownNow() {
  HostCall("AppStartupShutdownResponder::Shutdown", [] {
    GScopedLock lock(msMutex, true, new GBlockingLockStrategy);
    const OperationTrace trace("AppStartupShutdownResponder::Shutdown", "Entering %s()",
                               "AppStartupShutdownResponder::Shutdown");
    if (!lock.IsLocked()) {
      return;
    }
    NotificationDelivery::Stop();
    CommonFunctionality::Shutdown();
    LoomInterface::SetHostMessageProc(nullptr);
    HBIndesignPluginGlobals::CleanUpOnShutdown();
  });
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
