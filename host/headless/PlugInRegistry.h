#pragma once

#include <span>
#include <unordered_map>
#include <vector>

#include "BossDefinition.h"
#include "IDocumentSignalData.h"
#include "IK2ServiceProvider.h"
#include "IStartupShutdownService.h"
#include "InterfacePtr.h"
#include "ServiceIDs.h"
#include "headless/Boss.h"

class ISession;
class PlugIn;

namespace headless {

/// What the plug-ins have brought: interfaces for the session and for documents, start-up services, and
/// responders to signals.
///
/// Life: Register() for each plug-in, Startup(), any number of signals, Shutdown(), Clear(). Clear() also
/// happens at the end.
class PlugInRegistry {
 public:
  /// \param session  The session's object; outlives the registry.
  explicit PlugInRegistry(Boss& session) : m_session(session) {}
  ~PlugInRegistry() { Clear(); }
  PlugInRegistry(const PlugInRegistry&) = delete;
  PlugInRegistry& operator=(const PlugInRegistry&) = delete;

  void Register(PlugIn& plugIn);

  /// In the order of registration, and for Shutdown() in the reverse one.
  void Startup();
  void Shutdown();

  /// Lets go of all that the plug-ins brought, last come first, and takes the session from them.
  void Clear();

  /// What plug-ins add to each document. Good until Register() or Clear().
  std::span<const InterfaceFactory> DocumentAdditions() const { return m_vDocumentAdditions; }

  /// Calls the responders of a signal in the order of their registration.
  ///
  /// \return How much they leave the host to show.
  IDocumentSignalData::UIFlags Send(ServiceID service, const UIDRef& document, const IDFile& file);

 private:
  struct Responder {
    const BossDefinition* definition;
    InterfacePtr<Boss> boss;
    bool isNewForEachCall;
  };

  void RegisterBoss(const BossDefinition& definition);
  void RegisterServices(const BossDefinition& definition, const InterfacePtr<Boss>& boss);

  Boss& m_session;
  std::vector<PlugIn*> m_vPlugIns;
  std::vector<PMIID> m_vSessionAdditions;
  std::vector<InterfaceFactory> m_vDocumentAdditions;
  std::vector<InterfacePtr<IStartupShutdownService>> m_vStartupServices;
  std::unordered_map<ServiceID, std::vector<Responder>> m_mResponders;
};

}  // namespace headless
