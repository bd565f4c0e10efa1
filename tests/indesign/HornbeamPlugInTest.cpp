#include "Activation/CommonFunctionality.h"
#include "AppStartupShutdownResponder.h"
#include "HornbeamPlugIn.h"
#include "NotificationDelivery.h"
#include "PlugInTest.h"
#include "support/RecordingPanel.h"

namespace {

class StartUpService : public PlugInTest {
 protected:
  StartUpService() { CommonFunctionality::ResetCallCountersForTesting(); }
  ~StartUpService() override {
    NotificationDelivery::Stop();
    CommonFunctionality::ResetCallCountersForTesting();
  }

  class IdleTask : public CPMUnknown<IIdleTask> {
   public:
    using CPMUnknown::CPMUnknown;
    uint32 RunTask(uint32, IdleTimer*) override { return kNeverAgain; }
    void InstallTask(uint32 delay) override { delays.push_back(delay); }
    void UninstallTask() override {}
    const char* TaskName() override { return "idle"; }
    std::vector<uint32> delays;
  };

  AppStartupShutdownResponder responder{nullptr};
};

TEST_F(StartUpService, WritesDefaultsOnceAndInstallsTheIdleTaskWhereThereIsOne) {
  loom.preferences.clear();
  responder.Startup();
  EXPECT_EQ(loom.GetPreference("CS5PanelWidth"), 260);

  loom.SetPreference("CS5PanelWidth", 300);
  IdleTask task(&host.session);
  host.session.interfaces[IID_IHORNBEAMIDLETASK] = &task;
  responder.Startup();
  EXPECT_EQ(loom.GetPreference("CS5PanelWidth"), 300);
  EXPECT_EQ(task.delays, std::vector<uint32>{1000});
}

TEST_F(StartUpService, WithoutTheFrameworkTheHostTellsTheUser) {
  loom.Loom().DestroyFramework();
  responder.Startup();
  ASSERT_EQ(host.alerts.size(), 1u);
  EXPECT_TRUE(host.alerts.front().starts_with("The Talworth plug-in could not locate"))
      << host.alerts.front();
  EXPECT_FALSE(HornbeamGlobals::ArePluginServicesEnabled());
  host.isMainThread = false;
  responder.Startup();
  EXPECT_EQ(host.alerts.size(), 1u) << "none off the main thread";
}

TEST_F(StartUpService, EventsAreDeliveredAtEachTickUntilTheQuit) {
  class Agent : public FakeFontManager {
   public:
    int ProcessNotifications() override {
      ++ticks;
      // A message box runs the host's events.
      if (ticks == 1) NotificationDelivery::processNotifications(nullptr, nullptr);
      return 0;
    }
    int ticks = 0;
  };
  const RecordingPanel::Registration panel;
  responder.Startup();
  auto* agent = new Agent;  // the shutdown deletes the live one
  while (agent->ticks < 4) CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0.05, true);
  EXPECT_EQ(panel->calls.size(), 2u * static_cast<size_t>(agent->ticks));
  EXPECT_EQ(panel->calls[0], "SelectSocket 0");
  EXPECT_EQ(panel->calls[1], "Pop");
  responder.Shutdown();
  EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 0, false), kCFRunLoopRunFinished) << "no timer is left";
}

TEST_F(StartUpService, ATickThatThrowsDoesNotReachTheHost) {
  class Agent : public FakeFontManager {
   public:
    int ProcessNotifications() override { throw std::bad_alloc(); }
  } agent;
  NotificationDelivery::processNotifications(nullptr, nullptr);
}

TEST_F(StartUpService, AQuitInTheMiddleOfACloseWaitsForItsEnd) {
  responder.Startup();
  auto* agent = new FakeFontManager;  // the shutdown deletes the live one
  agent->AddFont({{kGM_PostScriptNameKey, "Acme-Bold"}});
  loom.SetPreference("CloseFontsOnDocClose", 1);
  InMemoryDocument document("A.idml");
  document.Use("Acme", {{"Bold", "Acme-Bold"}});
  host.Open(document);

  agent->duringAgentCall = [&] {
    if (FontManagerInterface::GetFontManager() != agent) return;
    responder.Shutdown();
    EXPECT_EQ(FontManagerInterface::GetFontManager(), agent);
    EXPECT_TRUE(HornbeamGlobals::ArePluginServicesEnabled());
  };
  host.Send(kBeforeCloseDocSignalResponderService, document);
  EXPECT_NE(FontManagerInterface::GetFontManager(), agent);
  EXPECT_FALSE(HornbeamGlobals::ArePluginServicesEnabled());
  EXPECT_EQ(HBIndesignPluginGlobals::GetNoOfDocumentsInDocumentList(), 0);
  EXPECT_EQ(host.deactivated, std::vector<std::string>{"Acme-Bold"});
}

TEST_F(StartUpService, ARetiredElementIsNotFoundButStaysUntilTheLastClose) {
  InMemoryDocument first("A.idml");
  InMemoryDocument second("B.idml");
  host.Open(first);
  host.Open(second);
  EXPECT_EQ(HBIndesignPluginGlobals::GetDocumentFromDocumentList("/documents/B.idml"), ElementOf(second));
  EXPECT_EQ(HBIndesignPluginGlobals::GetDocumentFromDocumentList("/documents/C.idml"), nullptr);
  DocumentElement* retired = ElementOf(first);
  host.Close(first);
  EXPECT_EQ(ElementOf(first), nullptr);
  EXPECT_EQ(HBIndesignPluginGlobals::GetDocumentFromDocumentList(UIDRef::Null()), retired);
}

}  // namespace
