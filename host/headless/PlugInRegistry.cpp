#include "headless/PlugInRegistry.h"

#include "ClassIDs.h"
#include "IResponder.h"
#include "ISession.h"
#include "PlugIn.h"
#include "headless/DocumentSignal.h"

namespace headless {
namespace {

InterfacePtr<Boss> MakeBoss(const BossDefinition& definition) {
  InterfacePtr<Boss> boss(new Boss());
  for (const InterfaceFactory& factory : definition.interfaces) boss->AddInterface(factory);
  return boss;
}

}  // namespace

void PlugInRegistry::Register(PlugIn& plugIn) {
  m_vPlugIns.push_back(&plugIn);
  const InterfacePtr<ISession> session(&m_session, UseDefaultIID());
  plugIn.SetSession(session.get());
  for (const BossDefinition& definition : plugIn.GetBosses()) RegisterBoss(definition);
}

void PlugInRegistry::RegisterBoss(const BossDefinition& definition) {
  if (definition.classID == kSessionBoss) {
    for (const InterfaceFactory& factory : definition.interfaces) {
      if (m_session.AddInterface(factory)) m_vSessionAdditions.push_back(factory.interfaceID);
    }
  } else if (definition.classID == kDocBoss) {
    m_vDocumentAdditions.insert(m_vDocumentAdditions.end(), definition.interfaces.begin(),
                                definition.interfaces.end());
  } else {
    const InterfacePtr<Boss> boss = MakeBoss(definition);
    InterfacePtr<IStartupShutdownService> startup(boss, UseDefaultIID());
    if (startup) m_vStartupServices.push_back(std::move(startup));
    RegisterServices(definition, boss);
  }
}

void PlugInRegistry::RegisterServices(const BossDefinition& definition, const InterfacePtr<Boss>& boss) {
  const InterfacePtr<IK2ServiceProvider> provider(boss, UseDefaultIID());
  const InterfacePtr<IResponder> responder(boss, UseDefaultIID());
  if (!provider || !responder) return;
  K2Vector<ServiceID> services;
  if (provider->HasMultipleIDs()) {
    provider->GetServiceIDs(services);
  } else {
    services.push_back(provider->GetServiceID());
  }
  const bool isNewForEachCall = provider->GetInstantiationPolicy() == IK2ServiceProvider::kInstancePerCall;
  for (const ServiceID service : services) {
    m_mResponders[service].push_back({&definition, boss, isNewForEachCall});
  }
}

void PlugInRegistry::Startup() {
  for (const auto& service : m_vStartupServices) service->Startup();
}

void PlugInRegistry::Shutdown() {
  for (auto service = m_vStartupServices.rbegin(); service != m_vStartupServices.rend(); ++service) {
    (*service)->Shutdown();
  }
}

void PlugInRegistry::Clear() {
  m_mResponders.clear();
  while (!m_vStartupServices.empty()) m_vStartupServices.pop_back();
  m_vDocumentAdditions.clear();
  for (; !m_vSessionAdditions.empty(); m_vSessionAdditions.pop_back()) {
    m_session.RemoveInterface(m_vSessionAdditions.back());
  }
  for (; !m_vPlugIns.empty(); m_vPlugIns.pop_back()) m_vPlugIns.back()->SetSession(nullptr);
}

IDocumentSignalData::UIFlags PlugInRegistry::Send(ServiceID service, const UIDRef& document,
                                                  const IDFile& file) {
  const InterfacePtr<Boss> signal(new Boss());
  auto* signalManager = signal->Emplace<DocumentSignal>(service);
  const auto* data = signal->Emplace<DocumentSignalData>(document, file);
  const auto responders = m_mResponders.find(service);
  if (responders == m_mResponders.end()) return data->Flags();
  // The copy stays whole while a responder works.
  for (const Responder& entry : std::vector<Responder>(responders->second)) {
    const InterfacePtr<Boss> boss = entry.isNewForEachCall ? MakeBoss(*entry.definition) : entry.boss;
    const InterfacePtr<IResponder> responder(boss, UseDefaultIID());
    responder->Respond(signalManager);
  }
  return data->Flags();
}

}  // namespace headless
