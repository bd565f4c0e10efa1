#include "NotificationDelivery.h"

#include <memory>

#include "FontManagerInterface/FontManagerInterface.h"
#include "HostCall.h"
#include "NotificationTimer.h"
#include "Panel/PanelManager.h"

namespace NotificationDelivery {

namespace {

std::unique_ptr<NotificationTimer> notificationTimer;

}  // namespace

void Start() {
  if (notificationTimer == nullptr) {
    notificationTimer = std::make_unique<NotificationTimer>(&processNotifications);
  }
}

void Stop() {
  notificationTimer.reset();
}

void processNotifications(CFRunLoopTimerRef /*timer*/, void* /*info*/) {
  HostCall("processNotifications", [] {
    FontManagerInterface* fontManager = FontManagerInterface::GetFontManager();
    if (fontManager == nullptr) {
      return;
    }
    fontManager->ProcessNotifications();
    PanelManager::GetSharedInstance()->SelectSocket(false);
    PanelManager::GetSharedInstance()->PopNotifications();
  });
}

}  // namespace NotificationDelivery
