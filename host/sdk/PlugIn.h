#pragma once

#include <span>

#include "BossDefinition.h"
#include "ISession.h"

/// What the host gets from a plug-in's code: one static object, by the entry GetPlugIn.
///
/// Life: the host loads the code, asks for this object, gives it the session, registers its bosses, and
/// calls the startup services. At quit it calls the shutdown services, releases the bosses, and takes the
/// session back.
class PlugIn {
 public:
  virtual ~PlugIn() = default;

  /// A name for the log. Lives as long as the code.
  virtual const char* GetName() const = 0;

  /// The bosses that it brings. The list lives as long as the code.
  virtual std::span<const BossDefinition> GetBosses() const = 0;

  /// \param session  No reference is taken; null before the session goes. GetExecutionContextSession() in
  ///        this plug-in's code gives it from now on.
  virtual void SetSession(ISession* session) { host_sdk_detail::gSession = session; }
};

/// The one symbol that a plug-in's shared object exports. The object belongs to the plug-in.
extern "C" [[gnu::visibility("default")]] PlugIn* GetPlugIn();

/// The entry's name and type, for the host.
inline constexpr char kGetPlugInEntry[] = "GetPlugIn";
using GetPlugInProc = PlugIn* (*)();
