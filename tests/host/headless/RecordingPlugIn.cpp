#include "RecordingPlugIn.h"

#include <map>

RecordingPlugIn* RecordingPlugIn::sCurrent = nullptr;

namespace {

const std::map<ServiceID, std::string> kSignals = {
    {kBeforeOpenDocSignalResponderService, "before open"},
    {kDuringOpenDocSignalResponderService, "during open"},
    {kAfterOpenDocSignalResponderService, "after open"},
    {kBeforeSaveDocSignalResponderService, "before save"},
    {kAfterSaveDocSignalResponderService, "after save"},
    {kBeforeCloseDocSignalResponderService, "before close"},
    {kAfterCloseDocSignalResponderService, "after close"},
};

class Provider final : public CServiceProvider {
 public:
  using CServiceProvider::CServiceProvider;
  PMString GetName() const override { return "Recorder"; }
  void GetServiceIDs(K2Vector<ServiceID>& services) const override {
    for (const auto& signal : kSignals) services.push_back(signal.first);
  }
};

class Responder final : public CPMUnknown<IResponder> {
 public:
  using CPMUnknown::CPMUnknown;
  void Respond(ISignalMgr* signal) override {
    RecordingPlugIn& plugIn = *RecordingPlugIn::sCurrent;
    plugIn.events.push_back(kSignals.at(signal->GetServiceID()));
    const InterfacePtr<IDocumentSignalData> data(signal, UseDefaultIID());
    if (plugIn.onSignal) plugIn.onSignal(signal->GetServiceID(), *data.get());
  }
};

class IdleTask final : public CPMUnknown<IIdleTask> {
 public:
  using CPMUnknown::CPMUnknown;
  uint32 RunTask(uint32 appFlags, IdleTimer*) override {
    RecordingPlugIn& plugIn = *RecordingPlugIn::sCurrent;
    plugIn.events.push_back("idle");
    return plugIn.onIdle ? plugIn.onIdle(appFlags) : kNeverAgain;
  }
  void InstallTask(uint32 delay) override {
    InterfacePtr<IIdleTaskMgr>(GetExecutionContextSession(), UseDefaultIID())->AddTask(this, delay);
  }
  void UninstallTask() override {
    InterfacePtr<IIdleTaskMgr>(GetExecutionContextSession(), UseDefaultIID())->RemoveTask(this);
  }
  const char* TaskName() override { return "Recorder"; }
};

class Service final : public CPMUnknown<IStartupShutdownService> {
 public:
  using CPMUnknown::CPMUnknown;
  void Startup() override {
    RecordingPlugIn::sCurrent->events.push_back("startup");
    InterfacePtr<IIdleTask>(GetExecutionContextSession(), UseDefaultIID())->InstallTask(0);
  }
  void Shutdown() override { RecordingPlugIn::sCurrent->events.push_back("shutdown"); }
};

constexpr InterfaceFactory kSession[] = {MakeInterfaceFactory<IdleTask>(1)};
constexpr InterfaceFactory kService[] = {MakeInterfaceFactory<Service>(2)};
constexpr InterfaceFactory kRecorder[] = {MakeInterfaceFactory<Provider>(3),
                                          MakeInterfaceFactory<Responder>(4)};
const InterfaceFactory kDocument[] = {
    MakePersistentInterfaceFactory<RecordingPlugIn::Attribute>(RecordingPlugIn::kAttributeImpl)};
const BossDefinition kBosses[] = {{kSessionBoss, kSession},
                                  {kFirstPlugInClassID, kService},
                                  {kFirstPlugInClassID + 1, kRecorder},
                                  {kDocBoss, kDocument}};

}  // namespace

std::span<const BossDefinition> RecordingPlugIn::GetBosses() const {
  return kBosses;
}
