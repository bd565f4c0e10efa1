// The process and its socket: who may talk to it, what it makes of nonsense, how it starts and ends.

#include <sys/stat.h>

#include <fstream>
#include <thread>

#include "KilnTestHome.h"
#include "kiln/store/Database.h"
#include "protocol/ErrorCodes.h"
#include "protocol/SocketPath.h"
#include "protocol/Version.h"

namespace kiln {
namespace {

wire::ClientMessage Ping() {
  wire::ClientMessage request;
  request.mutable_ping();
  return request;
}

class KilnServerTest : public KilnTestHome {
 protected:
  uint32_t VaultErrorOf(WireClient& client) {
    wire::ClientMessage request;
    request.mutable_init_thread();
    return client.Ask(request).error();
  }
};

TEST_F(KilnServerTest, OnlyThisUserReachesIt) {
  StartKiln();
  WireClient client;
  struct stat found {};
  ASSERT_EQ(stat(SocketPath().c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777, 0600u);
  ASSERT_EQ(stat(RuntimeFolder().c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777, 0700u);
}

TEST_F(KilnServerTest, ASecondOneOfTheSessionSaysSoAndEnds) {
  StartKiln();
  WireClient client;
  ProgramRun second(kKiln, {});
  EXPECT_EQ(second.Wait(), 1);
  EXPECT_NE(second.Errors().find("already serves this session"), std::string::npos);
  EXPECT_EQ(client.Ask(Ping()).error(), codes::kSuccess);
}

TEST_F(KilnServerTest, TheWireIsCheckedBeforeItIsUnderstood) {
  StartKiln();
  WireClient witness;
  wire::ClientMessage wrongVersion;
  wrongVersion.set_id(1);
  wrongVersion.mutable_hello()->set_protocol_version(kProtocolVersion + 1);
  std::string wrongFrame;
  AppendFrame(wrongVersion, wrongFrame);
  // Two bytes of the frame each.
  wire::ClientMessage endless;
  endless.set_id(1);
  for (int i = 0; i <= 100000; ++i) endless.mutable_activate_document_fonts()->add_fonts();
  std::string endlessFrame;
  AppendFrame(endless, endlessFrame);
  struct {
    const char* name;
    std::string bytes;
  } const cases[] = {
      {"too long", std::string("\xFF\xFF\xFF\xFF", 4) + "data"},
      {"no message", std::string("\0\0\0\x04\xFF\xFF\xFF\xFF", 8)},
      {"an empty message", std::string(4, '\0')},
      {"another protocol's greeting", "GET / HTTP/1.1\r\n\r\n"},
      {"another version", wrongFrame},
      {"a list without an end", endlessFrame},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    WireClient client("");
    client.SendBytes(one.bytes);
    EXPECT_TRUE(client.WaitForEnd());
    EXPECT_EQ(witness.Ask(Ping()).error(), codes::kSuccess);
  }
}

TEST_F(KilnServerTest, RequestsThatCantBeAnsweredGetACode) {
  StartKiln();
  WireClient stranger("");
  EXPECT_EQ(stranger.Ask(Ping()).error(), codes::kNotInitialized);
  wire::ClientMessage hello;
  hello.mutable_hello()->set_protocol_version(kProtocolVersion);
  hello.mutable_hello()->set_client_uuid("'; DROP TABLE clients; --");
  EXPECT_EQ(stranger.Ask(hello).error(), codes::kInvalidParam);

  WireClient client;
  EXPECT_EQ(client.Ask(wire::ClientMessage()).error(), codes::kNotImplemented) << "a kind of a later Kiln";
  wire::ClientMessage request;
  request.mutable_font_info()->set_font_id(12345);
  EXPECT_EQ(client.Ask(request).error(), codes::kNotFound);
  request.mutable_add_files()->add_paths("relative/path.ttf");
  EXPECT_EQ(client.Ask(request).error(), codes::kInvalidPath);
  *request.mutable_add_files()->mutable_paths(0) = std::string("/tmp\0/one.ttf", 13);
  EXPECT_EQ(client.Ask(request).error(), codes::kInvalidPath);
  request.mutable_add_files()->set_workgroup_id(2);
  EXPECT_EQ(client.Ask(request).error(), codes::kCannotAddFontsToWorkgroup);
  request.mutable_font_is_activated()->mutable_font_ids()->Resize(100001, 7);
  EXPECT_EQ(client.Ask(request).error(), codes::kInvalidParam);
  request.mutable_begin_logging()->set_file_name("../../escape.log");
  EXPECT_EQ(client.Ask(request).error(), codes::kInvalidParam);
}

TEST_F(KilnServerTest, AClientThatDoesntReadLosesItsConnectionAndNothingElseHappens) {
  StartKiln();
  WireClient witness;
  std::vector<std::string> files;
  for (int i = 0; i < 200; ++i) files.push_back(FontFile("Font" + std::to_string(i)));
  witness.AddFiles(files);
  WireClient deaf(WireClient::kSecondUuid);
  wire::ClientMessage request;
  request.mutable_list_fonts();
  request.set_id(99);
  for (int i = 0; i < 3000; ++i) deaf.Send(request);
  EXPECT_EQ(witness.Ask(Ping()).error(), codes::kSuccess);
  EXPECT_TRUE(deaf.WaitForEnd());
}

TEST_F(KilnServerTest, ALogOfTheClientsOwnHoldsItsTextsAndNoForgedLines) {
  StartKiln();
  WireClient client;
  wire::ClientMessage request;
  request.mutable_begin_logging()->set_file_name("Host.log");
  EXPECT_EQ(client.Ask(request).error(), codes::kSuccess);
  request.mutable_log()->set_text("one\n2000-01-01 00:00:00 two");
  EXPECT_EQ(client.Ask(request).error(), codes::kSuccess);
  const std::string log = mHome.Folder().Read("state/kiln/Host.log");
  EXPECT_NE(log.find("one 2000-01-01 00:00:00 two\n"), std::string::npos);
}

TEST_F(KilnServerTest, EndsOnATermSignalAndTellsItsClients) {
  StartKiln();
  WireClient client;
  mKiln->Signal(SIGTERM);
  EXPECT_TRUE(client.WaitForEvent(wire::ServerMessage::kShutdown));
  EXPECT_TRUE(client.WaitForEnd());
  EXPECT_EQ(mKiln->Wait(), 0);
  EXPECT_FALSE(std::filesystem::exists(SocketPath()));
}

TEST_F(KilnServerTest, EndsWhenIdleAndNotBefore) {
  ProgramRun kiln(kKiln, {"--exit-when-idle=1"});
  {
    WireClient client;
    std::this_thread::sleep_for(std::chrono::milliseconds(1500));
    EXPECT_EQ(client.Ask(Ping()).error(), codes::kSuccess);
  }
  EXPECT_EQ(kiln.Wait(), 0);
  EXPECT_EQ(kiln.Output() + kiln.Errors(), "") << "in the background nothing but the log";
}

TEST_F(KilnServerTest, WrongArgumentsAreToldAndHelpIsNot) {
  ProgramRun wrong(kKiln, {"--no-such-option"});
  EXPECT_EQ(wrong.Wait(), 2);
  ProgramRun help(kKiln, {"--help"});
  EXPECT_EQ(help.Wait(), 0);
  EXPECT_NE(help.Output().find("--exit-when-idle"), std::string::npos);
}

TEST_F(KilnServerTest, ALibraryOfANewerKilnIsRefusedUntouched) {
  StartKiln();
  WireClient().AddFiles({FontFile("Testa-Regular")});
  mKiln->Signal(SIGTERM);
  mKiln->Wait();
  uint32_t error = 0;
  // Folded into the file, so that what Kiln leaves alone can be compared.
  ASSERT_TRUE(Database::Open(mHome.Folder().Path("data/kiln/Kiln.sqlite"), error)
                  ->Execute("PRAGMA user_version = 1000; PRAGMA wal_checkpoint(TRUNCATE)"));
  const std::string before = mHome.Folder().Read("data/kiln/Kiln.sqlite");

  StartKiln();
  WireClient client;
  wire::ClientMessage request;
  request.mutable_schema_in_sync();
  EXPECT_FALSE(client.Ask(request).schema_in_sync().in_sync());
  request.mutable_init_app();
  EXPECT_EQ(client.Ask(request).error(), codes::kSchemaVersionMismatch);
  request.mutable_list_fonts();
  EXPECT_EQ(client.Ask(request).error(), codes::kSchemaVersionMismatch);
  mKiln->Signal(SIGTERM);
  mKiln->Wait();
  EXPECT_EQ(mHome.Folder().Read("data/kiln/Kiln.sqlite"), before);
}

TEST_F(KilnServerTest, AVaultThatCantBeUsedIsToldByItsCode) {
  struct {
    const char* name;
    void (*break_)(const TemporaryFolder&);
    uint32_t error;
  } const cases[] = {
      {"damaged database",
       [](const TemporaryFolder& home) { home.Write("data/kiln/Kiln.sqlite", std::string(5000, 'x')); },
       codes::kInvalidVault},
      {"a file where the vault should be",
       [](const TemporaryFolder& home) {
         std::filesystem::remove_all(home.Path("data/kiln"));
         home.Write("data/kiln/vault", "no folder");
       },
       codes::kInvalidVault},
  };
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    one.break_(mHome.Folder());
    StartKiln();
    WireClient client;
    EXPECT_EQ(VaultErrorOf(client), one.error);
    EXPECT_EQ(client.Ask(Ping()).error(), codes::kSuccess);
    wire::ClientMessage request;
    request.mutable_vault_path();
    EXPECT_EQ(client.Ask(request).vault_path().path(), mHome.Folder().Path("data/kiln/vault"));
    KillKiln();
  }
}

TEST_F(KilnServerTest, ALibraryThatAnotherSessionUsesIsToldByItsCode) {
  StartKiln();
  WireClient client;
  ScopedEnvironment otherSession("XDG_RUNTIME_DIR", mHome.Folder().MakeFolder("run2"));
  ProgramRun other(kKiln, {});
  WireClient otherClient(WireClient::kSecondUuid);
  EXPECT_EQ(VaultErrorOf(otherClient), codes::kVaultInUse);
  EXPECT_EQ(VaultErrorOf(client), codes::kSuccess);
}

}  // namespace
}  // namespace kiln
