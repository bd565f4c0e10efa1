#include "CoreAgentInterface/CoreAgentInterface.h"

#include <mutex>
#include <utility>

#include "Activation/State/HornbeamGlobals.h"
#include "CoreAgentInterface/CoreAgentPluginNotification.h"
#include "CoreAgentInterface/CoreAgentPluginNotificationQueue.h"
#include "CoreAgentInterface/Shuttle/ShuttleLoader.h"
#include "LoomInterface/LoomInterface.h"
#include "Utilities/DebugUtils.h"
#include "Utilities/OperationTrace.h"

namespace {

// The callback can run while the manager goes. It takes a share of the queue here and never the manager
// itself.
std::mutex sQueueMutex;
std::shared_ptr<CoreAgentPluginNotificationQueue> sQueue;

void SetCurrentQueue(std::shared_ptr<CoreAgentPluginNotificationQueue> queue) {
  const std::lock_guard<std::mutex> lock(sQueueMutex);
  sQueue = std::move(queue);
}

// An agent that can't be asked leaves the answer as it stood before the call.
template <typename Entry>
bool AskFlag(Entry entry, int fallback) {
  int answer = fallback;
  entry(&answer);
  return answer != 0;
}

}  // namespace

CoreAgentInterface::CoreAgentInterface() : m_queue(std::make_shared<CoreAgentPluginNotificationQueue>()) {
  const OperationTrace trace("CoreAgentInterface::CoreAgentInterface",
                             "Entering CoreAgentInterface::CoreAgentInterface()");
  SetCurrentQueue(m_queue);
  InitializeCoreAgent(HornbeamGlobals::GetPluginHostApp());
  InitializeDefaultWorkgroup();
}

CoreAgentInterface::~CoreAgentInterface() {
  const OperationTrace trace("CoreAgentInterface::~CoreAgentInterface",
                             "Entering CoreAgentInterface::~CoreAgentInterface()");
  DeleteCoreAgent();
  SetCurrentQueue(nullptr);
}

std::shared_ptr<CoreAgentPluginNotificationQueue> CoreAgentInterface::CurrentQueue() {
  const std::lock_guard<std::mutex> lock(sQueueMutex);
  return sQueue;
}

void CoreAgentInterface::EnqueueNotification(std::unique_ptr<CoreAgentPluginNotification> notification) {
  m_queue->EnqueueNotification(std::move(notification));
}

void CoreAgentInterface::DeleteCoreAgent() {
  ShuttleLoader::GetSharedInstance()->DestroyThreadInstance();
}

bool CoreAgentInterface::ConnectedToCoreAgent() {
  return true;
}

bool CoreAgentInterface::IsWindows() {
  return false;
}

bool CoreAgentInterface::RunningStandalone() {
  const ShuttleLoader* shuttle = ShuttleLoader::GetSharedInstance();
  return AskFlag([shuttle](int* answer) { shuttle->GetRunningStandalone(answer); }, 1);
}

bool CoreAgentInterface::IsGoogleWebFontsEnabled() {
  const ShuttleLoader* shuttle = ShuttleLoader::GetSharedInstance();
  return AskFlag([shuttle](int* answer) { shuttle->GetIsGoogleWebFontsEnabled(answer); }, 1);
}

bool CoreAgentInterface::IsLoggedIn() {
  int loggedIn = 1;
  const unsigned int status = ShuttleLoader::GetSharedInstance()->GetIsLoggedIn(&loggedIn);
  return status == 0 && loggedIn != 0;
}

bool CoreAgentInterface::IsRunning() {
  int isRunning = 0;
  ShuttleLoader::GetSharedInstance()->GetIsCoreAgentProcessRunning(&isRunning);
  if (isRunning == 0) {
    OutputIndentedAndFormattedString(
        0, "WARNING:  PluginInterface::GetIsCoreAgentProcessRunning() returned %d", isRunning);
  }
  return isRunning != 0;
}

void CoreAgentInterface::DoOnlineOffline() {
  const OperationTrace trace("CoreAgentInterface::DoOnlineOffline",
                             "Entering CoreAgentInterface::DoOnlineOffline()");
  if (IsOnline()) {
    GoOffline();
  } else if (GoOnline() != 0) {
    if (LoomInterface* loom = HornbeamGlobals::GetSharedLoomInterface()) loom->ShowGoOnlineErrorMessageBox();
  }
}
