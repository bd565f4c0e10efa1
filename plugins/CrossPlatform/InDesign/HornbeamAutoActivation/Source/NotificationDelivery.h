#pragma once

#include <CoreFoundation/CoreFoundation.h>

/// The plug-in's pulse: what the agent has reported is handled, and the panels send what they have noted, at
/// each tick of a NotificationTimer.
///
/// Thread: main.
namespace NotificationDelivery {

/// Makes the timer; does nothing when there is one.
void Start();

/// Ends it. Does nothing without one.
void Stop();

/// The timer's callback: one tick. Without a font manager it does nothing. It may be called from inside
/// itself by a message box; the manager and the panels then do nothing.
void processNotifications(CFRunLoopTimerRef timer, void* info);

}  // namespace NotificationDelivery
