// What the user sees when the plug-in meets a Kiln that isn't there, isn't its own, or can't work.

#include <functional>

#include "FaultTest.h"
#include "protocol/SocketPath.h"
#include "support/ScopedEnvironment.h"

namespace {

using Messages = std::vector<std::string>;

class UnusableAgentTest : public FaultTest {
 public:
  UnusableAgentTest() {
    HornbeamGlobals::SetPluginServicesEnabled(false);
    HornbeamGlobals::SetConnectedToCore(false);
  }
  ~UnusableAgentTest() override {
    if (m_otherKiln > 0) processes.Signal(m_otherKiln, SIGKILL);
  }

  void Start() {
    m_database = home.Folder().Read(kDatabase);
    StartKiln();
  }

  bool IsDatabaseUntouched() const { return home.Folder().Read(kDatabase) == m_database; }

  // A Kiln of another session of the same user, on the same library.
  void StartInAnotherSession() {
    const ScopedEnvironment session("XDG_RUNTIME_DIR", home.Folder().MakeFolder("run2"));
    ASSERT_EQ(processes.Processes::Launch(kKiln, {}, {}, &m_otherKiln), 0);
    WaitUntil([] { return std::filesystem::exists(kiln::SocketPath()); });
    WaitUntil([this] { return home.Folder().Exists("data/kiln/Kiln.sqlite"); });
  }

  // A library that has been in use, and then Kiln has ended.
  void MakeLibrary() {
    FillLibrary(3);
    PrivateHome::SignalPrograms("Kiln", SIGTERM);
    WaitUntil([] { return PrivateHome::SignalPrograms("Kiln", 0) == 0; });
  }

  void Overwrite(size_t offset, const std::string& bytes) {
    std::string content = home.Folder().Read(kDatabase);
    content.replace(offset, bytes.size(), bytes);
    home.Folder().Write(kDatabase, content);
  }

  // In Kiln's place: greets, answers what isn't asked for more, and hangs up when it is to open the library.
  void StartOneThatHangsUp() {
    StartKiln();
    WaitUntil([] { return std::filesystem::exists(kiln::SocketPath()); });
    m_fake.reset(new FakeAgent(FakeAgent::Misbehaving([](int socket) {
      FakeAgent::Request request;
      if (!FakeAgent::Greet(socket)) return;
      while (FakeAgent::ReceiveFrame(socket, request) && !request.has_init_thread()) {
        FakeAgent::SendFrame(socket, FakeAgent::ReplyTo(request.id()));
      }
    })));
  }

  void StartOneOfAnotherVersion() {
    m_fake.reset(new FakeAgent(FakeAgent::Misbehaving([](int socket) {
      FakeAgent::Request request;
      if (!FakeAgent::ReceiveFrame(socket, request)) return;
      FakeAgent::Reply reply = FakeAgent::ReplyTo(request.id());
      reply.set_error(CoreErrorCodes::kVersionMismatch);
      reply.mutable_hello()->set_protocol_version(1000);
      FakeAgent::SendFrame(socket, reply);
    })));
  }

  void StartOneThatDies() {
    StartKiln();
    Interpose().KillKilnOn(Interposer::Kill::kOnRequest, Interposer::Kind::kInitThread);
  }

  static constexpr const char* kDatabase = "data/kiln/Kiln.sqlite";

  PrivateHome& Home() { return home; }

 private:
  pid_t m_otherKiln = 0;
  std::string m_database;
  std::unique_ptr<FakeAgent> m_fake;
};

struct StartCase {
  const char* name;
  std::function<void(UnusableAgentTest&)> prepare;
  Messages messages;  // "@" stands for the vault's path
  bool services;
  bool leavesDatabase = false;  // byte for byte
};

const StartCase kStarts[] = {
    {"Usable", [](auto& test) { test.Start(); }, {}, true},
    {"NotThere", [](auto&) {}, {"FontManagerNotFoundMessage"}, false},
    {"DiesWhileConnecting",
     [](auto& test) { test.StartOneThatDies(); },
     {"FontManagerNotFoundMessage"},
     false},
    {"HangsUp", [](auto& test) { test.StartOneThatHangsUp(); }, {}, false},
    {"OtherVersion",
     [](auto& test) { test.StartOneOfAnotherVersion(); },
     {"VaultNeedsUpgradeMessage"},
     false},
    {"VaultInUse",
     [](auto& test) {
       test.StartInAnotherSession();
       test.Start();
     },
     {"CouldNotOpenVaultInUseLaunchPrefs\n@"},
     false},
    {"VaultIsAFile",
     [](auto& test) {
       test.Home().Folder().Write("data/kiln/vault", "no folder");
       test.Start();
     },
     {"CouldNotOpenVaultLaunchPrefs\n@"},
     false},
    {"DatabaseIsNone",
     [](auto& test) {
       test.Home().Folder().Write(test.kDatabase, std::string(5000, 'x'));
       test.Start();
     },
     {"CouldNotOpenVaultLaunchPrefs\n@"},
     false,
     true},
    {"DatabaseIsDamaged",
     [](auto& test) {
       test.MakeLibrary();
       test.Overwrite(4096, std::string(8192, 'x'));
       test.Start();
     },
     {"CouldNotOpenVaultLaunchPrefs\n@"},
     false,
     true},
    {"DatabaseIsNewer",
     [](auto& test) {
       test.MakeLibrary();
       test.Overwrite(60, std::string("\0\0\x27\x10", 4));  // its number of changes to the schema
       test.Start();
     },
     {"VaultNeedsUpgradeMessage"},
     false,
     true},
};

class Start : public UnusableAgentTest, public testing::WithParamInterface<StartCase> {};

TEST_P(Start, IsTold) {
  GetParam().prepare(*this);
  agent = std::make_unique<LiveAgent>();
  Messages expected = GetParam().messages;
  for (std::string& message : expected) {
    if (message.ends_with('@')) message.replace(message.size() - 1, 1, home.Folder().Path("data/kiln/vault"));
  }
  EXPECT_EQ(loom.Messages(), expected);
  EXPECT_EQ(HornbeamGlobals::ArePluginServicesEnabled(), GetParam().services);
  EXPECT_EQ(HornbeamGlobals::ConnectedToCore(), GetParam().services);
  EXPECT_TRUE(!GetParam().leavesDatabase || IsDatabaseUntouched());
}
INSTANTIATE_TEST_SUITE_P(UnusableAgent, Start, testing::ValuesIn(kStarts),
                         [](const auto& info) { return info.param.name; });

TEST_F(UnusableAgentTest, AnAgentThatIsKilledLaterIsToldByTheNextCheck) {
  StartKiln();
  Connect();
  KillKiln();
  agent->ProcessNotifications();
  EXPECT_EQ(loom.Messages(), Messages{"FontManagerNotFoundMessage"});
  EXPECT_FALSE(HornbeamGlobals::ConnectedToCore());
}

TEST_F(UnusableAgentTest, AnAgentThatEndsSaysSo) {
  StartKiln();
  Connect();
  agent->ProcessNotifications();  // the check is done: what is told now comes from Kiln
  PrivateHome::SignalPrograms("Kiln", SIGTERM);
  WaitUntil([this] { return agent->ProcessNotifications() > 0; });
  EXPECT_EQ(loom.Messages(), Messages{"FontManagerNotFoundMessage"});
  EXPECT_FALSE(HornbeamGlobals::ConnectedToCore());
}

}  // namespace
