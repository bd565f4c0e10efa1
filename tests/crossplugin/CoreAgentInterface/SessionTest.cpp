#include <utility>
#include <vector>

#include "CoreAgentInterface/AgentTest.h"
#include "CoreAgentInterface/CoreAgentPluginNotification.h"

namespace {

constexpr unsigned int kShutdown = GAgentIF::kShutdown;
constexpr unsigned int kUnavailable = GIPCClient::kServiceUnavailable;
const char* const kNotFound = "FontManagerNotFoundMessage";

// ---- What the user sees at start-up.

struct StartCase {
  const char* name;
  const char* failing;  // an entry, with its code
  unsigned int code;
  int schemaInSync, running;
  const char* message;
  bool connected;
  int registrations;
};

const StartCase kStartCases[] = {
    {"connects", "", 0, 1, 1, "", true, 1},
    {"schema out of sync", "InitAppInstance", CoreErrorCodes::kError, 0, 1, "VaultNeedsUpgradeMessage", false,
     0},
    {"library refuses the host", "InitAppInstance", CoreErrorCodes::kError, 1, 1, "", false, 0},
    {"agent isn't running", "", 0, 1, 0, kNotFound, false, 0},
    {"agent can't be asked", "GetIsCoreAgentProcessRunning", kUnavailable, 1, 1, kNotFound, false, 0},
    {"agent not found", "InitThreadInstance", GOspreyConfig::kAgentNotFound, 1, 1, kNotFound, false, 1},
    {"wrong mode", "InitThreadInstance", GOspreyConfig::kAgentRunningInWrongMode, 1, 1, "", false, 1},
    {"vault in use", "InitThreadInstance", GOspreySdk::kVaultInUse, 1, 1,
     "CouldNotOpenVaultInUseLaunchPrefs\n/vault", false, 1},
    {"vault invalid", "InitThreadInstance", GOspreySdk::kInvalidVault, 1, 1,
     "CouldNotOpenVaultLaunchPrefs\n/vault", false, 1},
};

TEST_F(AgentTest, StartShowsWhatWentWrong) {
  for (const StartCase& row : kStartCases) {
    SCOPED_TRACE(row.name);
    library.results = {{row.failing, row.code}};
    library.schemaInSync = row.schemaInSync;
    library.running = row.running;
    library.calls.clear();
    loom.boxes.clear();
    SetFlags(false);
    HornbeamGlobals::SetUserHasWorkgroups(true);

    agent = std::make_unique<LiveAgent>();
    EXPECT_EQ(library.LastCall("InitAppInstance"), "InitAppInstance(4, 0)");
    const std::vector<std::string> messages = loom.Messages();
    EXPECT_EQ(messages.empty() ? "" : messages.back(), row.message);
    EXPECT_LE(messages.size(), 1u);
    EXPECT_EQ(HornbeamGlobals::ArePluginServicesEnabled(), row.connected);
    EXPECT_EQ(HornbeamGlobals::ConnectedToCore(), row.connected);
    EXPECT_EQ(library.CountCalls("RegisterForNotifications"), row.registrations);
    EXPECT_EQ(library.CountCalls("EnableDesignActivation"), row.registrations);
    agent.reset();
    EXPECT_EQ(library.CountCalls("DestroyThreadInstance"), 1);
  }
}

TEST_F(AgentTest, ServicesStayAsTheyWereWhenTheHostIsRefusedWithSchemaInSync) {
  library.results["InitAppInstance"] = CoreErrorCodes::kError;
  Connect();
  EXPECT_TRUE(HornbeamGlobals::ArePluginServicesEnabled());
  EXPECT_FALSE(HornbeamGlobals::DisplayedSchemaError());
}

// ---- The retry rule.

constexpr unsigned int kNone = CoreErrorCodes::kNotFound;
constexpr int kYes = 1;
constexpr int kNo = 2;

struct RetryCase {
  const char* name;
  std::deque<unsigned int> results;  // of the first calls; then success
  unsigned int forEver;              // of all further calls, when not 0
  bool canBeLaunched;
  int answer;  // the user's, to "try again?"
  long calls;
  size_t launches;
  const char* message;
  size_t boxes;
  bool servicesOn;
  int result;
};

const char* const kMissing = "HSCoreAgentMissingMessage";

const RetryCase kRetryCases[] = {
    {"an agent that answers", {}, 0, true, kNo, 1, 0, "", 0, true, 0},
    {"an error of another kind", {kNone}, 0, true, kNo, 1, 0, "", 0, true, -1},
    {"gone once is silent", {kShutdown}, 0, true, kNo, 2, 1, "", 0, true, 0},
    {"gone, then an error", {kShutdown, kNone}, 0, true, kNo, 2, 1, "", 0, true, -1},
    {"gone twice is told", {kShutdown, kUnavailable}, 0, true, kNo, 3, 2, kNotFound, 1, true, 0},
    {"gone for ever ends at the cap", {}, kShutdown, true, kYes, 6, 5, kNotFound, 4, false, -1},
    {"can't be launched, the user gives up", {}, kShutdown, false, kNo, 1, 0, kMissing, 1, false, -1},
    {"can't be launched, the user doesn't", {}, kShutdown, false, kYes, 1, 0, kMissing, 4, false, -1},
};

TEST_F(AgentTest, WorkIsRetriedByTheRule) {
  const auto fonts = MakeFontList({MakeMatchedFont("A", library.AddFont("A"))});
  for (const RetryCase& row : kRetryCases) {
    SCOPED_TRACE(row.name);
    SetFlags(true);
    library.results.clear();
    Connect();
    processes.launched.clear();
    row.canBeLaunched ? CanBeLaunched() : CannotBeLaunched();
    library.nextResults["DeactivateFonts"] = row.results;
    library.results["DeactivateFonts"] = row.forEver;
    loom.alwaysAnswer = row.answer;
    const intptr_t facadeBefore = library.facadeGeneration;

    EXPECT_EQ(agent->DeactivateFonts(fonts.get(), nullptr, nullptr), row.result);
    EXPECT_EQ(library.CountCalls("DeactivateFonts"), row.calls);
    EXPECT_EQ(processes.launched.size(), row.launches);
    EXPECT_EQ(loom.Messages(), std::vector<std::string>(row.boxes, row.message));
    EXPECT_EQ(HornbeamGlobals::ArePluginServicesEnabled(), row.servicesOn);
    EXPECT_EQ(HornbeamGlobals::ConnectedToCore(), row.servicesOn);
    EXPECT_EQ(library.facadeGeneration - facadeBefore, static_cast<intptr_t>(row.launches));
  }
}

TEST_F(AgentTest, RelaunchHelpsOnceTheUserHasRepairedTheAgent) {
  const auto fonts = MakeFontList({MakeMatchedFont("A", library.AddFont("A"))});
  Connect();
  CannotBeLaunched();
  library.nextResults["DeactivateFonts"] = {kShutdown};
  loom.answers = {kYes};
  loom.duringBox = [this] { CanBeLaunched(); };
  EXPECT_EQ(agent->DeactivateFonts(fonts.get(), nullptr, nullptr), 0);
  EXPECT_EQ(processes.launched.size(), 1u);
  EXPECT_EQ(processes.launched[0].arguments, std::vector<std::string>{"quiet"});
  EXPECT_TRUE(HornbeamGlobals::ArePluginServicesEnabled());
}

TEST_F(AgentTest, RetryUsesTheNewFacade) {
  Connect();
  library.nextResults["GetAreSchemaVersionsInSync"] = {kShutdown};
  EXPECT_TRUE(agent->AreSchemaVersionsInSync());
  ASSERT_EQ(library.facades.size(), 2u);
  EXPECT_NE(library.facades[0], library.facades[1]);
}

TEST_F(AgentTest, RetryDoesNotBringBackServicesThatWereOffBefore) {
  Connect();
  HornbeamGlobals::SetPluginServicesEnabled(false);
  library.nextResults["GetAreSchemaVersionsInSync"] = {kShutdown, kShutdown};
  agent->AreSchemaVersionsInSync();
  EXPECT_FALSE(HornbeamGlobals::PluginServicesEnabled());
  EXPECT_TRUE(HornbeamGlobals::ConnectedToCore());
}

TEST_F(AgentTest, AShutdownToldWhileTheAgentIsBroughtBackDoesNotOutliveIt) {
  Connect();
  bool told = false;
  library.nextResults["GetAreSchemaVersionsInSync"] = {kShutdown};
  library.duringCall = [this, &told](const std::string& call) {
    if (!call.starts_with("ResetPluginFacadeInstance") || std::exchange(told, true)) return;
    CoreAgentNotificationCallback(PluginInterface::kAgentShutdown, nullptr);
    agent->ProcessNotifications();
    EXPECT_FALSE(HornbeamGlobals::ArePluginServicesEnabled());
  };
  EXPECT_TRUE(agent->AreSchemaVersionsInSync());
  EXPECT_TRUE(told);
  EXPECT_TRUE(HornbeamGlobals::ArePluginServicesEnabled());
  EXPECT_TRUE(HornbeamGlobals::ConnectedToCore());
}

TEST_F(AgentTest, QueriesDoNotRelaunch) {
  Connect();
  library.results["GetFontsByPostscriptName"] = kShutdown;
  std::vector<unsigned long> ids;
  EXPECT_EQ(agent->FontIDsForPostScriptName("A", 1, ids), -1);
  EXPECT_TRUE(processes.launched.empty());
}

// ---- Simple questions.

TEST_F(AgentTest, AnAgentThatCannotBeAskedCountsAsStandaloneButNotAsLoggedIn) {
  Connect();
  library.standalone = library.googleFontsEnabled = 0;
  EXPECT_FALSE(agent->RunningStandalone());
  EXPECT_FALSE(agent->IsGoogleWebFontsEnabled());
  for (const char* entry : {"GetRunningStandalone", "GetIsGoogleWebFontsEnabled", "GetIsLoggedIn",
                            "GetIsCoreAgentProcessRunning"}) {
    library.results[entry] = kUnavailable;
  }
  EXPECT_TRUE(agent->RunningStandalone());
  EXPECT_TRUE(agent->IsGoogleWebFontsEnabled());
  EXPECT_FALSE(agent->IsLoggedIn());
  EXPECT_FALSE(agent->IsRunning());
}

// ---- The health check.

TEST_F(AgentTest, HealthIsCheckedEveryFiveSecondsWhileConnected) {
  Connect();
  const auto checksAfter = [this](int seconds) {
    clock.Sleep(std::chrono::seconds(seconds));
    const long before = library.CountCalls("GetIsCoreAgentProcessRunning");
    agent->ProcessNotifications();
    return library.CountCalls("GetIsCoreAgentProcessRunning") - before;
  };
  EXPECT_EQ(checksAfter(0), 1);
  EXPECT_EQ(checksAfter(5), 0);
  EXPECT_EQ(checksAfter(1), 1);
  HornbeamGlobals::SetConnectedToCore(false);
  EXPECT_EQ(checksAfter(60), 0);
  HornbeamGlobals::SetConnectedToCore(true);
  EXPECT_EQ(checksAfter(0), 1);
  EXPECT_TRUE(loom.boxes.empty());
}

struct HealthCase {
  const char* name;
  std::deque<unsigned int> results;
  int running;
  long asked;
  bool healthy;
};

const HealthCase kHealthCases[] = {
    {"runs", {}, 1, 1, true},
    {"doesn't run", {}, 0, 1, false},
    {"answers the third time", {kUnavailable, kUnavailable}, 1, 3, true},
    {"never answers", {kUnavailable, kUnavailable, kUnavailable}, 1, 3, false},
};

TEST_F(AgentTest, HealthCheckTellsTheUserOnce) {
  for (const HealthCase& row : kHealthCases) {
    SCOPED_TRACE(row.name);
    SetFlags(true);
    library.running = 1;
    Connect();
    library.running = row.running;
    library.nextResults["GetIsCoreAgentProcessRunning"] = row.results;
    agent->ProcessNotifications();
    EXPECT_EQ(library.CountCalls("GetIsCoreAgentProcessRunning"), row.asked);
    EXPECT_EQ(HornbeamGlobals::ArePluginServicesEnabled(), row.healthy);
    EXPECT_EQ(loom.boxes.size(), row.healthy ? 0u : 1u);
    clock.Sleep(std::chrono::minutes(1));
    agent->ProcessNotifications();
    EXPECT_EQ(loom.boxes.size(), row.healthy ? 0u : 1u);
  }
}

}  // namespace
