#pragma once

#include <span>

#include "InterfaceFactory.h"

/// One boss of a plug-in, or more interfaces for one of the host's.
///
/// What the host does with it follows from its interfaces:
///   - kSessionBoss: the interfaces are added to the session and can be asked of it.
///   - kDocBoss: the interfaces are added to each document that is opened from now on.
///   - IStartupShutdownService: made when the host is up, called then and before it goes.
///   - IK2ServiceProvider: made at registration and asked for its services; with IResponder beside it, its
///     Respond() is called at the signals among them.
///   - Any other can be made by its number.
struct BossDefinition {
  ClassID classID;
  std::span<const InterfaceFactory> interfaces;
};
